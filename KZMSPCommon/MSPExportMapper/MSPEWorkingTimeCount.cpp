#include "MSPEWorkingTimeCount.h"

#include <algorithm>
#include <cmath>

#include "MSPEScheduleDays.h"
#include "MSPEWeekday.h"

MSPEWorkingTimeCount::MSPEWorkingTimeCount(const MSPEScheduleCalendar& calendar, MSPCInstant from, MSPCInstant to)
    : _calendar(calendar),
      _fromDay(calendar.gregorian().midnightOf(from)),
      _toDay(calendar.gregorian().midnightOf(to)),
      _fromTime(static_cast<MSPCTimeInterval>(calendar.gregorian().timeOfDayOf(from))),
      _toTime(static_cast<MSPCTimeInterval>(calendar.gregorian().timeOfDayOf(to))),
      _walk(calendar.gregorian(), _fromDay, MSPEDirection::Forward),
      _workOfWeek(workOfWeek()) {
}

MSPCTimeInterval MSPEWorkingTimeCount::total() {
    if (_fromDay <= _toDay) {
        countFirstDay();
    }
    if (_fromDay < _toDay) {
        stepToWorkingDay();
        countDaysBefore(std::min(_toDay, MSPCTimeZone::startOfCycles()));
        countCycles();
        countDaysBefore(_toDay);
        if (!_hasEnded && _walk.date() == _toDay) {
            _total += day().workBetween(0, _toTime);
        }
    }
    _calendar.addStepsTaken(_walk.moves());
    return _total;
}

void MSPEWorkingTimeCount::countFirstDay() {
    if (isWorkingDay()) {
        _total = day().workBetween(_fromTime, _fromDay == _toDay ? _toTime : MSPESecondsPerDay);
    }
}

void MSPEWorkingTimeCount::countDaysBefore(MSPCInstant limit) {
    while (!_hasEnded && _walk.date() < limit) {
        const auto days = std::ceil((limit - _walk.date()) / MSPESecondsPerDay);
        const auto weeks = std::floor(std::min(days, _walk.daysBeforeChange()) / MSPEDaysOfWeek);
        if (weeks >= 1) {
            _total += weeks * _workOfWeek;
            _walk.leap(weeks * MSPEDaysOfWeek);
        } else {
            _total += day().workOfDay();
            stepToWorkingDay();
        }
    }
}

// One cycle is walked, from one working day to the same one 400 years later; the others are like it.
void MSPEWorkingTimeCount::countCycles() {
    const auto cycles = std::floor((_toDay - _walk.date()) / MSPCTimeZone::GregorianCycle) - 1;
    if (_hasEnded || cycles < 1 || _walk.cyclesAhead() < 1) {
        return;
    }
    const auto totalBefore = _total;
    countDaysBefore(_walk.date() + MSPCTimeZone::GregorianCycle);
    if (!_hasEnded) {
        _total += cycles * (_total - totalBefore);
        _walk.leap(cycles * MSPEDayWalk::DaysOfCycle);
    }
}

void MSPEWorkingTimeCount::stepToWorkingDay() {
    for (int steps = 0; steps < MSPEDaysOfWeek; ++steps) {
        _walk.step();
        if (isWorkingDay()) {
            return;
        }
    }
    _hasEnded = true;
}

MSPCTimeInterval MSPEWorkingTimeCount::workOfWeek() const {
    MSPCTimeInterval work = 0;
    for (auto weekday = MSPEFirstWeekday; weekday <= MSPELastWeekday; ++weekday) {
        if (_calendar.isWorkingDayWeekday(weekday)) {
            work += _calendar.workingDayIndex(weekday).workOfDay();
        }
    }
    return work;
}
