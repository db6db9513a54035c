#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

// What kind of plan to generate. Beside the ordinary kind there are shapes that make obvious implementations quadratic.
enum class PlanShape {
    Ordinary,             // phases of ten tasks, links, notes, custom fields, a resource per twenty tasks
    Flat,                 // every task on one outline level below one parent
    LateNesting,          // level 2 tasks after as many tasks of level 1 that are no Summary tasks
    StarLinks,            // every task linked to the last one
    OneResource,          // one resource on every assignment
    OneBusyTask,          // every assignment on one task
    ReversedAssignments,  // assignments in the reverse order of their tasks
    ManyCustomFields,     // 10,000 definitions by default, and a value of the last one on every task
    MaterialPerTask,      // a material resource for every task
    DuplicateUIDs,        // all tasks but the root have one UID
    AlternateBaselines,   // baseline 0 on every second task
    AllSplit,             // every task interrupted
};

// The shape of a name such as "late-nesting"; none for an unknown name.
[[nodiscard]] std::optional<PlanShape> planShapeNamed(std::string_view name);

struct PlanOptions {
    std::int64_t tasks = 1000;           // beside the root task
    std::uint64_t seed = 1;              // the same options give the same plan, byte by byte
    std::int64_t timephasedRecords = 0;  // per assignment
    std::int64_t splitPercent = 0;       // of the tasks; needs at least two timephased records
    std::int64_t baselines = 0;          // 0 to 11: baselines 0 to n - 1 on every task and assignment
    std::int64_t definitions = 0;        // of custom fields; 0 for as many as the shape has
    PlanShape shape = PlanShape::Ordinary;
};

// Writes an MSPDI plan as Microsoft Project writes them, some 85 children a task, in pieces of bounded size.
void generatePlan(const PlanOptions& options, const std::function<void(std::string_view)>& write);
