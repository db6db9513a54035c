#include "MSPDIPlanFacts.h"

#include <algorithm>
#include <cmath>

#include "MSPCClock.h"
#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPCPath.h"
#include "MSPCTextScanner.h"
#include "MSPCXPathNumber.h"
#include "MSPDIValues.h"
#include "MSPICalendarMapper.h"
#include "MSPIResourceMapper.h"
#include "MSPIStandardCalendar.h"
#include "MSPITaskTree.h"
#include "MSPITimephasedDataMapper.h"

namespace {

constexpr int BaselineCount = MSPIBaselineCount;

// Where what is kept for each scenario has that of one; the actual one comes first.
std::size_t slotOf(int scenario) {
    const int slot = scenario - MSPDIPlanFacts::Actual;
    return static_cast<std::size_t>(slot);
}

// A UID as look-ups by number see it: their numbers are floating ones, in which very large UIDs fall together. None for
// a number that is no whole one.
template <MSPCUID UID>
std::optional<UID> lookedUp(double number) {
    constexpr double end = 9223372036854775808.0;  // of what an integer can be
    const bool isWhole = number >= -end && number < end && std::trunc(number) == number;
    return isWhole ? std::optional(UID{static_cast<std::int64_t>(number)}) : std::nullopt;
}

template <MSPCUID UID>
std::optional<UID> lookedUp(UID uid) {
    return lookedUp<UID>(static_cast<double>(MSPCNumberOf(uid)));
}

// The UIDs of all children of that name, each once, as look-ups see them.
template <MSPCUID UID>
std::vector<UID> uidsOf(const MSPCXMLNode& element, std::string_view name) {
    std::vector<UID> uids;
    std::string buffer;
    for (auto child = element.firstChildElement(name); child; child = child.nextSiblingElement(name)) {
        const auto number = xpathNumber(child.stringValue(buffer));
        if (const auto uid = number ? lookedUp<UID>(*number) : std::nullopt) {
            uids.push_back(*uid);
        }
    }
    std::sort(uids.begin(), uids.end());
    uids.erase(std::unique(uids.begin(), uids.end()), uids.end());
    return uids;
}

template <MSPCUID UID>
std::optional<UID> uidFrom(std::optional<std::int64_t> number) {
    return number ? std::optional(UID{*number}) : std::nullopt;
}

template <MSPCUID UID>
std::optional<std::size_t> positionOf(UID uid, const std::map<UID, std::size_t>& positions) {
    const auto found = positions.find(uid);
    return found == positions.end() ? std::nullopt : std::optional(found->second);
}

// False for a type that the plan is refused for.
bool isReadAsMaterial(const MSPCFields& resource, bool isSavedBy2007OrLater) {
    try {
        return MSPIResourceMapper::kindOf(resource, isSavedBy2007OrLater) == MSPIResourceMapper::Kind::Material;
    } catch (const MSPCException&) {
        return false;
    }
}

std::vector<std::string> startsOf(const MSPCXMLNode& exception) {
    std::vector<std::string> starts;
    for (const auto& period : nodesForXQuery(exception, "TimePeriod")) {
        starts.push_back(textForXQuery(period, "FromDate").textOrEmpty());
    }
    return starts;
}

}  // namespace

MSPDIPlanFacts::MSPDIPlanFacts(const MSPCServices& services)
    : isSummerNow(services.timeZone.daylightSavingOffset(services.seasonClock.now()) != 0), _conversions(services) {
}

void MSPDIPlanFacts::readPlan(const MSPCXMLNode& project) {
    readSettings(project);
    readTasks(project);
    readCalendars(project);
    readDefinitions(project);
    readResources(project);
    readAssignments(project);
    hasPlan = true;
}

