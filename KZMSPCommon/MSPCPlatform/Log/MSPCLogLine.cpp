#include "MSPCLogLine.h"

#include <fmt/chrono.h>
#include <fmt/compile.h>
#include <fmt/format.h>
#include <unistd.h>

#include <iterator>

namespace {

// "YYYY-MM-DD hh:mm:ss" on the clocks of the process's zone.
std::string localTimeText(std::chrono::sys_seconds second) {
    return fmt::format("{:%Y-%m-%d %H:%M:%S}", fmt::localtime(std::chrono::system_clock::to_time_t(second)));
}

}  // namespace

// The number of the process does not change, or every line would ask the system for it.
MSPCLogLine::MSPCLogLine(std::string_view processName) : _origin(fmt::format(" {}[{}] ", processName, ::getpid())) {
}

std::string_view MSPCLogLine::with(std::string_view message) {
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
    return _line;
}
