#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

// Makes the lines of a log: "YYYY-MM-DD hh:mm:ss.mmm <process name>[pid] <message>" with a line feed, the time as the
// clocks of the process's zone show it.
class MSPCLogLine {
public:
    explicit MSPCLogLine(std::string_view processName);

    // The line of a message, which stays until the next one.
    [[nodiscard]] std::string_view with(std::string_view message);

private:
    std::string _origin;
    // Most lines of a long import come within the second of the line before.
    std::optional<std::chrono::sys_seconds> _second;
    std::string _timeOfSecond;
    std::string _line;
};
