#include "MSPEScheduleIterator.h"

#include <fmt/format.h>

#include "MSPCException.h"
#include "MSPEScheduleDays.h"

MSPEScheduleIterator::MSPEScheduleIterator(const MSPEScheduleCalendar& calendar, MSPCInstant date,
                                           MSPEDirection direction)
    : _scheduleCalendar(calendar),
      _direction(direction),
      _oneDayInterval(MSPEStepOf(direction)),
      _nextDate(calendar.gregorian().midnightOf(date)),
      _nextWeekday(calendar.gregorian().weekdayOf(date)) {
    if (calendar.isWorkingDayWeekday(_nextWeekday)) {
        enterDay();
    } else {
        _nextWeekday = 0;
        prepareNextIteration();
    }
}

std::optional<MSPEScheduleStop> MSPEScheduleIterator::nextTimePeriodTimePeriodIndexDateFlag() {
    if (!_found) {
        return std::nullopt;
    }
    const MSPEScheduleStop stop{
        _scheduleCalendar.timePeriodWeekday(_nextTimePeriodIndex, _nextWeekday).value_or(MSPETimePeriod{}),
        _nextTimePeriodIndex, _nextDate, _nextWeekday, _flags};
    prepareNextIteration();
    return stop;
}

void MSPEScheduleIterator::prepareNextIteration() {
    _found = false;
    _flags = 0;
    const bool isForward = _direction == MSPEDirection::Forward;
    if (isForward ? _nextTimePeriodIndex < _nextDateTimePeriods - 1 : _nextTimePeriodIndex >= 1) {
        _nextTimePeriodIndex += isForward ? 1 : -1;
        _found = true;
        return;
    }
    for (int steps = 0; steps < MSPEDaysOfWeek; ++steps) {
        _nextDate = _nextDate + _oneDayInterval;
        _nextWeekday = _scheduleCalendar.gregorian().weekdayOf(_nextDate);
        if (_scheduleCalendar.isWorkingDayWeekday(_nextWeekday)) {
            enterDay();
            _flags = MSPEScheduleStop::BeginsSteppedDay;
            return;
        }
    }
}

void MSPEScheduleIterator::enterDay() {
    _nextDateTimePeriods = _scheduleCalendar.timePeriodsInWeekday(_nextWeekday);
    _nextTimePeriodIndex = _direction == MSPEDirection::Forward ? 0 : _nextDateTimePeriods - 1;
    if (_nextTimePeriodIndex < 0) {
        throw MSPCInternalInconsistency(fmt::format("Incorrect time period index: {}", _nextTimePeriodIndex));
    }
    _found = true;
}
