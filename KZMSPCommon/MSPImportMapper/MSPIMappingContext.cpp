#include "MSPIMappingContext.h"

#include <fmt/format.h>

MSPIMappingContext::MSPIMappingContext(const MSPCServices& services) : _services(services), _conversions(services) {
}

void MSPIMappingContext::setMspProject(MSPCXMLNode project) {
    _mspProject = project;
    _index = MSPIProjectIndex(project);
    _customFields = {};
    _assignedUnits = {};
    _assignmentLooks = {};
}

std::optional<MSPCInstant> MSPIMappingContext::instantOfProjectDate(std::string_view mspdiDate) {
    if (mspdiDate != _latestProjectDate) {
        _latestProjectInstant = _conversions.mspdiToMppDateTime(mspdiDate);
        _latestProjectDate = mspdiDate;
    }
    return _latestProjectInstant;
}

std::string MSPIMappingContext::getTempSplitTaskID() {
    return fmt::format("split-{}", ++_splitTaskID);
}
