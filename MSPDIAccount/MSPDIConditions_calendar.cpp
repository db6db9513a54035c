// What becomes of working times, days off and exceptions.
#include <fmt/format.h>

#include "MSPCTextScanner.h"
#include "MSPDIConditions.h"
#include "MSPDIValues.h"
#include "MSPIXPathNumber.h"

namespace {

const MSPDICalendarFacts& calendarOf(const MSPDILeaf& leaf) {
    return leaf.item.facts.calendars[leaf.item.position];
}

bool isBase(const MSPDILeaf& leaf) {
    return MSPDIIsTrueField(leaf.item.fields, "IsBaseCalendar");
}

MSPDIJudgement repeated() {
    return {MSPDIFate::Lost, "repeated-element"};
}

// Nothing that arrives goes by this calendar; that it is lost is told once, with its name.
MSPDIJudgement ofUnusedCalendar() {
    return MSPDIFate::Default;
}

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

bool isDayOfWeek(const MSPCXMLNode& weekDay) {
    return hasNumberBetween(weekDay, "DayType", 1, 7);
}

bool hasWorkingTime(const MSPCXMLNode& owner) {
    for (auto times = owner.firstChildElement("WorkingTimes"); times;
         times = times.nextSiblingElement("WorkingTimes")) {
        if (times.firstChildElement("WorkingTime")) {
            return true;
        }
    }
    return false;
}

// Whether a day of the week becomes one of the document.
bool isWritten(const MSPDILeaf& leaf, const MSPCXMLNode& weekDay) {
    return isDayOfWeek(weekDay) && (isBase(leaf) || hasWorkingTime(weekDay));
}

bool isWorking(const MSPCXMLNode& weekDay) {
    const auto [element, count] = weekDay.lastChildElement("DayWorking");
    return count == 1 && MSPDIIsTrue(element.stringValue());
}

MSPDIJudgement timeOfDay(const MSPDILeaf& leaf) {
    if (!leaf.isLastOfItsName()) {
        return repeated();
    }
    if (leaf.text.empty()) {
        return MSPDIFate::Shaping;
    }
    const bool endsAtMidnight = leaf.name() == "ToTime" && leaf.text.starts_with("00:00");
    return endsAtMidnight ? MSPDIJudgement(MSPDIFate::Changed, "overnight-time") : MSPDIFate::Carried;
}

MSPCXMLNode ownerOfTime(const MSPDILeaf& leaf) {
    return leaf.node.parent().parent().parent();
}

enum class ExceptionUse { None, TimeOff, Overtime };

ExceptionUse useOf(const MSPCXMLNode& exception) {
    if (!hasChildWithNumber(exception, "Type", 1)) {
        return ExceptionUse::None;
    }
    if (hasChildWithNumber(exception, "DayWorking", 0)) {
        return ExceptionUse::TimeOff;
    }
    const bool isOvertime = hasChildWithNumber(exception, "DayWorking", 1) && hasWorkingTime(exception);
    return isOvertime ? ExceptionUse::Overtime : ExceptionUse::None;
}

// The day of a date-time text, which is compared as text: "2012-01-05".
std::string_view dayOf(std::string_view dateTime) {
    return dateTime.substr(0, dateTime.find('T'));
}

// Whether an exception gives events: it is of a kind that is read, and its last period is no shorter than nothing.
bool givesEvents(const MSPCXMLNode& exception) {
    const auto period = exception.lastChildElement("TimePeriod").element;
    if (useOf(exception) == ExceptionUse::None || !period) {
        return false;
    }
    const auto from = period.lastChildElement("FromDate").element.stringValue();
    const auto to = period.lastChildElement("ToDate").element.stringValue();
    return !from.empty() && !to.empty() && (dayOf(from) <= dayOf(to));
}

// It is read, but its period ends before it begins, or there is none; whether that gives events after all is a matter
// of hours.
bool mayGiveEvents(const MSPCXMLNode& exception) {
    return useOf(exception) != ExceptionUse::None;
}

bool isOnlyNumber(const MSPCXMLNode& exception) {
    return MSPDICount(exception, "Type") <= 1 && MSPDICount(exception, "DayWorking") <= 1;
}

bool isRecurring(const MSPCXMLNode& exception) {
    return exception.firstChildElement("Type") && !hasChildWithNumber(exception, "Type", 1);
}

}  // namespace

MSPDIJudgement calendarUID(const MSPDILeaf& leaf) {
    if (calendarOf(leaf).isMapped()) {
        return MSPDIFate::Shaping;
    }
    const bool isTold = static_cast<bool>(leaf.item.fields.singleObject("Name"));
    return isTold ? MSPDIJudgement(MSPDIFate::Default) : MSPDIJudgement(MSPDIFate::Lost, "unused-calendar");
}

