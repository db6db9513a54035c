#pragma once

#include <compare>
#include <cstdint>

#include "MSPCWeekday.h"

// A day of the Gregorian calendar, by the number of days since 1970-01-01.
struct MSPCDay {
    std::int64_t since1970 = 0;

    friend auto operator<=>(const MSPCDay&, const MSPCDay&) = default;
    friend constexpr MSPCDay operator+(MSPCDay day, std::int64_t days) { return {day.since1970 + days}; }
    friend constexpr MSPCDay operator-(MSPCDay day, std::int64_t days) { return {day.since1970 - days}; }
};

// A day by its date. The calendar is proleptic: the year 0 is leap, before it stands -1.
struct MSPCCivilDate {
    std::int64_t year = 1970;
    std::int64_t month = 1;  // 1 to 12
    std::int64_t day = 1;    // 1 to 31

    friend bool operator==(const MSPCCivilDate&, const MSPCCivilDate&) = default;
};

// The days of 400 years, after which dates and weekdays repeat.
inline constexpr std::int64_t MSPCDaysPerCycle = 146'097;

// Both are exact for every year that 34 bits hold, far beyond those that the standard library's calendar reaches.
[[nodiscard]] MSPCDay MSPCDayOf(const MSPCCivilDate& date) noexcept;
[[nodiscard]] MSPCCivilDate MSPCDateOf(MSPCDay day) noexcept;

[[nodiscard]] MSPCWeekday MSPCWeekdayOf(MSPCDay day) noexcept;

// The quotient and the rest of a division whose rest is never negative, as the days before 1970 need it.
[[nodiscard]] constexpr std::int64_t MSPCFloorDivide(std::int64_t value, std::int64_t divisor) noexcept {
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}
[[nodiscard]] constexpr std::int64_t MSPCFloorModulo(std::int64_t value, std::int64_t divisor) noexcept {
    return value - MSPCFloorDivide(value, divisor) * divisor;
}
