// What becomes of working times, days off and exceptions.
#include <fmt/format.h>

#include <map>

#include "MSPCTextScanner.h"
#include "MSPDIConditions.h"
#include "MSPDIValues.h"
#include "MSPICalendarMapper.h"

namespace {

const MSPDICalendarFacts& calendarOf(const MSPDILeaf& leaf) {
    return leaf.item.facts.calendars[leaf.item.position];
}

bool isBase(const MSPDILeaf& leaf) {
    return MSPDIIsTrueField(leaf.item.fields, "IsBaseCalendar");
}

// Of a calendar of resources; each of those is told once at the end to lack its week.
const MSPDIJudgement lackedWeek(MSPDIFate::Lost, "resource-week");

MSPDIJudgement repeated() {
    return {MSPDIFate::Lost, "repeated-element"};
}

// What says something, and is a part of a loss that is told once for all of its parts.
MSPDIJudgement partOf(std::string_view kind, const MSPDILeaf& leaf) {
    const bool saysNothing = leaf.text.find_first_not_of(" \t\r\n") == std::string_view::npos;
    return saysNothing ? MSPDIJudgement(MSPDIFate::Default) : MSPDIJudgement(MSPDIFate::Lost, kind);
}

// Nothing that arrives goes by this calendar; it is told once, by its name where it has one.
MSPDIJudgement ofUnusedCalendar(const MSPDILeaf& leaf) {
    return partOf("unused-calendar", leaf);
}

bool isDayOfWeek(const MSPDIItem& calendar, const MSPCXMLNode& weekDay) {
    if (!calendar.daysOfWeek) {
        const auto days = MSPICalendarMapper::weekDaysOfMSPCalendar(calendar.node);
        calendar.daysOfWeek.emplace(days.begin(), days.end());
    }
    return calendar.daysOfWeek->contains(weekDay);
}

const MSPDIWeekDayFacts& factsOf(const MSPDILeaf& leaf, const MSPCXMLNode& weekDay) {
    return leaf.item.weekDay.of(
        weekDay, [&] { return MSPDIWeekDayFacts(weekDay, isDayOfWeek(leaf.item, weekDay), isBase(leaf)); });
}

// Whether a day of the week becomes one of the document.
bool isWritten(const MSPDILeaf& leaf, const MSPCXMLNode& weekDay) {
    return factsOf(leaf, weekDay).isWritten;
}

// Whether a working time ends at midnight or later: in a document its end is one of the day on which it begins.
bool isOvernight(const MSPDILeaf& end) {
    const auto& facts = end.item.facts;
    const auto to = facts.secondsOfDay(end.text);
    const auto from = facts.secondsOfDay(end.item.lastText(end.node.parent(), "FromTime"));
    return to && (*to == 0 || (from && *to <= *from));
}

MSPDIJudgement timeOfDay(const MSPDILeaf& leaf) {
    if (!leaf.isLastOfItsName()) {
        return repeated();
    }
    if (leaf.text.empty()) {
        return MSPDIFate::Shaping;
    }
    const bool endsOnTheNextDay = leaf.name() == "ToTime" && isOvernight(leaf);
    return endsOnTheNextDay ? MSPDIJudgement(MSPDIFate::Changed, "overnight-time") : MSPDIFate::Carried;
}

MSPCXMLNode ownerOfTime(const MSPDILeaf& leaf) {
    return leaf.node.parent().parent().parent();
}

using ExceptionUse = MSPDIExceptionFacts::Use;

// All that the importer reads, and for what: those of one calendar are asked for one after the other.
const std::map<MSPCXMLNode, ExceptionUse>& usesOf(const MSPDIItem& calendar) {
    if (!calendar.exceptionUses) {
        auto& uses = calendar.exceptionUses.emplace();
        for (const auto& exception : MSPICalendarMapper::timeOffOfMSPCalendar(calendar.node)) {
            uses[exception] = ExceptionUse::TimeOff;
        }
        for (const auto& exception : MSPICalendarMapper::overtimeOfMSPCalendar(calendar.node)) {
            if (!MSPICalendarMapper::workingTimesOf(exception).empty()) {
                uses.try_emplace(exception, ExceptionUse::Overtime);
            }
        }
    }
    return *calendar.exceptionUses;
}

ExceptionUse useOf(const MSPDIItem& calendar, const MSPCXMLNode& exception) {
    const auto& uses = usesOf(calendar);
    const auto found = uses.find(exception);
    return found == uses.end() ? ExceptionUse::None : found->second;
}

// The day of a date-time text, which is compared as text: "2012-01-05".
std::string_view dayOf(std::string_view dateTime) {
    return dateTime.substr(0, dateTime.find('T'));
}

const MSPDIExceptionFacts& exceptionOf(const MSPDILeaf& leaf, const MSPCXMLNode& exception) {
    return leaf.item.exception.of(exception, [&] {
        const auto& item = leaf.item;
        MSPDIExceptionFacts facts;
        facts.use = useOf(item, exception);
        facts.period = item.lastChild(exception, "TimePeriod").element;
        const auto types = item.lastChild(exception, "Type").count;
        facts.isOnlyNumber = types <= 1 && item.lastChild(exception, "DayWorking").count <= 1;
        facts.isRecurring = types > 0 && !MSPICalendarMapper::isOverOneRange(exception);
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

// A part of an exception that gives no events: it recurs, has no type, or is a working one without hours.
MSPDIJudgement ofLostException(const MSPDIExceptionFacts& exception, const MSPDILeaf& leaf) {
    return partOf(exception.isRecurring ? "recurring-exception" : "calendar-exception", leaf);
}

// A part of an exception in the form of 2003, which has no place in a week. Most have their like in the later form.
MSPDIJudgement ofExceptionOf2003(const MSPDILeaf& leaf, const MSPCXMLNode& weekDay) {
    const bool isThereTwice = calendarOf(leaf).exceptionStarts.contains(factsOf(leaf, weekDay).periodStart);
    return isThereTwice ? MSPDIJudgement(MSPDIFate::Derived) : partOf("exception-2003", leaf);
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
    if (isBase(leaf) || !leaf.item.facts.isOtherBaseCalendar(leaf.text)) {
        return MSPDIFate::Default;
    }
    return calendarOf(leaf).isMapped() ? lackedWeek : ofUnusedCalendar(leaf);
}

MSPDIJudgement weekDayType(const MSPDILeaf& leaf) {
    const auto weekDay = leaf.node.parent();
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar(leaf);
    }
    if (isWritten(leaf, weekDay) || !leaf.isOnlyOfItsName()) {
        return MSPDIFate::Shaping;
    }
    return factsOf(leaf, weekDay).isDayOff ? lackedWeek : MSPDIFate::Default;
}

MSPDIJudgement weekDayWorking(const MSPDILeaf& leaf) {
    const auto weekDay = leaf.node.parent();
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar(leaf);
    }
    if (isWritten(leaf, weekDay)) {
        return MSPDIFate::Shaping;
    }
    const auto& facts = factsOf(leaf, weekDay);
    if (!facts.isDayOfWeek) {
        return ofExceptionOf2003(leaf, weekDay);
    }
    return facts.isDayOff && !MSPDIIsTrue(leaf.text) ? lackedWeek : MSPDIFate::Default;
}

MSPDIJudgement weekDayTime(const MSPDILeaf& leaf) {
    const auto weekDay = ownerOfTime(leaf);
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar(leaf);
    }
    const auto& facts = factsOf(leaf, weekDay);
    if (isWritten(leaf, weekDay) && facts.isWorking) {
        return timeOfDay(leaf);
    }
    return facts.isDayOfWeek ? MSPDIJudgement(MSPDIFate::Default) : ofExceptionOf2003(leaf, weekDay);
}

MSPDIJudgement weekDayPeriod(const MSPDILeaf& leaf) {
    const auto weekDay = leaf.node.parent().parent();
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar(leaf);
    }
    return factsOf(leaf, weekDay).isDayOfWeek ? MSPDIJudgement(MSPDIFate::Default) : ofExceptionOf2003(leaf, weekDay);
}

