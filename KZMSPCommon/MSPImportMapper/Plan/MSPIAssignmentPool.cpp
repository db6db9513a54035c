#include "MSPIAssignmentPool.h"

#include <algorithm>
#include <string_view>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPISubject.h"

namespace {

MSPIAssignmentKeys::Number numberOf(const MSPCXMLNode& assignment, std::string_view name) {
    return MSPITellingSubject([&] { return MSPISubjectOfAssignment(assignment); },
                              [&] {
                                  Error error;
                                  const auto value = intValueForXQuery(assignment, name, &error);
                                  return MSPIAssignmentKeys::Number{value, static_cast<bool>(error)};
                              });
}

}  // namespace

MSPIAssignmentKeys::MSPIAssignmentKeys(std::vector<MSPCXMLNode> mspAssignments)
    : _unread(std::move(mspAssignments)), _count(_unread.size()) {
}

MSPIAssignmentKeys::Range MSPIAssignmentKeys::rangeOfTask(std::int64_t taskUID) {
    if (!_unread.empty()) {
        readTaskUIDs();
    }
    const auto first = std::lower_bound(_entries.begin(), _entries.end(), taskUID,
                                        [](const Entry& entry, auto uid) { return entry.taskUID.value < uid; });
    const auto last = std::upper_bound(first, _entries.end(), taskUID,
                                       [](auto uid, const Entry& entry) { return uid < entry.taskUID.value; });
    return {static_cast<std::size_t>(first - _entries.begin()), static_cast<std::size_t>(last - _entries.begin())};
}

MSPIAssignmentKeys::Number MSPIAssignmentKeys::resourceUIDAt(std::size_t position) {
    auto& entry = _entries[position];
    if (!entry.resourceUID) {
        entry.resourceUID = numberOf(entry.assignment, "ResourceUID");
    }
    return *entry.resourceUID;
}

void MSPIAssignmentKeys::readTaskUIDs() {
    std::vector<Entry> entries;
    entries.reserve(_unread.size());
    for (const auto& assignment : _unread) {
        if (!assignment) {
            throw MSPCInternalInconsistency("Expected NSXMLNodeProxy as a Assignment object.");
        }
        entries.push_back({assignment, numberOf(assignment, "TaskUID"), std::nullopt});
    }
    const auto isBefore = [](const Entry& a, const Entry& b) { return a.taskUID.value < b.taskUID.value; };
    if (!std::is_sorted(entries.begin(), entries.end(), isBefore)) {
        std::stable_sort(entries.begin(), entries.end(), isBefore);
    }
    _entries = std::move(entries);
    _unread.clear();
}

MSPIAssignmentPool::MSPIAssignmentPool(std::shared_ptr<MSPIAssignmentKeys> keys)
    : _keys(std::move(keys)), _remaining(_keys->count()), _examined(_keys->count(), 0) {
}

std::vector<MSPCXMLNode> MSPIAssignmentPool::takeAssignmentsOfTask(std::int64_t taskUID, bool isReportingErrors) {
    std::vector<MSPCXMLNode> taken;
    const auto [first, last] = _keys->rangeOfTask(taskUID);
    if (first == last || _examined[first] == AllSettled) {
        return taken;
    }
    const auto firstUnexamined = first + _examined[first];
    for (auto position = isReportingErrors ? firstUnexamined : first; position < last; ++position) {
        // One that was examined and had no error was taken, or never matches.
        const bool isOpen = position >= firstUnexamined || hasErrorAt(position);
        if (!isOpen || (isReportingErrors && hasErrorAt(position))) {
            continue;
        }
        // MSPDI uses negative resource UIDs for work that is assigned to nobody.
        if (_keys->resourceUIDAt(position).value >= 0) {
            taken.push_back(_keys->assignmentAt(position));
        }
    }
    _examined[first] = isReportingErrors ? last - first : AllSettled;
    _remaining -= taken.size();
    return taken;
}

bool MSPIAssignmentPool::hasErrorAt(std::size_t position) {
    return _keys->hasTaskUIDErrorAt(position) || _keys->resourceUIDAt(position).hasError;
}
