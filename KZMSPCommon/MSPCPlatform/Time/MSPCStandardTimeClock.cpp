#include "MSPCStandardTimeClock.h"

#include <cmath>

namespace {

// Changes of the clocks to look at in either direction; a winter is at most two away.
constexpr int mostChanges = 16;

MSPCInstant nearestStandardTime(MSPCInstant now, const MSPCTimeZone& zone) {
    const auto standardOffset = zone.secondsFromGMT(now) - zone.daylightSavingOffset(now);
    const auto isStandardTime = [&](MSPCInstant instant) {
        return zone.daylightSavingOffset(instant) == 0 && zone.secondsFromGMT(instant) == standardOffset;
    };
    auto later = now;
    auto earlier = now;
    for (int change = 0; change <= mostChanges; ++change) {
        if (isStandardTime(later)) {
            return later;
        }
        if (isStandardTime(earlier)) {
            return earlier;
        }
        const auto next = zone.steadySpanAt(later).end;
        const auto last = zone.steadySpanAt(earlier).start - 1;
        later = std::isfinite(next.secondsSince1970) ? next : later;
        earlier = std::isfinite(last.secondsSince1970) ? last : earlier;
    }
    return now;
}

}  // namespace

MSPCStandardTimeClock::MSPCStandardTimeClock(const MSPCClock& clock, const MSPCTimeZone& zone)
    : _instant(nearestStandardTime(clock.now(), zone)) {
}
