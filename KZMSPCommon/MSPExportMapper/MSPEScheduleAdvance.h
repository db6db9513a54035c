#pragma once

#include <cstdint>
#include <optional>

#include "MSPCGregorianCalendar.h"
#include "MSPEDayWalk.h"
#include "MSPEDirection.h"
#include "MSPEScheduleLeaps.h"
#include "MSPEWorkingWeek.h"

// Where working time begins, seen from a date.
struct MSPEScheduleStart {
    MSPCInstant date;  // midnight of the day found plus the time of day
    MSPCTimeOfDay timeOfDay;
    std::int64_t timePeriod = -1;  // index of the period within its day
};

// Walks a week over and over from a starting point until a working duration is used up. Made for one walk; the week and
// the calendar must outlive it. The period edge that the walk meets first is called near (start, or end when walking
// backward), the other one far.
class MSPEScheduleAdvance {
public:
    MSPEScheduleAdvance(const MSPEWorkingWeek& week, const MSPCGregorianCalendar& gregorian,
                        const MSPEScheduleStart& start, MSPEDirection direction, MSPEEdgeTime edgeTime);
    // Tells the week what the walk has cost.
    ~MSPEScheduleAdvance();
    MSPEScheduleAdvance(const MSPEScheduleAdvance&) = delete;
    MSPEScheduleAdvance& operator=(const MSPEScheduleAdvance&) = delete;

    // The date at which `duration` seconds are used up; `MSPEScheduleCalendar` tells when there is none.
    [[nodiscard]] std::optional<MSPCInstant> dateAfter(MSPCTimeInterval duration);

private:
    // What became of a day's walk.
    enum class Day { UsedUp, EndsHere };

    [[nodiscard]] Day walkDay();
    [[nodiscard]] Day walkTimePeriods(MSPCWeekday weekday);
    [[nodiscard]] bool moveOverEdge(std::int64_t timePeriod, std::int64_t last, MSPCWeekday weekday);
    [[nodiscard]] std::int64_t firstTimePeriod(MSPCWeekday weekday) const;
    [[nodiscard]] MSPCTimeOfDay nearEdge(std::int64_t timePeriod, MSPCWeekday weekday) const;
    [[nodiscard]] MSPCTimeOfDay farEdge(std::int64_t timePeriod, MSPCWeekday weekday) const;
    [[nodiscard]] bool mayGoOn() const;
    void stepDay();
    void leapDays();

    const MSPEWorkingWeek& _week;
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
    MSPCTimeOfDay _offset;                    // the result, from the day's beginning
};
