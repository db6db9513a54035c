#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "MSPCUID.h"
#include "MSPCXMLNode.h"

// A UID as the integer getter gives it: 0 for a missing child, the last of several, and in both cases an error.
template <MSPCUID UID>
struct MSPIReadUID {
    UID uid{};
    bool hasError = false;
};

// The numbers of the task and the resource that each assignment of a project belongs to, read once for all scenarios in
// which they are the same.
class MSPIAssignmentKeys {
public:
    // Where the assignments of one task stand, in document order.
    struct Range {
        std::size_t first = 0;
        std::size_t last = 0;  // behind the last one
    };

    explicit MSPIAssignmentKeys(std::vector<MSPCXMLNode> mspAssignments);

    [[nodiscard]] std::size_t count() const { return _count; }

    // The assignments whose `TaskUID` has that value. Reads those of all assignments when it is asked first; raises
    // `MSPCInternalInconsistency` "Expected NSXMLNodeProxy as a Assignment object." for an empty handle and what the
    // integer getter raises for texts that are no numbers.
    [[nodiscard]] Range rangeOfTask(MSPCTaskUID taskUID);
    [[nodiscard]] MSPCXMLNode assignmentAt(std::size_t position) const { return _entries[position].assignment; }
    [[nodiscard]] bool hasTaskUIDErrorAt(std::size_t position) const { return _entries[position].taskUID.hasError; }
    // The `ResourceUID` of an assignment, read when it is asked for first. Raises what the integer getter raises.
    [[nodiscard]] MSPIReadUID<MSPCResourceUID> resourceUIDAt(std::size_t position);

private:
    struct Entry {
        MSPCXMLNode assignment;
        MSPIReadUID<MSPCTaskUID> taskUID;
        std::optional<MSPIReadUID<MSPCResourceUID>> resourceUID;
    };

    void readTaskUIDs();

    std::vector<MSPCXMLNode> _unread;
    std::size_t _count;
    std::vector<Entry> _entries;  // ascending by task, in document order within one
};

// The assignments of the project that no task of a scenario has taken yet. Each is handed out at most once.
class MSPIAssignmentPool {
public:
    // The keys may serve other pools too.
    explicit MSPIAssignmentPool(std::shared_ptr<MSPIAssignmentKeys> keys);

    // Whether every assignment has been handed out.
    [[nodiscard]] bool isEmpty() const { return _remaining == 0; }

    // Takes the assignments whose integer `TaskUID` is that of the task and whose integer `ResourceUID` is 0 or more,
    // in document order. With `isReportingErrors` one that has no or several `TaskUID` or `ResourceUID` children does
    // not match; without, the value read counts (0 for a missing one, the last of several), and from then on errors of
    // this task are not reported any more. Raises `MSPCInternalInconsistency` "Expected NSXMLNodeProxy as a Assignment
    // object." for an empty handle and what the integer getter raises for texts that are no numbers.
    [[nodiscard]] std::vector<MSPCXMLNode> takeAssignmentsOfTask(MSPCTaskUID taskUID, bool isReportingErrors);

private:
    // Nothing that is left of a task's assignments can match any more.
    static constexpr auto AllSettled = static_cast<std::size_t>(-1);

    [[nodiscard]] bool hasErrorAt(std::size_t position);

    std::shared_ptr<MSPIAssignmentKeys> _keys;
    std::size_t _remaining;
    // By the position of a task's first assignment: how many of them have been looked at while errors were reported.
    // Those that had one are looked at again when errors no longer count.
    std::vector<std::size_t> _examined;
};
