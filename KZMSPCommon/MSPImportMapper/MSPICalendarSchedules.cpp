#include "MSPICalendarSchedules.h"

MSPICalendarSchedules::Shared* MSPICalendarSchedules::use(const MSPCXMLNode& mspCalendar) {
    const auto [known, isNew] = _byCalendar.try_emplace(mspCalendar);
    return isNew ? nullptr : &known->second;
}
