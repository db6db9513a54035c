#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "MSPCMessage.h"
#include "MSPCXMLNode.h"

// The schedules of calendars that several resources of one scenario share: each is kept once, to be copied for every
// resource that has it. Must not outlive the scenario's document.
class MSPICalendarSchedules {
public:
    struct Shared {
        std::optional<MSPCMessage> logLine;  // what is told each time the calendar is mapped
        std::uint64_t nameSize = 0;  // bytes of the calendar's name in it
        MSPCXMLNewElement schedule;
        std::uint64_t elementCount = 0;  // days, working times and events
    };

    // To be told each time a calendar is mapped. Most calendars are mapped once, so nothing is kept then: gives a null
    // pointer the first time, and afterwards what is kept of the calendar, which is empty until the caller sets it.
    [[nodiscard]] Shared* use(const MSPCXMLNode& mspCalendar);

    // Lets go of all of them.
    void clear() { _byCalendar.clear(); }

private:
    std::map<MSPCXMLNode, Shared> _byCalendar;
};
