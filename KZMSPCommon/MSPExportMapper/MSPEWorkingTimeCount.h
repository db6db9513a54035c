#pragma once

#include "MSPCInstant.h"
#include "MSPEDayWalk.h"
#include "MSPEScheduleCalendar.h"

// Counts the working time of a calendar between two dates, week by week where the clocks do not change and cycle by
// cycle of 400 years where there are many. Made for one question; the calendar must outlive it.
//
// It meets the days that `MSPEScheduleIterator` meets: it ends early where seven days in a row are not worked.
class MSPEWorkingTimeCount {
public:
    // `from` is earlier than `to`.
    MSPEWorkingTimeCount(const MSPEScheduleCalendar& calendar, MSPCInstant from, MSPCInstant to);

    // In seconds, 0 or more. To be asked once.
    [[nodiscard]] MSPCTimeInterval total();

private:
    void countFirstDay();
    void countDaysBefore(MSPCInstant limit);
    void countCycles();
    void stepToWorkingDay();
    [[nodiscard]] bool isWorkingDay() const { return _calendar.isWorkingDayWeekday(_walk.weekday()); }
    [[nodiscard]] const MSPEWorkingDayIndex& day() const { return _calendar.workingDayIndex(_walk.weekday()); }
    [[nodiscard]] MSPCTimeInterval workOfWeek() const;

    const MSPEScheduleCalendar& _calendar;
    MSPCInstant _fromDay;
    MSPCInstant _toDay;
    MSPCTimeInterval _fromTime;  // seconds since midnight
    MSPCTimeInterval _toTime;
    MSPEDayWalk _walk;  // stands on a working day that is not counted yet, unless it has ended
    bool _hasEnded = false;
    MSPCTimeInterval _workOfWeek;
    MSPCTimeInterval _total = 0;
};
