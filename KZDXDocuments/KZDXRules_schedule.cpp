#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "KZDXDateTime.h"
#include "KZDXRules.h"
#include "KZDXWorkingWeek.h"

namespace {

// Calls `visit` with each schedule of a resource, and each `name` within.
template <typename Visit>
void forEachInSchedules(const KZDXScenario& scenario, std::string_view name, const Visit& visit) {
    for (const auto& resource : scenario.resources()) {
        for (auto schedule = resource.element.firstChildElement("schedule"); schedule;
             schedule = schedule.nextSiblingElement("schedule")) {
            for (auto child = schedule.firstChildElement(name); child; child = child.nextSiblingElement(name)) {
                visit(child);
            }
        }
    }
}

// A working time without any times, as an import makes of one that the plan leaves empty.
bool isEmpty(const MSPCXMLNode& span) {
    return KZDXAttribute(span, "start-time") == "" && KZDXAttribute(span, "end-time") == "";
}

// An import takes the times of a night shift as the plan has them.
bool isOvernight(std::int64_t start, std::int64_t end) {
    return end != 0 && start >= end;
}

// Midnight at the end of a span is the beginning of a day to an import; that, and an end on the next day, are told as
// notes of their own.
void lookAtDayTimes(const MSPCXMLNode& day, const KZDXTell& tell) {
    std::int64_t reached = 0;
    for (auto span = day.firstChildElement("time-span"); span; span = span.nextSiblingElement("time-span")) {
        const auto start = KZDXTimeOfDay(span, "start-time");
        const auto end = KZDXTimeOfDay(span, "end-time");
        if (isEmpty(span)) {
            continue;
        }
        if (!start || !end) {
            tell(span, "'start-time' and 'end-time' are not both seconds of a day");
            continue;
        }
        if (*start < reached) {
            tell(span, fmt::format("the span begins at second {}, before the end of the one before it", *start));
        }
        const bool reachesNextDay = *end == 0 || isOvernight(*start, *end);
        reached = std::max(reached, reachesNextDay ? MSPCSecondsPerDay : *end);
    }
}

void lookAtTimes(const KZDXSubject& subject, const KZDXTell& tell) {
    forEachInSchedules(subject.scenario, "schedule-day",
                       [&tell](const MSPCXMLNode& day) { lookAtDayTimes(day, tell); });
}

void lookForMidnights(const KZDXSubject& subject, const KZDXTell& tell) {
    forEachInSchedules(subject.scenario, "schedule-day", [&tell](const MSPCXMLNode& day) {
        for (auto span = day.firstChildElement("time-span"); span; span = span.nextSiblingElement("time-span")) {
            if (KZDXTimeOfDay(span, "end-time") == 0) {
                tell(span, "the span ends at midnight, which is taken for the beginning of the day: it counts no work");
            }
        }
    });
}

void lookForNights(const KZDXSubject& subject, const KZDXTell& tell) {
    forEachInSchedules(subject.scenario, "schedule-day", [&tell](const MSPCXMLNode& day) {
        for (auto span = day.firstChildElement("time-span"); span; span = span.nextSiblingElement("time-span")) {
            const auto start = KZDXTimeOfDay(span, "start-time");
            const auto end = KZDXTimeOfDay(span, "end-time");
            if (start && end && isOvernight(*start, *end)) {
                tell(span, fmt::format("the span ends at second {}, but begins at {}: the plan's calendar says so",
                                       *end, *start));
            }
        }
    });
}

void lookForEmptySpans(const KZDXSubject& subject, const KZDXTell& tell) {
    forEachInSchedules(subject.scenario, "schedule-day", [&tell](const MSPCXMLNode& day) {
        for (auto span = day.firstChildElement("time-span"); span; span = span.nextSiblingElement("time-span")) {
            if (isEmpty(span)) {
                tell(span, "the span has no times: the plan's calendar has none there");
            }
        }
    });
}

void lookAtWeekdays(const KZDXSubject& subject, const KZDXTell& tell) {
    forEachInSchedules(subject.scenario, "schedule-day", [&tell](const MSPCXMLNode& day) {
        const auto name = KZDXAttribute(day, "day-of-week").value_or("");
        if (!KZDXWeekdayNamed(name)) {
            tell(day, fmt::format("'{}' is no day of the week", name));
        }
    });
}

void lookForRepeatedDays(const KZDXSubject& subject, const KZDXTell& tell) {
    MSPCXMLNode schedule;
    std::array<bool, 7> isThere{};
    forEachInSchedules(subject.scenario, "schedule-day", [&](const MSPCXMLNode& day) {
        if (day.parent() != schedule) {
            schedule = day.parent();
            isThere = {};
        }
        const auto weekday = KZDXWeekdayNamed(KZDXAttribute(day, "day-of-week").value_or(""));
        if (weekday && isThere[*weekday]) {
            tell(day, "the day is there twice: the plan's calendar has it twice");
        }
        if (weekday) {
            isThere[*weekday] = true;
        }
    });
}

void lookAtEvent(const MSPCXMLNode& event, const KZDXTell& tell) {
    const auto startText = KZDXAttribute(event, "start").value_or("");
    const auto endText = KZDXAttribute(event, "end").value_or("");
    const auto start = KZDXDateTimeFrom(startText);
    const auto end = KZDXDateTimeFrom(endText);
    if (!start || !end) {
        tell(event, fmt::format("'{}' is no date with a time and an offset", start ? endText : startText));
    } else if (start->isBehind(*end)) {
        tell(event, "the start is behind the end");
    }
}

void lookAtEvents(const KZDXSubject& subject, const KZDXTell& tell) {
    forEachInSchedules(subject.scenario, "calendar", [&tell](const MSPCXMLNode& calendar) {
        for (auto event = calendar.firstChildElement("event"); event; event = event.nextSiblingElement("event")) {
            lookAtEvent(event, tell);
        }
    });
}

}  // namespace

std::span<const KZDXScenarioRule> KZDXScheduleRules() {
    static constexpr std::array<KZDXScenarioRule, 7> rules = {{
        {{"day-times", KZDXSeverity::Fault, "The working times of a day are in order"}, lookAtTimes},
        {{"weekday", KZDXSeverity::Fault, "The days of a schedule are days of the week"}, lookAtWeekdays},
        {{"event", KZDXSeverity::Fault, "Time off and overtime have dates, the start before the end"}, lookAtEvents},
        {{"midnight", KZDXSeverity::Note, "Working time ends at midnight, and counts no work"}, lookForMidnights},
        {{"overnight", KZDXSeverity::Note, "Working time ends before it begins, on the next day"}, lookForNights},
        {{"empty-span", KZDXSeverity::Note, "Working time without times"}, lookForEmptySpans},
        {{"repeated-day", KZDXSeverity::Note, "A schedule has a day of the week twice"}, lookForRepeatedDays},
    }};
    return rules;
}
