#pragma once

#include "MSPCXMLSelection.h"

// The elements of an MSPDI document that mapping ever reads. Whatever a mapper is to read must be named here, or a plan
// that is loaded piece by piece will not have it. The tests of the mappers load their plans by this list too, so they
// miss what it lacks; for each name a test shows that.
[[nodiscard]] const MSPCXMLSelection& MSPIElementsRead();
