#include "MSPIAssignmentMapper.h"

#include "MSPCExtensions.h"

MSPCXMLNewElement MSPIAssignmentMapper::newAssignmentFromMSPAssignment(const MSPCXMLNode& mspAssignment) const {
    auto assignment = _mapper.newElement("assignment");
    if (const auto resourceUID = textForXQuery(mspAssignment, "ResourceUID")) {
        setAttributeWithNameStringValue(assignment.node(), "idref",
                                        _mapper.idMapper().resourceIdFromMspdiUID(resourceUID.textOrEmpty()));
    }
    return assignment;
}
