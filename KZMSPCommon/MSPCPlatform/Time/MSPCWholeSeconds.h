#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "MSPCInstant.h"

// The farthest second from 1970, in either direction, that time computations reach: some thirty thousand million years.
// Far more than a 32-bit year can name, and small enough that sums with offsets and days never overflow.
inline constexpr std::int64_t MSPCFarthestSecond = std::int64_t{1} << 60;

// The whole second in which an instant lies, rounded towards the past. Instants out of reach become the farthest
// second, one that is no number becomes 0.
[[nodiscard]] inline std::int64_t MSPCWholeSeconds(MSPCInstant instant) noexcept {
    if (std::isnan(instant.secondsSince1970)) {
        return 0;
    }
    constexpr auto limit = static_cast<double>(MSPCFarthestSecond);
    return static_cast<std::int64_t>(std::floor(std::clamp(instant.secondsSince1970, -limit, limit)));
}
