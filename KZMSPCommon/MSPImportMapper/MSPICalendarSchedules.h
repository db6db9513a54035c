#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "MSPCMessage.h"
#include "MSPCXMLNode.h"

// The schedules of one scenario by their calendars: a calendar is mapped once, and copied for every resource more that
// has it. Must not outlive the scenario's document.
class MSPICalendarSchedules {
public:
    struct Schedule {
        MSPCXMLNode element;
        // What the copies need, set by the first of them; most calendars have none.
        std::optional<MSPCMessage> logLine;  // what is told each time the calendar is mapped
        std::uint64_t nameSize = 0;          // bytes of the calendar's name in it
        std::uint64_t elementCount = 0;      // days, working times and events
    };

    // That of a calendar; a null pointer when it has not been mapped in this scenario.
    [[nodiscard]] Schedule* find(const MSPCXMLNode& mspCalendar);
    // Keeps where the schedule of a calendar stands. It must stay there, as it is, until `clear`.
    void keep(const MSPCXMLNode& mspCalendar, const MSPCXMLNode& schedule);

    // Lets go of all of them.
    void clear() { _byCalendar.clear(); }

private:
    std::map<MSPCXMLNode, Schedule> _byCalendar;
};
