#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "MSPCWeekday.h"

// The names of the weekdays in the target format by number; that of 0 is empty.
inline constexpr std::array<std::string_view, 8> MSPEWeekdayNames{"",          "sunday",   "monday", "tuesday",
                                                                  "wednesday", "thursday", "friday", "saturday"};

// `weekday` must be one.
[[nodiscard]] constexpr std::string_view MSPENameOf(MSPCWeekday weekday) noexcept {
    return MSPEWeekdayNames[static_cast<std::size_t>(weekday)];
}

// The weekday of a name; none for any other text ("Monday" included, case counts).
[[nodiscard]] constexpr std::optional<MSPCWeekday> MSPEWeekdayNamed(std::string_view name) noexcept {
    const auto found = std::find(MSPEWeekdayNames.begin() + 1, MSPEWeekdayNames.end(), name);
    return found == MSPEWeekdayNames.end() ? std::nullopt
                                           : std::optional(MSPCWeekday{found - MSPEWeekdayNames.begin()});
}
