#pragma once

#include <map>

#include "MSPCInstant.h"

// The working time of any 400 years in which days and changes of the clocks repeat, in seconds, by the time of day in
// Greenwich at which the days are stepped. A calendar remembers it: there is one for each offset of its zone.
using MSPEWorksOfCycle = std::map<MSPCTimeInterval, MSPCTimeInterval>;