void MSPDIPlanFacts::readSettings(const MSPCXMLNode& project) {
    const MSPCFields fields(project);
    saveVersion = MSPDISingleInteger(fields, "SaveVersion").value_or(saveVersion);
    hasTitle = static_cast<bool>(fields.singleObject("Title"));
    for (const auto* name : {"Title", "Name"}) {
        const auto projectName = fields.text(name);
        _projectNames.emplace_back(projectName.textOrEmpty());
        _projectNames.push_back(pathByDeletingExtension(projectName.textOrEmpty()));
    }
    isScheduledFromStart =
        fields.lastChild("ScheduleFromStart").count != 1 || MSPDIIsTrueField(fields, "ScheduleFromStart");
    projectDate = instantOf(fields.text(isScheduledFromStart ? "StartDate" : "FinishDate").textOrEmpty());
}

void MSPDIPlanFacts::readTasks(const MSPCXMLNode& project) {
    const auto nodes = nodesForXQuery(project, "Tasks/Task");
    MSPITaskTree tree(2 * nodes.size(), isSavedBy2007OrLater());
    bool hasRoot = false;
    for (const auto& node : nodes) {
        const MSPCFields fields(node);
        const auto uids = uidsOf<MSPCTaskUID>(node, "UID");
        _taskUIDs.insert(_taskUIDs.end(), uids.begin(), uids.end());
        auto& task = tasks.emplace_back();
        const auto uidText = fields.text("UID");
        const auto uid = scanInteger64(uidText.textOrEmpty()).value_or(0);
        task.isSummary = MSPDIIsTrueField(fields, "Summary");
        if (MSPDIIsTrueField(fields, "IsNull")) {
            task.state = MSPDITaskState::EmptyRow;
            continue;
        }
        // Of several the plan is refused for, only one can be the root.
        if (uid == 0 && !hasRoot) {
            hasRoot = true;
            task.state = MSPDITaskState::Root;
            continue;
        }
        const auto [first, isFirst] = _taskByUID.try_emplace(MSPCTaskUID{uid}, tasks.size() - 1);
        if (!isFirst) {
            tasks[first->second].sharesUID = true;
            task.sharesUID = true;
            _tasksAgain[MSPCTaskUID{uid}].push_back(tasks.size() - 1);
        }
        // In this tree only tasks that can be reached have a target.
        const auto level = MSPDILastInteger(fields, "OutlineLevel").value_or(0);
        const auto id = 't' + std::string(uidText.textOrEmpty());
        tree.record(id, {node, {}, {}, level, task.isSummary});
        if (!MSPITaskTree::isTopLevel(level)) {
            const auto parent = tree.parentForLevel(level);
            task.isReachable = parent && parent->kdzxTask;
        }
        if (task.isReachable) {
            tree.record(id, {node, node, {}, level, task.isSummary});
        }
    }
    std::sort(_taskUIDs.begin(), _taskUIDs.end());
}

void MSPDIPlanFacts::readCalendars(const MSPCXMLNode& project) {
    const auto taken = MSPIStandardCalendar(project);
    isCalendarFoundByName = !taken || !hasChildWithNumber(taken, "UID", 1);
    for (const auto& node : nodesForXQuery(project, "Calendars/Calendar")) {
        const auto position = calendars.size();
        auto& calendar = calendars.emplace_back();
        calendar.name = textForXQuery(node, "Name").textOrEmpty();
        calendar.isProjects = node == taken;
        for (const auto& exception : nodesForXQuery(node, "Exceptions/Exception")) {
            if (MSPICalendarMapper::isOverOneRange(exception)) {
                const auto starts = startsOf(exception);
                calendar.exceptionStarts.insert(starts.begin(), starts.end());
            }
        }
        for (const auto uid : uidsOf<MSPCCalendarUID>(node, "UID")) {
            _calendarByUID[uid] = position;
        }
    }
    if (taken) {
        projectCalendarUID = uidFrom<MSPCCalendarUID>(MSPDILastInteger(MSPCFields(taken), "UID"));
    }
}

