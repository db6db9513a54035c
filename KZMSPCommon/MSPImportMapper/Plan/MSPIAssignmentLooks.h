#pragma once

#include <set>
#include <utility>

#include "MSPCXMLNode.h"

class MSPIGrowthBounds;
class MSPINumberIndex;

// Which assignments of several tasks or resources have been looked at in a scenario. Each of these looks at all that
// the assignment holds, so a few long assignments of thousands of tasks cost what neither the plan nor the document
// tells.
class MSPIAssignmentLooks {
public:
    // To be told before the children of an assignment are looked at that was found in an index. From the second time on
    // they count in the bounds, which raise where they are too many.
    void lookAt(const MSPCXMLNode& assignment, const MSPINumberIndex& foundIn, MSPIGrowthBounds& bounds);

private:
    std::set<std::pair<const MSPINumberIndex*, MSPCXMLNode>> _seen;  // where assignments have several UIDs
};
