#include "MSPITaskMapper.h"

#include <fmt/compile.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPCLog.h"
#include "MSPCTextScanner.h"
#include "MSPIAmounts.h"
#include "MSPINoteMapper.h"

namespace {

constexpr std::int64_t mustStartOn = 2;
constexpr std::int64_t mustFinishOn = 3;
// From this constraint type on, MSPDI gives a constraint date.
constexpr std::int64_t firstDatedConstraint = mustStartOn;

// What an MSPDI `ConstraintType` means for the target; empty texts mean the project's default and no date element.
struct Constraint {
    std::string_view scheduleType;
    std::string_view dateElement;
};

// Deliberate: "finish no earlier than" (6) schedules as late as possible, and "start no later than" (5) writes no date.
constexpr std::array<Constraint, 8> constraints = {{
    {"asap", ""},                     // as soon as possible
    {"alap", ""},                     // as late as possible
    {"", "locked-start-date"},        // must start on
    {"", "locked-end-date"},          // must finish on
    {"", "start-constraint-date"},    // start no earlier than
    {"", ""},                         // start no later than
    {"alap", "end-constraint-date"},  // finish no earlier than
    {"", "end-constraint-date"},      // finish no later than
}};

Constraint constraintOfType(std::int64_t type) {
    const bool isKnown = type >= 0 && type < static_cast<std::int64_t>(constraints.size());
    return isKnown ? constraints[static_cast<std::size_t>(type)] : Constraint{};
}

// `kind` of a link by MSPDI `PredecessorLink/Type`.
constexpr std::array<std::string_view, 4> linkKinds = {"FF", "FS", "SF", "SS"};

void addChild(const MSPCXMLNode& parent, std::string_view name, std::string_view text) {
    addChildElementWithNameStringValue(parent, name, text);
}

void addChildIfPresent(const MSPCXMLNode& parent, std::string_view name, const std::optional<std::string>& text) {
    if (text) {
        addChild(parent, name, *text);
    }
}

void addChildIfPresent(const MSPCXMLNode& parent, std::string_view name, const MSPCNodeText& text) {
    if (text) {
        addChild(parent, name, text.textOrEmpty());
    }
}

}  // namespace

MSPITaskMapper::MSPITaskMapper(MSPIMappingContext& mapper, bool scheduleFromStart,
                               MSPIUserDataTOCElements& userDataTOCElements, std::int64_t& mspTaskMaxId)
    : MSPIObjectMapperBase(mapper),
      _userDataTOCElements(userDataTOCElements),
      _mspScheduleFromStart(scheduleFromStart),
      _mspTaskMaxId(mspTaskMaxId) {
}

MSPCXMLNewElement MSPITaskMapper::newTaskFromMSPTask(const MSPCFields& mspTask) {
    auto newTask = _mapper.newElement("task");
    const auto task = newTask.node();
    Facts facts;

    addIdentity(mspTask, task);
    addTypeAndScheduling(mspTask, task, facts);
    addLeveledStartBeforeLeveling(mspTask, task, facts);
    facts.start = mspTask.text("Start");
    facts.finish = mspTask.text("Finish");
    facts.kdzxStart = _mapper.conversions().mspdiToKdzxDateTime(facts.start.textOrEmpty());
    facts.kdzxFinish = _mapper.conversions().mspdiToKdzxDateTime(facts.finish.textOrEmpty());
    addLeveledStartOfConstraint(task, facts);
    addChildIfPresent(task, "priority", mspTask.text("Priority"));
    addEffort(mspTask, task, facts);
    addProgress(mspTask, task, facts);
    if (facts.constraintType >= firstDatedConstraint) {
        facts.constraintDate = mspTask.text("ConstraintDate");
    }
    addLockedDateOfProjectBounds(task, facts);
    addConstraintDate(task, facts);
    addRecalculation(mspTask, task);
    addFixedCost(mspTask, task);
    addChildIfPresent(task, "start-date", facts.kdzxStart);
    addChildIfPresent(task, "end-date", facts.kdzxFinish);
    if (const auto notes = mspTask.text("Notes")) {
        MSPCXMLNode(task).appendChild(
            MSPINoteMapper().newNoteFromMSPNotes(notes.textOrEmpty(), _mapper.kdzxDocument()));
    }
    _userDataChanged = addUserDataOfExtendedAttributesToElement(mspTask.nodes("ExtendedAttribute"), task,
                                                                MSPITaskUserDataKeysTag, _userDataTOCElements, _mapper);
    addPrerequisites(mspTask, task);
    return newTask;
}

