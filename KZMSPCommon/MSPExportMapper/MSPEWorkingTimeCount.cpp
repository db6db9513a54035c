#include "MSPEWorkingTimeCount.h"

#include <algorithm>

#include "MSPEScheduleDays.h"

MSPEWorkingTimeCount::MSPEWorkingTimeCount(const MSPEScheduleCalendar& calendar, MSPCInstant from, MSPCInstant to)
    : _calendar(calendar),
      _fromDay(calendar.gregorian().midnightOf(from)),
      _toDay(calendar.gregorian().midnightOf(to)),
      _fromTime(static_cast<MSPCTimeInterval>(calendar.gregorian().timeOfDayOf(from))),
      _toTime(static_cast<MSPCTimeInterval>(calendar.gregorian().timeOfDayOf(to))) {
}

MSPCTimeInterval MSPEWorkingTimeCount::total() const {
    MSPCTimeInterval total = 0;
    MSPEScheduleIterator iterator(_calendar, _fromDay, MSPEDirection::Forward);
    while (const auto stop = iterator.nextTimePeriodTimePeriodIndexDateFlag()) {
        if (stop->date > _toDay) {
            break;
        }
        total += workIn(*stop);
    }
    return total;
}

MSPCTimeInterval MSPEWorkingTimeCount::workIn(const MSPEScheduleStop& stop) const {
    const auto lower = stop.date == _fromDay ? _fromTime : 0;
    const auto upper = stop.date == _toDay ? _toTime : MSPESecondsPerDay;
    const auto& period = stop.timePeriod;
    return std::max(0.0, std::min(upper, period.endTime()) - std::max(lower, period.startTime()));
}
