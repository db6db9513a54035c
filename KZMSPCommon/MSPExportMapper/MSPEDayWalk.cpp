#include "MSPEDayWalk.h"

#include <algorithm>
#include <cmath>
#include <limits>

static_assert(MSPEDayWalk::DaysOfCycle * MSPESecondsPerDay == MSPCTimeZone::GregorianCycle);

MSPEDayWalk::MSPEDayWalk(const MSPCGregorianCalendar& gregorian, MSPCInstant midnight, MSPEDirection direction)
    : _gregorian(gregorian), _isForward(direction == MSPEDirection::Forward), _date(midnight) {
    lookAtClocks();
}

void MSPEDayWalk::lookAtClocks() {
    _weekday = _gregorian.weekdayOf(_date);
    const auto span = _gregorian.timeZone().steadySpanAt(_date);
    _daysBeforeChange = _isForward ? std::ceil((span.end - _date) / MSPESecondsPerDay) - 1
                                   : std::floor((_date - span.start) / MSPESecondsPerDay);
    ++_steadySpan;
}

double MSPEDayWalk::cyclesAhead() const {
    const auto daysInCycles = (_date - MSPCTimeZone::startOfCycles()) / MSPESecondsPerDay;
    if (daysInCycles < 0) {
        return 0;
    }
    // Backward a week is left, so that no step of the last cycle comes to lie before their start.
    return _isForward ? std::numeric_limits<double>::infinity()
                      : std::max(0.0, std::floor((daysInCycles - MSPCDaysOfWeek) / DaysOfCycle));
}

void MSPEDayWalk::step() {
    ++_moves;
    _date = _isForward ? _date + MSPESecondsPerDay : _date - MSPESecondsPerDay;
    if (_daysBeforeChange < 1) {
        lookAtClocks();
        return;
    }
    --_daysBeforeChange;
    _weekday = _weekday + (_isForward ? 1 : -1);
}

void MSPEDayWalk::leap(double days) {
    ++_moves;
    const auto time = days * MSPESecondsPerDay;
    _date = _isForward ? _date + time : _date - time;
    if (days <= _daysBeforeChange) {
        _daysBeforeChange -= days;
        const auto rest = static_cast<std::int64_t>(days - std::floor(days / MSPCDaysOfWeek) * MSPCDaysOfWeek);
        _weekday = _weekday + (_isForward ? rest : -rest);
    } else {
        lookAtClocks();
    }
}
