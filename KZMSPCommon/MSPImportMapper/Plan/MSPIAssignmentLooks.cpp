#include "MSPIAssignmentLooks.h"

#include "MSPIGrowthBounds.h"
#include "MSPIProjectIndex.h"

void MSPIAssignmentLooks::lookAt(const MSPCXMLNode& assignment, const MSPINumberIndex& foundIn,
                                 MSPIGrowthBounds& bounds) {
    if (!foundIn.hasNodesOfSeveralKeys() || _seen.emplace(&foundIn, assignment).second) {
        return;
    }
    for (auto child = assignment.firstChild(); child; child = child.nextSibling()) {
        bounds.addRepeatedLooks(1);
    }
}