void MSPDIPlanFacts::readDefinitions(const MSPCXMLNode& project) {
    for (const auto& node : nodesForXQuery(project, "ExtendedAttributes/ExtendedAttribute")) {
        auto& definition = definitions.emplace_back();
        for (const auto* name : {"FieldName", "Alias"}) {
            if (auto text = textForXQuery(node, name)) {
                definition.hasName = true;
                definition.name = std::move(text).textOrEmpty();
            }
        }
        for (auto id = node.firstChildElement("FieldID"); id; id = id.nextSiblingElement("FieldID")) {
            _definitionByFieldID[id.stringValue()] = definitions.size() - 1;
        }
    }
    for (const auto& [fieldID, position] : _definitionByFieldID) {
        definitions[position].isLast = true;
    }
    std::size_t position = 0;
    for (const auto& node : nodesForXQuery(project, "Tasks/Task")) {
        const auto state = tasks[position++].state;
        if (state != MSPDITaskState::EmptyRow) {
            readValues(node, state == MSPDITaskState::Mapped, true);
        }
    }
}

void MSPDIPlanFacts::readValues(const MSPCXMLNode& owner, bool isShown, bool isTask) {
    for (auto value = owner.firstChildElement("ExtendedAttribute"); value;
         value = value.nextSiblingElement("ExtendedAttribute")) {
        const auto fieldID = textForXQuery(value, "FieldID");
        const auto position = fieldID ? definitionOf(fieldID.textOrEmpty()) : std::nullopt;
        if (position && definitions[*position].hasName) {
            auto& definition = definitions[*position];
            const bool arrives = isShown && value.firstChildElement("Value");
            definition.isUsed = true;
            definition.isShown = definition.isShown || arrives;
            auto& isShownByThese = isTask ? definition.isShownByTask : definition.isShownByResource;
            isShownByThese = isShownByThese || arrives;
        }
    }
}

void MSPDIPlanFacts::readResources(const MSPCXMLNode& project) {
    for (const auto& node : nodesForXQuery(project, "Resources/Resource")) {
        const MSPCFields fields(node);
        const auto position = resources.size();
        auto& resource = resources.emplace_back();
        const auto uid = MSPDISingleInteger(fields, "UID");
        resource.isMapped = uid && *uid != 0;
        if (!resource.isMapped) {
            continue;
        }
        const auto [first, isFirst] = _resourceByUID.try_emplace(MSPCResourceUID{*uid}, position);
        if (!isFirst) {
            resources[first->second].sharesUID = true;
            resource.sharesUID = true;
        }
        resource.isCost =
            MSPDIIsTrueField(fields, "IsCostResource") || MSPDISingleInteger(fields, "Type").value_or(1) == 2;
        resource.isMaterial = isReadAsMaterial(fields, isSavedBy2007OrLater());
        if (const auto looked = lookedUp(MSPCResourceUID{*uid}); looked && resource.isMaterial) {
            _materialUIDs.insert(*looked);
        }
        const auto calendarUID = MSPDISingleInteger(fields, "CalendarUID").value_or(-1);
        if (calendarUID >= 0) {
            resource.calendar = calendarWithUID(MSPCCalendarUID{calendarUID});
        }
        if (resource.calendar) {
            calendars[*resource.calendar].resources.push_back(position);
        }
        readValues(node, true, false);
    }
}

void MSPDIPlanFacts::readAssignments(const MSPCXMLNode& project) {
    for (const auto& node : nodesForXQuery(project, "Assignments/Assignment")) {
        const MSPCFields fields(node);
        auto& assignment = assignments.emplace_back();
        auto& share = _shares.emplace_back();
        share.taskUID = uidFrom<MSPCTaskUID>(MSPDILastInteger(fields, "TaskUID"));
        share.resourceUID = uidFrom<MSPCResourceUID>(MSPDILastInteger(fields, "ResourceUID"));
        share.isClear = fields.lastChild("TaskUID").count == 1 && fields.lastChild("ResourceUID").count == 1;
        share.work = MSPDISeconds(fields.text("Work").textOrEmpty());
        const auto resourceUIDs = uidsOf<MSPCResourceUID>(node, "ResourceUID");
        assignment.countsForMaterial = std::any_of(resourceUIDs.begin(), resourceUIDs.end(),
                                                   [this](auto uid) { return _materialUIDs.contains(uid); });
        for (auto record = node.firstChildElement("TimephasedData"); record;
             record = record.nextSiblingElement("TimephasedData")) {
            const auto type = MSPDISingleInteger(record.lastChildElement("Type"));
            for (int scenario = Actual; scenario < BaselineCount; ++scenario) {
                if (!type || MSPIIsTimephasedTypeOfScenario(*type, scenario)) {
                    ++share.records[slotOf(scenario)];
                }
            }
        }
    }
}

