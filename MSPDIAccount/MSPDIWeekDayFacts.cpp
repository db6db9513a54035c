#include "MSPDIWeekDayFacts.h"

#include <string_view>

#include "MSPCXPathNumber.h"
#include "MSPDIValues.h"

namespace {

bool hasNumberBetween(const MSPCXMLNode& element, std::string_view name, double least, double most) {
    std::string buffer;
    for (auto child = element.firstChildElement(name); child; child = child.nextSiblingElement(name)) {
        const auto number = xpathNumber(child.stringValue(buffer));
        if (number && *number >= least && *number <= most) {
            return true;
        }
    }
    return false;
}

}  // namespace

MSPDIWeekDayFacts::MSPDIWeekDayFacts(const MSPCXMLNode& weekDay)
    : isDayOfWeek(hasNumberBetween(weekDay, "DayType", 1, 7)), hasWorkingTime(MSPDIHasWorkingTime(weekDay)) {
    const auto working = weekDay.lastChildElement("DayWorking");
    const bool saysWorking = working.count > 0 && MSPDIIsTrue(working.element.stringValue());
    isWorking = saysWorking && working.count == 1;
    isDayOff = isDayOfWeek && !hasWorkingTime && working.count > 0 && !saysWorking;
    const auto period = weekDay.lastChildElement("TimePeriod").element;
    periodStart = period ? period.lastChildElement("FromDate").element.stringValue() : std::string();
}

bool MSPDIHasWorkingTime(const MSPCXMLNode& owner) {
    for (auto times = owner.firstChildElement("WorkingTimes"); times;
         times = times.nextSiblingElement("WorkingTimes")) {
        if (times.firstChildElement("WorkingTime")) {
            return true;
        }
    }
    return false;
}