void MSPITaskMapper::addIdentity(const MSPCFields& mspTask, const MSPCXMLNode& task) {
    const auto uid = mspTask.text("UID");
    if (!uid) {
        throw MSPCInternalInconsistency("Failed to get UID from Task.");
    }
    const auto number = scanInteger64(uid.textOrEmpty()).value_or(0);
    _mspTaskUID = MSPCTaskUID{number};
    setAttributeWithNameStringValue(task, "id", _mapper.idMapper().taskIdFromMspdiUID(uid.textOrEmpty()));
    if (number > 0) {
        _mspTaskMaxId = std::max(_mspTaskMaxId, number);
    }
    const auto name = mspTask.text("Name");
    addChildIfPresent(task, "title", name);
    _mapper.log().log("  Mapping Task UID='{}' name='{}' ...", uid.textOrEmpty(), name.textOrEmpty());
}

void MSPITaskMapper::addTypeAndScheduling(const MSPCFields& mspTask, const MSPCXMLNode& task, Facts& facts) {
    if (const auto duration = mspTask.text("Duration")) {
        facts.durationSeconds = MSPIUtilities::mspdiDurationInSecs(duration.textOrEmpty());
    }
    facts.isSummary = mspTask.boolValue("Summary");
    const std::string_view type = facts.isSummary ? "group" : facts.durationSeconds == 0 ? "milestone" : "task";
    _kdzxType = addChildElementWithNameStringValue(task, "type", type);

    Error error;
    const auto constraintType = mspTask.intValue("ConstraintType", &error);
    facts.constraintType = error ? -1 : constraintType;
    const auto scheduleType = constraintOfType(facts.constraintType).scheduleType;
    const std::string_view projectDefault = _mspScheduleFromStart ? "asap" : "alap";
    addChild(task, "schedule-type", scheduleType.empty() ? projectDefault : scheduleType);
}

// A leveled task keeps the start that leveling gave it, or the one it was pinned to.
void MSPITaskMapper::addLeveledStartBeforeLeveling(const MSPCFields& mspTask, const MSPCXMLNode& task,
                                                   Facts& facts) const {
    if (!mspTask.singleObject("PreLeveledStart") && !mspTask.singleObject("PreLeveledFinish")) {
        return;
    }
    const bool isPinned = mspTask.boolValue("Pinned");
    const auto start = mspTask.text(isPinned ? "PinnedStart" : "Start");
    if (const auto leveledStart = _mapper.conversions().mspdiToKdzxDateTime(start.textOrEmpty())) {
        addChild(task, "leveled-start", *leveledStart);
        facts.hasLeveledStart = true;
    }
}

void MSPITaskMapper::addLeveledStartOfConstraint(const MSPCXMLNode& task, Facts& facts) const {
    if (!facts.hasLeveledStart && facts.constraintType >= firstDatedConstraint) {
        addChildIfPresent(task, "leveled-start", facts.kdzxStart);
    }
}

// The work where there is any, else the duration, so that every task has an effort.
void MSPITaskMapper::addEffort(const MSPCFields& mspTask, const MSPCXMLNode& task, Facts& facts) const {
    const auto work = mspTask.text("Work");
    const auto workSeconds = work ? MSPIUtilities::mspdiDurationInSecs(work.textOrEmpty()) : 0;
    facts.effortSeconds = workSeconds > 0 ? workSeconds : facts.durationSeconds;
    addChild(task, "effort", fmt::to_string(facts.effortSeconds));
}

void MSPITaskMapper::addProgress(const MSPCFields& mspTask, const MSPCXMLNode& task, const Facts& facts) const {
    constexpr std::int64_t complete = 100;
    Error error;
    const auto percent = mspTask.intValue("PercentComplete", &error);
    if (!error && percent > 0) {
        const auto done = std::min(percent, complete);
        addChild(task, "completion-percentage", fmt::format(FMT_COMPILE("{}.{:02}"), done / 100, done % 100));
    }
    error.clear();
    const auto workPercent = mspTask.intValue("PercentWorkComplete", &error);
    if (!error && workPercent > 0) {
        // Multiplied in whole numbers first: 29 percent of 100 seconds is 29, not 28.
        const auto percentSeconds = std::min(workPercent, complete) * facts.effortSeconds;
        addChild(task, "effort-done",
                 fmt::to_string(static_cast<std::int64_t>(static_cast<double>(percentSeconds) / 100.0)));
    }
}

bool MSPITaskMapper::isBeyondProject(bool scheduleFromStart, MSPCInstant date, MSPCInstant bound) {
    return scheduleFromStart ? date < bound : date > bound;
}

