#pragma once

#include "KZDXTellValue.h"
#include "MSPCXMLNode.h"

// Compares two schedules, day by day and each time off and overtime; either may be empty.
void KZDXCompareSchedules(const MSPCXMLNode& old, const MSPCXMLNode& now, const KZDXTellValue& tell);
