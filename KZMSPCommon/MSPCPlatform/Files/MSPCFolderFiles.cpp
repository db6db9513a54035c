#include "MSPCFolderFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#include "MSPCFilesIn.h"
#include "MSPCOwnItems.h"

namespace {

bool isName(const std::string& text) {
    return text.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
}

}  // namespace

MSPCFolderFiles::MSPCFolderFiles(const std::string& path)
    : _folder(path.find('\0') == std::string::npos ? ::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC) : -1),
      _error(_folder.isOpen() ? 0 : errno) {
}

// Why a file is not to be opened; empty where it may be.
std::string MSPCFolderFiles::obstacle(const std::string& name) const {
    struct stat status {};
    if (!_folder.isOpen() || !isName(name)) {
        return MSPCSystemErrorText(_folder.isOpen() ? ENOENT : _error);
    }
    if (::fstatat(_folder.number(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return MSPCSystemErrorText(errno);
    }
    if (S_ISLNK(status.st_mode)) {
        return std::string(IsLink);
    }
    if (S_ISDIR(status.st_mode)) {
        return MSPCSystemErrorText(EISDIR);
    }
    return S_ISREG(status.st_mode) ? "" : "no regular file";
}

// What takes the file's place after it was looked at is not followed, nor waited for, either.
std::optional<std::string> MSPCFolderFiles::read(const std::string& name, std::string& failure) const {
    failure = obstacle(name);
    return failure.empty() ? MSPCReadFileIn(_folder.number(), name, &failure, MSPCLinks::AreNotFollowed) : std::nullopt;
}

std::string MSPCFolderFiles::beginning(const std::string& name, std::size_t size) const {
    MSPCFileDescriptor file;
    if (!obstacle(name).empty() || MSPCOpenOwnFile(_folder.number(), name, O_RDONLY, file) != 0) {
        return {};
    }
    std::string bytes(size, '\0');
    std::size_t used = 0;
    for (std::size_t count = 1; count != 0 && used < size; used += count) {
        if (file.read(bytes.data() + used, size - used, count) != 0) {
            break;
        }
    }
    bytes.resize(used);
    return bytes;
}
