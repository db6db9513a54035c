#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "MSPCFields.h"
#include "MSPIAssignmentPool.h"
#include "MSPIObjectMapperBase.h"
#include "MSPISplitTask.h"
#include "MSPITaskTree.h"
#include "MSPIUserDataMapper.h"

// Builds the whole `scenario` element of one scenario from the MSPDI `Project`: dates, granularity, resources under a
// group resource with the project's schedule, tasks under a group task, split pieces, assignments and the template's
// critical path. Serves one call of `newScenarioFromMSPProject`.
class MSPIProjectMapper : public MSPIObjectMapperBase {
public:
    // The counters are raised to the highest UIDs seen, and further for every split piece; user-data keys are recorded
    // in `userDataTOCElements`. All outlive the mapper.
    MSPIProjectMapper(MSPIMappingContext& mapper, std::int64_t& mspTaskMaxId, std::int64_t& mspResourceMaxId,
                      MSPIUserDataTOCElements& userDataTOCElements);

    // The new element, owned by the caller. The user information of a failure names the task, resource or calendar that
    // was being mapped (MSPISubject.h). Sets the context's id mapper, scheduling direction, project dates, standard
    // calendar UID and working-time calendar. Raises `MSPCInternalInconsistency`:
    // "*** ERROR: Invalid root element of template: '<name>'. Must be 'scenario'.",
    // "Failed to find start date for the project scheduled from start.",
    // "Failed to find finish date for the project scheduled from end.",
    // "MS Project 'Standard' Calendar not found.", "MSPDI 'Standard' Calendar is not a base calendar.",
    // "Expected NSXMLNodeProxy as a Resource object.", what `MSPIGrowthBounds` raises where a small plan makes much of
    // little, and all that the tasks raise (see buildMspTasks…).
    [[nodiscard]] MSPCXMLNewElement newScenarioFromMSPProject(const MSPCXMLNode& mspProject);

    // Maps the tasks, in document order, into `scenario` and links them below `topGroupTask`. Raises
    // "Expected NSXMLNodeProxy as a Task object.", "Unexpected outline level <level> found in task (UID=<uid>)",
    // "Duplicate tasks with UID=0 found in the source document.",
    // "MSPDI Summary Task must be mapped to KDZX Group Task.", "This does not seem like a MS Project root task.",
    // "Minimum number of task splits must be 2.", "Failed to find msp 'Task' for given kdzx 'Task' in dictionary.",
    // "Candidate for parent group must be a Summary Task in MSPDI.", "Parent task was not assigned a type.",
    // "Candidate for parent group must be a Group Task in KDZX.".
    void buildMspTasksMspAssignmentsScenarioTopGroupTask(std::span<const MSPCXMLNode> mspTasks,
                                                         std::shared_ptr<MSPIAssignmentKeys> mspAssignments,
                                                         const MSPCXMLNode& scenario, const MSPCXMLNode& topGroupTask);

    // Title, else name without file-name extension, else the imported file's name.
    [[nodiscard]] const std::string& mspProjectName() const { return _mspProjectName; }
    [[nodiscard]] const std::string& mspStartDate() const { return _mapper.mspStartDate(); }
    [[nodiscard]] const std::string& mspFinishDate() const { return _mapper.mspFinishDate(); }
    // Whether any task or resource recorded user-data keys.
    [[nodiscard]] bool userDataChanged() const { return _userDataChanged; }

private:
    // What the tasks of one scenario share while they are mapped.
    struct TaskRun {
        MSPITaskTree tree;
        MSPIAssignmentPool assignments;
        MSPCXMLNode scenario;
        MSPCXMLNode topGroupTask;
        std::vector<MSPIPendingPiece> pendingPieces;
        bool hasRootTask = false;
        bool isReportingErrors = true;
    };

    MSPCXMLNewElement newScenarioElement() const;
    void findProjectName(const MSPCXMLNode& mspProject);
    void addProjectDate(const MSPCXMLNode& mspProject, const MSPCXMLNode& scenario);
    std::string projectDate(const MSPCXMLNode& mspProject) const;
    void addGranularity(const MSPCXMLNode& mspProject, const MSPCXMLNode& scenario) const;
    MSPCXMLNode addTopResourceToScenario(const MSPCXMLNode& mspProject, MSPCXMLNode scenario);
    void addProjectSchedule(const MSPCXMLNode& calendar, MSPCXMLNode topGroupResource);
    void addMspResourcesToScenarioTopGroupResource(std::span<const MSPCXMLNode> mspResources, MSPCXMLNode scenario,
                                                   const MSPCXMLNode& topGroupResource);
    void mapResource(const MSPCXMLNode& mspResource, MSPCXMLNode scenario, const MSPCXMLNode& topGroupResource);
    MSPCXMLNode addTopTaskToScenario(MSPCXMLNode scenario) const;
    void addCriticalPath(MSPCXMLNode scenario) const;

    void mapTask(const MSPCXMLNode& mspTask, TaskRun& run);
    void takeOverRootTask(const MSPCXMLNode& task, bool isSummary, std::int64_t outlineLevel, TaskRun& run) const;
    bool addSplitPieces(const MSPCFields& mspTask, const MSPCXMLNode& task, TaskRun& run) const;
    void addMspAssignmentsForMspdiTaskToTask(const MSPCFields& mspTask, MSPCXMLNode task, TaskRun& run) const;
    void linkIntoTree(const MSPCXMLNode& task, std::int64_t outlineLevel, TaskRun& run) const;
    void giveFinalIdsToSplitPieces(TaskRun& run);

    std::string _mspProjectName;
    std::int64_t& _mspTaskMaxId;
    std::int64_t& _mspResourceMaxId;
    MSPIUserDataTOCElements& _userDataTOCElements;
    bool _userDataChanged = false;
    bool _mspScheduleFromStart = true;
};
