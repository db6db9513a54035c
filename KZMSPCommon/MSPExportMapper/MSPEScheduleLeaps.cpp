#include "MSPEScheduleLeaps.h"

#include <algorithm>
#include <cmath>

namespace {

// Far more seconds than the periods of a real day hold together, far less than where sums of seconds are rounded.
constexpr MSPCTimeInterval MostSecondsOfDay = 0x1p40;
// More than a comparison of times of that size is off by, where seconds have fractions.
constexpr MSPCTimeInterval Margin = 0x1p-8;

bool addsUpExactly(const MSPEWorkingWeek& week, MSPCWeekday weekday) {
    const auto count = static_cast<double>(week.timePeriodsInWeekday(weekday));
    return week.workingDayIndex(weekday).farthestTime() * count <= MostSecondsOfDay;
}

// How often a week or cycle that works something off passes without a result.
double timesPassed(MSPCTimeInterval remaining, MSPCTimeInterval most, MSPCTimeInterval work) {
    return std::floor((remaining - most - Margin) / work);
}

MSPELeap repeated(double times, double days, MSPCTimeInterval work) {
    if (!(times >= 1)) {
        return {};
    }
    return {times * days, std::isinf(times) ? 0 : times * work};
}

}  // namespace

MSPEScheduleLeaps::MSPEScheduleLeaps(const MSPEWorkingWeek& week, MSPEDirection direction)
    : _week(week), _direction(direction) {
    for (const auto weekday : MSPCWeekdays) {
        if (week.isWorkingDayWeekday(weekday)) {
            _isExact = _isExact && addsUpExactly(week, weekday);
        }
    }
    _mayLeap = _isExact && periodsAreEnoughOnEachDay();
    if (_mayLeap) {
        addUpWeeks();
    }
}

MSPCWeekday MSPEScheduleLeaps::nextWeekday(MSPCWeekday weekday) const {
    return weekday + (_direction == MSPEDirection::Forward ? 1 : -1);
}

// Whether no working day of a week raises because the one before left it at a period that it has not. Forward each day
// is left at its first period.
bool MSPEScheduleLeaps::periodsAreEnoughOnEachDay() const {
    if (_direction == MSPEDirection::Forward) {
        return true;
    }
    std::int64_t countBefore = 0;
    auto weekday = MSPCWeekday::Saturday;
    for (int day = 0; day < 2 * MSPCDaysOfWeek; ++day, weekday = nextWeekday(weekday)) {
        if (_week.isWorkingDayWeekday(weekday)) {
            const auto count = _week.timePeriodsInWeekday(weekday);
            if (count < countBefore - 1) {
                return false;
            }
            countBefore = count;
        }
    }
    return true;
}

void MSPEScheduleLeaps::addUpWeeks() {
    for (const auto first : MSPCWeekdays) {
        MSPCTimeInterval work = 0;
        auto& most = _mostOfWeekFrom[static_cast<std::size_t>(first)];
        auto weekday = first;
        for (int day = 0; day < MSPCDaysOfWeek; ++day, weekday = nextWeekday(weekday)) {
            if (_week.isWorkingDayWeekday(weekday)) {
                const auto& index = _week.workingDayIndex(weekday);
                most = std::max(most, work + index.mostDuration(_direction));
                work += index.duration();
            }
        }
        _workOfWeek = work;
    }
}

double MSPEScheduleLeaps::Mark::daysUntil(const MSPEDayWalk& walk) const {
    return std::abs(walk.date() - date) / MSPESecondsPerDay;
}

bool MSPEScheduleLeaps::passesDay(MSPCWeekday weekday, MSPCTimeInterval remaining) const {
    return _isExact && remaining > _week.workingDayIndex(weekday).mostDuration(_direction) + Margin;
}

