#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCError.h"
#include "MSPCUID.h"
#include "MSPCXMLNode.h"
#include "MSPIAssignmentPool.h"

// The elements of one list of the project by the number in one of their children, with the meaning of the XPath
// predicate `[child=number]`: texts count as XPath reads them (" 12 " and "012" are 12, "12h" is no number), and an
// element with several such children is found by each of them.
class MSPINumberIndex {
public:
    // The elements at `path` below `project`, by their children named `key`; with `required` only those that have a
    // child of that name.
    MSPINumberIndex(const MSPCXMLNode& project, std::string_view path, std::string_view key,
                    std::string_view required = {});

    // The elements with that number, in document order. Valid as long as the index.
    [[nodiscard]] std::span<const MSPCXMLNode> nodesWithKey(std::int64_t number) const;
    // Whether any element is found by several numbers.
    [[nodiscard]] bool hasNodesOfSeveralKeys() const { return _hasNodesOfSeveralKeys; }
    // The last of them; reports through `error` as a query for a single node does.
    [[nodiscard]] MSPCXMLNode singleNodeWithKey(std::int64_t number, Error* error = nullptr) const;

private:
    std::vector<double> _keys;        // ascending
    std::vector<MSPCXMLNode> _nodes;  // of the same position, in document order within one key
    bool _hasNodesOfSeveralKeys = false;
};

// The same where the number is a UID: looked up by one of another kind it does not compile.
template <MSPCUID UID>
class MSPIUIDIndex : public MSPINumberIndex {
public:
    using MSPINumberIndex::MSPINumberIndex;

    [[nodiscard]] std::span<const MSPCXMLNode> nodesWithKey(UID uid) const {
        return MSPINumberIndex::nodesWithKey(MSPCNumberOf(uid));
    }
    [[nodiscard]] MSPCXMLNode singleNodeWithKey(UID uid, Error* error = nullptr) const {
        return MSPINumberIndex::singleNodeWithKey(MSPCNumberOf(uid), error);
    }
};

// The same by text, with the meaning of `[child='text']`: a text with an apostrophe finds nothing.
class MSPITextIndex {
public:
    MSPITextIndex(const MSPCXMLNode& project, std::string_view path, std::string_view key);

    [[nodiscard]] MSPCXMLNode singleNodeWithKey(std::string_view text, Error* error = nullptr) const;

private:
    std::vector<std::pair<std::string, MSPCXMLNode>> _entries;  // ascending, stable
};

// Lists of a project in which a baseline, while it shows, removes no element and changes no number.
struct MSPIUnchangedLists {
    bool tasks = true;
    bool assignments = true;
};

// The look-ups by key that mapping makes for every task, resource or assignment, each list read once, when it is first
// needed: whoever looks something up must find the list as it was then. Keys of tasks and assignments are children
// whose names end in "UID"; what baselines show is watched for these names.
class MSPIProjectIndex {
public:
    // Of a project as it was loaded.
    explicit MSPIProjectIndex(const MSPCXMLNode& project) : _project(project) {}
    // Of the same project for one scenario: lists that are as they were loaded are looked up in that index, which
    // outlives this one.
    MSPIProjectIndex(MSPIProjectIndex& asLoaded, MSPIUnchangedLists unchanged);

    // "Tasks/Task[UID=<uid>]"
    [[nodiscard]] const MSPIUIDIndex<MSPCTaskUID>& tasksByUID();
    // "Calendars/Calendar[UID=<uid>]"
    [[nodiscard]] const MSPIUIDIndex<MSPCCalendarUID>& calendarsByUID();
    // "Assignments/Assignment[TaskUID=<uid>]"
    [[nodiscard]] const MSPIUIDIndex<MSPCTaskUID>& assignmentsByTaskUID();
    // "Assignments/Assignment[TimephasedData][TaskUID=<uid>]"
    [[nodiscard]] const MSPIUIDIndex<MSPCTaskUID>& timephasedAssignmentsByTaskUID();
    // "Assignments/Assignment[ResourceUID=<uid>]"
    [[nodiscard]] const MSPIUIDIndex<MSPCResourceUID>& assignmentsByResourceUID();
    // "ExtendedAttributes/ExtendedAttribute[FieldID='<id>']"
    [[nodiscard]] const MSPITextIndex& definitionsByFieldID();
    // "Assignments/Assignment", for handing them out to tasks.
    [[nodiscard]] std::shared_ptr<MSPIAssignmentKeys> assignmentKeys();

private:
    // The index that holds lists of a kind: this one, unless they are as they were loaded.
    [[nodiscard]] MSPIProjectIndex& holderOf(bool isUnchanged) {
        return _asLoaded != nullptr && isUnchanged ? *_asLoaded : *this;
    }

    MSPCXMLNode _project;
    MSPIProjectIndex* _asLoaded = nullptr;
    MSPIUnchangedLists _unchanged;
    std::optional<MSPIUIDIndex<MSPCTaskUID>> _tasksByUID;
    std::optional<MSPIUIDIndex<MSPCCalendarUID>> _calendarsByUID;
    std::optional<MSPIUIDIndex<MSPCTaskUID>> _assignmentsByTaskUID;
    std::optional<MSPIUIDIndex<MSPCTaskUID>> _timephasedAssignmentsByTaskUID;
    std::optional<MSPIUIDIndex<MSPCResourceUID>> _assignmentsByResourceUID;
    std::optional<MSPITextIndex> _definitionsByFieldID;
    std::shared_ptr<MSPIAssignmentKeys> _assignmentKeys;
};
