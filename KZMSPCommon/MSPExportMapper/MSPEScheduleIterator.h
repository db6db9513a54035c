#pragma once

#include <cstdint>
#include <optional>

#include "MSPCGregorianCalendar.h"
#include "MSPEDirection.h"
#include "MSPEWorkingWeek.h"

// One stop of a walk over working periods.
struct MSPEScheduleStop {
    // The bit of `flags` that marks the first period of a day reached by stepping; the day on which the walk begins
    // does not carry it.
    static constexpr std::uint64_t BeginsSteppedDay = 1;

    MSPETimePeriod timePeriod;
    std::int64_t timePeriodIndex = 0;  // within its day
    MSPCInstant date;                  // the day's midnight, stepped by 86,400 s from that of the first day
    MSPCWeekday weekday{};             // of that instant
    std::uint64_t flags = 0;
};

// Walks the periods of a working week one by one, day after day in one direction, beginning with the first (backward:
// last) period of a date's day; the time of day plays no part. Ends by itself only when seven days in a row are not
// worked. The week and the calendar, which tells midnights and weekdays, must outlive it.
class MSPEScheduleIterator {
public:
    // Raises `MSPCInternalInconsistency` "Incorrect time period index: -1" when a walk backward comes to a working day
    // without periods; so does `nextTimePeriodTimePeriodIndexDateFlag`.
    MSPEScheduleIterator(const MSPEWorkingWeek& week, const MSPCGregorianCalendar& gregorian, MSPCInstant date,
                         MSPEDirection direction);

    // The next period; none when the walk has ended.
    [[nodiscard]] std::optional<MSPEScheduleStop> nextTimePeriodTimePeriodIndexDateFlag();

private:
    void prepareNextIteration();
    void enterDay();

    const MSPEWorkingWeek& _week;
    const MSPCGregorianCalendar& _gregorian;
    MSPEDirection _direction;
    MSPCTimeInterval _oneDayInterval;
    std::uint64_t _flags = 0;
    MSPCInstant _nextDate;
    MSPCWeekday _nextWeekday;
    std::int64_t _nextDateTimePeriods = 0;
    std::int64_t _nextTimePeriodIndex = 0;
    bool _found = false;
};
