#include "MSPEScheduleAdvance.h"

#include "MSPCException.h"
#include "MSPEScheduleDays.h"

namespace {

// Ten thousand Gregorian years.
constexpr std::int64_t MaximumSteps = 3'652'425;

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
    _remaining = duration;
    while (_remaining > 0 && _steppedDays <= MaximumSteps) {
        const auto day = weekday();
        if (_calendar.isWorkingDayWeekday(day) && walkDay(day) == Day::EndsHere) {
            return _dayStart + _offset;
        }
        stepDay();
    }
    return std::nullopt;
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
    ++_steppedDays;
}
