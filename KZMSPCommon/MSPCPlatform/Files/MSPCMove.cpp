#include "MSPCMove.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "MSPCFileDescriptor.h"

namespace {

// Where the file system knows no renaming to a free name, making a folder decides who has it; renaming onto a folder
// works only while that is empty.
int errorOfMoveByAFolder(const std::string& from, const std::string& to) {
    if (::mkdir(to.c_str(), 0777) != 0) {
        return errno;
    }
    const int error = ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
    if (error != 0) {
        ::rmdir(to.c_str());
    }
    return error == ENOTEMPTY ? EEXIST : error;
}

int errorOfMove(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    const bool isUnknown = errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
    return isUnknown ? errorOfMoveByAFolder(from, to) : errno;
}

bool isCutOff(const std::string& path) {
    return path.find('\0') != std::string::npos;
}

}  // namespace

std::optional<std::string> MSPCMoveToFreeName(const std::string& from, const std::string& to, bool& isTaken) {
    const int error = isCutOff(from) || isCutOff(to) ? ENOENT : errorOfMove(from, to);
    isTaken = error == EEXIST;
    return error == 0 ? std::nullopt : std::optional(MSPCSystemErrorText(error));
}
