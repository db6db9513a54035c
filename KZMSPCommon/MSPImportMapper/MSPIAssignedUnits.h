#pragma once

#include <cstdint>
#include <map>

class MSPIMappingContext;

// How many units of a resource all its assignments take together, within one scenario. Summed up once for all resources
// of one UID.
class MSPIAssignedUnits {
public:
    // The sum of "Assignments/Assignment[ResourceUID=<uid>]/Units", in document order; a text that is no number counts
    // nothing. Raises what `MSPIGrowthBounds` raises for assignments of many resources.
    [[nodiscard]] double ofResource(std::int64_t uid, MSPIMappingContext& mapper);

private:
    std::map<std::int64_t, double> _byUID;
};
