#pragma once

#include <cstdint>
#include <map>
#include <set>

#include "MSPITimephasedSpans.h"

// The stretches of tasks that bear the UID of a task before them, within one scenario. All have those of the first, and
// finding them again for each of many tasks from many records would take as many steps as the one times the other.
class MSPIStretchCache {
public:
    // A null pointer where they are not known.
    [[nodiscard]] const MSPITimephasedSpans* find(std::int64_t taskUID) const {
        const auto found = _stretches.find(taskUID);
        return found == _stretches.end() ? nullptr : &found->second;
    }

    // To be told each time they have been found; remembers them from the second time on, since hardly any task has
    // another one's UID.
    void add(std::int64_t taskUID, const MSPITimephasedSpans& stretches) {
        if (!_taskUIDs.insert(taskUID).second) {
            _stretches.emplace(taskUID, stretches);
        }
    }

private:
    std::set<std::int64_t> _taskUIDs;  // hashes of numbers could all be made equal
    std::map<std::int64_t, MSPITimephasedSpans> _stretches;
};
