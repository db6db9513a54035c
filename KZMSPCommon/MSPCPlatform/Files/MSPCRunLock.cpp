#include "MSPCRunLock.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include "MSPCOwnItems.h"

MSPCRunLock::MSPCRunLock(int folder, const std::string& name) {
    if (const int error = MSPCOpenOwnFile(folder, name, O_RDWR | O_CREAT, _file); error != 0) {
        _failure = MSPCSystemErrorText(error);
    }
}

bool MSPCRunLock::tryToTake() {
    return ::flock(_file.number(), LOCK_EX | LOCK_NB) == 0;
}

bool MSPCRunLock::waitAndTake() {
    int result = 0;
    do {
        result = ::flock(_file.number(), LOCK_EX);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

std::string MSPCRunLock::holder() const {
    std::array<char, 512> text{};
    const auto size = ::pread(_file.number(), text.data(), text.size(), 0);
    return {text.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

void MSPCRunLock::sign() {
    std::array<char, HOST_NAME_MAX + 1> host{};
    ::gethostname(host.data(), host.size() - 1);
    const auto text = fmt::format("process {} on {}", ::getpid(), host.data());
    // Only an aid for people; the lock itself is what counts.
    if (::ftruncate(_file.number(), 0) == 0) {
        [[maybe_unused]] const auto written = ::pwrite(_file.number(), text.data(), text.size(), 0);
    }
}
