#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "MSPCFields.h"
#include "MSPIObjectMapperBase.h"
#include "MSPITimephasedSpans.h"

// Whether timephased data of an MSPDI type counts in a scenario: the number of a baseline, or -1 for the plan itself.
[[nodiscard]] bool MSPIIsTimephasedTypeOfScenario(std::int64_t type, std::int32_t baselineNumber);

// Finds the stretches of an interrupted task from the timephased work of its assignments and makes one target `task`
// of each.
class MSPITimephasedDataMapper : public MSPIObjectMapperBase {
public:
    using MSPIObjectMapperBase::MSPIObjectMapperBase;

    // The pieces, owned by the caller, in order of time, with provisional ids; none for a task that is not split.
    // Raises what `mergedSpans` and `joinedStretches` raise, what `MSPIGrowthBounds` raises for a long name of many
    // pieces, for many pieces of tasks that share a UID and for assignments of many tasks, and what the value getters
    // raise for unreadable numbers.
    [[nodiscard]] std::vector<MSPCXMLNewElement> newSplitTasksFromMspdiTask(const MSPCFields& mspTask);

    // The latest end of all pieces this mapper has made; none while there are none.
    [[nodiscard]] std::optional<MSPCInstant> taskEndDate() const { return _taskEndDate; }

private:
    MSPITimephasedSpans spansOfTask(MSPCTaskUID uid, std::string_view taskName) const;
    void collectSpansOfAssignment(const MSPCXMLNode& assignment, const std::shared_ptr<const std::string>& taskName,
                                  MSPITimephasedSpans& spans) const;
    MSPITimephasedSpans stretchesOfSpans(MSPITimephasedSpans spans) const;
    MSPCXMLNewElement newTaskFromStretch(const MSPITimephasedDataInfo& stretch, std::string_view taskName) const;

    std::optional<MSPCInstant> _taskEndDate;
};
