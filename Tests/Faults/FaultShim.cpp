// A shared object that is preloaded into the program and lets one of its calls of the system fail. KZMSP_FAULT tells
// which: "<kind> <n> <errno>" for the n-th call of a kind, "space <bytes> <errno>" for every write once that many bytes
// have been written, "slow 0 0" for no fault but two milliseconds before every change of the disk, so that a test meets
// the moments between them, "plain-rename <n> <errno>" for a file system of the network, whose locks nobody else sees
// and which knows no flags of renaming (that error), nor the n-th plain renaming if n is not 0, "kill-at-plain-rename
// <n> <errno>" for a local one that knows no such flags, and the end of the process at the n-th plain renaming.
// KZMSP_FAULT_MARK names a file that is made when the fault strikes, so that a test can tell the end of the calls.
// Writes to standard error are left alone, for the log tells the test what happened.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" {
// The allocator itself, below the functions that are replaced here.
void* __libc_malloc(std::size_t size);                     // NOLINT(bugprone-reserved-identifier)
void* __libc_calloc(std::size_t count, std::size_t size);  // NOLINT(bugprone-reserved-identifier)
void* __libc_realloc(void* memory, std::size_t size);      // NOLINT(bugprone-reserved-identifier)
}

namespace {

std::size_t largeAllocation = 4'096;  // KZMSP_FAULT_LARGE, where that is given

char faultyKind[32] = "";
long callsLeft = 0;  // of the kind, the faulty one included; bytes for the kind "space"
int faultError = 0;
long renamesSoFar = 0;

// Other constructors allocate before this one runs; they are not counted.
__attribute__((constructor)) void readFault() {
    const char* const fault = std::getenv("KZMSP_FAULT");
    if (const char* const large = std::getenv("KZMSP_FAULT_LARGE")) {
        largeAllocation = std::strtoul(large, nullptr, 10);
    }
    char kind[sizeof faultyKind] = "";
    if (fault && std::sscanf(fault, "%31s %ld %d", kind, &callsLeft, &faultError) == 3) {
        std::strcpy(faultyKind, kind);
    }
}

bool isFaulty(const char* kind) {
    return std::strcmp(faultyKind, kind) == 0;
}

// By system calls alone: this may be called from within an allocation.
void mark() {
    if (const char* const path = std::getenv("KZMSP_FAULT_MARK")) {
        const long file = ::syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_CREAT, 0600);
        ::syscall(SYS_close, file);
    }
}

// Whether this call is the one that fails; errno is set then.
bool strikes(const char* kind) {
    if (!isFaulty(kind) || callsLeft <= 0 || --callsLeft != 0) {
        return false;
    }
    mark();
    errno = faultError;
    return true;
}

