#include "MSPIAssignedUnits.h"

#include <string>

#include "MSPCTextScanner.h"
#include "MSPIMappingContext.h"

namespace {

double sumOfUnits(std::int64_t uid, MSPIMappingContext& mapper) {
    double units = 0;
    std::string buffer;
    const auto& byResourceUID = mapper.index().assignmentsByResourceUID();
    for (const auto& assignment : byResourceUID.nodesWithKey(uid)) {
        mapper.assignmentLooks().lookAt(assignment, byResourceUID, mapper.growthBounds());
        for (auto child = assignment.firstChildElement("Units"); child; child = child.nextSiblingElement("Units")) {
            units += scanDouble(child.stringValue(buffer)).value_or(0);
        }
    }
    return units;
}

}  // namespace

double MSPIAssignedUnits::ofResource(std::int64_t uid, MSPIMappingContext& mapper) {
    const auto [known, isNew] = _byUID.try_emplace(uid, 0);
    if (isNew) {
        known->second = sumOfUnits(uid, mapper);
    }
    return known->second;
}
