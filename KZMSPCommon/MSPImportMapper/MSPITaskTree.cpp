#include "MSPITaskTree.h"

#include <algorithm>
#include <bit>

#include "MSPCException.h"

MSPITaskTree::MSPITaskTree(std::size_t capacity, bool onlySummaryParents)
    : _onlySummaryParents(onlySummaryParents),
      _leafCount(std::bit_ceil(std::max<std::size_t>(capacity, 1))),
      _lowest(2 * _leafCount, NoCandidate) {
    _entries.reserve(capacity);
}

void MSPITaskTree::checkType(const MSPCXMLNode& kdzxType, bool isSummary) {
    std::string buffer;
    if ((kdzxType.stringValue(buffer) == "group") != isSummary) {
        throw MSPCInternalInconsistency("MSPDI Summary Task must be mapped to KDZX Group Task.");
    }
}

void MSPITaskTree::record(const std::string& kdzxId, const Entry& entry) {
    const auto position = _entries.size();
    _entries.push_back(entry);
    const auto [known, isNew] = _positions.try_emplace(kdzxId, position);
    if (!isNew) {
        setLevel(known->second, NoCandidate);
        known->second = position;
    }
    setLevel(position, _onlySummaryParents && !entry.isSummary ? NoCandidate : entry.outlineLevel);
}

std::optional<MSPITaskTree::Entry> MSPITaskTree::parentForLevel(std::int64_t outlineLevel) const {
    if (_lowest[1] >= outlineLevel) {
        return std::nullopt;
    }
    std::size_t at = 1;
    while (at < _leafCount) {
        at = 2 * at + 1;  // the newer half first
        if (_lowest[at] >= outlineLevel) {
            --at;
        }
    }
    return _entries[at - _leafCount];
}

MSPCXMLNode MSPITaskTree::groupOfParent(const Entry& parent) const {
    if (!parent.mspTask) {
        throw MSPCInternalInconsistency("Failed to find msp 'Task' for given kdzx 'Task' in dictionary.");
    }
    if (_onlySummaryParents && !parent.isSummary) {
        throw MSPCInternalInconsistency("Candidate for parent group must be a Summary Task in MSPDI.");
    }
    auto type = parent.kdzxType;
    if (!type) {
        throw MSPCInternalInconsistency("Parent task was not assigned a type.");
    }
    std::string buffer;
    if (type.stringValue(buffer) != "group") {
        if (_onlySummaryParents) {
            throw MSPCInternalInconsistency("Candidate for parent group must be a Group Task in KDZX.");
        }
        type.setStringValue("group");
    }
    return parent.kdzxTask;
}

void MSPITaskTree::setLevel(std::size_t position, std::int64_t level) {
    auto at = _leafCount + position;
    _lowest[at] = level;
    for (bool isChanged = true; at > 1 && isChanged;) {
        at /= 2;
        const auto lowest = std::min(_lowest[2 * at], _lowest[2 * at + 1]);
        isChanged = lowest != _lowest[at];
        _lowest[at] = lowest;
    }
}