void delayIfAsked() {
    if (isFaulty("slow")) {
        ::usleep(2'000);
    }
}

// The system's own function behind one that is replaced here.
template <typename Function>
Function next(Function, const char* name) {
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

mode_t modeArgument(int flags, va_list arguments) {
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

ssize_t writeWithinSpace(int file, const void* bytes, std::size_t count) {
    if (callsLeft <= 0) {
        mark();
        errno = faultError;
        return -1;
    }
    const auto taken = static_cast<long>(count) < callsLeft ? static_cast<long>(count) : callsLeft;
    const auto written = ::syscall(SYS_write, file, bytes, taken);
    callsLeft -= written > 0 ? written : 0;
    return written;
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeArgument(flags, arguments);
    va_end(arguments);
    return strikes("open") ? -1 : static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeArgument(flags, arguments);
    va_end(arguments);
    return strikes("open") ? -1 : static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

int openat(int folder, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeArgument(flags, arguments);
    va_end(arguments);
    return strikes("open") ? -1 : static_cast<int>(::syscall(SYS_openat, folder, path, flags, mode));
}

int openat64(int folder, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeArgument(flags, arguments);
    va_end(arguments);
    return strikes("open") ? -1 : static_cast<int>(::syscall(SYS_openat, folder, path, flags, mode));
}

DIR* opendir(const char* path) {
    return strikes("open") ? nullptr : next(&opendir, "opendir")(path);
}

dirent* readdir(DIR* folder) {
    return strikes("readdir") ? nullptr : next(&readdir, "readdir")(folder);
}

ssize_t read(int file, void* bytes, std::size_t count) {
    if (strikes("read")) {
        return -1;
    }
    const bool isShort = count > 1 && strikes("short-read");
    return ::syscall(SYS_read, file, bytes, isShort ? 1 : count);
}

ssize_t write(int file, const void* bytes, std::size_t count) {
    if (file == STDERR_FILENO) {
        return strikes("log") ? -1 : ::syscall(SYS_write, file, bytes, count);
    }
    delayIfAsked();
    if (isFaulty("space")) {
        return writeWithinSpace(file, bytes, count);
    }
    if (strikes("write")) {
        return -1;
    }
    const bool isShort = count > 1 && strikes("short-write");
    return ::syscall(SYS_write, file, bytes, isShort ? 1 : count);
}

int close(int file) {
    const auto result = static_cast<int>(::syscall(SYS_close, file));
    return strikes("close") ? -1 : result;  // the number is free again, as the system has it
}

int fsync(int file) {
    return strikes("fsync") ? -1 : static_cast<int>(::syscall(SYS_fsync, file));
}

int fdatasync(int file) {
    return strikes("fsync") ? -1 : static_cast<int>(::syscall(SYS_fdatasync, file));
}

int syncfs(int file) {
    return strikes("fsync") ? -1 : static_cast<int>(::syscall(SYS_syncfs, file));
}

int rename(const char* from, const char* to) {
    delayIfAsked();
    return strikes("rename") ? -1 : static_cast<int>(::syscall(SYS_rename, from, to));
}

int renameat(int oldFolder, const char* from, int newFolder, const char* to) {
    delayIfAsked();
    return strikes("rename") ? -1 : static_cast<int>(::syscall(SYS_renameat, oldFolder, from, newFolder, to));
}

int renameat2(int oldFolder, const char* from, int newFolder, const char* to, unsigned flags) {
    delayIfAsked();
    if (flags != 0 && (isFaulty("plain-rename") || isFaulty("kill-at-plain-rename"))) {
        errno = faultError;
        return -1;
    }
    if (isFaulty("kill-at-plain-rename") && ++renamesSoFar == callsLeft) {
        ::raise(SIGKILL);
    }
    if (flags == 0 && isFaulty("plain-rename") && callsLeft > 0 && ++renamesSoFar == callsLeft) {
        mark();
        errno = EXDEV;
        return -1;
    }
    return strikes("rename") ? -1 : static_cast<int>(::syscall(SYS_renameat2, oldFolder, from, newFolder, to, flags));
}

int mkdir(const char* path, mode_t mode) {
    delayIfAsked();
    return strikes("mkdir") ? -1 : static_cast<int>(::syscall(SYS_mkdir, path, mode));
}

int mkdirat(int folder, const char* path, mode_t mode) {
    delayIfAsked();
    return strikes("mkdir") ? -1 : static_cast<int>(::syscall(SYS_mkdirat, folder, path, mode));
}

int link(const char* from, const char* to) {
    return strikes("link") ? -1 : static_cast<int>(::syscall(SYS_link, from, to));
}

int symlink(const char* target, const char* path) {
    return strikes("link") ? -1 : static_cast<int>(::syscall(SYS_symlink, target, path));
}

int symlinkat(const char* target, int folder, const char* path) {
    return strikes("link") ? -1 : static_cast<int>(::syscall(SYS_symlinkat, target, folder, path));
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"  // a struct has the same name
int flock(int file, int operation) {
    return strikes("lock") ? -1 : static_cast<int>(::syscall(SYS_flock, file, operation));
}
#pragma GCC diagnostic pop

int fstatfs(int file, struct statfs* status) {
    const auto result = static_cast<int>(::syscall(SYS_fstatfs, file, status));
    if (isFaulty("plain-rename") && result == 0) {
        status->f_type = NFS_SUPER_MAGIC;
    }
    return strikes("stat") ? -1 : result;
}

ssize_t readlink(const char* path, char* buffer, std::size_t size) {
    return strikes("link") ? -1 : ::syscall(SYS_readlink, path, buffer, size);
}

int unlink(const char* path) {
    return strikes("unlink") ? -1 : static_cast<int>(::syscall(SYS_unlink, path));
}

int unlinkat(int folder, const char* path, int flags) {
    delayIfAsked();
    return strikes("unlink") ? -1 : static_cast<int>(::syscall(SYS_unlinkat, folder, path, flags));
}

int rmdir(const char* path) {
    return strikes("unlink") ? -1 : static_cast<int>(::syscall(SYS_rmdir, path));
}

int remove(const char* path) {
    return strikes("unlink") ? -1 : next(static_cast<int (*)(const char*)>(&remove), "remove")(path);
}

int stat(const char* path, struct stat* status) {
    return strikes("stat") ? -1 : next(&stat, "stat")(path, status);
}

int lstat(const char* path, struct stat* status) {
    return strikes("stat") ? -1 : next(&lstat, "lstat")(path, status);
}

int fstatat(int folder, const char* path, struct stat* status, int flags) {
    return strikes("stat") ? -1 : next(&fstatat, "fstatat")(folder, path, status, flags);
}

int fstat(int file, struct stat* status) {
    return strikes("stat") ? -1 : next(&fstat, "fstat")(file, status);
}

int fstat64(int file, struct stat64* status) {
    return strikes("stat") ? -1 : next(&fstat64, "fstat64")(file, status);
}

void* malloc(std::size_t size) {
    return size >= largeAllocation && strikes("allocation") ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    return count * size >= largeAllocation && strikes("allocation") ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) {
    return size >= largeAllocation && strikes("allocation") ? nullptr : __libc_realloc(memory, size);
}

}  // extern "C"
