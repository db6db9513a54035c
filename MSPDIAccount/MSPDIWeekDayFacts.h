#pragma once

#include <string>

#include "MSPCXMLNode.h"

// What a `WeekDay` of a calendar says.
struct MSPDIWeekDayFacts {
    bool isDayOfWeek = false;     // else an exception in the form of 2003
    bool hasWorkingTime = false;  // elements for it, whatever they hold
    bool isWorking = false;
    bool isDayOff = false;    // a day of the week without working time, and said to be one
    std::string periodStart;  // of an exception; empty where it has none

    MSPDIWeekDayFacts() = default;
    explicit MSPDIWeekDayFacts(const MSPCXMLNode& weekDay);
};

// Whether a day, or an exception, has an element for a working time.
[[nodiscard]] bool MSPDIHasWorkingTime(const MSPCXMLNode& owner);
