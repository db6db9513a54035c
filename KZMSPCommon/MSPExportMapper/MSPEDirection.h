#pragma once

#include "MSPCInstant.h"

// Towards the future or the past.
enum class MSPEDirection { Forward, Backward };

// Whether a result may stand exactly on the end (forward) or start (backward) of a working period, or moves on to the
// next period in that direction.
enum class MSPEEdgeTime { Allowed, NotAllowed };

// How working time steps from day to day: by exactly 86,400 seconds, whatever the clocks do.
inline constexpr MSPCTimeInterval MSPESecondsPerDay = MSPCSecondsPerDay;

[[nodiscard]] constexpr MSPCTimeInterval MSPEStepOf(MSPEDirection direction) noexcept {
    return direction == MSPEDirection::Forward ? MSPESecondsPerDay : -MSPESecondsPerDay;
}
