#include "MSPCRemoval.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

#include "MSPCFileDescriptor.h"

namespace {

constexpr int mostLevels = 1'000;  // of nested folders; no stack is endless

// What the system tells of an entry of a folder.
struct FolderEntry {
    std::uint64_t inode;
    std::int64_t offset;
    unsigned short size;
    unsigned char type;
    char name[1];
};

bool removeItem(int folder, const char* name, int levels) noexcept;

// Removes what is in a folder; false when nothing could be removed. The library's functions for reading folders
// allocate memory, which a signal handler must not do.
bool removeSomeContent(int folder, int levels) noexcept {
    alignas(FolderEntry) std::array<char, 4'096> entries;
    const long size = ::syscall(SYS_getdents64, folder, entries.data(), entries.size());
    bool hasRemoved = false;
    for (long at = 0; at < size;) {
        const auto* const entry = reinterpret_cast<const FolderEntry*>(entries.data() + at);
        const char* const name = static_cast<const char*>(entry->name);
        if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0) {
            hasRemoved = removeItem(folder, name, levels) || hasRemoved;
        }
        at += entry->size;
    }
    return hasRemoved;
}

bool removeFolder(int parent, const char* name, int levels) noexcept {
    {
        const MSPCFileDescriptor folder(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        while (levels > 0 && folder.isOpen() && removeSomeContent(folder.number(), levels - 1)) {
            ::lseek(folder.number(), 0, SEEK_SET);
        }
    }
    return ::unlinkat(parent, name, AT_REMOVEDIR) == 0;
}

bool removeItem(int folder, const char* name, int levels) noexcept {
    return ::unlinkat(folder, name, 0) == 0 || (errno == EISDIR && removeFolder(folder, name, levels));
}

bool isRemovable(int parent, const char* name, dev_t device, int levels);

bool isEntryOfAFolder(const dirent& entry) {
    const std::string_view name(static_cast<const char*>(entry.d_name));
    return name != "." && name != "..";
}

bool isContentRemovable(int parent, const char* name, dev_t device, int levels) {
    MSPCFileDescriptor folder(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(folder.isOpen() ? ::fdopendir(folder.number()) : nullptr,
                                                      &::closedir);
    if (!entries) {
        return !folder.isOpen() && errno == ENOENT;
    }
    const int number = folder.release();  // closed with the entries
    const bool mayChange = ::faccessat(number, ".", W_OK | X_OK, AT_EACCESS) == 0;
    while (const auto* entry = ::readdir(entries.get())) {
        if (isEntryOfAFolder(*entry) && !(mayChange && isRemovable(number, entry->d_name, device, levels))) {
            return false;
        }
    }
    return true;
}

bool isRemovable(int parent, const char* name, dev_t device, int levels) {
    struct stat status {};
    if (levels == 0) {
        return false;
    }
    if (::fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno == ENOENT;  // somebody else has removed it meanwhile
    }
    // What is mounted somewhere is another device, and in the way. Of files that says nothing: layered file systems
    // give each layer's files a device of their own.
    return !S_ISDIR(status.st_mode) ||
           (status.st_dev == device && isContentRemovable(parent, name, device, levels - 1));
}

}  // namespace

bool MSPCRemoveItem(int folder, const char* name) noexcept {
    return removeItem(folder, name, mostLevels);
}

bool MSPCRemoveItem(const char* path) noexcept {
    return MSPCRemoveItem(AT_FDCWD, path);
}

bool MSPCIsRemovable(int folder, const char* name) {
    struct stat status {};
    return ::fstat(folder, &status) == 0 && isRemovable(folder, name, status.st_dev, mostLevels);
}