MSPCInstant MSPITaskMapper::lockedDate(bool scheduleFromStart, MSPCInstant taskDate,
                                       std::optional<MSPCInstant> constraintDate) {
    const bool isFurtherOut = constraintDate && isBeyondProject(scheduleFromStart, *constraintDate, taskDate);
    return isFurtherOut ? *constraintDate : taskDate;
}

// A task that starts before its project (or ends after one scheduled from its end) would be moved to the project's
// bounds; its date is locked instead.
void MSPITaskMapper::addLockedDateOfProjectBounds(const MSPCXMLNode& task, Facts& facts) const {
    if (facts.isSummary) {
        return;
    }
    const auto& conversions = _mapper.conversions();
    const auto& projectDate = _mspScheduleFromStart ? _mapper.mspStartDate() : _mapper.mspFinishDate();
    const auto& taskDate = _mspScheduleFromStart ? facts.start : facts.finish;
    const bool hasTaskDate = (_mspScheduleFromStart ? facts.kdzxStart : facts.kdzxFinish).has_value();
    if (projectDate.empty() || !hasTaskDate) {
        return;
    }
    const auto projectBound = _mapper.instantOfProjectDate(projectDate);
    const auto own = conversions.mspdiToMppDateTime(taskDate.textOrEmpty());
    if (!projectBound || !own || !isBeyondProject(_mspScheduleFromStart, *own, *projectBound)) {
        return;
    }
    const bool isConstrained = facts.constraintType == (_mspScheduleFromStart ? mustStartOn : mustFinishOn);
    const auto constraintDate =
        isConstrained ? conversions.mspdiToMppDateTime(facts.constraintDate.textOrEmpty()) : std::nullopt;
    addChildIfPresent(task, _mspScheduleFromStart ? "locked-start-date" : "locked-end-date",
                      conversions.mppToKdzxDateTime(lockedDate(_mspScheduleFromStart, *own, constraintDate)));
    (_mspScheduleFromStart ? facts.hasLockedStart : facts.hasLockedEnd) = true;
}

void MSPITaskMapper::addConstraintDate(const MSPCXMLNode& task, const Facts& facts) const {
    const auto kdzxDate = _mapper.conversions().mspdiToKdzxDateTime(facts.constraintDate.textOrEmpty());
    const auto element = constraintOfType(facts.constraintType).dateElement;
    const bool isThereAlready = (facts.constraintType == mustStartOn && facts.hasLockedStart) ||
                                (facts.constraintType == mustFinishOn && facts.hasLockedEnd);
    if (!element.empty() && !isThereAlready) {
        addChildIfPresent(task, element, kdzxDate);
    }
}

void MSPITaskMapper::addRecalculation(const MSPCFields& mspTask, const MSPCXMLNode& task) const {
    Error error;
    const auto type = mspTask.intValue("Type", &error);
    if (error) {
        return;
    }
    if (type < 0 || type > 2) {
        throw MSPCInternalInconsistency(fmt::format("Unexpected MSPDI Task Type: {}", type));
    }
    addChild(task, "recalculate", type == 1 ? "effort" : "duration");
}

void MSPITaskMapper::addFixedCost(const MSPCFields& mspTask, const MSPCXMLNode& task) const {
    if (!_mapper.isSavedBy2007OrLater()) {
        return;
    }
    Error error;
    const auto cost = mspTask.floatValue("FixedCost", &error);
    if (!error) {
        addChild(task, "static-cost", MSPIAmounts::fixedCostText(cost));
    }
}

// Links to tasks outside the file are dropped, and so are links to a UID that several tasks have. The link's lag has no
// place in the target.
void MSPITaskMapper::addPrerequisites(const MSPCFields& mspTask, const MSPCXMLNode& task) const {
    for (const auto& link : mspTask.nodes("PredecessorLink")) {
        checkNode(link, "PredecessorLink");
        Error error;
        const MSPCTaskUID uid{intValueForXQuery(link, "PredecessorUID", &error)};
        if (error || MSPCNumberOf(uid) < 0) {
            continue;
        }
        if (!_mapper.index().tasksByUID().singleNodeWithKey(uid, &error) || error) {
            continue;
        }
        const auto prerequisite = addChildElementWithName(task, "prerequisite-task");
        setAttributeWithNameStringValue(prerequisite, "idref", _mapper.idMapper().taskIdFromMspdiUID(uid));
        const auto type = intValueForXQuery(link, "Type", &error);
        if (!error && type >= 0 && type < static_cast<std::int64_t>(linkKinds.size())) {
            setAttributeWithNameStringValue(prerequisite, "kind", linkKinds[static_cast<std::size_t>(type)]);
        }
    }
}
