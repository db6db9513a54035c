// What becomes of working times, days off and exceptions.
#include <fmt/format.h>

#include "MSPCTextScanner.h"
#include "MSPCXPathNumber.h"
#include "MSPDIConditions.h"
#include "MSPDIValues.h"

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

bool hasWorkingTime(const MSPCXMLNode& owner) {
    for (auto times = owner.firstChildElement("WorkingTimes"); times;
         times = times.nextSiblingElement("WorkingTimes")) {
        if (times.firstChildElement("WorkingTime")) {
            return true;
        }
    }
    return false;
}

const MSPDIWeekDayFacts& factsOf(const MSPDILeaf& leaf, const MSPCXMLNode& weekDay) {
    return leaf.item.weekDay.of(weekDay, [&] {
        const auto [working, count] = leaf.item.lastChild(weekDay, "DayWorking");
        const auto period = leaf.item.lastChild(weekDay, "TimePeriod").element;
        return MSPDIWeekDayFacts{.isDayOfWeek = hasNumberBetween(weekDay, "DayType", 1, 7),
                                 .hasWorkingTime = hasWorkingTime(weekDay),
                                 .isWorking = count == 1 && MSPDIIsTrue(working.stringValue()),
                                 .periodStart = leaf.item.lastText(period, "FromDate")};
    });
}

// Whether a day of the week becomes one of the document.
bool isWritten(const MSPDILeaf& leaf, const MSPCXMLNode& weekDay) {
    const auto& facts = factsOf(leaf, weekDay);
    return facts.isDayOfWeek && (isBase(leaf) || facts.hasWorkingTime);
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

using ExceptionUse = MSPDIExceptionFacts::Use;

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

const MSPDIExceptionFacts& exceptionOf(const MSPDILeaf& leaf, const MSPCXMLNode& exception) {
    return leaf.item.exception.of(exception, [&] {
        const auto& item = leaf.item;
        MSPDIExceptionFacts facts;
        facts.use = useOf(exception);
        facts.period = item.lastChild(exception, "TimePeriod").element;
        const auto types = item.lastChild(exception, "Type").count;
        facts.isOnlyNumber = types <= 1 && item.lastChild(exception, "DayWorking").count <= 1;
        facts.isRecurring = types > 0 && !hasChildWithNumber(exception, "Type", 1);
        if (facts.use != ExceptionUse::None && facts.period) {
            const auto from = item.lastText(facts.period, "FromDate");
            const auto to = item.lastText(facts.period, "ToDate");
            facts.givesEvents = !from.empty() && !to.empty() && dayOf(from) <= dayOf(to);
        }
        return facts;
    });
}

// It is read, though its period may end before it begins, or there is none; whether that gives events after all is a
// matter of hours.
bool mayGiveEvents(const MSPDIExceptionFacts& exception) {
    return exception.use != ExceptionUse::None;
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
    const bool isDayOff = factsOf(leaf, weekDay).isDayOfWeek && !MSPDIIsTrue(leaf.text);
    return isDayOff ? MSPDIJudgement(MSPDIFate::Lost, "resource-week") : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement weekDayTime(const MSPDILeaf& leaf) {
    const auto weekDay = ownerOfTime(leaf);
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar();
    }
    const auto& facts = factsOf(leaf, weekDay);
    if (isWritten(leaf, weekDay) && facts.isWorking) {
        return timeOfDay(leaf);
    }
    const bool isException = !facts.isDayOfWeek && !leaf.text.empty();
    if (isException && calendarOf(leaf).exceptionStarts.contains(facts.periodStart)) {
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
    const bool isTold = !factsOf(leaf, weekDay).isDayOfWeek && leaf.name() == "FromDate" && !leaf.text.empty();
    return isTold ? MSPDIJudgement(MSPDIFate::Lost, "exception-2003") : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement emptyWorkingTime(const MSPDILeaf& leaf) {
    return calendarOf(leaf).isMapped() ? MSPDIFate::Shaping : MSPDIFate::Default;
}

MSPDIJudgement exceptionType(const MSPDILeaf& leaf) {
    const auto& exception = exceptionOf(leaf, leaf.node.parent());
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar();
    }
    if (mayGiveEvents(exception) || !exception.isOnlyNumber) {
        return MSPDIFate::Shaping;
    }
    return exception.isRecurring ? MSPDIJudgement(MSPDIFate::Lost, "recurring-exception")
                                 : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement exceptionWorking(const MSPDILeaf& leaf) {
    const auto& exception = exceptionOf(leaf, leaf.node.parent());
    const bool isShaping = calendarOf(leaf).isMapped() && (mayGiveEvents(exception) || !exception.isOnlyNumber);
    return isShaping ? MSPDIFate::Shaping : MSPDIFate::Default;
}

MSPDIJudgement exceptionDate(const MSPDILeaf& leaf) {
    const auto period = leaf.node.parent();
    const auto& exception = exceptionOf(leaf, period.parent());
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar();
    }
    const bool isLast = leaf.isLastOfItsName() && exception.period == period;
    if (!isLast) {
        return repeated();
    }
    if (exception.givesEvents) {
        return leaf.item.facts.isSummerNow ? MSPDIJudgement(MSPDIFate::Changed, "summer-time") : MSPDIFate::Carried;
    }
    if (mayGiveEvents(exception)) {
        return MSPDIFate::Shaping;
    }
    const bool isTold = !leaf.text.empty() && leaf.name() == "FromDate";
    return isTold
               ? MSPDIJudgement(MSPDIFate::Lost, exception.isRecurring ? "recurring-exception" : "calendar-exception")
               : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement exceptionTime(const MSPDILeaf& leaf) {
    const auto& exception = exceptionOf(leaf, ownerOfTime(leaf));
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar();
    }
    if (exception.use == ExceptionUse::Overtime) {
        return exception.givesEvents ? timeOfDay(leaf) : MSPDIFate::Shaping;
    }
    // Both kinds of days at once: an exception that is time off and overtime.
    if (!exception.isOnlyNumber) {
        return MSPDIFate::Shaping;
    }
    const bool isTold = exception.isRecurring && !leaf.text.empty();
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
