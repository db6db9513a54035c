#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCServices.h"
#include "MSPCUID.h"
#include "MSPCXMLDocument.h"
#include "MSPIImportInfo.h"
#include "MSPIPlan.h"
#include "MSPIUtilities.h"

// What the fate of a leaf depends on beside its own task, resource, assignment or calendar: found in the documents of
// one import as they pass, so that it is what the importer itself went by. The elements of one kind are told by their
// positions in the document, from 0.

enum class MSPDITaskState : std::uint8_t {
    Mapped,    // becomes a task of the document
    Root,      // the project's summary task: only its dates arrive
    EmptyRow,  // nothing of it arrives
};

struct MSPDITaskFacts {
    MSPDITaskState state = MSPDITaskState::Mapped;
    bool isSummary = false;
    bool isReachable = true;                // from the group of all tasks
    bool sharesUID = false;                 // with another one that becomes a task of the document
    bool hasUnequalShares = false;          // its resources have different amounts of its work
    std::uint16_t splitScenarios = 0;       // bit 0: split in the plan itself; bit n+1: in its baseline n
    std::uint16_t timephasedScenarios = 0;  // the same bits: there are two or more records that it could be split by
    std::uint32_t assignmentCount = 0;      // that arrive
};

struct MSPDIResourceFacts {
    bool isMapped = false;
    bool sharesUID = false;  // with another one that is mapped
    bool isMaterial = false;
    bool isCost = false;                  // whether it is read so or not
    std::optional<std::size_t> calendar;  // position
};

struct MSPDIAssignmentFacts {
    std::optional<std::size_t> task;  // the first mapped task of its UID
    bool isOfSummary = false;         // of a summary task that is not split
    bool arrives = false;
    bool countsForMaterial = false;
};

struct MSPDICalendarFacts {
    std::string name;
    bool isProjects = false;                // the schedule of the document is made from it
    std::vector<std::size_t> resources;     // positions of those whose schedule is made from it
    std::set<std::string> exceptionStarts;  // of exceptions of one date range
    [[nodiscard]] bool isMapped() const { return isProjects || !resources.empty(); }
};

struct MSPDIDefinitionFacts {
    std::string name;  // under which values of this field arrive
    bool hasName = false;
    bool isLast = false;   // of several with its FieldID
    bool isUsed = false;   // by a task or resource
    bool isShown = false;  // a value of it arrives
    bool isShownByTask = false;
    bool isShownByResource = false;
};

class MSPDIPlanFacts {
public:
    static constexpr int Actual = -1;  // the plan itself, as the number of a scenario; the others are baselines

    explicit MSPDIPlanFacts(const MSPCServices& services);

    // Looks at the plan before anything is mapped.
    void readPlan(const MSPCXMLNode& project);
    // Looks at a scenario that came out, and for the plan itself at the table of contents.
    void readScenario(MSPIPlan& plan, const MSPIImportInfo& info, const MSPCXMLDocument& scenario,
                      const MSPCXMLDocument& kdzxTOC);
    // Draws the conclusions from all of it; once, at the end, whether the plan was imported or not.
    void conclude();

