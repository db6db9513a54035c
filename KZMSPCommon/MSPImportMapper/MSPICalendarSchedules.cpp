#include "MSPICalendarSchedules.h"

MSPICalendarSchedules::Schedule* MSPICalendarSchedules::find(const MSPCXMLNode& mspCalendar) {
    const auto known = _byCalendar.find(mspCalendar);
    return known == _byCalendar.end() ? nullptr : &known->second;
}

void MSPICalendarSchedules::keep(const MSPCXMLNode& mspCalendar, const MSPCXMLNode& schedule) {
    _byCalendar[mspCalendar].element = schedule;
}
