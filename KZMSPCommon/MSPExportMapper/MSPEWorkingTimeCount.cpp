#include "MSPEWorkingTimeCount.h"

#include <algorithm>
#include <limits>

#include "MSPEScheduleDays.h"
#include "MSPEScheduleLeaps.h"
#include "MSPEWeekday.h"

namespace {

// What a period holds between two times of its day; all in seconds since midnight.
MSPCTimeInterval workBetween(MSPCTimeInterval lower, MSPCTimeInterval upper, const MSPETimePeriod& period) {
    return std::max(0.0, std::min(upper, period.endTime()) - std::max(lower, period.startTime()));
}

}  // namespace

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
    MSPEScheduleLeaps leaps(_calendar.gregorian().timeZone(), MSPEDirection::Forward, workOfWeek());
    while (auto stop = iterator.nextTimePeriodTimePeriodIndexDateFlag()) {
        if (stop->date > _toDay) {
            break;
        }
        if (stop->flags == MSPEScheduleStop::BeginsSteppedDay) {
            const auto leap =
                leaps.leapFrom(stop->date, total, {_toDay - stop->date, std::numeric_limits<double>::infinity()});
            iterator.leap(leap.time);
            stop->date = stop->date + leap.time;
            total += leap.work;
        }
        total += workIn(*stop);
    }
    return total;
}

// Of seven whole days, none of them the first or the last.
MSPCTimeInterval MSPEWorkingTimeCount::workOfWeek() const {
    MSPCTimeInterval work = 0;
    for (auto weekday = MSPEFirstWeekday; weekday <= MSPELastWeekday; ++weekday) {
        const auto& day = _calendar.workingDay(weekday);
        for (std::size_t i = 0; day.isWorkingDay && i < day.timePeriods.size(); ++i) {
            work += workBetween(0, MSPESecondsPerDay, day.timePeriods[i]);
        }
    }
    return work;
}

MSPCTimeInterval MSPEWorkingTimeCount::workIn(const MSPEScheduleStop& stop) const {
    const auto lower = stop.date == _fromDay ? _fromTime : 0;
    const auto upper = stop.date == _toDay ? _toTime : MSPESecondsPerDay;
    return workBetween(lower, upper, stop.timePeriod);
}
