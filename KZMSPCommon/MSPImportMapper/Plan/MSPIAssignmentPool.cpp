#include "MSPIAssignmentPool.h"

#include <algorithm>
#include <string_view>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPISubject.h"

namespace {

template <MSPCUID UID>
MSPIReadUID<UID> readUID(const MSPCXMLNode& assignment, std::string_view name) {
    return MSPITellingSubject([&] { return MSPISubjectOfAssignment(assignment); },
                              [&] {
                                  Error error;
                                  const UID uid{intValueForXQuery(assignment, name, &error)};
                                  return MSPIReadUID<UID>{uid, static_cast<bool>(error)};
                              });
}

}  // namespace

MSPIAssignmentKeys::MSPIAssignmentKeys(std::vector<MSPCXMLNode> mspAssignments)
    : _unread(std::move(mspAssignments)), _count(_unread.size()) {
}

MSPIAssignmentKeys::Range MSPIAssignmentKeys::rangeOfTask(MSPCTaskUID taskUID) {
    if (!_unread.empty()) {
        readTaskUIDs();
    }
    const auto first = std::lower_bound(_entries.begin(), _entries.end(), taskUID,
                                        [](const Entry& entry, auto uid) { return entry.taskUID.uid < uid; });
    const auto last = std::upper_bound(first, _entries.end(), taskUID,
                                       [](auto uid, const Entry& entry) { return uid < entry.taskUID.uid; });
    return {static_cast<std::size_t>(first - _entries.begin()), static_cast<std::size_t>(last - _entries.begin())};
}

MSPIReadUID<MSPCResourceUID> MSPIAssignmentKeys::resourceUIDAt(std::size_t position) {
    auto& entry = _entries[position];
    if (!entry.resourceUID) {
        entry.resourceUID = readUID<MSPCResourceUID>(entry.assignment, "ResourceUID");
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
        entries.push_back({assignment, readUID<MSPCTaskUID>(assignment, "TaskUID"), std::nullopt});
    }
    const auto isBefore = [](const Entry& a, const Entry& b) { return a.taskUID.uid < b.taskUID.uid; };
    if (!std::is_sorted(entries.begin(), entries.end(), isBefore)) {
        std::stable_sort(entries.begin(), entries.end(), isBefore);
    }
    _entries = std::move(entries);
    _unread.clear();
}

MSPIAssignmentPool::MSPIAssignmentPool(std::shared_ptr<MSPIAssignmentKeys> keys)
    : _keys(std::move(keys)), _remaining(_keys->count()), _examined(_keys->count(), 0) {
}

std::vector<MSPCXMLNode> MSPIAssignmentPool::takeAssignmentsOfTask(MSPCTaskUID taskUID, bool isReportingErrors) {
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
        if (MSPCNumberOf(_keys->resourceUIDAt(position).uid) >= 0) {
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
