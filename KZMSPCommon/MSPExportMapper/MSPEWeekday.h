#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

// Weekdays by number, as the Gregorian calendar counts them: 1 = Sunday ... 7 = Saturday. There is no weekday 0.
inline constexpr std::int64_t MSPEFirstWeekday = 1;
inline constexpr std::int64_t MSPELastWeekday = 7;

// The names of the target format by number; that of 0 is empty.
inline constexpr std::array<std::string_view, 8> MSPEWeekdayNames{"",          "sunday",   "monday", "tuesday",
                                                                  "wednesday", "thursday", "friday", "saturday"};

[[nodiscard]] constexpr bool MSPEIsWeekday(std::int64_t number) noexcept {
    return number >= MSPEFirstWeekday && number <= MSPELastWeekday;
}

// The number of a weekday's name; none for any other text ("Monday" included, case counts).
[[nodiscard]] constexpr std::optional<std::int64_t> MSPEWeekdayNamed(std::string_view name) noexcept {
    const auto found = std::find(MSPEWeekdayNames.begin() + 1, MSPEWeekdayNames.end(), name);
    return found == MSPEWeekdayNames.end() ? std::nullopt
                                           : std::optional<std::int64_t>(found - MSPEWeekdayNames.begin());
}
