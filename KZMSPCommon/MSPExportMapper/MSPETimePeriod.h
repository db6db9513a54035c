#pragma once

#include <cstdint>

#include "MSPCTimeOfDay.h"

// One worked stretch of a day, as wall-clock times. Nothing is checked: the end may lie before the start, and fields
// may hold any number. Times derived from them are therefore computed in floating point, where no value overflows.
// Deliberate: midnight is the beginning of the day, at the end of a period as well. A day worked round the clock, which
// plans write as 00:00:00-00:00:00, and a shift until midnight, 17:00:00-00:00:00, count no work.
struct MSPETimePeriod {
    std::int64_t fromHour = 0;
    std::int64_t fromMinute = 0;
    std::int64_t fromSecond = 0;
    std::int64_t toHour = 0;
    std::int64_t toMinute = 0;
    std::int64_t toSecond = 0;

    [[nodiscard]] constexpr MSPCTimeOfDay startTime() const { return time(fromHour, fromMinute, fromSecond); }
    [[nodiscard]] constexpr MSPCTimeOfDay endTime() const { return time(toHour, toMinute, toSecond); }
    // End time less start time, in seconds; negative when the period is reversed.
    [[nodiscard]] constexpr MSPCTimeInterval duration() const { return endTime() - startTime(); }

    friend bool operator==(const MSPETimePeriod&, const MSPETimePeriod&) = default;

private:
    static constexpr MSPCTimeOfDay time(std::int64_t hour, std::int64_t minute, std::int64_t second) {
        return {(static_cast<double>(hour) * 60 + static_cast<double>(minute)) * 60 + static_cast<double>(second)};
    }
};
