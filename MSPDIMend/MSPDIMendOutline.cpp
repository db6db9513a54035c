#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "MSPCTextScanner.h"
#include "MSPDIItemValues.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPISubject.h"
#include "MSPITaskTree.h"

namespace {

constexpr std::string_view outline = "outline";

struct Row {
    MSPCXMLNode task;
    std::int64_t level = 0;
    bool isSummary = false;
    std::int64_t newLevel = 1;
    bool becomesSummary = false;
};

// All tasks but the project's root.
std::vector<Row> rowsOf(const MSPDIPatient& patient) {
    std::vector<Row> rows;
    for (const auto& task : MSPDITasksOf(patient)) {
        if (MSPDIIntegerIn(task, "UID").value_or(0) != 0) {
            rows.push_back({task, MSPDIIntegerIn(task, "OutlineLevel").value_or(0), MSPDIIsTrueIn(task, "Summary")});
        }
    }
    return rows;
}

std::set<std::string> assignedTaskUIDs(const MSPDIPatient& patient) {
    std::set<std::string> uids;
    for (const auto& assignment : patient.items("Assignments", "Assignment")) {
        uids.insert(MSPDITextIn(assignment, "TaskUID").value_or(""));
    }
    return uids;
}

// A task stands under the nearest one before it that was on a lower level, whatever the levels were. Where only summary
// tasks can have others under them, that one becomes a summary task, unless this would cost it its assignments: then
// both stand side by side.
void findNewLevels(std::vector<Row>& rows, bool hasSummaryParentsOnly, const std::set<std::string>& assigned) {
    std::vector<Row*> open;
    for (auto& row : rows) {
        while (!open.empty() && open.back()->level >= row.level) {
            open.pop_back();
        }
        if (!open.empty()) {
            auto& parent = *open.back();
            const bool isGroup = !hasSummaryParentsOnly || parent.isSummary || parent.becomesSummary;
            const bool mayBecomeOne = isGroup || !assigned.contains(MSPDITextIn(parent.task, "UID").value_or(""));
            parent.becomesSummary = parent.becomesSummary || (!isGroup && mayBecomeOne);
            row.newLevel = parent.newLevel + (mayBecomeOne ? 1 : 0);
        }
        open.push_back(&row);
    }
}

// Whether a task would stand outside the outline: the look-up of parents is the importer's.
bool hasTaskOutside(const std::vector<Row>& rows, bool hasSummaryParentsOnly) {
    MSPITaskTree tree(rows.size(), hasSummaryParentsOnly);
    for (const auto& row : rows) {
        const auto id = 't' + MSPDITextIn(row.task, "UID").value_or("");
        tree.record(id, {row.task, {}, {}, row.level, row.isSummary});
        if (!MSPITaskTree::isTopLevel(row.level) && !tree.parentForLevel(row.level)) {
            return true;
        }
    }
    return false;
}

// Whether to look at the outline at all: at the levels first, which is soon done.
bool mayBeNeeded(const MSPDIPatient& patient) {
    const auto tasks = patient.items("Tasks", "Task");
    return patient.isAskedFor(outline) || patient.hasMovedRoot ||
           std::any_of(tasks.begin(), tasks.end(),
                       [](const auto& task) { return MSPDIIntegerIn(task, "OutlineLevel").value_or(-1) < 0; });
}

bool isNeeded(const MSPDIPatient& patient, const std::vector<Row>& rows, bool hasSummaryParentsOnly) {
    const bool hasNegative = std::any_of(rows.begin(), rows.end(), [](const auto& row) { return row.level < 0; });
    return patient.isAskedFor(outline) || hasNegative ||
           (patient.hasMovedRoot && hasTaskOutside(rows, hasSummaryParentsOnly));
}

// The importer looks at their levels as well, and at nothing else of them.
void mendEmptyRows(MSPDIPatient& patient) {
    for (const auto& task : patient.items("Tasks", "Task")) {
        const auto level = MSPDIIntegerIn(task, "OutlineLevel").value_or(0);
        if (level < 0 && MSPDIIsTrueIn(task, "IsNull")) {
            patient.note(outline, [&] {
                return fmt::format("{}, an empty row: level 0 instead of {}", MSPISubjectOf("Task", task), level);
            });
            patient.setChild(task, "OutlineLevel", "0", {});
        }
    }
}

// Without a level a task would stand outside the outline: it gets that of the one before it, or the next one below a
// summary task.
void mendUnreadableLevels(MSPDIPatient& patient) {
    std::int64_t level = 1;
    for (const auto& task : patient.items("Tasks", "Task")) {
        const bool isEmpty = MSPDIIsTrueIn(task, "IsNull");
        const bool isRoot = MSPDIIntegerIn(task, "UID") == 0;
        const auto text = MSPDITextIn(task, "OutlineLevel");
        auto known = text ? scanInteger64(*text) : std::nullopt;
        if (text && !known && !isRoot) {
            patient.note(outline, [&] {
                return fmt::format("{}: level {} instead of '{}'", MSPISubjectOf("Task", task), isEmpty ? 0 : level,
                                   *text);
            });
            known = isEmpty ? 0 : level;
            patient.setChild(task, "OutlineLevel", std::to_string(*known), {});
        }
        if (!isEmpty && !isRoot) {
            const auto own = std::max<std::int64_t>(known.value_or(1), 1);
            level = own + (MSPDIIsTrueIn(task, "Summary") ? 1 : 0);
        }
    }
}

}  // namespace

void MSPDIMendOutline(MSPDIPatient& patient) {
    if (!patient.allows(outline) || !mayBeNeeded(patient)) {
        return;
    }
    mendUnreadableLevels(patient);
    mendEmptyRows(patient);
    auto rows = rowsOf(patient);
    const bool hasSummaryParentsOnly = MSPDIHasSummaryParentsOnly(patient);
    if (!isNeeded(patient, rows, hasSummaryParentsOnly)) {
        return;
    }
    findNewLevels(rows, hasSummaryParentsOnly, assignedTaskUIDs(patient));
    for (const auto& row : rows) {
        if (row.newLevel != row.level) {
            patient.note(outline, [&] {
                return fmt::format("{}: level {} instead of {}", MSPISubjectOf("Task", row.task), row.newLevel,
                                   row.level);
            });
            patient.setChild(row.task, "OutlineLevel", std::to_string(row.newLevel),
                             MSPDITaskFieldsBefore("OutlineLevel"));
        }
        if (row.becomesSummary) {
            patient.note(outline, [&] { return MSPISubjectOf("Task", row.task) + ": a summary task"; });
            patient.setChild(row.task, "Summary", "1", MSPDITaskFieldsBefore("Summary"));
        }
    }
}
