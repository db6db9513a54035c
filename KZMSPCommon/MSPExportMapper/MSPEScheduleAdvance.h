#pragma once

#include <cstdint>
#include <optional>

#include "MSPCInstant.h"
#include "MSPEDirection.h"
#include "MSPEScheduleCalendar.h"
#include "MSPEScheduleLeaps.h"

// Walks a calendar from a starting point until a working duration is used up. Made for one walk; the calendar must
// outlive it. The period edge that the walk meets first is called near (start, or end when walking backward), the other
// one far.
class MSPEScheduleAdvance {
public:
    MSPEScheduleAdvance(const MSPEScheduleCalendar& calendar, const MSPEScheduleStart& start, MSPEDirection direction,
                        MSPEEdgeTime edgeTime);

    // The date at which `duration` seconds are used up; `MSPEScheduleCalendar` tells when there is none.
    [[nodiscard]] std::optional<MSPCInstant> dateAfter(MSPCTimeInterval duration);

private:
    // What became of a day's walk.
    enum class Day { UsedUp, EndsHere };

    [[nodiscard]] Day walkDay(std::int64_t weekday);
    [[nodiscard]] bool moveOverEdge(std::int64_t timePeriod, std::int64_t last, std::int64_t weekday);
    [[nodiscard]] std::int64_t firstTimePeriod(std::int64_t weekday) const;
    [[nodiscard]] MSPCTimeInterval nearEdge(std::int64_t timePeriod, std::int64_t weekday) const;
    [[nodiscard]] MSPCTimeInterval farEdge(std::int64_t timePeriod, std::int64_t weekday) const;
    [[nodiscard]] std::int64_t weekday() const { return _calendar.gregorian().weekdayOf(_dayStart); }
    void stepDay();
    void leapDays(MSPCTimeInterval duration);

    const MSPEScheduleCalendar& _calendar;
    const MSPEScheduleStart _start;
    const bool _isForward;
    const MSPEEdgeTime _edgeTime;
    MSPCInstant _dayStart;
    std::int64_t _steppedDays = 0;
    bool _hasConsumed = false;  // whether a whole period was used; until then the walk counts from the start time
    MSPCTimeInterval _remaining = 0;
    MSPCTimeInterval _remainingAtCheck = 0;
    bool _makesProgress = true;
    std::optional<MSPCTimeInterval> _workOfWeek;  // once the walk is long enough to ask for it
    std::optional<MSPEScheduleLeaps> _leaps;      // where weeks can be leapt over
    MSPCTimeInterval _offset = 0;                 // the result's seconds since `_dayStart`
};
