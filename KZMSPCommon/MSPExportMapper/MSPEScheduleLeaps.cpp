#include "MSPEScheduleLeaps.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "MSPEScheduleDays.h"

namespace {

constexpr MSPCTimeInterval Week = MSPEDaysOfWeek * MSPESecondsPerDay;
constexpr MSPCTimeInterval Cycle = MSPCTimeZone::GregorianCycle;

MSPELeap repeated(const MSPELeap& once, double times) {
    return {once.time * times, once.work > 0 ? once.work * times : 0};
}

// How often a stretch fits into the limits; endless when nothing bounds it.
double repetitions(const MSPELeap& once, const MSPELeap& limit) {
    const auto byTime = std::floor(limit.time / once.time);
    const auto byWork = once.work > 0 ? std::floor(limit.work / once.work) : std::numeric_limits<double>::infinity();
    return std::max(0.0, std::min(byTime, byWork));
}

}  // namespace

MSPEScheduleLeaps::MSPEScheduleLeaps(MSPCTimeZone zone, MSPEDirection direction, MSPCTimeInterval workOfWeek)
    : _zone(std::move(zone)), _isForward(direction == MSPEDirection::Forward), _workOfWeek(workOfWeek) {
}

MSPELeap MSPEScheduleLeaps::leapFrom(MSPCInstant midnight, MSPCTimeInterval workDone, const MSPELeap& limit) {
    if (limit.time < Week || limit.work < 0) {
        return {};
    }
    auto weekLimit = limit;
    if (_cycleStart) {
        // The walk must come by the end of the cycle being measured.
        weekLimit.time = std::min(limit.time, Cycle - std::abs(midnight - _cycleStart->midnight));
    }
    const MSPELeap week{Week, _workOfWeek};
    const auto weeks = std::min(weeksBeforeChange(midnight), repetitions(week, weekLimit));
    return weeks >= 1 ? repeated(week, weeks) : leapOverCycles(midnight, workDone, limit);
}

double MSPEScheduleLeaps::weeksBeforeChange(MSPCInstant midnight) const {
    const auto span = _zone.steadySpanAt(midnight);
    const auto ahead = _isForward ? span.end - midnight : midnight - span.start;
    return std::floor(ahead / Week) - 1;
}

MSPELeap MSPEScheduleLeaps::leapOverCycles(MSPCInstant midnight, MSPCTimeInterval workDone, MSPELeap limit) {
    const auto sinceCyclesBegin = midnight - MSPCTimeZone::startOfCycles();
    if (!_isForward) {
        limit.time = std::min(limit.time, sinceCyclesBegin - Week);
    }
    if (sinceCyclesBegin < 0 || limit.time < Cycle) {
        return {};
    }
    const auto elapsed = _cycleStart ? std::abs(midnight - _cycleStart->midnight) : 0;
    if (_cycleStart && elapsed >= Cycle) {
        const MSPELeap cycle{elapsed, workDone - _cycleStart->workDone};
        _cycleStart.reset();
        return repeated(cycle, repetitions(cycle, limit));
    }
    if (!_cycleStart) {
        _cycleStart = CycleStart{midnight, workDone};
    }
    return {};
}