    [[nodiscard]] bool isSavedBy2007OrLater() const { return saveVersion >= 12; }
    // The definition that counts for a FieldID.
    [[nodiscard]] std::optional<std::size_t> definitionOf(std::string_view fieldID) const;
    // How many tasks have a UID, as the look-up for links counts them.
    [[nodiscard]] std::size_t tasksWithUID(MSPCTaskUID uid) const;
    // The first task with that UID that becomes one of the document; the project's summary task and empty rows do not.
    [[nodiscard]] std::optional<std::size_t> mappedTask(MSPCTaskUID uid) const;
    // The same of a resource.
    [[nodiscard]] std::optional<std::size_t> mappedResource(MSPCResourceUID uid) const;
    // The calendar that counts for a UID.
    [[nodiscard]] std::optional<std::size_t> calendarWithUID(MSPCCalendarUID uid) const;
    [[nodiscard]] bool isSplit(std::size_t task, int scenario) const;
    // The target date at which a split task ends; empty where it is not known.
    [[nodiscard]] std::string_view splitEnd(std::size_t task, int scenario) const;
    // The instant, and the target date, of a date in the plan; none, and empty, where it cannot be read.
    [[nodiscard]] std::optional<MSPCInstant> instantOf(std::string_view date) const;
    [[nodiscard]] std::string kdzxDateOf(std::string_view date) const;
    // Seconds since midnight of a time in a week; none where it cannot be read.
    [[nodiscard]] std::optional<std::int64_t> secondsOfDay(std::string_view time) const;
    // Whether a `BaseCalendarUID` names another calendar than that which the document's schedule is made from.
    [[nodiscard]] bool isOtherBaseCalendar(std::string_view uid) const;
    // Whether a text is the title that the document gets, or the plan's own name.
    [[nodiscard]] bool isProjectName(std::string_view text) const;
    // Whether a custom field of tasks, or of resources, has no key in the table of contents; false where there is none.
    [[nodiscard]] bool isMissingInTOC(std::string_view field, bool isOfTasks) const;
    [[nodiscard]] static std::uint16_t bitOf(int scenario) { return static_cast<std::uint16_t>(1U << (scenario + 1)); }

    bool hasPlan = false;  // a project was there to look at
    std::int64_t saveVersion = 9;
    bool isScheduledFromStart = true;
    bool hasTitle = false;
    std::optional<MSPCInstant> projectDate;  // the start, or the end, that tasks are compared with
    std::optional<MSPCCalendarUID> projectCalendarUID;
    bool isCalendarFoundByName = false;
    bool isSummerNow = false;
    std::vector<MSPDITaskFacts> tasks;
    std::vector<MSPDIResourceFacts> resources;
    std::vector<MSPDIAssignmentFacts> assignments;
    std::vector<MSPDICalendarFacts> calendars;
    std::vector<MSPDIDefinitionFacts> definitions;

private:
    struct Share {
        std::optional<MSPCTaskUID> taskUID;
        std::optional<MSPCResourceUID> resourceUID;
        std::optional<std::int64_t> work;
        std::array<std::uint32_t, 12> records{};  // by scenario + 1
        bool isClear = true;                      // it has one task and one resource
    };

    void readSettings(const MSPCXMLNode& project);
    void readTasks(const MSPCXMLNode& project);
    void readCalendars(const MSPCXMLNode& project);
    void readDefinitions(const MSPCXMLNode& project);
    void readResources(const MSPCXMLNode& project);
    void readAssignments(const MSPCXMLNode& project);
    void readValues(const MSPCXMLNode& owner, bool isShown, bool isTask);
    [[nodiscard]] std::vector<bool> tasksWithUnclearOnes() const;
    [[nodiscard]] std::optional<std::size_t> takerOf(MSPCTaskUID uid) const;

    MSPIUtilities _conversions;
    bool _hasTOC = false;
    std::set<std::string, std::less<>> _taskKeys;  // of custom fields in the table of contents
    std::set<std::string, std::less<>> _resourceKeys;
    std::vector<std::string> _projectNames;
    std::map<std::pair<std::size_t, int>, std::string> _splitEnds;  // by task and scenario
    std::vector<MSPCTaskUID> _taskUIDs;                             // of all tasks, as look-ups see them, sorted
    std::map<MSPCTaskUID, std::size_t> _taskByUID;                  // the first mapped one
    std::map<MSPCTaskUID, std::vector<std::size_t>> _tasksAgain;    // the mapped ones behind it
    std::map<MSPCCalendarUID, std::size_t> _calendarByUID;          // the last one, as look-ups see it
    std::map<MSPCResourceUID, std::size_t> _resourceByUID;          // the first mapped one
    std::set<MSPCResourceUID> _materialUIDs;                        // of mapped ones, as look-ups see them
    std::map<std::string, std::size_t, std::less<>> _definitionByFieldID;
    std::vector<Share> _shares;                  // of the assignments
    std::vector<std::size_t> _assignmentsThere;  // of each task in the document of the plan itself; empty without one
};
