#include "MSPDIMappingTrial.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPCFields.h"
#include "MSPDIItemValues.h"
#include "MSPICalendarMapper.h"
#include "MSPIProjectMapper.h"
#include "MSPIProjectSettings.h"
#include "MSPIResourceMapper.h"
#include "MSPISubject.h"
#include "MSPITaskMapper.h"
#include "MSPITimephasedDataMapper.h"

namespace {

constexpr std::string_view unreadableValue = "unreadable-value";
constexpr std::string_view splitRollUp = "split-roll-up";
constexpr std::string_view splitPieces = "split-pieces";

template <typename Map>
std::optional<MSPDIMappingFailure> failureOf(const Map& map) {
    try {
        map();
    } catch (const MSPCException& exception) {
        return MSPDIMappingFailure{exception.reason(), exception.userInfo()};
    }
    return std::nullopt;
}

// What is beyond all measure is no single value's fault.
bool isBound(const MSPDIMappingFailure& failure) {
    return failure.reason.starts_with("Too much") || failure.reason.starts_with("Too many");
}

std::string placeOf(const std::string& subject, const MSPCXMLNode& leaf) {
    return fmt::format("{}: {} '{}'", subject, leaf.name(), leaf.stringValue());
}

// Takes the project's long lists out of the tree for a while, so that only the project itself is mapped.
class BareProject {
public:
    explicit BareProject(MSPCXMLNode project) : _project(project) {
        for (const auto* name : {"Tasks", "Resources", "Assignments"}) {
            for (auto list = project.firstChildElement(name); list; list = project.firstChildElement(name)) {
                const auto before = list.previousSibling();
                _lists.emplace_back(before, list.detach());
            }
        }
    }
    ~BareProject() {
        for (auto list = _lists.rbegin(); list != _lists.rend(); ++list) {
            _project.insertChildAfter(std::move(list->second), list->first);
        }
    }
    BareProject(const BareProject&) = delete;
    BareProject& operator=(const BareProject&) = delete;

private:
    MSPCXMLNode _project;
    std::vector<std::pair<MSPCXMLNode, MSPCXMLNewElement>> _lists;
};

}  // namespace

MSPDIMappingTrial::MSPDIMappingTrial(MSPDIPatient& patient, MSPCServices services, std::int32_t baselineNumber,
                                     const MSPCXMLDocument& kdzxTemplate)
    : _patient(patient), _services(std::move(services)), _context(patient.plan(), _services) {
    _context.setKdzxTemplateRoot(kdzxTemplate.root());
    _context.setBaselineNumber(baselineNumber);
    _context.setMspSaveVersion(MSPIProjectSettings::ofProject(patient.project()).saveVersion);
    if (baselineNumber >= 0) {
        _context.setUnchangedLists(patient.plan().baselines().unchangedLists(baselineNumber));
    }
    _groupType = _context.newElement("type");
    auto type = _groupType.node();
    type.setStringValue("group");
}

MSPDIMappingTrial::~MSPDIMappingTrial() = default;

void MSPDIMappingTrial::run() {
    if (!mapProject()) {
        return;
    }
    for (const auto& resource : _patient.items("Resources", "Resource")) {
        mapResource(resource);
    }
    const auto tasks = _patient.items("Tasks", "Task");
    if (tasks.empty()) {
        return;
    }
    for (const auto& assignment : _patient.items("Assignments", "Assignment")) {
        readAssignment(assignment);
    }
    _tree = std::make_unique<MSPITaskTree>(tasks.size(), _context.isSavedBy2007OrLater());
    _pool = std::make_unique<MSPIAssignmentPool>(_context.index().assignmentKeys());
    for (const auto& task : tasks) {
        mapTask(task);
    }
}

bool MSPDIMappingTrial::mend(const MSPDITrial& trial, const Owners& owners, const Subject& subject) {
    auto failure = trial();
    while (failure && !isBound(*failure)) {
        const auto isUnreadable = [this](const std::string& text) {
            const auto of = failureOf([&] { static_cast<void>(_context.conversions().mspdiToMppDateTime(text)); });
            return of && of->reason.empty();
        };
        // What a definition says is read when the first value of its field is.
        const bool isOfDefinition = failure->reason.find("<CFType>") != std::string::npos;
        const auto suspects =
            isOfDefinition ? _patient.items("ExtendedAttributes", "ExtendedAttribute") : owners(*failure);
        const auto culprit = MSPDICulpritAmong(suspects, *failure, trial, isUnreadable);
        if (!culprit || !takeOut(culprit, failure->subject.empty() ? subject() : failure->subject)) {
            break;
        }
        failure = trial();
    }
    for (; !_aside.empty(); _aside.pop_back()) {
        auto& [parent, before, leaf] = _aside.back();
        parent.insertChildAfter(std::move(leaf), before);
    }
    return !failure;
}

