#pragma once

#include <vector>

#include "KZDXMatch.h"
#include "KZDXTellValue.h"

// Where the links and assignments of each task begin in the lists of their scenarios.
struct KZDXRelationStarts {
    std::vector<std::size_t> oldLinks;
    std::vector<std::size_t> newLinks;
    std::vector<std::size_t> oldAssignments;
    std::vector<std::size_t> newAssignments;

    KZDXRelationStarts(const KZDXScenario& old, const KZDXScenario& now);
};

// Two scenarios and which of their tasks and resources are the same.
struct KZDXMatchedScenarios {
    const KZDXScenario& old;
    const KZDXScenario& now;
    const KZDXOutline& oldTasks;
    const KZDXOutline& newTasks;
    const KZDXOutline& oldResources;
    const KZDXOutline& newResources;
    const KZDXMatch& tasks;
    const KZDXMatch& resources;
    const KZDXRelationStarts& starts;
};

// Tells which links and assignments of a task are new, gone or of another kind.
void KZDXCompareRelations(const KZDXMatchedScenarios& scenarios, std::size_t oldTask, std::size_t newTask,
                          const KZDXTellValue& tell);
