#pragma once

#include <string>
#include <vector>

// What the operating system says of one finished process.
struct ProcessFigures {
    double seconds = 0;           // wall clock
    double processorSeconds = 0;  // its own and those of the processes that it has waited for
    double peakMebibytes = 0;     // largest resident set
    int exitStatus = 0;           // 128 + n after signal n
};

// Runs a program to its end with standard output and standard error thrown away.
[[nodiscard]] ProcessFigures timedRun(const std::vector<std::string>& command);

[[nodiscard]] double median(std::vector<double> values);

// The slope of log(seconds) over log(size), by least squares: 1 is linear growth.
[[nodiscard]] double growthExponent(const std::vector<double>& sizes, const std::vector<double>& seconds);
