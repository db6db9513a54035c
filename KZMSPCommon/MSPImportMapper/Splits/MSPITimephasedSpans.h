#pragma once

#include <functional>
#include <map>
#include <set>
#include <vector>

#include "MSPCUID.h"
#include "MSPITimephasedDataInfo.h"

// How spans of timephased work become the stretches of a split task.

using MSPITimephasedSpans = std::vector<MSPITimephasedDataInfo>;
// Working seconds between two instants.
using MSPIWorkingTime = std::function<MSPCTimeInterval(MSPCInstant from, MSPCInstant to)>;

// Earlier starts first; of equal starts the later end first; spans with the same dates keep their order.
void sortSpans(MSPITimephasedSpans& spans);

// Merges spans that overlap or touch. The spans have both dates and are sorted; those of duration 0 are left out.
// Touching spans add their durations; the duration of overlapping ones is the working time of their union.
// Deliberate: a merged span ends where the span merged last ends, even if an earlier one ended later.
// Raises `MSPCInternalInconsistency` "Unexpected order of time span start dates." and "Unexpected order of time span
// dates.".
[[nodiscard]] MSPITimephasedSpans mergedSpans(MSPITimephasedSpans sortedSpans, const MSPIWorkingTime& workingTime);

// Joins neighbouring spans between which there is no working time. The spans are sorted and do not overlap. Raises
// `MSPCInternalInconsistency` with an empty reason for a span whose duration is not above 0, "Unexpected order of time
// chunk dates." and "Negative working time got for the time chunk.".
[[nodiscard]] MSPITimephasedSpans joinedStretches(const MSPITimephasedSpans& spans, const MSPIWorkingTime& workingTime);

// The stretches of tasks that bear the UID of a task before them, within one scenario. All have those of the first, and
// finding them again for each of many tasks from many records would take as many steps as the one times the other.
class MSPIStretchCache {
public:
    // A null pointer where they are not known.
    [[nodiscard]] const MSPITimephasedSpans* find(MSPCTaskUID taskUID) const {
        const auto found = _stretches.find(taskUID);
        return found == _stretches.end() ? nullptr : &found->second;
    }

    // To be told each time they have been found; remembers them from the second time on, since hardly any task has
    // another one's UID.
    void add(MSPCTaskUID taskUID, const MSPITimephasedSpans& stretches) {
        if (!_taskUIDs.insert(taskUID).second) {
            _stretches.emplace(taskUID, stretches);
        }
    }

private:
    std::set<MSPCTaskUID> _taskUIDs;  // hashes of numbers could all be made equal
    std::map<MSPCTaskUID, MSPITimephasedSpans> _stretches;
};
