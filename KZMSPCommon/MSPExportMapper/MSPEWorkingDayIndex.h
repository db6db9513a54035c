#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "MSPCTimeOfDay.h"
#include "MSPEDirection.h"
#include "MSPETimePeriod.h"

// What a day's periods answer together, found without walking all of them.
class MSPEWorkingDayIndex {
public:
    explicit MSPEWorkingDayIndex(const std::vector<MSPETimePeriod>& timePeriods);

    // The seconds that the periods hold between two whole seconds of the day (from 0 to 86,400); what two of them hold
    // counts twice, a reversed one holds nothing. 0 where the second is not later.
    [[nodiscard]] MSPCTimeInterval workBetween(MSPCTimeOfDay lower, MSPCTimeOfDay upper) const;
    // Those of the whole day.
    [[nodiscard]] MSPCTimeInterval workOfDay() const { return _workOfDay; }

    // The first period that ends after a time, and the last one that starts before it. None where there is no such one.
    [[nodiscard]] std::optional<std::int64_t> firstEndingAfter(MSPCTimeOfDay time) const;
    [[nodiscard]] std::optional<std::int64_t> lastStartingBefore(MSPCTimeOfDay time) const;

    // The seconds of all periods, those of reversed ones negative: together, and the most that a walk has met behind
    // any of them (0 where that is less).
    [[nodiscard]] MSPCTimeInterval duration() const { return _duration; }
    [[nodiscard]] MSPCTimeInterval mostDuration(MSPEDirection direction) const {
        return direction == MSPEDirection::Forward ? _mostDurationForward : _mostDurationBackward;
    }
    // How far the farthest start or end lies from midnight, in seconds.
    [[nodiscard]] MSPCTimeInterval farthestTime() const { return _farthestTime; }

private:
    // Times in ascending order, each with the sum of the seconds of those before it.
    class Times {
    public:
        explicit Times(std::vector<MSPCTimeOfDay> times);
        // What has passed since all times that lie before one.
        [[nodiscard]] MSPCTimeInterval passedUntil(MSPCTimeOfDay time) const;

    private:
        std::vector<MSPCTimeOfDay> _times;
        std::vector<MSPCTimeInterval> _sums;
    };

    [[nodiscard]] MSPCTimeInterval workUntil(MSPCTimeOfDay time) const;
    void addDurations(const std::vector<MSPETimePeriod>& timePeriods);

    Times _starts;
    Times _ends;
    MSPCTimeInterval _workOfDay = 0;
    std::vector<MSPCTimeOfDay> _latestEnds;      // of each period and those before it
    std::vector<MSPCTimeOfDay> _earliestStarts;  // of each period and those behind it
    MSPCTimeInterval _duration = 0;
    MSPCTimeInterval _mostDurationForward = 0;
    MSPCTimeInterval _mostDurationBackward = 0;
    MSPCTimeInterval _farthestTime = 0;
};
