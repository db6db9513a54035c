#pragma once

#include "MSPCInstant.h"
#include "MSPEDirection.h"

// How working-time calendars step from day to day: by exactly 86,400 seconds, whatever the clocks do.
inline constexpr MSPCTimeInterval MSPESecondsPerDay = 86'400;
inline constexpr int MSPEDaysOfWeek = 7;

[[nodiscard]] constexpr MSPCTimeInterval MSPEStepOf(MSPEDirection direction) noexcept {
    return direction == MSPEDirection::Forward ? MSPESecondsPerDay : -MSPESecondsPerDay;
}
