#include "MSPIProjectMapper.h"

#include <fmt/format.h>

#include <map>

#include "MSPCClock.h"
#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPCISO8601Text.h"
#include "MSPCLog.h"
#include "MSPCPath.h"
#include "MSPIAssignmentMapper.h"
#include "MSPICalendarMapper.h"
#include "MSPIKdzxNamespace.h"
#include "MSPIResourceMapper.h"
#include "MSPIStandardCalendar.h"
#include "MSPISubject.h"

namespace {

// The default namespace of the template's root, where it names one.
std::string targetNamespaceOf(const MSPCXMLNode& templateRoot) {
    for (const auto& declaration : templateRoot.namespaceDeclarations()) {
        if (declaration.prefix.empty()) {
            return std::string(declaration.uri);
        }
    }
    return std::string(MSPIKdzxNamespace);
}

// Declares on an element the prefixes that are used in it and were declared around the one it is a copy of. The
// scenario's root declares one namespace only.
void declarePrefixes(const std::map<std::string_view, std::string_view>& urisByPrefix, MSPCXMLNode copy) {
    for (const auto prefix : copy.usedPrefixes()) {
        const auto declaration = fmt::format("xmlns:{}", prefix);
        if (const auto found = urisByPrefix.find(prefix); found != urisByPrefix.end() && !copy.attribute(declaration)) {
            copy.setAttribute(declaration, found->second);
        }
    }
}

// A file-name extension holds no blank: "Release 1.5 final" has none.
std::string withoutFileExtension(const std::string& name) {
    const bool holdsBlank = pathExtension(name).find_first_of(" \t\r\n") != std::string::npos;
    return holdsBlank ? name : pathByDeletingExtension(name);
}

}  // namespace

MSPIProjectMapper::MSPIProjectMapper(MSPIMappingContext& mapper, std::int64_t& mspTaskMaxId,
                                     std::int64_t& mspResourceMaxId, MSPIUserDataTOCElements& userDataTOCElements)
    : MSPIObjectMapperBase(mapper),
      _mspTaskMaxId(mspTaskMaxId),
      _mspResourceMaxId(mspResourceMaxId),
      _userDataTOCElements(userDataTOCElements) {
}

MSPCXMLNewElement MSPIProjectMapper::newScenarioFromMSPProject(const MSPCXMLNode& mspProject) {
    auto newScenario = newScenarioElement();
    const auto scenario = newScenario.node();
    findProjectName(mspProject);
    _mapper.setIdMapper(MSPIIdMapper());
    addProjectDate(mspProject, scenario);
    addGranularity(mspProject, scenario);

    addComment(scenario, "  Resources  ");
    const auto topGroupResource = addTopResourceToScenario(mspProject, scenario);
    const auto mspResources = nodesForXQuery(mspProject, "Resources/Resource");
    _mapper.log().log("Mapping {} Resources ...", mspResources.size());
    addMspResourcesToScenarioTopGroupResource(mspResources, scenario, topGroupResource);

    addComment(scenario, "  Tasks  ");
    const auto topGroupTask = addTopTaskToScenario(scenario);
    const auto mspTasks = nodesForXQuery(mspProject, "Tasks/Task");
    _mapper.log().log("Mapping {} Tasks ...", mspTasks.size());
    if (!mspTasks.empty()) {
        buildMspTasksMspAssignmentsScenarioTopGroupTask(mspTasks, _mapper.index().assignmentKeys(), scenario,
                                                        topGroupTask);
    }

    addComment(scenario, "  Critical Path  ");
    addCriticalPath(scenario);
    return newScenario;
}

MSPCXMLNewElement MSPIProjectMapper::newScenarioElement() const {
    const auto templateRoot = _mapper.kdzxTemplateRoot();
    if (templateRoot.name() != "scenario") {
        throw MSPCInternalInconsistency(
            fmt::format("*** ERROR: Invalid root element of template: '{}'. Must be 'scenario'.", templateRoot.name()));
    }
    auto scenario = _mapper.newElement("scenario");
    setAttributeWithNameStringValue(scenario.node(), "xmlns", targetNamespaceOf(templateRoot));
    return scenario;
}

void MSPIProjectMapper::findProjectName(const MSPCXMLNode& mspProject) {
    if (auto title = stringValueForXQuery(mspProject, "Title")) {
        _mspProjectName = std::move(*title);
    } else if (const auto name = stringValueForXQuery(mspProject, "Name")) {
        _mspProjectName = withoutFileExtension(*name);
    } else {
        _mspProjectName = _mapper.importedProjectName();
    }
}

void MSPIProjectMapper::addProjectDate(const MSPCXMLNode& mspProject, const MSPCXMLNode& scenario) {
    Error error;
    const bool scheduleFromStart = boolValueForXQuery(mspProject, "ScheduleFromStart", &error);
    // Deliberate: where the element is missing this mapper schedules from the start while the others are told the
    // getter's plain answer.
    _mspScheduleFromStart = error ? true : scheduleFromStart;
    _mapper.setMspScheduleFromStart(scheduleFromStart);
    if (!_mspScheduleFromStart) {
        setAttributeWithNameStringValue(scenario, "fixed-end", "yes");
    }
    const auto date = projectDate(mspProject);
    if (date.empty()) {
        throw MSPCInternalInconsistency(_mspScheduleFromStart
                                            ? "Failed to find start date for the project scheduled from start."
                                            : "Failed to find finish date for the project scheduled from end.");
    }
    _mspScheduleFromStart ? _mapper.setMspStartDate(date) : _mapper.setMspFinishDate(date);
    if (const auto kdzxDate = _mapper.conversions().mspdiToKdzxDateTime(date)) {
        addChildElementWithNameStringValue(scenario, _mspScheduleFromStart ? "start-date" : "end-date", *kdzxDate);
    }
}

