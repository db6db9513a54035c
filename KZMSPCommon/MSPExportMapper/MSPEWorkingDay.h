#pragma once

#include <vector>

#include "MSPETimePeriod.h"

// What a weekly calendar knows about one weekday.
struct MSPEWorkingDay {
    bool isWorkingDay = false;
    std::vector<MSPETimePeriod> timePeriods;  // in the order in which they were added
};
