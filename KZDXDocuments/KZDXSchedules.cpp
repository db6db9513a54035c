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

// "Thu 24 Dec 2026 to Sat 26 Dec 2026" of whole days, "Thu 24 Dec 2026 10:00 to Thu 24 Dec 2026 12:00" of others.
std::string shownTimes(const MSPCXMLNode& event) {
    const auto startText = KZDXAttribute(event, "start").value_or("");
    const auto endText = KZDXAttribute(event, "end").value_or("");
    const auto start = KZDXDateTimeFrom(startText);
    const auto end = KZDXDateTimeFrom(endText);
    const auto isAt = [](const KZDXDateTime& date, int hour, int minute, int second) {
        return date.fields.hour == hour && date.fields.minute == minute && date.fields.second == second;
    };
    if (start && end && isAt(*start, 0, 0, 0) && isAt(*end, 23, 59, 59)) {
        const auto first = KZDXShownDay(*start);
        const auto last = KZDXShownDay(*end);
        return first == last ? first : fmt::format("{} to {}", first, last);
    }
    return fmt::format("{} to {}", start ? KZDXShownDate(*start, true) : KZDXQuoted(startText),
                       end ? KZDXShownDate(*end, true) : KZDXQuoted(endText));
}

// "Time Off Thu 24 Dec 2026 to Sat 26 Dec 2026" for each, sorted.
std::vector<std::string> eventsOf(const MSPCXMLNode& schedule) {
    std::vector<std::string> events;
    for (auto calendar = schedule.firstChildElement("calendar"); calendar;
         calendar = calendar.nextSiblingElement("calendar")) {
        const auto name = KZDXShortened(KZDXAttribute(calendar, "name").value_or(""));
        for (auto event = calendar.firstChildElement("event"); event; event = event.nextSiblingElement("event")) {
            events.push_back(fmt::format("{} {}", name, shownTimes(event)));
        }
    }
    std::sort(events.begin(), events.end());
    return events;
}

// "Monday"
std::string titleOfDay(std::size_t day) {
    std::string name(KZDXNameOfWeekday(day));
    name.front() = static_cast<char>(name.front() - 'a' + 'A');
    return name;
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
    // What a resource does not tell is that of the project.
    const bool isOfProject = KZDXAttribute((now ? now : old).parent(), "id") == "r-1";
    const std::string_view missing = isOfProject ? "not told" : "as the project";
    for (std::size_t day = 0; day < before.size(); ++day) {
        if (before[day] != after[day]) {
            const auto shown = [missing](const std::string& times) {
                return times.empty() ? std::string(missing) : times;
            };
            tell("calendar", fmt::format("{}: {}, was {}", titleOfDay(day), shown(after[day]), shown(before[day])),
                 before[day], after[day]);
        }
    }
    const auto oldEvents = eventsOf(old);
    const auto newEvents = eventsOf(now);
    forEachMissing(oldEvents, newEvents, [&tell](const std::string& event) {
        tell("calendar", fmt::format("{} is gone", event), event, "");
    });
    forEachMissing(newEvents, oldEvents,
                   [&tell](const std::string& event) { tell("calendar", fmt::format("{} is new", event), "", event); });
}