// A leaf that shows a value of a baseline stays; the value is to go from the baseline.
bool MSPDIMappingTrial::takeOut(MSPCXMLNode leaf, const std::string& subject) {
    if (!_patient.allows(unreadableValue)) {
        return false;
    }
    const auto owner = leaf.parent();
    if (!_context.isBaselineScenario()) {
        _patient.note(unreadableValue, placeOf(subject, leaf));
        _patient.remove(leaf);
        return true;
    }
    const auto query = fmt::format("Baseline[Number={}]", _context.baselineNumber());
    const auto baseline = singleObjectForXQuery(owner, query);
    if (!baseline || !baseline.firstChildElement(leaf.name())) {
        return false;
    }
    _patient.note(unreadableValue, placeOf(subject + fmt::format(", Baseline {}", _context.baselineNumber()), leaf));
    _condemned.emplace_back(baseline, std::string(leaf.name()));
    const auto before = leaf.previousSibling();
    _aside.push_back({owner, before, leaf.detach()});
    return true;
}

bool MSPDIMappingTrial::mapProject() {
    const auto project = _patient.project();
    const BareProject bare(project);
    const auto trial = [&] {
        return failureOf([&] {
            _context.calendarSchedules().clear();
            MSPIProjectMapper mapper(_context, _mspTaskMaxId, _mspResourceMaxId, _userDataTOCElements);
            _scenario = mapper.newScenarioFromMSPProject(project);
        });
    };
    const auto owners = [&](const MSPDIMappingFailure& failure) {
        std::vector<MSPCXMLNode> found;
        for (const auto& [name, child] : project.childElements()) {
            if (name != "Calendars" && name != "ExtendedAttributes") {
                found.push_back(child);
            }
        }
        for (const auto& calendar : _patient.items("Calendars", "Calendar")) {
            if (failure.subject.starts_with(MSPISubjectOf("Calendar", calendar))) {
                found.push_back(calendar);
            }
        }
        return found;
    };
    return mend(trial, owners, [] { return std::string("Project"); });
}

void MSPDIMappingTrial::mapResource(const MSPCXMLNode& resource) {
    const auto trial = [&] {
        auto failure = failureOf([&] {
            MSPITellingSubject("Resource", resource, [&] {
                const MSPCFields fields(resource);
                Error error;
                if (fields.intValue("UID", &error) == 0 || error) {
                    return;
                }
                MSPIResourceMapper mapper(_context, _userDataTOCElements, _mspResourceMaxId);
                static_cast<void>(mapper.newResourceFromMSPResource(fields));
            });
        });
        // They would be copied from what is no longer there.
        _context.calendarSchedules().clear();
        return failure;
    };
    const auto owners = [&](const MSPDIMappingFailure& failure) {
        std::vector<MSPCXMLNode> found;
        for (const auto& calendar : _patient.items("Calendars", "Calendar")) {
            if (failure.subject.starts_with(MSPISubjectOf("Calendar", calendar))) {
                found.push_back(calendar);
            }
        }
        return found.empty() ? std::vector{resource} : found;
    };
    mend(trial, owners, [&] { return MSPISubjectOf("Resource", resource); });
}

void MSPDIMappingTrial::readAssignment(const MSPCXMLNode& assignment) {
    const auto trial = [&] { return failureOf([&] { static_cast<void>(intValueForXQuery(assignment, "TaskUID")); }); };
    mend(
        trial, [&](const auto&) { return std::vector{assignment}; },
        [&] { return MSPISubjectOfAssignment(assignment); });
}

MSPDIMappingTrial::Mapped MSPDIMappingTrial::mapped(const MSPCXMLNode& task) {
    const MSPCFields fields(task);
    Mapped facts;
    facts.level = fields.intValue("OutlineLevel");
    facts.isNull = fields.boolValue("IsNull");
    if (facts.isNull) {
        return facts;
    }
    const bool isScheduledFromStart = !_context.mspStartDate().empty();
    MSPITaskMapper mapper(_context, isScheduledFromStart, _userDataTOCElements, _mspTaskMaxId);
    const auto element = mapper.newTaskFromMSPTask(fields);
    facts.id = element.node().attribute("id").stringValue();
    facts.uid = mapper.mspTaskUID();
    facts.isSummary = fields.boolValue("Summary");
    return facts;
}

