#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "MSPCXMLNode.h"

// The numbers of the task and the resource that each assignment of a project belongs to, read once for all scenarios in
// which they are the same.
class MSPIAssignmentKeys {
public:
    // An integer as the getter gives it: 0 for a missing child, the last of several, and in both cases an error.
    struct Number {
        std::int64_t value = 0;
        bool hasError = false;
    };

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
    [[nodiscard]] Range rangeOfTask(std::int64_t taskUID);
    [[nodiscard]] MSPCXMLNode assignmentAt(std::size_t position) const { return _entries[position].assignment; }
    [[nodiscard]] bool hasTaskUIDErrorAt(std::size_t position) const { return _entries[position].taskUID.hasError; }
    // The `ResourceUID` of an assignment, read when it is asked for first. Raises what the integer getter raises.
    [[nodiscard]] Number resourceUIDAt(std::size_t position);

private:
    struct Entry {
        MSPCXMLNode assignment;
        Number taskUID;
        std::optional<Number> resourceUID;
    };

    void readTaskUIDs();

    std::vector<MSPCXMLNode> _unread;
    std::size_t _count;
    std::vector<Entry> _entries;  // ascending by task, in document order within one
};