void MSPDIPlanFacts::readScenario(MSPIPlan& plan, const MSPIImportInfo& info, const MSPCXMLDocument& scenario,
                                  const MSPCXMLDocument& kdzxTOC) {
    const auto number = info.mspdiBaselineNumber.value_or(Actual);
    if (number == Actual) {
        _hasTOC = true;
        for (const auto& key : nodesForXQuery(kdzxTOC.root(), "project/task-user-data-keys/user-data/key")) {
            _taskKeys.insert(key.stringValue());
        }
        for (const auto& key : nodesForXQuery(kdzxTOC.root(), "project/resource-user-data-keys/user-data/key")) {
            _resourceKeys.insert(key.stringValue());
        }
    }
    std::vector<bool> isThere(tasks.size(), true);
    if (number != Actual) {
        const auto targets = plan.baselines().targets(number);
        const auto firstTask = targets.size() - tasks.size();  // tasks come last
        for (std::size_t position = 0; position < tasks.size(); ++position) {
            isThere[position] = targets[firstTask + position].hasBaseline;
        }
    }
    if (number == Actual) {
        _assignmentsThere.assign(tasks.size(), 0);
    }
    auto target = scenario.root().firstChildElement("task");  // the group of all tasks
    for (std::size_t position = 0; position < tasks.size(); ++position) {
        if (isThere[position] && tasks[position].state == MSPDITaskState::Mapped) {
            target = target.nextSiblingElement("task");
            if (number == Actual) {
                _assignmentsThere[position] = target.lastChildElement("assignment").count;
            }
            if (target.firstChildElement("split")) {
                _splitEnds[{position, number}] = target.firstChildElement("end-date").stringValue();
                tasks[position].splitScenarios |= bitOf(number);
            }
        }
    }
}

// Of tasks with one UID a summary task, or one with several UIDs, leaves the assignments to those behind it; the
// document tells which one took them.
std::optional<std::size_t> MSPDIPlanFacts::takerOf(MSPCTaskUID uid) const {
    const auto first = mappedTask(uid);
    const auto again = _tasksAgain.find(uid);
    if (_assignmentsThere.empty() || again == _tasksAgain.end() || _assignmentsThere[*first] > 0) {
        return first;
    }
    const auto taker = std::find_if(again->second.begin(), again->second.end(),
                                    [this](std::size_t task) { return _assignmentsThere[task] > 0; });
    return taker == again->second.end() ? first : *taker;
}

// An assignment with several tasks or resources is left out of some tasks; the document tells which ones have them all.
std::vector<bool> MSPDIPlanFacts::tasksWithUnclearOnes() const {
    std::vector<std::size_t> clear(tasks.size(), 0);
    for (const auto& share : _shares) {
        const auto task = share.taskUID ? takerOf(*share.taskUID) : std::nullopt;
        if (task && share.isClear && share.resourceUID && MSPCNumberOf(*share.resourceUID) >= 0) {
            ++clear[*task];
        }
    }
    std::vector<bool> haveMore(tasks.size(), true);
    for (std::size_t task = 0; task < _assignmentsThere.size(); ++task) {
        haveMore[task] = _assignmentsThere[task] > clear[task];
    }
    return haveMore;
}