// The project's own date, or the first or last second of today on the machine's clocks where it has none.
std::string MSPIProjectMapper::projectDate(const MSPCXMLNode& mspProject) const {
    if (auto date = stringValueForXQuery(mspProject, _mspScheduleFromStart ? "StartDate" : "FinishDate")) {
        return std::move(*date);
    }
    // Written out, not converted back from its form in the document: that has the summer offset twice in summer, and
    // the day before would come back.
    const auto now = _mapper.services().clock.now();
    const auto today = stringFromComponentsUnitFlags(
        MSPCDateComponents(_mapper.conversions().gregorian().fieldsOf(now)), MSPCUnit::Date);
    return today.value_or("") + (_mspScheduleFromStart ? "T00:00:00" : "T23:59:59");
}

// MSPDI work formats: 1 minutes, 2 hours, 3 days, 4 weeks, 5 months.
void MSPIProjectMapper::addGranularity(const MSPCXMLNode& mspProject, const MSPCXMLNode& scenario) const {
    Error error;
    const auto workFormat = intValueForXQuery(mspProject, "WorkFormat", &error);
    if (error) {
        return;
    }
    if (workFormat >= 3 && workFormat <= 5) {
        addChildElementWithNameStringValue(scenario, "granularity", "days");
    } else if (workFormat == 2) {
        addChildElementWithNameStringValue(scenario, "granularity", "hours");
    }
}

// The two group types differ in case on purpose: "Group" for resources, "group" for tasks.
MSPCXMLNode MSPIProjectMapper::addTopResourceToScenario(const MSPCXMLNode& mspProject, MSPCXMLNode scenario) {
    setAttributeWithNameStringValue(addChildElementWithName(scenario, "top-resource"), "idref", "r-1");
    auto group = _mapper.newElement("resource");
    auto groupNode = group.node();
    setAttributeWithNameStringValue(groupNode, "id", "r-1");
    addChildElementWithNameStringValue(groupNode, "type", "Group");

    const auto calendar = MSPIStandardCalendar(mspProject);
    if (!calendar) {
        throw MSPCInternalInconsistency("MS Project 'Standard' Calendar not found.");
    }
    MSPITellingSubject("Calendar", calendar, [&] { addProjectSchedule(calendar, groupNode); });
    scenario.appendChild(std::move(group));
    return groupNode;
}

void MSPIProjectMapper::addProjectSchedule(const MSPCXMLNode& calendar, MSPCXMLNode topGroupResource) {
    if (!boolValueForXQuery(calendar, "IsBaseCalendar")) {
        throw MSPCInternalInconsistency("MSPDI 'Standard' Calendar is not a base calendar.");
    }
    Error error;
    const auto calendarUID = intValueForXQuery(calendar, "UID", &error);
    _mapper.setMspStandardCalendarUID(MSPCCalendarUID{error ? -1 : calendarUID});

    addComment(topGroupResource, "  Project Schedule  ");
    const auto schedule =
        topGroupResource.appendChild(MSPICalendarMapper(_mapper).newScheduleFromMSPCalendar(calendar));
    _mapper.setScheduleCalendar(MSPEScheduleCalendar(_mapper.conversions().gregorian(), schedule));
}

void MSPIProjectMapper::addMspResourcesToScenarioTopGroupResource(std::span<const MSPCXMLNode> mspResources,
                                                                  MSPCXMLNode scenario,
                                                                  const MSPCXMLNode& topGroupResource) {
    for (const auto& mspResource : mspResources) {
        MSPITellingSubject("Resource", mspResource, [&] { mapResource(mspResource, scenario, topGroupResource); });
    }
}

void MSPIProjectMapper::mapResource(const MSPCXMLNode& mspResource, MSPCXMLNode scenario,
                                    const MSPCXMLNode& topGroupResource) {
    checkNode(mspResource, "Resource");
    const MSPCFields fields(mspResource);
    Error error;
    const auto uid = fields.intValue("UID", &error);
    // MSPDI's resource 0 stands for "nobody"; one with several UIDs cannot be told from others.
    if (error || uid == 0) {
        return;
    }
    MSPIResourceMapper resourceMapper(_mapper, _userDataTOCElements, _mspResourceMaxId);
    const auto resource = scenario.appendChild(resourceMapper.newResourceFromMSPResource(fields));
    _userDataChanged = _userDataChanged || resourceMapper.userDataChanged();
    setAttributeWithNameStringValue(addChildElementWithName(topGroupResource, "child-resource"), "idref",
                                    resource.attribute("id").stringValue());
}

MSPCXMLNode MSPIProjectMapper::addTopTaskToScenario(MSPCXMLNode scenario) const {
    setAttributeWithNameStringValue(addChildElementWithName(scenario, "top-task"), "idref", "t-1");
    const auto group = addChildElementWithName(scenario, "task");
    setAttributeWithNameStringValue(group, "id", "t-1");
    addChildElementWithNameStringValue(group, "type", "group");
    return group;
}

void MSPIProjectMapper::addCriticalPath(MSPCXMLNode scenario) const {
    const auto templateRoot = _mapper.kdzxTemplateRoot();
    std::map<std::string_view, std::string_view> urisByPrefix;
    for (const auto& [prefix, uri] : templateRoot.namespaceDeclarations()) {
        urisByPrefix.emplace(prefix, uri);
    }
    for (const auto& criticalPath : nodesForXQuery(templateRoot, "critical-path")) {
        declarePrefixes(urisByPrefix, scenario.appendChild(scenario.newCopyOf(criticalPath)));
    }
}
