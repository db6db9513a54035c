#include "MSPEWorkingTimeCount.h"

#include <algorithm>
#include <cmath>

MSPEWorkingTimeCount::MSPEWorkingTimeCount(const MSPEWorkingWeek& week, const MSPCGregorianCalendar& gregorian,
                                           MSPEWorksOfCycle& worksOfCycle, MSPCInstant from, MSPCInstant to)
    : _week(week),
      _worksOfCycle(worksOfCycle),
      _fromDay(gregorian.midnightOf(from)),
      _toDay(gregorian.midnightOf(to)),
      _fromTime(gregorian.timeOfDayOf(from)),
      _toTime(gregorian.timeOfDayOf(to)),
      _walk(gregorian, _fromDay, MSPEDirection::Forward) {
}

void MSPEWorkingTimeCount::addUpWeeks() {
    for (const auto first : MSPCWeekdays) {
        LastWorkingDay last;
        MSPCTimeInterval work = 0;
        for (int day = 0; day < MSPCDaysOfWeek; ++day) {
            const auto weekday = first + day;
            if (_week.isWorkingDayWeekday(weekday)) {
                last = {day, work};
                work += _week.workingDayIndex(weekday).workOfDay();
            }
            _lastWorkingDays[static_cast<std::size_t>(first)][static_cast<std::size_t>(day)] = last;
        }
        _workOfWeek = work;
    }
}

MSPCTimeInterval MSPEWorkingTimeCount::total() {
    if (_fromDay <= _toDay) {
        countFirstDay();
    }
    if (_fromDay < _toDay) {
        addUpWeeks();
        stepToWorkingDay();
        countDaysBefore(std::min(_toDay, MSPCTimeZone::startOfCycles()));
        countCycles();
        countDaysBefore(_toDay);
        if (!_hasEnded && _walk.date() == _toDay) {
            _total += day().workBetween(MSPCMidnight, _toTime);
        }
    }
    _week.addStepsTaken(_walk.moves());
    return _total;
}

void MSPEWorkingTimeCount::countFirstDay() {
    if (isWorkingDay()) {
        _total = day().workBetween(_fromTime, _fromDay == _toDay ? _toTime : MSPCEndOfDay);
    }
}

void MSPEWorkingTimeCount::countDaysBefore(MSPCInstant limit) {
    while (!_hasEnded && _walk.date() < limit) {
        const auto daysBehind = std::ceil((limit - _walk.date()) / MSPESecondsPerDay) - 1;
        leapToLastDayOf(std::min(daysBehind, _walk.daysBeforeChange()));
        _total += day().workOfDay();
        stepToWorkingDay();
    }
}

// Counts the days up to the last working one among as many days behind this one, before the clocks change.
void MSPEWorkingTimeCount::leapToLastDayOf(double days) {
    if (days < 1) {
        return;
    }
    const auto weeks = std::floor(days / MSPCDaysOfWeek);
    const auto rest = static_cast<std::size_t>(days - weeks * MSPCDaysOfWeek);
    const auto& last = _lastWorkingDays[static_cast<std::size_t>(_walk.weekday())][rest];
    _total += weeks * _workOfWeek + last.workBefore;
    _walk.leap(weeks * MSPCDaysOfWeek + last.day);
}

void MSPEWorkingTimeCount::countCycles() {
    const auto cycles = std::floor((_toDay - _walk.date()) / MSPCTimeZone::GregorianCycle);
    if (_hasEnded || cycles < 1 || _walk.cyclesAhead() < 1) {
        return;
    }
    // The days of any 400 years are the same ones, begun with another, unless they are stepped at another time.
    const auto steppedAt = std::fmod(_walk.date().secondsSince1970, MSPESecondsPerDay);
    auto known = _worksOfCycle.find(steppedAt);
    auto ahead = cycles;
    if (known == _worksOfCycle.end()) {
        const auto totalBefore = _total;
        countDaysBefore(_walk.date() + MSPCTimeZone::GregorianCycle);
        if (_hasEnded) {
            return;
        }
        known = _worksOfCycle.emplace(steppedAt, _total - totalBefore).first;
        --ahead;
    }
    _total += ahead * known->second;
    _walk.leap(ahead * MSPEDayWalk::DaysOfCycle);
}

void MSPEWorkingTimeCount::stepToWorkingDay() {
    for (int steps = 0; steps < MSPCDaysOfWeek; ++steps) {
        _walk.step();
        if (isWorkingDay()) {
            return;
        }
    }
    _hasEnded = true;
}
