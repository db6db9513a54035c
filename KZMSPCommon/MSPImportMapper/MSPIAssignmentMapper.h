#pragma once

#include "MSPIObjectMapperBase.h"

// Turns an MSPDI `Assignment` into a target `assignment`.
class MSPIAssignmentMapper : public MSPIObjectMapperBase {
public:
    using MSPIObjectMapperBase::MSPIObjectMapperBase;

    // A new element, owned by the caller, whose `idref` names the resource; without `idref` where the assignment has no
    // `ResourceUID`. Raises what the id mapper raises for a negative UID.
    [[nodiscard]] MSPCXMLNewElement newAssignmentFromMSPAssignment(const MSPCXMLNode& mspAssignment) const;
};
