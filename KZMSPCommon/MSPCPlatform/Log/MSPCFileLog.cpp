#include "MSPCFileLog.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "MSPCFilesIn.h"
#include "MSPCOwnItems.h"
#include "MSPCPath.h"
#include "MSPCUnfinishedItem.h"

namespace {

constexpr std::size_t usualBlockSize = 64 * 1024;

constexpr mode_t mode = 0666;

bool isPipe(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
}

// Opening a pipe would wait for its reader, who may never come; writing to one that is there may take its time.
int openToWrite(const std::string& path, MSPCFileDescriptor& file) {
    constexpr int flags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    file = MSPCFileDescriptor(::open(path.c_str(), flags, mode));
    const int set = file.isOpen() ? ::fcntl(file.number(), F_GETFL) : -1;
    return set >= 0 && ::fcntl(file.number(), F_SETFL, set & ~O_NONBLOCK) == 0 ? 0 : errno;
}

int makeAnew(const std::string& path, MSPCFileDescriptor& file) {
    const MSPCFileDescriptor folder(MSPCOpenFolderOf(path));
    if (!folder.isOpen()) {
        return errno;
    }
    MSPCUnfinishedItem made;
    const int error = made.createUnderTemporaryName(folder.number(), [&](const char* name) {
        constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC;
        file = MSPCFileDescriptor(::openat(folder.number(), name, flags, mode));
        return file.isOpen() ? 0 : errno;
    });
    if (error != 0) {
        return error;
    }
    const auto name = lastPathComponent(path);
    if (::renameat(folder.number(), made.path().c_str(), folder.number(), name.c_str()) != 0) {
        return errno;
    }
    made.finish();
    return 0;
}

bool isCutOff(const std::string& path) {
    return path.find('\0') != std::string::npos;
}

}  // namespace

std::unique_ptr<MSPCFileLog> MSPCFileLog::open(const std::string& path, std::string_view processName,
                                               std::string& failure) {
    MSPCFileDescriptor file;
    if (const int error = isCutOff(path) ? ENOENT : openToWrite(path, file); error != 0) {
        failure = error == ENXIO && isPipe(path) ? "a pipe that nobody reads" : MSPCSystemErrorText(error);
        return nullptr;
    }
    return std::make_unique<MSPCFileLog>(std::move(file), processName);
}

std::unique_ptr<MSPCFileLog> MSPCFileLog::openOwn(const std::string& path, std::string_view processName,
                                                  std::string& failure) {
    MSPCFileDescriptor file;
    if (const int error = MSPCOpenOwnFile(AT_FDCWD, path, O_WRONLY | O_CREAT | O_APPEND, file); error != 0) {
        failure = MSPCSystemErrorText(error);
        return nullptr;
    }
    return std::make_unique<MSPCFileLog>(std::move(file), processName);
}

std::unique_ptr<MSPCFileLog> MSPCFileLog::openAnew(const std::string& path, std::string_view processName,
                                                   std::string& failure) {
    MSPCFileDescriptor file;
    if (const int error = isCutOff(path) ? ENOENT : makeAnew(path, file); error != 0) {
        failure = MSPCSystemErrorText(error);
        return nullptr;
    }
    auto log = std::make_unique<MSPCFileLog>(std::move(file), processName);
    log->_blockSize = 0;
    return log;
}

MSPCFileLog::MSPCFileLog(MSPCFileDescriptor file, std::string_view processName)
    : _file(std::move(file)), _line(processName), _blockSize(usualBlockSize) {
}

MSPCFileLog::~MSPCFileLog() {
    static_cast<void>(flush());
}

void MSPCFileLog::write(std::string_view message) {
    _collected.append(_line.with(message));
    if (_collected.size() >= _blockSize) {
        static_cast<void>(flush());
    }
}

bool MSPCFileLog::flush() noexcept {
    const int error = _file.write(_collected);
    _error = _error != 0 ? _error : error;
    _collected.clear();
    return _error == 0;
}

std::string MSPCFileLog::failure() const {
    return _error == 0 ? std::string() : MSPCSystemErrorText(_error);
}
