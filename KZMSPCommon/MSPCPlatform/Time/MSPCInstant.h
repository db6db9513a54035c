#pragma once

#include <algorithm>
#include <cmath>
#include <compare>
#include <cstdint>

// A span of time in seconds; fractions are kept.
using MSPCTimeInterval = double;

inline constexpr std::int64_t MSPCSecondsPerDay = 86'400;

// An absolute point in time, independent of any zone.
struct MSPCInstant {
    double secondsSince1970 = 0;  // since 1970-01-01T00:00:00Z, leap seconds not counted

    friend auto operator<=>(const MSPCInstant&, const MSPCInstant&) = default;
    friend constexpr MSPCInstant operator+(MSPCInstant instant, MSPCTimeInterval seconds) {
        return {instant.secondsSince1970 + seconds};
    }
    friend constexpr MSPCInstant operator-(MSPCInstant instant, MSPCTimeInterval seconds) {
        return {instant.secondsSince1970 - seconds};
    }
    friend constexpr MSPCTimeInterval operator-(MSPCInstant later, MSPCInstant earlier) {
        return later.secondsSince1970 - earlier.secondsSince1970;
    }
};

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
