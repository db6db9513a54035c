#include "MSPIAssignedUnits.h"

#include <string>

#include "MSPCTextScanner.h"
#include "MSPIAssignmentLooks.h"
#include "MSPIProjectIndex.h"

namespace {

double sumOfUnits(MSPCResourceUID uid, const MSPIUIDIndex<MSPCResourceUID>& byResourceUID, MSPIAssignmentLooks& looks,
                  MSPIGrowthBounds& bounds) {
    double units = 0;
    std::string buffer;
    for (const auto& assignment : byResourceUID.nodesWithKey(uid)) {
        looks.lookAt(assignment, byResourceUID, bounds);
        for (auto child = assignment.firstChildElement("Units"); child; child = child.nextSiblingElement("Units")) {
            units += scanDouble(child.stringValue(buffer)).value_or(0);
        }
    }
    return units;
}

}  // namespace

double MSPIAssignedUnits::ofResource(MSPCResourceUID uid, MSPIProjectIndex& index, MSPIAssignmentLooks& looks,
                                     MSPIGrowthBounds& bounds) {
    const auto [known, isNew] = _byUID.try_emplace(uid, 0);
    if (isNew) {
        known->second = sumOfUnits(uid, index.assignmentsByResourceUID(), looks, bounds);
    }
    return known->second;
}
