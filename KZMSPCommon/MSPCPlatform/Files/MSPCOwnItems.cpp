#include "MSPCOwnItems.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "MSPCRemoval.h"

namespace {

bool isCutOff(const std::string& name) {
    return name.find('\0') != std::string::npos;
}

}  // namespace

int MSPCOpenOwnFolder(int parent, const std::string& name, MSPCFileDescriptor& folder) {
    if (isCutOff(name)) {
        return ENOENT;
    }
    if (::mkdirat(parent, name.c_str(), 0777) != 0 && errno != EEXIST) {
        return errno;
    }
    folder = MSPCFileDescriptor(::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    return folder.isOpen() ? 0 : errno;
}

int MSPCOpenOwnFolder(const std::string& path, MSPCFileDescriptor& folder) {
    return MSPCOpenOwnFolder(AT_FDCWD, path, folder);
}

int MSPCOpenOwnFile(int parent, const std::string& name, int flags, MSPCFileDescriptor& file) {
    if (isCutOff(name)) {
        return ENOENT;
    }
    constexpr int always = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
    MSPCFileDescriptor opened(::openat(parent, name.c_str(), flags | always, 0666));
    struct stat status {};
    if (!opened.isOpen() || ::fstat(opened.number(), &status) != 0) {
        return errno;
    }
    if (!S_ISREG(status.st_mode)) {
        return EINVAL;
    }
    file = std::move(opened);
    return 0;
}

int MSPCWriteOwnFile(const std::string& path, std::string_view bytes) {
    if (isCutOff(path)) {
        return ENOENT;
    }
    MSPCRemoveItem(path.c_str());
    MSPCFileDescriptor file;
    int error = MSPCOpenOwnFile(AT_FDCWD, path, O_WRONLY | O_CREAT | O_EXCL, file);
    error = error != 0 ? error : file.write(bytes);
    return error != 0 ? error : file.close();
}

bool MSPCIsFolderAt(const std::string& path, const MSPCFileDescriptor& folder) {
    struct stat there {};
    struct stat opened {};
    return !isCutOff(path) && ::lstat(path.c_str(), &there) == 0 && ::fstat(folder.number(), &opened) == 0 &&
           there.st_dev == opened.st_dev && there.st_ino == opened.st_ino;
}

bool MSPCIsLink(const std::string& path) {
    struct stat status {};
    return !isCutOff(path) && ::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}
