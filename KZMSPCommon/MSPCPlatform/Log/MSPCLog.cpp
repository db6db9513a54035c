#include "MSPCLog.h"

#include <fmt/chrono.h>
#include <fmt/compile.h>
#include <fmt/format.h>
#include <unistd.h>

#include <iterator>
#include <optional>
#include <utility>

namespace {

// "YYYY-MM-DD hh:mm:ss" on the clocks of the process's zone.
std::string localTimeText(std::chrono::sys_seconds second) {
    return fmt::format("{:%Y-%m-%d %H:%M:%S}", fmt::localtime(std::chrono::system_clock::to_time_t(second)));
}

}  // namespace

class MSPCStandardErrorLog::Lines {
public:
    // The number of the process does not change, or every line would ask the system for it.
    Lines(const std::string& processName, MSPCLogBlock& block)
        : _block(block), _origin(fmt::format(" {}[{}] ", processName, ::getpid())) {}

    void write(std::string_view message) {
        using namespace std::chrono;
        const auto now = floor<milliseconds>(system_clock::now());
        const auto second = floor<seconds>(now);
        if (second != _second) {
            _timeOfSecond = localTimeText(second);
            _second = second;
        }
        _line.clear();
        _line.append(_timeOfSecond);
        fmt::format_to(std::back_inserter(_line), FMT_COMPILE(".{:03}"), (now - second).count());
        _line.append(_origin);
        _line.append(message);
        _line.push_back('\n');
        _block.add(_line);
    }

private:
    MSPCLogBlock& _block;
    std::string _origin;
    // Most lines of a long import come within the second of the line before.
    std::optional<std::chrono::sys_seconds> _second;
    std::string _timeOfSecond;
    std::string _line;
};

MSPCStandardErrorLog::MSPCStandardErrorLog(const std::string& processName)
    : _block(STDERR_FILENO), _lines(std::make_unique<Lines>(processName, _block)) {
}

MSPCStandardErrorLog::~MSPCStandardErrorLog() {
    _block.showStatus({});
    flush();
}

void MSPCStandardErrorLog::write(std::string_view message) {
    _lines->write(message);
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
