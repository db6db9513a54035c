#include "MSPCLog.h"

#include <fmt/compile.h>
#include <fmt/format.h>
#include <spdlog/pattern_formatter.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <utility>

class MSPCStandardErrorLog::Sink {
public:
    // The number of the process does not change, or every line would ask the system for it.
    Sink(const std::string& processName, MSPCLogBlock& block)
        : _block(block), _origin(fmt::format(" {}[{}] ", processName, ::getpid())) {}

    void write(std::string_view message) {
        using namespace std::chrono;
        const auto now = spdlog::log_clock::now();
        const auto second = floor<seconds>(now);
        if (second != _second) {
            _second = second;
            _timeOfSecond.clear();
            _formatter.format(spdlog::details::log_msg(second, {}, {}, spdlog::level::info, {}), _timeOfSecond);
        }
        _line.clear();
        _line.append(_timeOfSecond);
        fmt::format_to(fmt::appender(_line), FMT_COMPILE(".{:03}"), duration_cast<milliseconds>(now - second).count());
        _line.append(_origin);
        _line.append(message);
        _line.push_back('\n');
        _block.add({_line.data(), _line.size()});
    }

private:
    MSPCLogBlock& _block;
    std::string _origin;
    // Most lines of a long import come within the second of the line before.
    spdlog::pattern_formatter _formatter{"%Y-%m-%d %H:%M:%S", spdlog::pattern_time_type::local, ""};
    std::optional<std::chrono::time_point<spdlog::log_clock, std::chrono::seconds>> _second;
    spdlog::memory_buf_t _timeOfSecond;
    spdlog::memory_buf_t _line;
};

MSPCStandardErrorLog::MSPCStandardErrorLog(std::string processName)
    : _block(STDERR_FILENO), _sink(std::make_unique<Sink>(processName, _block)) {
}

MSPCStandardErrorLog::~MSPCStandardErrorLog() {
    _block.showStatus({});
    flush();
}

void MSPCStandardErrorLog::write(std::string_view message) {
    _sink->write(message);
}

bool MSPCStandardErrorLog::isOnTerminal() const {
    return _block.isTerminal();
}

void MSPCStandardErrorLog::showStatus(std::string_view text) {
    _block.showStatus(MSPCShownText(text).view());
}

void MSPCStandardErrorLog::flush() noexcept {
    _block.flush();
}

void MSPCStandardErrorLog::flushWithin(std::chrono::milliseconds limit) noexcept {
    _block.flushWithin(limit);
}
