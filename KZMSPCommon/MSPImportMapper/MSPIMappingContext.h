#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MSPCServices.h"
#include "MSPCXMLDocument.h"
#include "MSPCXMLNode.h"
#include "MSPEScheduleCalendar.h"
#include "MSPIAssignedUnits.h"
#include "MSPIAssignmentLooks.h"
#include "MSPICalendarSchedules.h"
#include "MSPICustomFields.h"
#include "MSPIGrowthBounds.h"
#include "MSPIIdMapper.h"
#include "MSPIPlan.h"
#include "MSPIProjectIndex.h"
#include "MSPITimephasedSpans.h"
#include "MSPIUtilities.h"

// What the mappers of one scenario share: the plan they read, the scenario document they build, the settings that all
// of them need and the services of the run. `MSPIMapper` is one; tests make a bare one around a snippet of XML. Lives
// as long as the mapping of its scenario; handles into its document must not outlive it.
class MSPIMappingContext {
public:
    // The plan's actual scenario, with save version 9 and no calendar. The plan and the services outlive it.
    MSPIMappingContext(MSPIPlan& plan, const MSPCServices& services);
    MSPIMappingContext(const MSPIMappingContext&) = delete;
    MSPIMappingContext& operator=(const MSPIMappingContext&) = delete;

    [[nodiscard]] const MSPCServices& services() const { return _services; }
    [[nodiscard]] MSPCLog& log() const { return _services.log; }
    [[nodiscard]] const MSPIUtilities& conversions() const { return _conversions; }

    // The MSPDI root element `Project`.
    [[nodiscard]] MSPCXMLNode mspProject() const { return _plan.root(); }
    // The root element of the template's scenario document; empty where there is none.
    [[nodiscard]] MSPCXMLNode kdzxTemplateRoot() const { return _kdzxTemplateRoot; }
    void setKdzxTemplateRoot(MSPCXMLNode root) { _kdzxTemplateRoot = root; }

    // Tasks, assignments, calendars and definitions of the project by their keys. Built by the first look-up of each
    // kind; from then on the project's lists must not change.
    [[nodiscard]] MSPIProjectIndex& index() { return _index; }
    // To be told, before anything is looked up, which lists are as they were loaded; without it all are.
    void setUnchangedLists(MSPIUnchangedLists unchanged) { _index = MSPIProjectIndex(_plan.index(), unchanged); }

    // MSPDI `SaveVersion`; 9 (2003) where the project has none.
    [[nodiscard]] std::int64_t mspSaveVersion() const { return _mspSaveVersion; }
    void setMspSaveVersion(std::int64_t version) { _mspSaveVersion = version; }
    // Whether the rules for files of 2007 and later apply.
    [[nodiscard]] bool isSavedBy2007OrLater() const { return _mspSaveVersion >= 12; }

    // The number of the baseline being mapped, 0 to 10; -1 for the actual scenario.
    [[nodiscard]] std::int32_t baselineNumber() const { return _baselineNumber; }
    void setBaselineNumber(std::int32_t number) { _baselineNumber = number; }
    [[nodiscard]] bool isBaselineScenario() const { return _baselineNumber >= 0; }

    // The tasks, resources and assignments that the baseline being mapped does not show, for naming them all the same.
    [[nodiscard]] std::vector<MSPCXMLNode> hiddenElements() const {
        return _findHiddenElements ? _findHiddenElements() : std::vector<MSPCXMLNode>();
    }
    void setHiddenElements(std::function<std::vector<MSPCXMLNode>()> find) { _findHiddenElements = std::move(find); }

    // The name of the imported file, for projects that do not name themselves.
    [[nodiscard]] const std::string& importedProjectName() const { return _importedProjectName; }
    void setImportedProjectName(std::string name) { _importedProjectName = std::move(name); }

    // UID of the project's calendar; -1 until it is known.
    [[nodiscard]] MSPCCalendarUID mspStandardCalendarUID() const { return _mspStandardCalendarUID; }
    void setMspStandardCalendarUID(MSPCCalendarUID uid) { _mspStandardCalendarUID = uid; }
    [[nodiscard]] bool mspScheduleFromStart() const { return _mspScheduleFromStart; }
    void setMspScheduleFromStart(bool fromStart) { _mspScheduleFromStart = fromStart; }

