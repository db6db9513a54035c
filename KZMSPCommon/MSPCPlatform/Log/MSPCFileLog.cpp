#include "MSPCFileLog.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

#include "MSPCOwnItems.h"

namespace {

constexpr std::size_t usualBlockSize = 64 * 1024;

}  // namespace

std::unique_ptr<MSPCFileLog> MSPCFileLog::open(const std::string& path, std::string_view processName,
                                               std::string& failure) {
    const bool isCutOff = path.find('\0') != std::string::npos;
    constexpr auto flags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY;
    constexpr mode_t mode = 0666;
    MSPCFileDescriptor file(isCutOff ? -1 : ::open(path.c_str(), flags, mode));
    if (!file.isOpen()) {
        failure = MSPCSystemErrorText(isCutOff ? ENOENT : errno);
        return nullptr;
    }
    return std::make_unique<MSPCFileLog>(std::move(file), processName);
}

std::unique_ptr<MSPCFileLog> MSPCFileLog::openAnew(const std::string& path, std::string_view processName,
                                                   std::string& failure) {
    MSPCFileDescriptor file;
    if (const int error = MSPCOpenOwnFile(AT_FDCWD, path, O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, file); error != 0) {
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
    _tookAll = _file.write(_collected) == 0 && _tookAll;
    _collected.clear();
    return _tookAll;
}
