#pragma once

#include <cstdint>
#include <optional>

#include "MSPCInstant.h"
#include "MSPEDayWalk.h"
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
    // Tells the calendar what the walk has cost.
    ~MSPEScheduleAdvance();
    MSPEScheduleAdvance(const MSPEScheduleAdvance&) = delete;
    MSPEScheduleAdvance& operator=(const MSPEScheduleAdvance&) = delete;

    // The date at which `duration` seconds are used up; `MSPEScheduleCalendar` tells when there is none.
    [[nodiscard]] std::optional<MSPCInstant> dateAfter(MSPCTimeInterval duration);

private:
    // What became of a day's walk.
    enum class Day { UsedUp, EndsHere };

    [[nodiscard]] Day walkDay();
    [[nodiscard]] Day walkTimePeriods(std::int64_t weekday);
    [[nodiscard]] bool moveOverEdge(std::int64_t timePeriod, std::int64_t last, std::int64_t weekday);
    [[nodiscard]] std::int64_t firstTimePeriod(std::int64_t weekday) const;
    [[nodiscard]] MSPCTimeInterval nearEdge(std::int64_t timePeriod, std::int64_t weekday) const;
    [[nodiscard]] MSPCTimeInterval farEdge(std::int64_t timePeriod, std::int64_t weekday) const;
    [[nodiscard]] bool mayGoOn() const;
    void stepDay();
    void leapDays();

    const MSPEScheduleCalendar& _calendar;
    const MSPEScheduleStart _start;
    const MSPEDirection _direction;
    const bool _isForward;
    const MSPEEdgeTime _edgeTime;
    MSPEDayWalk _walk;
    std::int64_t _steppedDays = 0;
    std::int64_t _timePeriod;   // with which the walk began the last working day
    bool _hasConsumed = false;  // whether a whole period was used; until then the walk counts from the start time
    MSPCTimeInterval _remaining = 0;
    MSPCTimeInterval _remainingAtCheck = 0;
    bool _isEndless = false;
    std::uint64_t _walkedPeriods = 0;
    std::optional<MSPEScheduleLeaps> _leaps;  // once the walk is long enough to ask for them
    MSPCTimeInterval _offset = 0;             // the result's seconds since the day's beginning
};
