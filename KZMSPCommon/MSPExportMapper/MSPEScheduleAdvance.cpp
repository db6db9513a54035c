#include "MSPEScheduleAdvance.h"

#include <cmath>

#include "MSPCException.h"

namespace {

// Far more days than a walk that leaps has to step, unless results are given up again and again at other places.
constexpr std::int64_t MaximumSteps = 250'000;
// Fifty-three weeks: every weekday came up, whichever the clock changes left out.
constexpr std::int64_t StepsBetweenChecks = 371;
// Seconds from 1970 within which a double tells one second from the next.
constexpr double Reach = 0x1p53;

}  // namespace

MSPEScheduleAdvance::MSPEScheduleAdvance(const MSPEWorkingWeek& week, const MSPCGregorianCalendar& gregorian,
                                         const MSPEScheduleStart& start, MSPEDirection direction, MSPEEdgeTime edgeTime)
    : _week(week),
      _start(start),
      _direction(direction),
      _isForward(direction == MSPEDirection::Forward),
      _edgeTime(edgeTime),
      // The start's time may lie outside its day, so the walk begins on the day of the instant it makes.
      _walk(gregorian, gregorian.midnightOf(start.date), direction),
      _timePeriod(start.timePeriod) {
}

MSPEScheduleAdvance::~MSPEScheduleAdvance() {
    _week.addStepsTaken(_walk.moves() + _walkedPeriods);
}

std::optional<MSPCInstant> MSPEScheduleAdvance::dateAfter(MSPCTimeInterval duration) {
    if (duration < 1) {
        return _walk.date() + _start.timeOfDay;
    }
    if (_start.timePeriod < 0) {
        throw MSPCInternalInconsistency("No time period specified to start duration countdown from.");
    }
    if (!(duration <= Reach)) {
        return std::nullopt;
    }
    _remaining = duration;
    _remainingAtCheck = duration;
    while (_remaining > 0 && mayGoOn()) {
        if (_week.isWorkingDayWeekday(_walk.weekday()) && walkDay() == Day::EndsHere) {
            return _walk.date() + _offset;
        }
        stepDay();
    }
    return std::nullopt;
}

bool MSPEScheduleAdvance::mayGoOn() const {
    return !_isEndless && _steppedDays <= MaximumSteps && std::abs(_walk.date().secondsSince1970) <= Reach;
}

MSPEScheduleAdvance::Day MSPEScheduleAdvance::walkDay() {
    const auto weekday = _walk.weekday();
    // Deliberate: a day is compared with the period at which the working day before it was begun, though it will begin
    // at its own first one. A duration that begins in a day's third period fails where the next working day has but
    // one, and so does one that goes back from a day with three periods to a day with one.
    if (_week.timePeriodsInWeekday(weekday) < _timePeriod) {
        throw MSPCInternalInconsistency("Working day has no or too few working time periods.");
    }
    if (_steppedDays > 0) {
        _timePeriod = firstTimePeriod(weekday);
    }
    // Not in the first seven days, within which the rule for edges counts steps.
    if (_hasConsumed && _steppedDays >= MSPCDaysOfWeek) {
        leapDays();
        if (_isEndless || _leaps->passesDay(weekday, _remaining)) {
            _remaining -= _week.workingDayIndex(weekday).duration();
            return Day::UsedUp;
        }
    }
    return walkTimePeriods(weekday);
}

void MSPEScheduleAdvance::leapDays() {
    if (!_leaps) {
        _leaps.emplace(_week, _direction);
    }
    for (auto leap = _leaps->leapFrom(_walk, _remaining); leap.days > 0; leap = _leaps->leapFrom(_walk, _remaining)) {
        if (std::isinf(leap.days)) {
            _isEndless = true;
            return;
        }
        _walk.leap(leap.days);
        _remaining -= leap.work;
    }
}

MSPEScheduleAdvance::Day MSPEScheduleAdvance::walkTimePeriods(MSPCWeekday weekday) {
    const auto last = _isForward ? _week.timePeriodsInWeekday(weekday) - 1 : 0;
    for (auto i = _timePeriod; _isForward ? i <= last : i >= last; i += _isForward ? 1 : -1) {
        ++_walkedPeriods;
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
bool MSPEScheduleAdvance::moveOverEdge(std::int64_t timePeriod, std::int64_t last, MSPCWeekday weekday) {
    if (timePeriod != last) {
        _offset = nearEdge(timePeriod + (_isForward ? 1 : -1), weekday);
        return true;
    }
    while (_steppedDays < MSPCDaysOfWeek) {
        stepDay();
        const auto day = _walk.weekday();
        if (_week.isWorkingDayWeekday(day) && _week.timePeriodsInWeekday(day) > 0) {
            _offset = nearEdge(firstTimePeriod(day), day);
            return true;
        }
    }
    if (_leaps) {
        _leaps->resultWasGivenUp();
    }
    return false;
}

std::int64_t MSPEScheduleAdvance::firstTimePeriod(MSPCWeekday weekday) const {
    return _isForward ? 0 : _week.timePeriodsInWeekday(weekday) - 1;
}

MSPCTimeOfDay MSPEScheduleAdvance::nearEdge(std::int64_t timePeriod, MSPCWeekday weekday) const {
    return _isForward ? _week.startTimeForTimePeriodWeekday(timePeriod, weekday)
                      : _week.endTimeForTimePeriodWeekday(timePeriod, weekday);
}

MSPCTimeOfDay MSPEScheduleAdvance::farEdge(std::int64_t timePeriod, MSPCWeekday weekday) const {
    return _isForward ? _week.endTimeForTimePeriodWeekday(timePeriod, weekday)
                      : _week.startTimeForTimePeriodWeekday(timePeriod, weekday);
}

void MSPEScheduleAdvance::stepDay() {
    _walk.step();
    if (++_steppedDays % StepsBetweenChecks == 0 && !(_leaps && _leaps->isExact())) {
        // Nothing was ever met, or times are so large that only their sum tells that it will go on for ever.
        _isEndless = !(_remaining < _remainingAtCheck);
        _remainingAtCheck = _remaining;
    }
}
