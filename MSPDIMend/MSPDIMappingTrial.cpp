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

bool isBound(const MSPDIMappingFailure& failure) {
    return MSPDIIsBeyondMeasure(failure.reason);
}

std::string placeOf(const std::string& subject, const MSPCXMLNode& leaf) {
    return fmt::format("{}: {} '{}'", subject, leaf.name(), leaf.stringValue());
}

// The calendar that a resource names; empty where it names none.
MSPCXMLNode calendarOf(const MSPCXMLNode& resource, MSPIProjectIndex& index) {
    const auto uid = MSPDIIntegerIn(resource, "CalendarUID");
    return uid ? index.calendarsByUID().singleNodeWithKey(MSPCCalendarUID{*uid}) : MSPCXMLNode();
}

// What tells of a leaf by the failure, else by the element that is mapped.
auto subjectOf(std::string_view kind, const MSPCXMLNode& element) {
    return [kind, element](const MSPCXMLNode&, const MSPDIMappingFailure& failure) {
        return failure.subject.empty() ? MSPISubjectOf(kind, element) : failure.subject;
    };
}

std::string subjectOfAssignments(const MSPCXMLNode& leaf, const MSPDIMappingFailure& /*failure*/) {
    auto assignment = leaf.parent();
    while (assignment && assignment.name() != "Assignment") {
        assignment = assignment.parent();
    }
    return MSPISubjectOfAssignment(assignment);
}

bool holdsElements(const MSPCXMLNode& element) {
    auto child = element.firstChild();
    while (child && !child.isElement()) {
        child = child.nextSibling();
    }
    return static_cast<bool>(child);
}

// Elements that hold others, where they are many below one parent.
void collectPieces(const MSPCXMLNode& parent, std::vector<MSPCXMLNode>& pieces) {
    constexpr std::size_t few = 50;
    std::vector<MSPCXMLNode> found;
    for (const auto& [name, child] : parent.childElements()) {
        if (holdsElements(child) && name != "Baseline") {
            found.push_back(child);
        }
    }
    if (found.size() > few) {
        pieces.insert(pieces.end(), found.begin(), found.end());
        return;
    }
    for (const auto& child : found) {
        collectPieces(child, pieces);
    }
}

}  // namespace

MSPDIMappingTrial::MSPDIMappingTrial(MSPDIPatient& patient, MSPCServices services, std::int32_t baselineNumber,
                                     const MSPCXMLDocument& kdzxTemplate, MSPIGrowthBounds& grown)
    : _patient(patient), _services(std::move(services)), _context(patient.plan(), _services), _grown(grown) {
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
        if (_isBeyondMeasure) {
            return;
        }
        mapResource(resource);
    }
    const auto tasks = _patient.items("Tasks", "Task");
    if (tasks.empty()) {
        return;
    }
    for (const auto& assignment : _patient.items("Assignments", "Assignment")) {
        readUID(assignment, "TaskUID");
    }
    _tree = std::make_unique<MSPITaskTree>(tasks.size(), _context.isSavedBy2007OrLater());
    for (const auto& task : tasks) {
        if (_isBeyondMeasure) {
            return;
        }
        mapTask(task);
    }
}

// Each trial finds everything as an import does; what the calendars of other scenarios have grown to counts in all.
template <typename Map>
std::optional<MSPDIMappingFailure> MSPDIMappingTrial::failureOf(const Map& map) {
    _context.growthBounds() = _grown;
    _context.assignmentLooks() = MSPIAssignmentLooks();
    _context.stretchCache() = MSPIStretchCache();
    try {
        map();
    } catch (const MSPCException& exception) {
        return MSPDIMappingFailure{exception.reason(), exception.userInfo()};
    }
    return std::nullopt;
}

bool MSPDIMappingTrial::mend(const MSPDITrial& trial, const Owners& owners, const Subject& subject) {
    return mendFrom(trial(), trial, owners, subject);
}

bool MSPDIMappingTrial::mendFrom(std::optional<MSPDIMappingFailure> failure, const MSPDITrial& trial,
                                 const Owners& owners, const Subject& subject) {
    if (failure && !isBound(*failure) && mendPieceByPiece(owners(*failure), trial, subject)) {
        failure = trial();
    }
    const bool isMended = mendAtOnce(std::move(failure), trial, owners, subject);
    _takenOut.reset();
    return isMended;
}

