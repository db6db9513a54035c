// The task tree of `MSPIProjectMapper`.
#include <fmt/format.h>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPIAssignmentMapper.h"
#include "MSPIProjectMapper.h"
#include "MSPITaskMapper.h"
#include "MSPITimephasedDataMapper.h"

namespace {

void addChildTask(const MSPCXMLNode& parent, std::string_view id) {
    setAttributeWithNameStringValue(addChildElementWithName(parent, "child-task"), "idref", id);
}

std::string idOf(const MSPCXMLNode& element) { return element.attribute("id").stringValue(); }

void setOrAddChild(const MSPCXMLNode& element, std::string_view name, std::string_view text) {
    if (auto child = singleObjectForXQuery(element, name)) {
        child.setStringValue(text);
    } else {
        addChildElementWithNameStringValue(element, name, text);
    }
}

void setChildIfPresent(const MSPCXMLNode& element, std::string_view name, std::string_view text) {
    if (auto child = singleObjectForXQuery(element, name)) {
        child.setStringValue(text);
    }
}

// `split` takes the place of the type; without one it follows the title; without a title it comes first.
MSPCXMLNode addSplitMark(MSPCXMLNode task) {
    auto split = task.newElement("split");
    if (auto type = singleObjectForXQuery(task, "type")) {
        const auto mark = task.insertChildBefore(std::move(split), type);
        static_cast<void>(type.detach());
        return mark;
    }
    return task.insertChildAfter(std::move(split), singleObjectForXQuery(task, "title"));
}

void writeSplitEnd(const MSPCXMLNode& task, std::string_view kdzxDate) {
    setOrAddChild(task, "end-date", kdzxDate);
    setChildIfPresent(task, "locked-end-date", kdzxDate);
    setChildIfPresent(task, "end-constraint-date", kdzxDate);
}

void writeSplitEffort(MSPCXMLNode task, const MSPCXMLNode& splitMark, double effort) {
    const auto text = fmt::format("{:.2f}", effort);
    if (auto child = singleObjectForXQuery(task, "effort")) {
        child.setStringValue(text);
        return;
    }
    task.insertChildAfter(task.newElement("effort"), splitMark).setStringValue(text);
}

}  // namespace

void MSPIProjectMapper::buildMspTasksMspAssignmentsScenarioTopGroupTask(std::span<const MSPCXMLNode> mspTasks,
                                                                        std::vector<MSPCXMLNode> mspAssignments,
                                                                        const MSPCXMLNode& scenario,
                                                                        const MSPCXMLNode& topGroupTask) {
    TaskRun run{.tree = MSPITaskTree(mspTasks.size(), _mapper.isSavedBy2007OrLater()),
                .assignments = MSPIAssignmentPool(std::move(mspAssignments)),
                .scenario = scenario,
                .topGroupTask = topGroupTask,
                .pendingPieces = {}};
    std::size_t done = 0;
    for (const auto& mspTask : mspTasks) {
        checkNode(mspTask, "Task");
        mapTask(mspTask, run);
        _mapper.services().progress.tasksDone(++done, mspTasks.size());
    }
    giveFinalIdsToSplitPieces(run);
}

void MSPIProjectMapper::mapTask(const MSPCXMLNode& mspTask, TaskRun& run) {
    const MSPCFields fields(mspTask);
    const auto outlineLevel = fields.intValue("OutlineLevel");
    if (outlineLevel < 0) {
        throw MSPCInternalInconsistency(fmt::format("Unexpected outline level {} found in task (UID={})", outlineLevel,
                                                    fields.stringValue("UID").value_or("")));
    }
    if (fields.boolValue("IsNull")) {
        return;
    }
    MSPITaskMapper taskMapper(_mapper, _mspScheduleFromStart, _userDataTOCElements, _mspTaskMaxId);
    auto newTask = taskMapper.newTaskFromMSPTask(fields);
    const bool isRoot = taskMapper.mspTaskUID() == 0;
    if (isRoot && run.hasRootTask) {
        throw MSPCInternalInconsistency("Duplicate tasks with UID=0 found in the source document.");
    }
    run.hasRootTask = run.hasRootTask || isRoot;
    _userDataChanged = _userDataChanged || taskMapper.userDataChanged();

    const bool isSummary = fields.boolValue("Summary");
    if ((stringValueForXQuery(newTask.node(), "type") == "group") != isSummary) {
        throw MSPCInternalInconsistency("MSPDI Summary Task must be mapped to KDZX Group Task.");
    }
    if (isRoot) {
        takeOverRootTask(newTask.node(), isSummary, outlineLevel, run);
        return;
    }
    const auto task = run.scenario.appendChild(std::move(newTask));
    const bool hasPieces = addSplitPieces(fields, task, run);
    run.tree.record(idOf(task), {mspTask, task, outlineLevel, isSummary});
    if (!isSummary || hasPieces) {
        addMspAssignmentsForMspdiTaskToTask(fields, task, run);
    }
    linkIntoTree(task, outlineLevel, run);
}

