#include "MSPCStandardOutput.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

void MSPCMakeClosedStandardOutputFail() {
    if (::fcntl(STDOUT_FILENO, F_GETFD) != -1) {
        return;
    }
    const int nothing = ::open("/dev/null", O_RDONLY);
    // A standard input that is closed as well gets the lower number, and may keep it.
    if (nothing >= 0 && nothing < STDOUT_FILENO) {
        ::dup2(nothing, STDOUT_FILENO);
    }
}

bool MSPCIsReaderOfStandardOutputGone() {
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    return ::poll(&output, 1, 0) == 1 && (output.revents & (POLLERR | POLLHUP)) != 0;
}
