#include "MSPCLog.h"

#include <spdlog/pattern_formatter.h>
#include <unistd.h>

#include <utility>

class MSPCStandardErrorLog::Sink {
public:
    Sink(std::string processName, MSPCLogBlock& block) : _block(block), _processName(std::move(processName)) {}

    void log(std::string_view message) {
        _line.clear();
        _formatter.format({_processName, spdlog::level::info, {message.data(), message.size()}}, _line);
        _block.add({_line.data(), _line.size()});
    }

private:
    MSPCLogBlock& _block;
    std::string _processName;
    // The number of the process stands in the pattern itself, or every line would ask the system for it.
    spdlog::pattern_formatter _formatter{"%Y-%m-%d %H:%M:%S.%e %n[" + std::to_string(::getpid()) + "] %v",
                                         spdlog::pattern_time_type::local, "\n"};
    spdlog::memory_buf_t _line;
};

MSPCStandardErrorLog::MSPCStandardErrorLog(std::string processName)
    : _block(STDERR_FILENO), _sink(std::make_unique<Sink>(std::move(processName), _block)) {
}

MSPCStandardErrorLog::~MSPCStandardErrorLog() {
    _block.showStatus({});
    flush();
}

void MSPCStandardErrorLog::log(std::string_view message) {
    _sink->log(message);
}

bool MSPCStandardErrorLog::isOnTerminal() const {
    return _block.isTerminal();
}

void MSPCStandardErrorLog::showStatus(std::string_view text) {
    _block.showStatus(text);
}

void MSPCStandardErrorLog::flush() noexcept {
    _block.flush();
}

void MSPCStandardErrorLog::flushWithin(std::chrono::milliseconds limit) noexcept {
    _block.flushWithin(limit);
}