// Of MSPDI's root task only the dates go into the scenario: the group task "t-1" stands for it.
void MSPIProjectMapper::takeOverRootTask(const MSPCXMLNode& task, bool isSummary, std::int64_t outlineLevel,
                                         TaskRun& run) const {
    if (!isSummary || outlineLevel != 0) {
        throw MSPCInternalInconsistency("This does not seem like a MS Project root task.");
    }
    for (const auto* name : {"start-date", "end-date"}) {
        if (auto date = singleObjectForXQuery(task, name)) {
            run.topGroupTask.appendChild(date.detach());
        }
    }
}

bool MSPIProjectMapper::addSplitPieces(const MSPCFields& mspTask, MSPCXMLNode task, TaskRun& run) {
    MSPITimephasedDataMapper timephasedDataMapper(_mapper);
    auto pieces = timephasedDataMapper.newSplitTasksFromMspdiTask(mspTask);
    if (pieces.empty()) {
        return false;
    }
    if (pieces.size() < 2) {
        throw MSPCInternalInconsistency("Minimum number of task splits must be 2.");
    }
    const auto splitMark = addSplitMark(task);
    if (const auto end = _mapper.conversions().mppToKdzxDateTime(timephasedDataMapper.taskEndDate())) {
        writeSplitEnd(task, *end);
    }
    double effort = 0;
    for (auto& piece : pieces) {
        const auto reference = addChildElementWithName(task, "child-task");
        setAttributeWithNameStringValue(reference, "idref", idOf(piece.node()));
        Error error;
        const auto pieceEffort = floatValueForXQuery(piece.node(), "effort", &error);
        if (!error || !run.isReportingErrors) {
            effort += pieceEffort;
        }
        run.pendingPieces.push_back({std::move(piece), reference});
    }
    if (effort > 0) {
        writeSplitEffort(task, splitMark, effort);
    }
    return true;
}

void MSPIProjectMapper::addMspAssignmentsForMspdiTaskToTask(const MSPCFields& mspTask, MSPCXMLNode task,
                                                            TaskRun& run) const {
    if (run.assignments.isEmpty()) {
        return;
    }
    Error error;
    const auto taskUID = mspTask.intValue("UID", &error);
    if (error && run.isReportingErrors) {
        return;
    }
    const MSPIAssignmentMapper assignmentMapper(_mapper);
    for (const auto& assignment : run.assignments.takeAssignmentsOfTask(taskUID, run.isReportingErrors)) {
        task.appendChild(assignmentMapper.newAssignmentFromMSPAssignment(assignment));
    }
}

void MSPIProjectMapper::linkIntoTree(const MSPCXMLNode& task, std::int64_t outlineLevel, TaskRun& run) const {
    if (outlineLevel == 1) {
        addChildTask(run.topGroupTask, idOf(task));
        return;
    }
    // Deliberate: a task without a parent stays in the scenario but belongs to no group.
    if (const auto parent = run.tree.parentForLevel(outlineLevel)) {
        addChildTask(run.tree.groupOfParent(*parent), idOf(task));
        // Deliberate: from the first nested task on, values that are missing or ambiguous are taken as they are read.
        run.isReportingErrors = false;
    }
}

// Pieces come after all tasks and take the ids that follow the highest task UID, in the order of their owners.
void MSPIProjectMapper::giveFinalIdsToSplitPieces(TaskRun& run) {
    for (auto& [newPiece, reference] : run.pendingPieces) {
        const auto piece = run.scenario.appendChild(std::move(newPiece));
        // Past the largest integer the number turns negative, which the id mapper refuses.
        _mspTaskMaxId = static_cast<std::int64_t>(static_cast<std::uint64_t>(_mspTaskMaxId) + 1);
        const auto id = _mapper.idMapper().taskIdFromMspdiUID(fmt::format("{}", _mspTaskMaxId));
        setAttributeWithNameStringValue(piece, "id", id);
        setAttributeWithNameStringValue(reference, "idref", id);
    }
}
