#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "MSPCXMLNode.h"

// The assignments of the project that no task has taken yet. Read once, when the first task asks; each assignment is
// handed out at most once.
class MSPIAssignmentPool {
public:
    explicit MSPIAssignmentPool(std::vector<MSPCXMLNode> mspAssignments);

    // Whether every assignment has been handed out.
    [[nodiscard]] bool isEmpty() const { return _remaining == 0; }

    // Takes the assignments whose integer `TaskUID` is that of the task and whose integer `ResourceUID` is 0 or more,
    // in document order. With `isReportingErrors` one that has no or several `TaskUID` or `ResourceUID` children does not
    // match; without, the value read counts (0 for a missing one, the last of several). Raises
    // `MSPCInternalInconsistency` "Expected NSXMLNodeProxy as a Assignment object." for an empty handle and what the
    // integer getter raises for texts that are no numbers.
    [[nodiscard]] std::vector<MSPCXMLNode> takeAssignmentsOfTask(std::int64_t taskUID, bool isReportingErrors);

private:
    struct Candidate {
        MSPCXMLNode assignment;
        bool hasTaskUIDError = false;
    };
    // The assignments with one TaskUID. Those at the front up to `examined` did not match while errors were reported and
    // are looked at again only when errors no longer count.
    struct Bucket {
        std::vector<Candidate> candidates;
        std::size_t examined = 0;
    };

    void readTaskUIDs();

    std::vector<MSPCXMLNode> _unread;
    std::size_t _remaining;
    std::unordered_map<std::int64_t, Bucket> _byTaskUID;
};
