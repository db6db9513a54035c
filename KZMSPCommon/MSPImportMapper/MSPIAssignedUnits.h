#pragma once

#include <map>

#include "MSPCUID.h"

class MSPIAssignmentLooks;
class MSPIGrowthBounds;
class MSPIProjectIndex;

// How many units of a resource all its assignments take together, within one scenario. Summed up once for all resources
// of one UID.
class MSPIAssignedUnits {
public:
    // The sum of "Assignments/Assignment[ResourceUID=<uid>]/Units", in document order; a text that is no number counts
    // nothing. The assignments are those of `index`, of which `looks` and `bounds` keep account. Raises what
    // `MSPIGrowthBounds` raises for assignments of many resources.
    [[nodiscard]] double ofResource(MSPCResourceUID uid, MSPIProjectIndex& index, MSPIAssignmentLooks& looks,
                                    MSPIGrowthBounds& bounds);

private:
    std::map<MSPCResourceUID, double> _byUID;
};
