#include "MSPDIWeekDayFacts.h"

#include "MSPCException.h"
#include "MSPDIValues.h"
#include "MSPICalendarMapper.h"

namespace {

// A text that says neither is what the plan is refused for.
bool isWorked(const MSPCXMLNode& weekDay) {
    try {
        return MSPICalendarMapper::isWorked(weekDay);
    } catch (const MSPCException&) {
        return false;
    }
}

}  // namespace

MSPDIWeekDayFacts::MSPDIWeekDayFacts(const MSPCXMLNode& weekDay, bool isOfWeek, bool isOfBaseCalendar)
    : isDayOfWeek(isOfWeek),
      isWritten(isOfWeek && MSPICalendarMapper::isScheduleDay(weekDay, isOfBaseCalendar)),
      isWorking(isWorked(weekDay)) {
    const auto working = weekDay.lastChildElement("DayWorking");
    const bool isSaidToBeFree = working.count > 0 && !MSPDIIsTrue(working.element.stringValue());
    isDayOff = isOfWeek && isSaidToBeFree && MSPICalendarMapper::workingTimesOf(weekDay).empty();
    const auto period = weekDay.lastChildElement("TimePeriod").element;
    periodStart = period ? period.lastChildElement("FromDate").element.stringValue() : std::string();
}