void MSPDIPlanFacts::conclude() {
    std::vector<std::array<std::uint32_t, BaselineCount + 1>> records(tasks.size());
    std::vector<std::optional<std::int64_t>> firstWork(tasks.size());
    const auto hasUnclearOnes = tasksWithUnclearOnes();
    for (std::size_t position = 0; position < assignments.size(); ++position) {
        auto& assignment = assignments[position];
        const auto& share = _shares[position];
        assignment.task = share.taskUID ? takerOf(*share.taskUID) : std::nullopt;
        if (!assignment.task) {
            continue;
        }
        auto& task = tasks[*assignment.task];
        for (std::size_t scenario = 0; scenario <= BaselineCount; ++scenario) {
            records[*assignment.task][scenario] += share.records[scenario];
        }
        assignment.isOfSummary = task.isSummary && task.splitScenarios == 0;
        assignment.arrives = !assignment.isOfSummary && share.resourceUID && MSPCNumberOf(*share.resourceUID) >= 0 &&
                             (share.isClear || hasUnclearOnes[*assignment.task]);
        if (assignment.arrives) {
            auto& work = firstWork[*assignment.task];
            work = task.assignmentCount == 0 ? share.work : work;
            task.hasUnequalShares = task.hasUnequalShares || work != share.work;
            ++task.assignmentCount;
        }
    }
    for (std::size_t position = 0; position < tasks.size(); ++position) {
        for (int scenario = Actual; scenario < BaselineCount; ++scenario) {
            if (records[position][slotOf(scenario)] >= 2) {
                tasks[position].timephasedScenarios |= bitOf(scenario);
            }
        }
    }
    _shares.clear();
}

std::optional<std::size_t> MSPDIPlanFacts::definitionOf(std::string_view fieldID) const {
    const auto found = _definitionByFieldID.find(fieldID);
    return found == _definitionByFieldID.end() ? std::nullopt : std::optional(found->second);
}

std::size_t MSPDIPlanFacts::tasksWithUID(MSPCTaskUID uid) const {
    const auto looked = lookedUp(uid);
    if (!looked) {
        return 0;
    }
    const auto [first, last] = std::equal_range(_taskUIDs.begin(), _taskUIDs.end(), *looked);
    return static_cast<std::size_t>(last - first);
}

std::optional<std::size_t> MSPDIPlanFacts::mappedTask(MSPCTaskUID uid) const {
    return positionOf(uid, _taskByUID);
}

std::optional<std::size_t> MSPDIPlanFacts::mappedResource(MSPCResourceUID uid) const {
    return positionOf(uid, _resourceByUID);
}

std::optional<std::size_t> MSPDIPlanFacts::calendarWithUID(MSPCCalendarUID uid) const {
    const auto looked = lookedUp(uid);
    return looked ? positionOf(*looked, _calendarByUID) : std::nullopt;
}

bool MSPDIPlanFacts::isSplit(std::size_t task, int scenario) const {
    return (tasks[task].splitScenarios & bitOf(scenario)) != 0;
}

std::string_view MSPDIPlanFacts::splitEnd(std::size_t task, int scenario) const {
    const auto found = _splitEnds.find({task, scenario});
    return found == _splitEnds.end() ? std::string_view() : std::string_view(found->second);
}

std::optional<MSPCInstant> MSPDIPlanFacts::instantOf(std::string_view date) const {
    try {
        return _conversions.mspdiToMppDateTime(date);
    } catch (const MSPCException&) {
        return std::nullopt;
    }
}

std::string MSPDIPlanFacts::kdzxDateOf(std::string_view date) const {
    try {
        return _conversions.mspdiToKdzxDateTime(date).value_or("");
    } catch (const MSPCException&) {
        return {};
    }
}

std::optional<std::int64_t> MSPDIPlanFacts::secondsOfDay(std::string_view time) const {
    try {
        return scanInteger64(_conversions.mspdiToKdzxTimeOnly(time).value_or(""));
    } catch (const MSPCException&) {
        return std::nullopt;
    }
}

bool MSPDIPlanFacts::isOtherBaseCalendar(std::string_view uid) const {
    const auto number = scanInteger64(uid).value_or(-1);
    return number >= 0 && MSPCCalendarUID{number} != projectCalendarUID;
}

bool MSPDIPlanFacts::isProjectName(std::string_view text) const {
    return std::find(_projectNames.begin(), _projectNames.end(), text) != _projectNames.end();
}

bool MSPDIPlanFacts::isMissingInTOC(std::string_view field, bool isOfTasks) const {
    return _hasTOC && !(isOfTasks ? _taskKeys : _resourceKeys).contains(field);
}
