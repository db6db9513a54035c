#pragma once

#include "MSPCXMLSelection.h"

// The elements of an MSPDI document that mapping ever reads. Whatever a mapper is to read must be named here, or a plan
// that is loaded piece by piece will not have it; a test compares this list with the queries in the sources.
[[nodiscard]] const MSPCXMLSelection& MSPIElementsRead();
