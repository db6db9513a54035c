#pragma once

#include "MSPCXMLNode.h"

// The calendar that the working times of a document are made from: that with the UID 1, or where there is none that
// named "Standard"; of several the last one. Empty where the plan has neither.
[[nodiscard]] MSPCXMLNode MSPIStandardCalendar(const MSPCXMLNode& mspProject);
