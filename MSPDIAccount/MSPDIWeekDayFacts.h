#pragma once

#include <string>

#include "MSPCXMLNode.h"

// What a `WeekDay` of a calendar says.
struct MSPDIWeekDayFacts {
    bool isDayOfWeek = false;  // else an exception in the form of 2003
    bool isWritten = false;    // a day of the week that becomes one of the document
    bool isWorking = false;    // with its working times
    bool isDayOff = false;     // a day of the week without working time, and said to be one
    std::string periodStart;   // of an exception; empty where it has none

    MSPDIWeekDayFacts() = default;
    MSPDIWeekDayFacts(const MSPCXMLNode& weekDay, bool isOfWeek, bool isOfBaseCalendar);
};
