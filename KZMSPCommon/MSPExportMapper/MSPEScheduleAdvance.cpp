#include "MSPEScheduleAdvance.h"

#include <cmath>
#include <limits>

#include "MSPCException.h"
#include "MSPEScheduleDays.h"
#include "MSPEWeekday.h"

namespace {

// Ten thousand Gregorian years.
constexpr std::int64_t MaximumSteps = 3'652'425;
// Fifty-three weeks: every weekday came up, whichever the clock changes left out. What remains as long as it did then
// will remain for ever: the periods add up to nothing, or each day's end falls on an edge that the search gave up.
constexpr std::int64_t StepsBetweenChecks = 371;
// Seconds from 1970 within which a double tells one second from the next.
constexpr double Reach = 0x1p53;
// Far more than the periods of a real week hold, far less than where sums of seconds are rounded.
constexpr MSPCTimeInterval MaximumWorkOfWeek = 0x1p40;

// The seconds that a week's periods hold together; -1 where one is reversed or they are too long.
MSPCTimeInterval workOfOrderedWeek(const MSPEScheduleCalendar& calendar) {
    MSPCTimeInterval work = 0;
    for (auto weekday = MSPEFirstWeekday; weekday <= MSPELastWeekday; ++weekday) {
        const auto& day = calendar.workingDay(weekday);
        for (std::size_t i = 0; day.isWorkingDay && i < day.timePeriods.size(); ++i) {
            const auto& period = day.timePeriods[i];
            if (period.duration() < 0 || std::abs(period.startTime()) > MaximumWorkOfWeek) {
                return -1;
            }
            work += period.duration();
        }
    }
    return work <= MaximumWorkOfWeek ? work : -1;
}

}  // namespace

MSPEScheduleAdvance::MSPEScheduleAdvance(const MSPEScheduleCalendar& calendar, const MSPEScheduleStart& start,
                                         MSPEDirection direction, MSPEEdgeTime edgeTime)
    : _calendar(calendar),
      _start(start),
      _isForward(direction == MSPEDirection::Forward),
      _edgeTime(edgeTime),
      // The start's time may lie outside its day, so the walk begins on the day of the instant it makes.
      _dayStart(calendar.gregorian().midnightOf(start.date)) {
}

std::optional<MSPCInstant> MSPEScheduleAdvance::dateAfter(MSPCTimeInterval duration) {
    if (duration < 1) {
        return _dayStart + _start.timeOfDay;
    }
    if (_start.timePeriod < 0) {
        throw MSPCInternalInconsistency("No time period specified to start duration countdown from.");
    }
    if (!(duration <= Reach)) {
        return std::nullopt;
    }
    _remaining = duration;
    _remainingAtCheck = duration;
    while (_remaining > 0 && _makesProgress && _steppedDays <= MaximumSteps &&
           std::abs(_dayStart.secondsSince1970) <= Reach) {
        const auto day = weekday();
        if (_calendar.isWorkingDayWeekday(day)) {
            leapDays(duration);
            if (walkDay(day) == Day::EndsHere) {
                return _dayStart + _offset;
            }
        }
        stepDay();
    }
    return std::nullopt;
}

// Leaps over weeks at whose beginnings more than another week's work remains. Only where no period is reversed: there
// each day works off whole seconds of the remaining duration, which is exact in any order, fractions included. Not in
// the first seven days, within which the rule for edges counts steps.
void MSPEScheduleAdvance::leapDays(MSPCTimeInterval duration) {
    if (!_hasConsumed || _steppedDays < MSPEDaysOfWeek) {
        return;
    }
    if (!_workOfWeek) {
        _workOfWeek = workOfOrderedWeek(_calendar);
        if (*_workOfWeek >= 0) {
            const auto direction = _isForward ? MSPEDirection::Forward : MSPEDirection::Backward;
            _leaps.emplace(_calendar.gregorian().timeZone(), direction, *_workOfWeek);
        }
    }
    if (_leaps) {
        const MSPELeap limit{std::numeric_limits<double>::infinity(), _remaining - *_workOfWeek - 1};
        const auto leap = _leaps->leapFrom(_dayStart, duration - _remaining, limit);
        _dayStart = _isForward ? _dayStart + leap.time : _dayStart - leap.time;
        _remaining -= leap.work;
    }
}

MSPEScheduleAdvance::Day MSPEScheduleAdvance::walkDay(std::int64_t weekday) {
    const auto count = _calendar.timePeriodsInWeekday(weekday);
    const auto first = _steppedDays > 0 ? firstTimePeriod(weekday) : _start.timePeriod;
    if (count < first) {
        throw MSPCInternalInconsistency("Working day has no or too few working time periods.");
    }
    const auto last = _isForward ? count - 1 : 0;
    for (auto i = first; _isForward ? i <= last : i >= last; i += _isForward ? 1 : -1) {
        const auto near = _hasConsumed ? nearEdge(i, weekday) : _start.timeOfDay;
        const auto far = farEdge(i, weekday);
        const auto candidate = _isForward ? near + _remaining : near - _remaining;
        if (_isForward ? candidate > far : candidate < far) {
            _remaining -= _isForward ? far - near : near - far;
            _hasConsumed = true;
            continue;
        }
        _offset = candidate;
        const bool staysHere = candidate != far || _edgeTime == MSPEEdgeTime::Allowed;
        return staysHere || moveOverEdge(i, last, weekday) ? Day::EndsHere : Day::UsedUp;
    }
    return Day::UsedUp;
}

// Moves the result to the near edge of the next period. Deliberate: the search ends seven days after the walk began,
// and the walk then goes on with the remaining duration as it was.
bool MSPEScheduleAdvance::moveOverEdge(std::int64_t timePeriod, std::int64_t last, std::int64_t weekday) {
    if (timePeriod != last) {
        _offset = nearEdge(timePeriod + (_isForward ? 1 : -1), weekday);
        return true;
    }
    while (_steppedDays < MSPEDaysOfWeek) {
        stepDay();
        const auto day = this->weekday();
        if (_calendar.isWorkingDayWeekday(day) && _calendar.timePeriodsInWeekday(day) > 0) {
            _offset = nearEdge(firstTimePeriod(day), day);
            return true;
        }
    }
    return false;
}

std::int64_t MSPEScheduleAdvance::firstTimePeriod(std::int64_t weekday) const {
    return _isForward ? 0 : _calendar.timePeriodsInWeekday(weekday) - 1;
}

MSPCTimeInterval MSPEScheduleAdvance::nearEdge(std::int64_t timePeriod, std::int64_t weekday) const {
    return _isForward ? _calendar.startTimeForTimePeriodWeekday(timePeriod, weekday)
                      : _calendar.endTimeForTimePeriodWeekday(timePeriod, weekday);
}

MSPCTimeInterval MSPEScheduleAdvance::farEdge(std::int64_t timePeriod, std::int64_t weekday) const {
    return _isForward ? _calendar.endTimeForTimePeriodWeekday(timePeriod, weekday)
                      : _calendar.startTimeForTimePeriodWeekday(timePeriod, weekday);
}

void MSPEScheduleAdvance::stepDay() {
    _dayStart = _isForward ? _dayStart + MSPESecondsPerDay : _dayStart - MSPESecondsPerDay;
    if (++_steppedDays % StepsBetweenChecks == 0) {
        _makesProgress = _remaining < _remainingAtCheck;
        _remainingAtCheck = _remaining;
    }
}