void MSPDIMappingTrial::mapTask(const MSPCXMLNode& task) {
    const auto subject = [&task] { return MSPISubjectOf("Task", task); };
    Mapped facts;
    const auto trial = [&] { return failureOf([&] { facts = mapped(task); }); };
    if (!mend(
            trial, [&](const auto&) { return std::vector{task}; }, subject) ||
        facts.isNull || facts.uid == MSPCTaskUID{0}) {
        return;
    }
    const bool hasPieces = splits(task, facts, subject);
    _tree->record(facts.id, {task, _groupType.node(), hasPieces ? MSPCXMLNode() : _groupType.node(), facts.level,
                             facts.isSummary});
    if (!facts.isSummary || hasPieces) {
        const auto take = [&] {
            return failureOf([&] { static_cast<void>(_pool->takeAssignmentsOfTask(facts.uid, true)); });
        };
        mend(
            take, [&](const auto&) { return assignmentsOf(facts.uid); }, subject);
    }
    link(facts);
}

std::vector<MSPCXMLNode> MSPDIMappingTrial::assignmentsOf(MSPCTaskUID taskUID) {
    const auto found = _context.index().assignmentsByTaskUID().nodesWithKey(taskUID);
    return {found.begin(), found.end()};
}

// Whether the task is split. Where its pieces cannot be made and no value is to blame, its timephased data are.
bool MSPDIMappingTrial::splits(const MSPCXMLNode& task, const Mapped& facts, const Subject& subject) {
    bool hasPieces = false;
    const auto trial = [&] {
        return failureOf([&] {
            const MSPCFields fields(task);
            MSPITimephasedDataMapper mapper(_context);
            hasPieces = !mapper.newSplitTasksFromMspdiTask(fields).empty();
        });
    };
    const auto owners = [&](const MSPDIMappingFailure& failure) {
        // Without a word of why, one record less would only hide that they do not fit together.
        return failure.reason.empty() && failure.subject.empty() ? std::vector<MSPCXMLNode>()
                                                                 : assignmentsOf(facts.uid);
    };
    const bool hasRecords = !_context.index().timephasedAssignmentsByTaskUID().nodesWithKey(facts.uid).empty();
    if (!hasRecords || _withoutPieces.contains(facts.uid)) {
        return false;
    }
    if (mend(trial, owners, subject)) {
        return hasPieces;
    }
    const auto failure = trial();
    if (failure && !isBound(*failure) && _patient.allows(splitPieces)) {
        removeTimephasedData(facts.uid, splitPieces, subject());
    }
    return false;
}

// A parent that is split has no type left that could say that it is a group.
void MSPDIMappingTrial::link(const Mapped& facts) {
    const auto parent = facts.level == 1 ? std::nullopt : _tree->parentForLevel(facts.level);
    if (!parent) {
        return;
    }
    const auto failure = failureOf([&] { static_cast<void>(_tree->groupOfParent(*parent)); });
    const MSPCTaskUID uid{MSPDIIntegerIn(parent->mspTask, "UID").value_or(0)};
    if (failure && _patient.allows(splitRollUp) && !_withoutPieces.contains(uid)) {
        removeTimephasedData(uid, splitRollUp, MSPISubjectOf("Task", parent->mspTask));
    }
}

// Those that count in this scenario.
void MSPDIMappingTrial::removeTimephasedData(MSPCTaskUID taskUID, std::string_view step, const std::string& subject) {
    for (const auto& assignment : assignmentsOf(taskUID)) {
        for (const auto& record : assignment.childElements("TimephasedData")) {
            const auto type = MSPDIIntegerIn(record, "Type");
            if (!type || MSPIIsTimephasedTypeOfScenario(*type, _context.baselineNumber())) {
                _patient.note(step, fmt::format("{}: {} to {}", subject, MSPDITextIn(record, "Start").value_or(""),
                                                MSPDITextIn(record, "Finish").value_or("")));
                _patient.remove(record);
            }
        }
    }
    _withoutPieces.insert(taskUID);
}
