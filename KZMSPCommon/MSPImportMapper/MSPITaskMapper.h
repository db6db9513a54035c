#pragma once

#include <cstdint>

#include "MSPCFields.h"
#include "MSPIObjectMapperBase.h"
#include "MSPIUserDataMapper.h"

// Turns one MSPDI `Task` into one target `task`: identity, kind, scheduling, effort, progress, constraints, cost,
// dates, note, user data and links. Made for one task and then discarded.
class MSPITaskMapper : public MSPIObjectMapperBase {
public:
    // `scheduleFromStart` tells how the project is scheduled; `mspTaskMaxId` is the highest task UID seen so far,
    // raised by this mapper; user-data keys are recorded in `userDataTOCElements`. All outlive the mapper.
    MSPITaskMapper(MSPIMappingContext& mapper, bool scheduleFromStart, MSPIUserDataTOCElements& userDataTOCElements,
                   std::int64_t& mspTaskMaxId);

    // The new element, owned by the caller; never empty. Raises `MSPCInternalInconsistency` "Failed to get UID from
    // Task.", "Unexpected MSPDI Task Type: <value>", "Expected NSXMLNodeProxy as a PredecessorLink object.", and what
    // the value getters and conversions raise for texts that are there but unreadable.
    [[nodiscard]] MSPCXMLNewElement newTaskFromMSPTask(const MSPCFields& mspTask);

    // The task's UID, 0 for a UID text that is no number; -1 until a task has been mapped.
    [[nodiscard]] MSPCTaskUID mspTaskUID() const { return _mspTaskUID; }
    // The `type` element of the task that has been mapped.
    [[nodiscard]] MSPCXMLNode kdzxType() const { return _kdzxType; }
    // Whether user-data keys were recorded.
    [[nodiscard]] bool userDataChanged() const { return _userDataChanged; }

    // Whether a date lies outside of the project's bound: before the start of one that is scheduled from its start,
    // behind the end of one that is scheduled from its end.
    [[nodiscard]] static bool isBeyondProject(bool scheduleFromStart, MSPCInstant date, MSPCInstant bound);
    // The date that such a task is locked to: its own, or that of a constraint on the same end which lies still further
    // out.
    [[nodiscard]] static MSPCInstant lockedDate(bool scheduleFromStart, MSPCInstant taskDate,
                                                std::optional<MSPCInstant> constraintDate);

private:
    // What several steps need to know about the task being mapped.
    struct Facts {
        bool isSummary = false;
        std::int64_t durationSeconds = 0;  // -1 for a Duration without text
        std::int64_t effortSeconds = 0;
        std::int64_t constraintType = -1;
        MSPCNodeText start;  // MSPDI texts
        MSPCNodeText finish;
        MSPCNodeText constraintDate;  // read for constraint types 2 and above only
        std::optional<std::string> kdzxStart;
        std::optional<std::string> kdzxFinish;
        bool hasLeveledStart = false;
        bool hasLockedStart = false;
        bool hasLockedEnd = false;
    };

    void addIdentity(const MSPCFields& mspTask, const MSPCXMLNode& task);
    void addTypeAndScheduling(const MSPCFields& mspTask, const MSPCXMLNode& task, Facts& facts);
    void addLeveledStartBeforeLeveling(const MSPCFields& mspTask, const MSPCXMLNode& task, Facts& facts) const;
    void addLeveledStartOfConstraint(const MSPCXMLNode& task, Facts& facts) const;
    void addEffort(const MSPCFields& mspTask, const MSPCXMLNode& task, Facts& facts) const;
    void addProgress(const MSPCFields& mspTask, const MSPCXMLNode& task, const Facts& facts) const;
    void addLockedDateOfProjectBounds(const MSPCXMLNode& task, Facts& facts) const;
    void addConstraintDate(const MSPCXMLNode& task, const Facts& facts) const;
    void addRecalculation(const MSPCFields& mspTask, const MSPCXMLNode& task) const;
    void addFixedCost(const MSPCFields& mspTask, const MSPCXMLNode& task) const;
    void addPrerequisites(const MSPCFields& mspTask, const MSPCXMLNode& task) const;

    MSPCTaskUID _mspTaskUID{-1};
    MSPCXMLNode _kdzxType;
    MSPIUserDataTOCElements& _userDataTOCElements;
    bool _mspScheduleFromStart;
    std::int64_t& _mspTaskMaxId;
    bool _userDataChanged = false;
};
