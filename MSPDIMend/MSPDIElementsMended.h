#pragma once

#include "MSPCXMLSelection.h"

// The elements of a plan that mending looks at: those that an import reads, and what the steps need beside them. All
// others stay as they are, and are passed over.
[[nodiscard]] const MSPCXMLSelection& MSPDIElementsMended();
// The same with what only improvements look at.
[[nodiscard]] const MSPCXMLSelection& MSPDIElementsImproved();
