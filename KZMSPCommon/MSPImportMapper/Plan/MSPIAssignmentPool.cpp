#include "MSPIAssignmentPool.h"

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