MSPELeap MSPEScheduleLeaps::leapFrom(const MSPEDayWalk& walk, MSPCTimeInterval remaining) {
    if (!_mayLeap) {
        return {};
    }
    if (const auto cycles = leapOverCycles(walk, remaining); cycles.days > 0) {
        return cycles;
    }
    auto mostDays = walk.daysBeforeChange();
    if (_cycleMark) {
        // The walk must come by the end of the cycle that began at the mark.
        mostDays = std::min(mostDays, MSPEDayWalk::DaysOfCycle - _cycleMark->daysUntil(walk));
    }
    const auto mostOfWeek = _mostOfWeekFrom[static_cast<std::size_t>(walk.weekday())];
    const auto leap = remaining > mostOfWeek + Margin ? leapOverWeeks(walk.weekday(), remaining, mostDays)
                                                      : leapOverEqualWeeks(walk, remaining, mostDays);
    noteMostOfCycle(walk.weekday(), remaining, leap);
    return leap;
}

MSPELeap MSPEScheduleLeaps::leapOverWeeks(MSPCWeekday weekday, MSPCTimeInterval remaining, double mostDays) const {
    auto weeks = std::floor(mostDays / MSPCDaysOfWeek);
    if (_workOfWeek > 0) {
        const auto most = _mostOfWeekFrom[static_cast<std::size_t>(weekday)];
        weeks = std::min(weeks, timesPassed(remaining, most, _workOfWeek));
    }
    return repeated(weeks, MSPCDaysOfWeek, _workOfWeek);
}

// Weeks in which results are given up can leave as much as there was, and then go on doing so. The distance of the days
// compared grows, so that any number of weeks is found after which they do.
MSPELeap MSPEScheduleLeaps::leapOverEqualWeeks(const MSPEDayWalk& walk, MSPCTimeInterval remaining, double mostDays) {
    if (!_weekMark || _weekMark->steadySpan != walk.steadySpan()) {
        _weekMark = Mark{walk.date(), remaining, walk.steadySpan(), MSPCDaysOfWeek};
        return {};
    }
    const auto days = _weekMark->daysUntil(walk);
    if (days > 0 && std::fmod(days, MSPCDaysOfWeek) == 0 && remaining == _weekMark->remaining) {
        _hasGivenUpInCycle = true;  // as in the weeks that these are like
        return repeated(std::floor(mostDays / days), days, 0);
    }
    if (days >= _weekMark->patience) {
        _weekMark = Mark{walk.date(), remaining, walk.steadySpan(), 2 * _weekMark->patience};
    }
    return {};
}

MSPELeap MSPEScheduleLeaps::leapOverCycles(const MSPEDayWalk& walk, MSPCTimeInterval remaining) {
    const auto ahead = walk.cyclesAhead();
    if (!_cycleMark) {
        if (ahead >= 1) {
            _cycleMark = Mark{walk.date(), remaining, 0, 0};
            _mostOfCycle = 0;
            _hasGivenUpInCycle = false;
        }
        return {};
    }
    if (_cycleMark->daysUntil(walk) < MSPEDayWalk::DaysOfCycle) {
        return {};
    }
    const auto work = _cycleMark->remaining - remaining;
    _cycleMark.reset();
    if (_hasGivenUpInCycle) {
        return repeated(work == 0 ? ahead : 0, MSPEDayWalk::DaysOfCycle, 0);
    }
    const auto cycles = work > 0 ? std::min(ahead, timesPassed(remaining, _mostOfCycle, work)) : ahead;
    return repeated(cycles, MSPEDayWalk::DaysOfCycle, work);
}

void MSPEScheduleLeaps::noteMostOfCycle(MSPCWeekday weekday, MSPCTimeInterval remaining, const MSPELeap& leap) {
    if (!_cycleMark) {
        return;
    }
    const auto workedOff = _cycleMark->remaining - remaining;
    const auto most = leap.days > 0 ? _mostOfWeekFrom[static_cast<std::size_t>(weekday)] +
                                          std::max(0.0, leap.work - std::max(0.0, _workOfWeek))
                                    : _week.workingDayIndex(weekday).mostDuration(_direction);
    _mostOfCycle = std::max(_mostOfCycle, workedOff + most);
}