MSPDIJudgement emptyWorkingTime(const MSPDILeaf& leaf) {
    return calendarOf(leaf).isMapped() ? MSPDIFate::Shaping : MSPDIFate::Default;
}

MSPDIJudgement exceptionType(const MSPDILeaf& leaf) {
    const auto& exception = exceptionOf(leaf, leaf.node.parent());
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar(leaf);
    }
    if (mayGiveEvents(exception) || !exception.isOnlyNumber) {
        return MSPDIFate::Shaping;
    }
    return ofLostException(exception, leaf);
}

MSPDIJudgement exceptionWorking(const MSPDILeaf& leaf) {
    const auto& exception = exceptionOf(leaf, leaf.node.parent());
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar(leaf);
    }
    if (mayGiveEvents(exception) || !exception.isOnlyNumber) {
        return MSPDIFate::Shaping;
    }
    return ofLostException(exception, leaf);
}

MSPDIJudgement exceptionDate(const MSPDILeaf& leaf) {
    const auto period = leaf.node.parent();
    const auto& exception = exceptionOf(leaf, period.parent());
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar(leaf);
    }
    const bool isLast = leaf.isLastOfItsName() && exception.period == period;
    if (!isLast) {
        return repeated();
    }
    if (exception.givesEvents) {
        return leaf.item.facts.isSummerNow ? MSPDIJudgement(MSPDIFate::Changed, "summer-time") : MSPDIFate::Carried;
    }
    return mayGiveEvents(exception) ? MSPDIFate::Shaping : ofLostException(exception, leaf);
}

MSPDIJudgement exceptionTime(const MSPDILeaf& leaf) {
    const auto& exception = exceptionOf(leaf, ownerOfTime(leaf));
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar(leaf);
    }
    if (exception.use == ExceptionUse::Overtime) {
        return exception.givesEvents ? timeOfDay(leaf) : MSPDIFate::Shaping;
    }
    // Both kinds of days at once: an exception that is time off and overtime.
    if (!exception.isOnlyNumber) {
        return MSPDIFate::Shaping;
    }
    // Hours of a day off are those of nothing.
    return mayGiveEvents(exception) ? MSPDIJudgement(MSPDIFate::Default) : ofLostException(exception, leaf);
}

// How often an exception comes: of those that arrive only every day from the first to the last.
MSPDIJudgement exceptionRecurrence(const MSPDILeaf& leaf) {
    if (!calendarOf(leaf).isMapped()) {
        return ofUnusedCalendar(leaf);
    }
    const auto& exception = exceptionOf(leaf, leaf.node.parent());
    if (!mayGiveEvents(exception)) {
        return ofLostException(exception, leaf);
    }
    const auto period = scanInteger64(leaf.item.lastText(leaf.node.parent(), "Period")).value_or(1);
    if (period > 1) {
        return lostUnlessDefault(leaf);
    }
    return leaf.name() == "Occurrences" ? MSPDIFate::Derived : MSPDIFate::Default;
}

MSPDIJudgement ofCalendar(const MSPDILeaf& leaf) {
    return calendarOf(leaf).isMapped() ? lostUnlessDefault(leaf) : ofUnusedCalendar(leaf);
}
