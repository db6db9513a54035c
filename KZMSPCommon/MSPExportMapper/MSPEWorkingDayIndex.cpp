#include "MSPEWorkingDayIndex.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

MSPCTimeOfDay withinDay(MSPCTimeOfDay time) {
    return std::clamp(time, MSPCMidnight, MSPCEndOfDay);
}

// One edge, cut to the day, of all periods that hold something of the day.
template <typename Edge>
std::vector<MSPCTimeOfDay> edgesWithinDay(const std::vector<MSPETimePeriod>& timePeriods, const Edge& edge) {
    std::vector<MSPCTimeOfDay> edges;
    edges.reserve(timePeriods.size());
    for (const auto& period : timePeriods) {
        if (withinDay(period.startTime()) < withinDay(period.endTime())) {
            edges.push_back(withinDay(edge(period)));
        }
    }
    return edges;
}

}  // namespace

MSPEWorkingDayIndex::Times::Times(std::vector<MSPCTimeOfDay> times) : _times(std::move(times)) {
    std::sort(_times.begin(), _times.end());
    _sums.reserve(_times.size() + 1);
    _sums.push_back(0);
    for (const auto time : _times) {
        _sums.push_back(_sums.back() + time.sinceMidnight);
    }
}

MSPCTimeInterval MSPEWorkingDayIndex::Times::passedUntil(MSPCTimeOfDay time) const {
    const auto before = std::lower_bound(_times.begin(), _times.end(), time) - _times.begin();
    return static_cast<double>(before) * time.sinceMidnight - _sums[static_cast<std::size_t>(before)];
}

MSPEWorkingDayIndex::MSPEWorkingDayIndex(const std::vector<MSPETimePeriod>& timePeriods)
    : _starts(edgesWithinDay(timePeriods, [](const auto& period) { return period.startTime(); })),
      _ends(edgesWithinDay(timePeriods, [](const auto& period) { return period.endTime(); })),
      _latestEnds(timePeriods.size()),
      _earliestStarts(timePeriods.size()) {
    _workOfDay = workUntil(MSPCEndOfDay);
    for (std::size_t i = 0; i < timePeriods.size(); ++i) {
        const auto end = timePeriods[i].endTime();
        _latestEnds[i] = i == 0 ? end : std::max(_latestEnds[i - 1], end);
    }
    for (auto i = timePeriods.size(); i-- > 0;) {
        const auto start = timePeriods[i].startTime();
        _earliestStarts[i] = i + 1 == timePeriods.size() ? start : std::min(_earliestStarts[i + 1], start);
    }
    addDurations(timePeriods);
}

void MSPEWorkingDayIndex::addDurations(const std::vector<MSPETimePeriod>& timePeriods) {
    for (const auto& period : timePeriods) {
        _duration += period.duration();
        _mostDurationForward = std::max(_mostDurationForward, _duration);
        _farthestTime = std::max(
            {_farthestTime, std::abs(period.startTime() - MSPCMidnight), std::abs(period.endTime() - MSPCMidnight)});
    }
    MSPCTimeInterval backward = 0;
    for (auto period = timePeriods.rbegin(); period != timePeriods.rend(); ++period) {
        backward += period->duration();
        _mostDurationBackward = std::max(_mostDurationBackward, backward);
    }
}

MSPCTimeInterval MSPEWorkingDayIndex::workUntil(MSPCTimeOfDay time) const {
    return _starts.passedUntil(time) - _ends.passedUntil(time);
}

MSPCTimeInterval MSPEWorkingDayIndex::workBetween(MSPCTimeOfDay lower, MSPCTimeOfDay upper) const {
    return lower < upper ? workUntil(upper) - workUntil(lower) : 0;
}

std::optional<std::int64_t> MSPEWorkingDayIndex::firstEndingAfter(MSPCTimeOfDay time) const {
    const auto found = std::upper_bound(_latestEnds.begin(), _latestEnds.end(), time);
    return found == _latestEnds.end() ? std::nullopt : std::optional<std::int64_t>(found - _latestEnds.begin());
}

std::optional<std::int64_t> MSPEWorkingDayIndex::lastStartingBefore(MSPCTimeOfDay time) const {
    const auto behind = std::lower_bound(_earliestStarts.begin(), _earliestStarts.end(), time);
    return behind == _earliestStarts.begin() ? std::nullopt
                                             : std::optional<std::int64_t>(behind - _earliestStarts.begin() - 1);
}