// Where an object has thousands of pieces, trying all of them for each that is to blame would take the square of that.
bool MSPDIMappingTrial::mendPieceByPiece(const std::vector<MSPCXMLNode>& owners, const MSPDITrial& trial,
                                         const Subject& subject) {
    std::vector<MSPCXMLNode> pieces;
    for (const auto& owner : owners) {
        collectPieces(owner, pieces);
    }
    MSPDITakenOut takenOut;
    for (const auto& piece : pieces) {
        takenOut.take(piece);
    }
    // What fails without any of them is not theirs.
    if (!pieces.empty() && !mendAtOnce(
                               trial(), trial, [&](const auto&) { return owners; }, subject)) {
        return false;
    }
    for (std::size_t number = 0; number < pieces.size(); ++number) {
        takenOut.showing(number, [&](const MSPCXMLNode& piece) {
            mendAtOnce(
                trial(), trial, [&](const auto&) { return std::vector{piece}; }, subject);
            _takenOut.reset();
        });
    }
    return !pieces.empty();
}

bool MSPDIMappingTrial::mendAtOnce(std::optional<MSPDIMappingFailure> failure, const MSPDITrial& trial,
                                   const Owners& owners, const Subject& subject) {
    while (failure && !isBound(*failure)) {
        // What a definition says is read when the first value of its field is.
        const bool isOfDefinition = failure->reason.find("<CFType>") != std::string::npos;
        const auto suspects = isOfDefinition ? definitionsFor(owners(*failure)) : owners(*failure);
        auto culprit = culpritAmong(suspects, *failure, trial);
        for (const auto& leaf : culprit.leaves) {
            _knownCulprits.learn(leaf, failure->reason, _context.conversions());
        }
        const bool isTakenOut =
            !culprit.leaves.empty() && std::all_of(culprit.leaves.begin(), culprit.leaves.end(), [&](const auto& leaf) {
                return takeOut(leaf, [&] { return subject(leaf, *failure); });
            });
        if (!isTakenOut) {
            break;
        }
        failure = std::move(culprit.rest);
    }
    _isBeyondMeasure = _isBeyondMeasure || (failure && isBound(*failure));
    return !failure;
}

MSPDICulprit MSPDIMappingTrial::culpritAmong(const std::vector<MSPCXMLNode>& suspects,
                                             const MSPDIMappingFailure& failure, const MSPDITrial& trial) {
    const bool isToldWhy = !failure.reason.empty();
    if (isToldWhy) {
        if (auto known = MSPDICulpritNamed(_namesToBlame, suspects, failure, trial); !known.leaves.empty()) {
            return known;
        }
    }
    auto culprit = MSPDICulpritAmong(suspects, failure, trial, [this](const std::string& text) {
        const auto of = failureOf([&] { static_cast<void>(_context.conversions().mspdiToMppDateTime(text)); });
        return of && of->reason.empty();
    });
    constexpr std::size_t mostNames = 8;
    if (isToldWhy && !culprit.leaves.empty() && _namesToBlame.size() < mostNames) {
        const std::string name(culprit.leaves.front().name());
        if (std::find(_namesToBlame.begin(), _namesToBlame.end(), name) == _namesToBlame.end()) {
            _namesToBlame.push_back(name);
        }
    }
    return culprit;
}

// The definitions of the fields that some elements have, or are.
std::vector<MSPCXMLNode> MSPDIMappingTrial::definitionsFor(const std::vector<MSPCXMLNode>& owners) {
    if (_definitions.empty()) {
        for (const auto& definition : _patient.items("ExtendedAttributes", "ExtendedAttribute")) {
            _definitions[MSPDITextIn(definition, "FieldID").value_or("")].push_back(definition);
        }
    }
    std::vector<MSPCXMLNode> found;
    const auto addThoseOf = [&](const MSPCXMLNode& field) {
        if (const auto of = _definitions.find(MSPDITextIn(field, "FieldID").value_or("")); of != _definitions.end()) {
            found.insert(found.end(), of->second.begin(), of->second.end());
        }
    };
    for (const auto& owner : owners) {
        addThoseOf(owner);
        for (const auto& field : owner.childElements("ExtendedAttribute")) {
            addThoseOf(field);
        }
    }
    return found;
}

