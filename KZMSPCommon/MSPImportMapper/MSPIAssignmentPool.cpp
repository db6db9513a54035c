#include "MSPIAssignmentPool.h"

#include "MSPCException.h"
#include "MSPCExtensions.h"

namespace {

enum class Match { Yes, NotWhileReportingErrors, Never };

Match matchOf(const MSPCXMLNode& assignment, bool hasTaskUIDError, bool isReportingErrors) {
    if (hasTaskUIDError && isReportingErrors) {
        return Match::NotWhileReportingErrors;
    }
    Error error;
    const auto resourceUID = intValueForXQuery(assignment, "ResourceUID", &error);
    if (error && isReportingErrors) {
        return Match::NotWhileReportingErrors;
    }
    // MSPDI uses negative resource UIDs for work that is assigned to nobody.
    return resourceUID >= 0 ? Match::Yes : Match::Never;
}

}  // namespace

MSPIAssignmentPool::MSPIAssignmentPool(std::vector<MSPCXMLNode> mspAssignments)
    : _unread(std::move(mspAssignments)), _remaining(_unread.size()) {}

std::vector<MSPCXMLNode> MSPIAssignmentPool::takeAssignmentsOfTask(std::int64_t taskUID, bool isReportingErrors) {
    readTaskUIDs();
    std::vector<MSPCXMLNode> taken;
    const auto found = _byTaskUID.find(taskUID);
    if (found == _byTaskUID.end()) {
        return taken;
    }
    auto& [candidates, examined] = found->second;
    std::vector<Candidate> kept(candidates.begin(),
                                candidates.begin() + static_cast<std::ptrdiff_t>(isReportingErrors ? examined : 0));
    for (auto next = kept.size(); next < candidates.size(); ++next) {
        switch (matchOf(candidates[next].assignment, candidates[next].hasTaskUIDError, isReportingErrors)) {
            case Match::Yes:
                taken.push_back(candidates[next].assignment);
                break;
            case Match::NotWhileReportingErrors:
                kept.push_back(candidates[next]);
                break;
            case Match::Never:
                break;
        }
    }
    _remaining -= taken.size();
    candidates = std::move(kept);
    examined = candidates.size();
    return taken;
}

void MSPIAssignmentPool::readTaskUIDs() {
    for (const auto& assignment : _unread) {
        if (!assignment) {
            throw MSPCInternalInconsistency("Expected NSXMLNodeProxy as a Assignment object.");
        }
        Error error;
        const auto taskUID = intValueForXQuery(assignment, "TaskUID", &error);
        _byTaskUID[taskUID].candidates.push_back({assignment, static_cast<bool>(error)});
    }
    _unread.clear();
}