MSPDIJudgement calendarName(const MSPDILeaf& leaf) {
    const auto& calendar = calendarOf(leaf);
    if (calendar.isProjects && leaf.item.facts.isCalendarFoundByName) {
        return MSPDIFate::Shaping;
    }
    if (!calendar.isMapped()) {
        return {MSPDIFate::Lost, "unused-calendar"};
    }
    // A resource's calendar is named after it.
    return calendar.isProjects ? lostUnlessDefault(leaf) : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement calendarIsBase(const MSPDILeaf& leaf) {
    return calendarOf(leaf).isMapped() ? MSPDIFate::Shaping : MSPDIFate::Default;
}

MSPDIJudgement calendarBase(const MSPDILeaf& leaf) {
    const auto uid = scanInteger64(leaf.text).value_or(-1);
    const bool goesBySomethingElse = uid >= 0 && uid != leaf.item.facts.projectCalendarUID && !isBase(leaf);
    const bool isTold = goesBySomethingElse && !calendarOf(leaf).resources.empty();
    return isTold ? MSPDIJudgement(MSPDIFate::Lost, "resource-week") : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement weekDayType(const MSPDILeaf& leaf) {
    const auto weekDay = leaf.node.parent();
    const bool isShaping = calendarOf(leaf).isMapped() && (isWritten(leaf, weekDay) || !leaf.isOnlyOfItsName());
    return isShaping ? MSPDIFate::Shaping : MSPDIFate::Default;
}

MSPDIJudgement weekDayWorking(const MSPDILeaf& leaf) {
    const auto weekDay = leaf.node.parent();
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar();
    }
    if (isWritten(leaf, weekDay)) {
        return MSPDIFate::Shaping;
    }
    const bool isDayOff = isDayOfWeek(weekDay) && !MSPDIIsTrue(leaf.text);
    return isDayOff ? MSPDIJudgement(MSPDIFate::Lost, "resource-week") : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement weekDayTime(const MSPDILeaf& leaf) {
    const auto weekDay = ownerOfTime(leaf);
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar();
    }
    if (isWritten(leaf, weekDay) && isWorking(weekDay)) {
        return timeOfDay(leaf);
    }
    const auto from = weekDay.lastChildElement("TimePeriod").element.lastChildElement("FromDate").element.stringValue();
    const bool isException = !isDayOfWeek(weekDay) && !leaf.text.empty();
    if (isException && calendarOf(leaf).exceptionStarts.contains(from)) {
        return MSPDIFate::Derived;
    }
    return isException ? MSPDIJudgement(MSPDIFate::Lost, "exception-2003") : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement weekDayPeriod(const MSPDILeaf& leaf) {
    const auto weekDay = leaf.node.parent().parent();
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar();
    }
    if (calendarOf(leaf).exceptionStarts.contains(std::string(leaf.text))) {
        return MSPDIFate::Derived;  // the same exception in the older form
    }
    const bool isTold = !isDayOfWeek(weekDay) && leaf.name() == "FromDate" && !leaf.text.empty();
    return isTold ? MSPDIJudgement(MSPDIFate::Lost, "exception-2003") : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement emptyWorkingTime(const MSPDILeaf& leaf) {
    return calendarOf(leaf).isMapped() ? MSPDIFate::Shaping : MSPDIFate::Default;
}

MSPDIJudgement exceptionType(const MSPDILeaf& leaf) {
    const auto exception = leaf.node.parent();
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar();
    }
    if (mayGiveEvents(exception) || !isOnlyNumber(exception)) {
        return MSPDIFate::Shaping;
    }
    return isRecurring(exception) ? MSPDIJudgement(MSPDIFate::Lost, "recurring-exception")
                                  : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement exceptionWorking(const MSPDILeaf& leaf) {
    const auto exception = leaf.node.parent();
    const bool isShaping = calendarOf(leaf).isMapped() && (mayGiveEvents(exception) || !isOnlyNumber(exception));
    return isShaping ? MSPDIFate::Shaping : MSPDIFate::Default;
}

MSPDIJudgement exceptionDate(const MSPDILeaf& leaf) {
    const auto period = leaf.node.parent();
    const auto exception = period.parent();
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar();
    }
    const bool isLast = leaf.isLastOfItsName() && exception.lastChildElement("TimePeriod").element == period;
    if (!isLast) {
        return repeated();
    }
    if (givesEvents(exception)) {
        return leaf.item.facts.isSummerNow ? MSPDIJudgement(MSPDIFate::Changed, "summer-time") : MSPDIFate::Carried;
    }
    if (mayGiveEvents(exception)) {
        return MSPDIFate::Shaping;
    }
    const bool isTold = !leaf.text.empty() && leaf.name() == "FromDate";
    return isTold
               ? MSPDIJudgement(MSPDIFate::Lost, isRecurring(exception) ? "recurring-exception" : "calendar-exception")
               : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement exceptionTime(const MSPDILeaf& leaf) {
    const auto exception = ownerOfTime(leaf);
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar();
    }
    if (useOf(exception) == ExceptionUse::Overtime) {
        return givesEvents(exception) ? timeOfDay(leaf) : MSPDIFate::Shaping;
    }
    // Both kinds of days at once: an exception that is time off and overtime.
    if (!isOnlyNumber(exception)) {
        return MSPDIFate::Shaping;
    }
    const bool isTold = isRecurring(exception) && !leaf.text.empty();
    return isTold ? MSPDIJudgement(MSPDIFate::Lost, "recurring-exception") : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement exceptionRecurrence(const MSPDILeaf& leaf) {
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar();
    }
    const bool isTold = leaf.name() == "Period" && scanInteger64(leaf.text).value_or(1) > 1;
    return isTold ? MSPDIJudgement(MSPDIFate::Lost, "recurring-exception") : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement ofCalendar(const MSPDILeaf& leaf) {
    return calendarOf(leaf).isMapped() ? lostUnlessDefault(leaf) : ofUnusedCalendar();
}