// A leaf that shows a value of a baseline stays; the value is to go from the baseline.
bool MSPDIMappingTrial::takeOut(MSPCXMLNode leaf, const std::function<std::string()>& subject) {
    if (!_patient.allows(unreadableValue) || !_patient.isChangeable(leaf)) {
        return false;
    }
    if (!_context.isBaselineScenario()) {
        _patient.note(unreadableValue, [&] { return placeOf(subject(), leaf); });
        _patient.remove(leaf);
        return true;
    }
    const auto query = fmt::format("Baseline[Number={}]", _context.baselineNumber());
    const auto baseline = singleObjectForXQuery(leaf.parent(), query);
    if (!baseline || !baseline.firstChildElement(leaf.name())) {
        return false;
    }
    _patient.note(unreadableValue,
                  [&] { return placeOf(fmt::format("{}, Baseline {}", subject(), _context.baselineNumber()), leaf); });
    _condemned.emplace_back(baseline, std::string(leaf.name()));
    if (!_takenOut) {
        _takenOut.emplace();
    }
    _takenOut->take(leaf);
    return true;
}

bool MSPDIMappingTrial::mapProject() {
    const auto project = _patient.project();
    // Only the project itself is mapped.
    const MSPDITakenOut lists(project, {"Tasks", "Resources", "Assignments"});
    const auto trial = [&] {
        return failureOf([&] {
            _context.calendarSchedules().clear();
            MSPIProjectMapper mapper(_context, _mspTaskMaxId, _mspResourceMaxId, _userDataTOCElements);
            _scenario = mapper.newScenarioFromMSPProject(project);
        });
    };
    const auto calendar = MSPDITakenCalendar(_patient);
    const auto owners = [&](const MSPDIMappingFailure& failure) {
        std::vector<MSPCXMLNode> found;
        for (const auto& [name, child] : project.childElements()) {
            if (name != "Calendars" && name != "ExtendedAttributes") {
                found.push_back(child);
            }
        }
        if (failure.subject.starts_with(MSPISubjectOf("Calendar", calendar))) {
            found.push_back(calendar);
        }
        return found;
    };
    const bool isMapped = mend(trial, owners, [](const auto&, const auto& failure) {
        return failure.subject.empty() ? std::string("Project") : failure.subject;
    });
    if (isMapped) {
        _grown = _context.growthBounds();
    }
    return isMapped;
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
        const auto calendar = calendarOf(resource, _context.index());
        return std::vector{calendar && failure.subject.starts_with(MSPISubjectOf("Calendar", calendar)) ? calendar
                                                                                                        : resource};
    };
    mend(trial, owners, subjectOf("Resource", resource));
}

void MSPDIMappingTrial::readUID(const MSPCXMLNode& assignment, std::string_view name) {
    const auto trial = [&] {
        return failureOf([&] {
            Error error;
            static_cast<void>(intValueForXQuery(assignment, name, &error));
        });
    };
    mend(
        trial, [&](const auto&) { return std::vector{assignment}; }, subjectOfAssignments);
}

