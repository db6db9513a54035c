#include "MSPEScheduleIterator.h"

#include <fmt/format.h>

#include "MSPCException.h"

MSPEScheduleIterator::MSPEScheduleIterator(const MSPEWorkingWeek& week, const MSPCGregorianCalendar& gregorian,
                                           MSPCInstant date, MSPEDirection direction)
    : _week(week),
      _gregorian(gregorian),
      _direction(direction),
      _oneDayInterval(MSPEStepOf(direction)),
      _nextDate(gregorian.midnightOf(date)),
      _nextWeekday(gregorian.weekdayOf(date)) {
    if (week.isWorkingDayWeekday(_nextWeekday)) {
        enterDay();
    } else {
        prepareNextIteration();
    }
}

std::optional<MSPEScheduleStop> MSPEScheduleIterator::nextTimePeriodTimePeriodIndexDateFlag() {
    if (!_found) {
        return std::nullopt;
    }
    const MSPEScheduleStop stop{_week.timePeriodWeekday(_nextTimePeriodIndex, _nextWeekday).value_or(MSPETimePeriod{}),
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
    for (int steps = 0; steps < MSPCDaysOfWeek; ++steps) {
        _nextDate = _nextDate + _oneDayInterval;
        _nextWeekday = _gregorian.weekdayOf(_nextDate);
        if (_week.isWorkingDayWeekday(_nextWeekday)) {
            enterDay();
            _flags = MSPEScheduleStop::BeginsSteppedDay;
            return;
        }
    }
}

void MSPEScheduleIterator::enterDay() {
    _nextDateTimePeriods = _week.timePeriodsInWeekday(_nextWeekday);
    _nextTimePeriodIndex = _direction == MSPEDirection::Forward ? 0 : _nextDateTimePeriods - 1;
    if (_nextTimePeriodIndex < 0) {
        throw MSPCInternalInconsistency(fmt::format("Incorrect time period index: {}", _nextTimePeriodIndex));
    }
    _found = true;
}
