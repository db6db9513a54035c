#pragma once

#include <array>
#include <cstdint>

// A weekday by its number, as the Gregorian calendar counts them. A value made of another number is no weekday:
// `MSPCIsWeekday` tells.
enum class MSPCWeekday : std::int64_t { Sunday = 1, Monday, Tuesday, Wednesday, Thursday, Friday, Saturday };

inline constexpr std::int64_t MSPCDaysOfWeek = 7;

// All of them, from Sunday on.
inline constexpr std::array<MSPCWeekday, MSPCDaysOfWeek> MSPCWeekdays{
    MSPCWeekday::Sunday,   MSPCWeekday::Monday, MSPCWeekday::Tuesday, MSPCWeekday::Wednesday,
    MSPCWeekday::Thursday, MSPCWeekday::Friday, MSPCWeekday::Saturday};

[[nodiscard]] constexpr std::int64_t MSPCNumberOf(MSPCWeekday weekday) noexcept {
    return static_cast<std::int64_t>(weekday);
}

[[nodiscard]] constexpr bool MSPCIsWeekday(MSPCWeekday weekday) noexcept {
    return weekday >= MSPCWeekday::Sunday && weekday <= MSPCWeekday::Saturday;
}

// The weekday so many days later, or earlier when negative; no more than a week.
[[nodiscard]] constexpr MSPCWeekday operator+(MSPCWeekday weekday, std::int64_t days) noexcept {
    const auto number = MSPCNumberOf(weekday) + days;
    if (number > MSPCDaysOfWeek) {
        return MSPCWeekday{number - MSPCDaysOfWeek};
    }
    return MSPCWeekday{number < 1 ? number + MSPCDaysOfWeek : number};
}