MSPDIMappingTrial::Mapped MSPDIMappingTrial::mapped(const MSPCXMLNode& task, std::vector<std::string_view>* missing) {
    MSPCFields fields(task);
    if (missing != nullptr) {
        fields.tellMissing(*missing);
    }
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

// What was to blame in other tasks is out of the way before the first try, which spares a try for each of them. That it
// stands in the way here, too, shows in that the mapper asks for it: then it is taken out, in the order of the asking.
std::optional<MSPDIMappingFailure> MSPDIMappingTrial::firstFailureOf(const MSPCXMLNode& task, Mapped& facts,
                                                                     const MSPDITrial& trial) {
    const auto suspects = _knownCulprits.among(task, _context.conversions());
    if (suspects.empty()) {
        return trial();
    }
    std::vector<std::string_view> missing;
    std::optional<MSPDIMappingFailure> failure;
    {
        MSPDITakenOut takenOut;
        for (const auto& suspect : suspects) {
            takenOut.take(suspect.leaf);
        }
        failure = failureOf([&] { facts = mapped(task, &missing); });
    }
    const auto culprits = MSPDIKnownCulprits::askedFor(suspects, missing);
    const bool isTakenOut = std::all_of(culprits.begin(), culprits.end(), [&](const auto& leaf) {
        return takeOut(leaf, [&] { return MSPISubjectOf("Task", task); });
    });
    return isTakenOut && culprits.size() == suspects.size() ? failure : trial();
}

void MSPDIMappingTrial::mapTask(const MSPCXMLNode& task) {
    Mapped facts;
    const auto trial = [&] { return failureOf([&] { facts = mapped(task); }); };
    if (!mendFrom(
            firstFailureOf(task, facts, trial), trial, [&](const auto&) { return std::vector{task}; },
            subjectOf("Task", task)) ||
        facts.isNull || facts.uid == MSPCTaskUID{0}) {
        return;
    }
    const bool hasPieces = splits(task, facts);
    _tree->record(facts.id, {task, _groupType.node(), hasPieces ? MSPCXMLNode() : _groupType.node(), facts.level,
                             facts.isSummary});
    if (!facts.isSummary || hasPieces) {
        for (const auto& assignment : assignmentsOf(facts.uid)) {
            readUID(assignment, "ResourceUID");
        }
    }
    link(facts);
}

std::vector<MSPCXMLNode> MSPDIMappingTrial::assignmentsOf(MSPCTaskUID taskUID) {
    const auto found = _context.index().assignmentsByTaskUID().nodesWithKey(taskUID);
    return {found.begin(), found.end()};
}

// Whether the task is split. Where its pieces cannot be made and no value is to blame, its timephased data are.
bool MSPDIMappingTrial::splits(const MSPCXMLNode& task, const Mapped& facts) {
    bool hasPieces = false;
    const auto trial = [&] {
        // A failure names the task and the resource of the assignment, which it would look for among all of them.
        const MSPDITakenOut lists(_patient.project(), {"Tasks", "Resources"});
        return failureOf([&] {
            const MSPCFields fields(task);
            MSPITimephasedDataMapper mapper(_context);
            hasPieces = !mapper.newSplitTasksFromMspdiTask(fields).empty();
        });
    };
    const auto owners = [&](const MSPDIMappingFailure& failure) {
        // Where the failure tells no reason, one record less would only hide that they do not fit together.
        return failure.reason.empty() && failure.subject.empty() ? std::vector<MSPCXMLNode>()
                                                                 : assignmentsOf(facts.uid);
    };
    const bool hasRecords = !_context.index().timephasedAssignmentsByTaskUID().nodesWithKey(facts.uid).empty();
    if (!hasRecords || _withoutPieces.contains(facts.uid)) {
        return false;
    }
    if (mend(trial, owners, subjectOfAssignments)) {
        return hasPieces;
    }
    const auto failure = trial();
    if (failure && !isBound(*failure) && _patient.allows(splitPieces)) {
        removeTimephasedData(task, facts.uid, splitPieces);
    }
    return false;
}

// A parent that is split has no type left that could say that it is a group.
void MSPDIMappingTrial::link(const Mapped& facts) {
    const auto parent = MSPITaskTree::isTopLevel(facts.level) ? std::nullopt : _tree->parentForLevel(facts.level);
    if (!parent) {
        return;
    }
    const auto failure = failureOf([&] { static_cast<void>(_tree->groupOfParent(*parent)); });
    const MSPCTaskUID uid{MSPDIIntegerIn(parent->mspTask, "UID").value_or(0)};
    if (failure && _patient.allows(splitRollUp) && !_withoutPieces.contains(uid)) {
        removeTimephasedData(parent->mspTask, uid, splitRollUp);
    }
}

// Those that count in this scenario.
void MSPDIMappingTrial::removeTimephasedData(const MSPCXMLNode& task, MSPCTaskUID taskUID, std::string_view step) {
    for (const auto& assignment : assignmentsOf(taskUID)) {
        for (const auto& record : assignment.childElements("TimephasedData")) {
            const auto type = MSPDIIntegerIn(record, "Type");
            if (!type || MSPIIsTimephasedTypeOfScenario(*type, _context.baselineNumber())) {
                _patient.note(step, [&] {
                    return fmt::format("{}: {} to {}", MSPISubjectOf("Task", task),
                                       MSPDITextIn(record, "Start").value_or(""),
                                       MSPDITextIn(record, "Finish").value_or(""));
                });
                _patient.remove(record);
            }
        }
    }
    _withoutPieces.insert(taskUID);
}
