#pragma once

#include <chrono>
#include <cstdint>

#include "MSPCInstant.h"

// The instant of a date and time in Greenwich, by the standard library's calendar.
inline MSPCInstant utcInstant(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0) {
    using namespace std::chrono;
    const auto days =
        sys_days(std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day)).time_since_epoch();
    const auto seconds = duration_cast<std::chrono::seconds>(days).count() + hour * 3600 + minute * 60 + second;
    return {static_cast<double>(seconds)};
}

inline std::int64_t secondsOf(MSPCInstant instant) {
    return static_cast<std::int64_t>(instant.secondsSince1970);
}
