#pragma once

#include <chrono>
#include <ctime>

// What this process has used of the processors. For bounds that hold on a busy machine as well.
inline std::chrono::duration<double> processorTime() {
    timespec used{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
}
