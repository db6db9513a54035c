#include "MSPCNameLock.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>

#include "MSPCTemporaryName.h"

namespace {

// The file systems of one machine, on which a lock is one for everybody.
constexpr std::uint32_t zfsMagic = 0x2FC1'2FC1;
constexpr std::array<std::uint32_t, 10> localFileSystems{
    EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC,     F2FS_SUPER_MAGIC,  zfsMagic,
    TMPFS_MAGIC,      RAMFS_MAGIC,     OVERLAYFS_SUPER_MAGIC, MSDOS_SUPER_MAGIC, EXFAT_SUPER_MAGIC};

}  // namespace

bool MSPCNameLock::isLocal(int folder) noexcept {
    struct statfs status {};
    return ::fstatfs(folder, &status) == 0 &&
           std::ranges::find(localFileSystems, static_cast<std::uint32_t>(status.f_type)) != localFileSystems.end();
}

bool MSPCNameLock::lock(const MSPCFileDescriptor& item) noexcept {
    return ::flock(item.number(), LOCK_EX | LOCK_NB) == 0;
}

bool MSPCNameLock::isNamed(int folder, const char* name, const MSPCFileDescriptor& item) noexcept {
    struct stat named {};
    struct stat opened {};
    return ::fstatat(folder, name, &named, AT_SYMLINK_NOFOLLOW) == 0 && ::fstat(item.number(), &opened) == 0 &&
           named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

MSPCNameLock::Answer MSPCNameLock::keep(const std::string& name) {
    const auto hidden = MSPCHiddenName(name);
    if (hidden.size() > NAME_MAX || !isLocal(_folder)) {
        return Answer::NotPossible;
    }
    int error = ESTALE;
    // Between opening and locking the file its last owner may remove it; then it keeps nothing.
    while (error == ESTALE) {
        error = _item.create(_folder, hidden, [this](const char* file) { return openLocked(file); });
    }
    if (error == 0) {
        readNote();
        return Answer::Kept;
    }
    _file = MSPCFileDescriptor();
    return error == EWOULDBLOCK ? Answer::KeptByOther : Answer::NotPossible;
}

int MSPCNameLock::openLocked(const char* name) {
    _file = MSPCFileDescriptor(
        ::openat(_folder, name, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!_file.isOpen()) {
        return errno;
    }
    struct stat status {};
    const bool isKnown = ::fstat(_file.number(), &status) == 0;
    if (isKnown && (!S_ISREG(status.st_mode) || status.st_uid != ::geteuid())) {
        return EPERM;
    }
    if (!isKnown || !lock(_file)) {
        const int error = errno;
        if (error != EWOULDBLOCK) {
            ::unlinkat(_folder, name, 0);  // what cannot be locked is of no use to anybody
        }
        return error;
    }
    return isNamed(_folder, name, _file) ? 0 : ESTALE;
}

void MSPCNameLock::readNote() {
    std::array<char, NAME_MAX> note{};
    const auto size = ::pread(_file.number(), note.data(), note.size(), 0);
    _noteOfDeadProcess.assign(note.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
}

void MSPCNameLock::note(const char* item) const noexcept {
    // An aid for the next run; without it what a kill leaves is only not cleaned up.
    if (_file.isOpen() && ::ftruncate(_file.number(), 0) == 0) {
        [[maybe_unused]] const auto written = ::pwrite(_file.number(), item, std::strlen(item), 0);
    }
}
