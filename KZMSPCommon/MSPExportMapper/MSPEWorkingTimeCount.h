#pragma once

#include "MSPCInstant.h"
#include "MSPEScheduleCalendar.h"
#include "MSPEScheduleIterator.h"

// Counts the working time of a calendar between two dates. Made for one question; the calendar must outlive it.
class MSPEWorkingTimeCount {
public:
    // `from` is earlier than `to`.
    MSPEWorkingTimeCount(const MSPEScheduleCalendar& calendar, MSPCInstant from, MSPCInstant to);

    // In seconds, 0 or more.
    [[nodiscard]] MSPCTimeInterval total() const;

private:
    [[nodiscard]] MSPCTimeInterval workOfWeek() const;
    [[nodiscard]] MSPCTimeInterval workIn(const MSPEScheduleStop& stop) const;

    const MSPEScheduleCalendar& _calendar;
    MSPCInstant _fromDay;
    MSPCInstant _toDay;
    MSPCTimeInterval _fromTime;  // seconds since midnight
    MSPCTimeInterval _toTime;
};
