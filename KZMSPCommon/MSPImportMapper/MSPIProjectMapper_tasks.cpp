// The task tree of `MSPIProjectMapper`.
#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPIAssignmentMapper.h"
#include "MSPIProjectMapper.h"
#include "MSPISubject.h"
#include "MSPITaskMapper.h"
#include "MSPITimephasedDataMapper.h"

namespace {

constexpr MSPCTaskUID rootTask{0};

void addChildTask(const MSPCXMLNode& parent, std::string_view id) {
    setAttributeWithNameStringValue(addChildElementWithName(parent, "child-task"), "idref", id);
}

std::string idOf(const MSPCXMLNode& element) {
    return element.attribute("id").stringValue();
}

// The MSPDI task of the target task that holds a reference; its id is "t" and the UID.
std::string subjectOfOwner(const MSPCXMLNode& reference) {
    const auto owner = reference.parent();
    const auto id = idOf(owner);
    return fmt::format("Task UID='{}' name='{}'", id.empty() ? id : id.substr(1),
                       textForXQuery(owner, "title").textOrEmpty());
}

}  // namespace

void MSPIProjectMapper::buildMspTasksMspAssignmentsScenarioTopGroupTask(
    std::span<const MSPCXMLNode> mspTasks, std::shared_ptr<MSPIAssignmentKeys> mspAssignments,
    const MSPCXMLNode& scenario, const MSPCXMLNode& topGroupTask) {
    TaskRun run{.tree = MSPITaskTree(mspTasks.size(), _mapper.isSavedBy2007OrLater()),
                .assignments = MSPIAssignmentPool(std::move(mspAssignments)),
                .scenario = scenario,
                .topGroupTask = topGroupTask,
                .pendingPieces = {}};
    std::size_t done = 0;
    for (const auto& mspTask : mspTasks) {
        MSPITellingSubject("Task", mspTask, [&] {
            checkNode(mspTask, "Task");
            mapTask(mspTask, run);
        });
        _mapper.services().progress.tasksDone(++done, mspTasks.size());
    }
    giveFinalIdsToSplitPieces(run);
}

void MSPIProjectMapper::mapTask(const MSPCXMLNode& mspTask, TaskRun& run) {
    const MSPCFields fields(mspTask);
    const auto outlineLevel = fields.intValue("OutlineLevel");
    if (outlineLevel < 0) {
        throw MSPCInternalInconsistency(fmt::format("Unexpected outline level {} found in task (UID={})", outlineLevel,
                                                    fields.text("UID").textOrEmpty()));
    }
    if (fields.boolValue("IsNull")) {
        return;
    }
    MSPITaskMapper taskMapper(_mapper, _mspScheduleFromStart, _userDataTOCElements, _mspTaskMaxId);
    auto newTask = taskMapper.newTaskFromMSPTask(fields);
    const bool isRoot = taskMapper.mspTaskUID() == rootTask;
    if (isRoot && run.hasRootTask) {
        throw MSPCInternalInconsistency("Duplicate tasks with UID=0 found in the source document.");
    }
    run.hasRootTask = run.hasRootTask || isRoot;
    _userDataChanged = _userDataChanged || taskMapper.userDataChanged();

    const bool isSummary = fields.boolValue("Summary");
    MSPITaskTree::checkType(taskMapper.kdzxType(), isSummary);
    if (isRoot) {
        takeOverRootTask(newTask.node(), isSummary, outlineLevel, run);
        return;
    }
    const auto task = run.scenario.appendChild(std::move(newTask));
    const bool hasPieces = addSplitPieces(fields, task, run);
    // Pieces take the place of the owner's type.
    run.tree.record(idOf(task),
                    {mspTask, task, hasPieces ? MSPCXMLNode() : taskMapper.kdzxType(), outlineLevel, isSummary});
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

bool MSPIProjectMapper::addSplitPieces(const MSPCFields& mspTask, const MSPCXMLNode& task, TaskRun& run) const {
    MSPITimephasedDataMapper timephasedDataMapper(_mapper);
    auto pieces = timephasedDataMapper.newSplitTasksFromMspdiTask(mspTask);
    if (pieces.empty()) {
        return false;
    }
    const auto end = _mapper.conversions().mppToKdzxDateTime(timephasedDataMapper.taskEndDate());
    auto pendingPieces = splitTaskIntoPieces(task, std::move(pieces), end, run.isReportingErrors);
    std::move(pendingPieces.begin(), pendingPieces.end(), std::back_inserter(run.pendingPieces));
    return true;
}

void MSPIProjectMapper::addMspAssignmentsForMspdiTaskToTask(const MSPCFields& mspTask, MSPCXMLNode task,
                                                            TaskRun& run) const {
    if (run.assignments.isEmpty()) {
        return;
    }
    Error error;
    const MSPCTaskUID taskUID{mspTask.intValue("UID", &error)};
    if (error && run.isReportingErrors) {
        return;
    }
    const MSPIAssignmentMapper assignmentMapper(_mapper);
    for (const auto& assignment : run.assignments.takeAssignmentsOfTask(taskUID, run.isReportingErrors)) {
        MSPITellingSubject([&] { return MSPISubjectOfAssignment(assignment, _mapper.hiddenElements()); },
                           [&] { task.appendChild(assignmentMapper.newAssignmentFromMSPAssignment(assignment)); });
    }
}

void MSPIProjectMapper::linkIntoTree(const MSPCXMLNode& task, std::int64_t outlineLevel, TaskRun& run) const {
    if (MSPITaskTree::isTopLevel(outlineLevel)) {
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
    for (auto& pending : run.pendingPieces) {
        const auto piece = run.scenario.appendChild(std::move(pending.piece));
        // Past the largest integer the number turns negative, which the id mapper refuses.
        _mspTaskMaxId = static_cast<std::int64_t>(static_cast<std::uint64_t>(_mspTaskMaxId) + 1);
        const auto id =
            MSPITellingSubject([&] { return subjectOfOwner(pending.reference); },
                               [&] { return _mapper.idMapper().taskIdFromMspdiUID(MSPCTaskUID{_mspTaskMaxId}); });
        setAttributeWithNameStringValue(piece, "id", id);
        setAttributeWithNameStringValue(pending.reference, "idref", id);
    }
}
