#pragma once

#include "MSPCClock.h"
#include "MSPCTimeZone.h"

// A clock that stands still at a time of the zone's standard time: now where it is in force, else the nearest time, of
// the future rather than of the past, at which the zone has that part of its present offset that is no daylight saving.
// In Europe/Berlin in July that is the end of October. Now where the zone has no such time within some years.
class MSPCStandardTimeClock final : public MSPCClock {
public:
    MSPCStandardTimeClock(const MSPCClock& clock, const MSPCTimeZone& zone);

    [[nodiscard]] MSPCInstant now() const override { return _instant; }

private:
    MSPCInstant _instant;
};
