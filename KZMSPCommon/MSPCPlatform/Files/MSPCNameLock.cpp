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
#include <string_view>

#include "MSPCRemoval.h"
#include "MSPCSignalsBlocked.h"
#include "MSPCUnfinishedItem.h"

namespace {

// The file systems of one machine, on which a lock is one for everybody.
constexpr std::uint32_t zfsMagic = 0x2FC1'2FC1;
constexpr std::array<std::uint32_t, 10> localFileSystems{
    EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC,     F2FS_SUPER_MAGIC,  zfsMagic,
    TMPFS_MAGIC,      RAMFS_MAGIC,     OVERLAYFS_SUPER_MAGIC, MSDOS_SUPER_MAGIC, EXFAT_SUPER_MAGIC};

// The first line of a lock's file. Its name may have been somebody else's before, so it is not taken for a note unless
// it looks like one.
class Note {
public:
    explicit Note(const MSPCFileDescriptor& file) noexcept {
        const auto size = ::pread(file.number(), _text.data(), _text.size() - 1, 0);
        _text[static_cast<std::size_t>(std::max<ssize_t>(size, 0))] = '\n';
        *std::ranges::find(_text, '\n') = '\0';
    }

    [[nodiscard]] const char* text() const noexcept { return _text.data(); }
    [[nodiscard]] bool isEmpty() const noexcept { return _text.front() == '\0'; }
    [[nodiscard]] bool namesAnItem() const noexcept { return MSPCIsTemporaryName(text()); }

private:
    std::array<char, NAME_MAX + 1> _text{};
};

// Removes the folder that a dead process noted. It belongs to nobody when it is locked no longer.
void removeNoted(int folder, const Note& note) noexcept {
    if (!note.namesAnItem()) {
        return;
    }
    const MSPCFileDescriptor left(::openat(folder, note.text(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    if (left.isOpen() && ::fstat(left.number(), &status) == 0 && status.st_uid == ::geteuid() &&
        MSPCNameLock::lock(left) && MSPCNameLock::isNamed(folder, note.text(), left)) {
        MSPCRemoveItem(folder, note.text());
    }
}

// 0 for a file that may be a lock of this user; else the error number.
int errorOfLockFile(const MSPCFileDescriptor& file) noexcept {
    struct stat status {};
    if (::fstat(file.number(), &status) != 0) {
        return errno;
    }
    return S_ISREG(status.st_mode) && status.st_uid == ::geteuid() ? 0 : EPERM;
}

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
        return Answer::Kept;
    }
    _file = MSPCFileDescriptor();
    return error == EWOULDBLOCK ? Answer::KeptByOther : Answer::NotPossible;
}

MSPCNameLock::Answer MSPCNameLock::keepNumbered(const std::string& name) {
    constexpr int mostAtOnce = 10'000;
    auto answer = Answer::KeptByOther;
    for (int number = 1; answer == Answer::KeptByOther && number <= mostAtOnce; ++number) {
        answer = keep(name + "." + std::to_string(number));
    }
    return answer;
}

// Signals wait meanwhile: one that ended the process here would take the lock away, and with it the note of what is
// left.
int MSPCNameLock::openLocked(const char* name) {
    _file = MSPCFileDescriptor(
        ::openat(_folder, name, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!_file.isOpen()) {
        return errno;
    }
    int error = errorOfLockFile(_file);
    if (error == 0 && !lock(_file)) {
        error = errno;
    }
    const bool isOfOther = error == EPERM || error == EWOULDBLOCK;
    if (error != 0 && !isOfOther) {
        ::unlinkat(_folder, name, 0);  // what cannot be locked is of no use to anybody
    }
    if (error != 0) {
        return error;
    }
    if (!isNamed(_folder, name, _file)) {
        return ESTALE;
    }
    removeNoted(_folder, Note(_file));
    return 0;
}

void MSPCNameLock::removeIfDead(int folder, const char* hidden) noexcept {
    const MSPCSignalsBlocked blocked;
    const MSPCFileDescriptor file(::openat(folder, hidden, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen() || errorOfLockFile(file) != 0 || !lock(file) || !isNamed(folder, hidden, file)) {
        return;
    }
    const Note note(file);
    if (note.isEmpty() || note.namesAnItem()) {
        removeNoted(folder, note);
        ::unlinkat(folder, hidden, 0);
    }
}

void MSPCNameLock::note(const std::string& item) const {
    // An aid for the next run; without it what a kill leaves is only not cleaned up. Written in one go, since the
    // process may be killed in between.
    const auto line = item + "\n";
    if (_file.isOpen()) {
        [[maybe_unused]] const auto written = ::pwrite(_file.number(), line.data(), line.size(), 0);
    }
}