    // The project's own MSPDI dates, whichever of them its scheduling direction uses; empty when not known.
    [[nodiscard]] const std::string& mspStartDate() const { return _mspStartDate; }
    void setMspStartDate(std::string mspdiDate) { _mspStartDate = std::move(mspdiDate); }
    [[nodiscard]] const std::string& mspFinishDate() const { return _mspFinishDate; }
    void setMspFinishDate(std::string mspdiDate) { _mspFinishDate = std::move(mspdiDate); }

    // The instant of one of them, as `mspdiToMppDateTime` gives it. Every task is compared with the same one, so the
    // latest is remembered.
    [[nodiscard]] std::optional<MSPCInstant> instantOfProjectDate(std::string_view mspdiDate);

    [[nodiscard]] const MSPIIdMapper& idMapper() const { return _idMapper; }
    void setIdMapper(MSPIIdMapper idMapper) { _idMapper = idMapper; }
    // The project's working-time calendar; a null pointer until it has been mapped.
    [[nodiscard]] const MSPEScheduleCalendar* scheduleCalendar() const {
        return _scheduleCalendar ? &*_scheduleCalendar : nullptr;
    }
    void setScheduleCalendar(MSPEScheduleCalendar calendar) { _scheduleCalendar.emplace(std::move(calendar)); }

    // The next provisional id of a split piece: "split-1", "split-2" and so on.
    [[nodiscard]] std::string getTempSplitTaskID();

    // What the scenarios of the project may still grow by together.
    [[nodiscard]] MSPIGrowthBounds& growthBounds() { return _plan.growthBounds(); }

    // The schedules of calendars that several resources have. They belong to the scenario document.
    [[nodiscard]] MSPICalendarSchedules& calendarSchedules() { return _calendarSchedules; }

    // What the definitions of custom fields tell, and what the assignments of a resource add up to (as
    // `MSPIAssignedUnits` has it). As with the index, neither may change once it has been asked for.
    [[nodiscard]] MSPICustomFields& customFields() { return _customFields; }
    [[nodiscard]] double assignedUnitsOfResource(MSPCResourceUID uid) {
        return _assignedUnits.ofResource(uid, index(), _assignmentLooks, growthBounds());
    }
    // Which assignments of several tasks or resources have been looked at.
    [[nodiscard]] MSPIAssignmentLooks& assignmentLooks() { return _assignmentLooks; }

    // What is known about the stretches of split tasks.
    [[nodiscard]] MSPIStretchCache& stretchCache() { return _stretchCache; }

    // The scenario document under construction, and a free element of it.
    [[nodiscard]] MSPCXMLDocument& kdzxDocument() { return _kdzxDocument; }
    [[nodiscard]] MSPCXMLNewElement newElement(std::string_view name) { return _kdzxDocument.newElement(name); }

protected:
    [[nodiscard]] MSPIPlan& plan() { return _plan; }

private:
    MSPIPlan& _plan;
    const MSPCServices& _services;
    MSPIUtilities _conversions;
    MSPCXMLNode _kdzxTemplateRoot;
    MSPIProjectIndex _index;
    std::int64_t _mspSaveVersion = 9;
    std::int32_t _baselineNumber = -1;
    std::function<std::vector<MSPCXMLNode>()> _findHiddenElements;
    std::string _importedProjectName;
    MSPCCalendarUID _mspStandardCalendarUID{-1};
    bool _mspScheduleFromStart = false;
    std::string _mspStartDate;
    std::string _mspFinishDate;
    std::string _latestProjectDate;
    std::optional<MSPCInstant> _latestProjectInstant;
    MSPIIdMapper _idMapper;
    std::optional<MSPEScheduleCalendar> _scheduleCalendar;
    std::int64_t _splitTaskID = 0;
    MSPICustomFields _customFields;
    MSPIAssignedUnits _assignedUnits;
    MSPIAssignmentLooks _assignmentLooks;
    MSPIStretchCache _stretchCache;
    MSPCXMLDocument _kdzxDocument;
    MSPICalendarSchedules _calendarSchedules;  // of _kdzxDocument
};
