#pragma once

#include <chrono>
#include <cstdint>

// Years of the proleptic Gregorian calendar and the seconds since 1970-01-01 00:00:00 at which they begin, on one and
// the same clock: Greenwich's, or a zone's own where both sides count by it. For years that `std::chrono` holds
// (-32767 to 32767).

[[nodiscard]] constexpr std::int64_t MSPCSecondsAtStartOfYear(int year) {
    using namespace std::chrono;
    return sys_seconds(sys_days(std::chrono::year(year) / January / 1)).time_since_epoch().count();
}

[[nodiscard]] constexpr int MSPCYearOfSeconds(std::int64_t seconds) {
    using namespace std::chrono;
    return static_cast<int>(year_month_day(floor<days>(sys_seconds(std::chrono::seconds(seconds)))).year());
}
