#include "KZDXSchedules.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <vector>

#include "KZDXWords.h"
#include "KZDXWorkingWeek.h"
#include "KZDXXMLFile.h"

namespace {

// "08:00-12:00 13:00-17:00" for each day of the week; a day that is not there differs from one without work.
std::array<std::string, 7> timesOf(const MSPCXMLNode& schedule) {
    const auto clock = [](std::int64_t seconds) {
        return fmt::format("{:02}:{:02}", seconds / 3600, seconds / 60 % 60);
    };
    std::array<std::string, 7> days;
    for (auto day = schedule.firstChildElement("schedule-day"); day; day = day.nextSiblingElement("schedule-day")) {
        const auto place = KZDXWeekdayNamed(KZDXAttribute(day, "day-of-week").value_or(""));
        if (!place) {
            continue;
        }
        auto& times = days[*place];
        times = "no work";
        for (auto span = day.firstChildElement("time-span"); span; span = span.nextSiblingElement("time-span")) {
            times == "no work" ? times.clear() : times.push_back(' ');
            times += fmt::format("{}-{}", clock(KZDXTimeOfDay(span, "start-time").value_or(0)),
                                 clock(KZDXTimeOfDay(span, "end-time").value_or(0)));
        }
    }
    return days;
}

// "Time Off Thu 24 Dec 2026 00:00 - Sat 26 Dec 2026 23:59:59" for each, sorted.
std::vector<std::string> eventsOf(const MSPCXMLNode& schedule) {
    const auto shown = [](const MSPCXMLNode& event, std::string_view name) {
        const auto text = KZDXAttribute(event, name).value_or("");
        const auto date = KZDXDateTimeFrom(text);
        return date ? KZDXShownDate(*date, true) : KZDXQuoted(text);
    };
    std::vector<std::string> events;
    for (auto calendar = schedule.firstChildElement("calendar"); calendar;
         calendar = calendar.nextSiblingElement("calendar")) {
        const auto name = KZDXShortened(KZDXAttribute(calendar, "name").value_or(""));
        for (auto event = calendar.firstChildElement("event"); event; event = event.nextSiblingElement("event")) {
            events.push_back(fmt::format("{} {} - {}", name, shown(event, "start"), shown(event, "end")));
        }
    }
    std::sort(events.begin(), events.end());
    return events;
}

// Calls `visit` with each element of a sorted list that the other one lacks.
template <typename Visit>
void forEachMissing(const std::vector<std::string>& list, const std::vector<std::string>& other, const Visit& visit) {
    std::vector<std::string> missing;
    std::set_difference(list.begin(), list.end(), other.begin(), other.end(), std::back_inserter(missing));
    for (const auto& text : missing) {
        visit(text);
    }
}

}  // namespace

void KZDXCompareSchedules(const MSPCXMLNode& old, const MSPCXMLNode& now, const KZDXTellValue& tell) {
    const auto before = timesOf(old);
    const auto after = timesOf(now);
    for (std::size_t day = 0; day < before.size(); ++day) {
        if (before[day] != after[day]) {
            const auto shown = [](const std::string& times) { return times.empty() ? std::string("not told") : times; };
            tell("calendar",
                 fmt::format("working times on {} {} -> {}", KZDXNameOfWeekday(day), shown(before[day]),
                             shown(after[day])),
                 before[day], after[day]);
        }
    }
    const auto oldEvents = eventsOf(old);
    const auto newEvents = eventsOf(now);
    forEachMissing(oldEvents, newEvents, [&tell](const std::string& event) {
        tell("calendar", fmt::format("no longer {}", event), event, "");
    });
    forEachMissing(newEvents, oldEvents,
                   [&tell](const std::string& event) { tell("calendar", fmt::format("new: {}", event), "", event); });
}
