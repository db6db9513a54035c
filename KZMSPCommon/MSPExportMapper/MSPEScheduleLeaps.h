#pragma once

#include <optional>

#include "MSPCInstant.h"
#include "MSPCTimeZone.h"
#include "MSPEDirection.h"

// A part of a walk over working days that need not be walked.
struct MSPELeap {
    MSPCTimeInterval time = 0;  // in the direction of the walk
    MSPCTimeInterval work = 0;  // seconds of work that the walk would have met
};

// Tells a walk that steps from day to day how far it may leap because the days ahead repeat: by whole weeks as long as
// the clocks do not change, and by cycles of 400 years, of which one is walked and the others are like it. The walk
// then meets the same days, and as work is whole seconds, adding many weeks at once gives the same sum.
class MSPEScheduleLeaps {
public:
    // `workOfWeek` is what the walk meets in seven days of different weekdays, in whole seconds.
    MSPEScheduleLeaps(MSPCTimeZone zone, MSPEDirection direction, MSPCTimeInterval workOfWeek);

    // The leap from the beginning of a working day, where the walk has met `workDone` so far: within both limits, and
    // such that the days of the week behind its end still follow their weekdays. No time and no work when the walk must
    // go on step by step. To be asked on each working day, since a cycle is measured from one question to a later one.
    [[nodiscard]] MSPELeap leapFrom(MSPCInstant midnight, MSPCTimeInterval workDone, const MSPELeap& limit);

private:
    struct CycleStart {
        MSPCInstant midnight;
        MSPCTimeInterval workDone = 0;
    };

    [[nodiscard]] double weeksBeforeChange(MSPCInstant midnight) const;
    [[nodiscard]] MSPELeap leapOverCycles(MSPCInstant midnight, MSPCTimeInterval workDone, MSPELeap limit);

    MSPCTimeZone _zone;
    bool _isForward;
    MSPCTimeInterval _workOfWeek;
    std::optional<CycleStart> _cycleStart;
};
