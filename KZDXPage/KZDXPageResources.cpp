#include "KZDXPageResources.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "KZDXWorkingWeek.h"
#include "KZDXXMLFile.h"

namespace {

using JSON = KZDXPageJSON;

constexpr std::array<std::string_view, 9> known = {"name",         "type",          "note",
                                                   "user-data",    "schedule",      "child-resource",
                                                   "cost-per-use", "cost-per-hour", "units-available"};

JSON daysOf(const MSPCXMLNode& schedule) {
    constexpr std::size_t daysOfWeek = 7;
    auto days = JSON(std::vector<JSON>(daysOfWeek));
    for (auto day = schedule.firstChildElement("schedule-day"); day; day = day.nextSiblingElement("schedule-day")) {
        const auto place = KZDXWeekdayNamed(KZDXAttribute(day, "day-of-week").value_or(""));
        if (!place) {
            continue;
        }
        auto& times = days[*place];
        if (times.is_null()) {
            times = JSON::array();
        }
        for (auto span = day.firstChildElement("time-span"); span; span = span.nextSiblingElement("time-span")) {
            const auto start = KZDXTimeOfDay(span, "start-time");
            const auto end = KZDXTimeOfDay(span, "end-time");
            if (start && end) {
                times.push_back({*start, *end});
            }
        }
    }
    return days;
}

JSON eventsOf(const MSPCXMLNode& schedule, bool isOvertime) {
    auto events = JSON::array();
    for (auto calendar = schedule.firstChildElement("calendar"); calendar;
         calendar = calendar.nextSiblingElement("calendar")) {
        if ((KZDXAttribute(calendar, "overtime") == "yes") != isOvertime) {
            continue;
        }
        // The names of the two calendars that importing makes say what the page says anyway.
        const auto name = KZDXAttribute(calendar, "name");
        const bool isUsual = name.value_or("").empty() || name == "Time Off" || name == "Overtime";
        for (auto event = calendar.firstChildElement("event"); event; event = event.nextSiblingElement("event")) {
            const auto start = KZDXDateTimeFrom(KZDXAttribute(event, "start").value_or(""));
            const auto end = KZDXDateTimeFrom(KZDXAttribute(event, "end").value_or(""));
            if (start && end) {
                events.push_back({KZDXPageDate(start), KZDXPageDate(end)});
            }
            if (start && end && !isUsual) {
                events.back().push_back(*name);
            }
        }
    }
    return events;
}

void putText(JSON& object, const std::string& name, const std::optional<std::string>& text) {
    if (text) {
        object[name] = *text;
    }
}

// [name, text] for each child element that the page has no place of its own for.
JSON factsOf(const MSPCXMLNode& resource) {
    auto facts = JSON::array();
    for (auto child = KZDXElementFrom(resource.firstChild()); child; child = KZDXElementFrom(child.nextSibling())) {
        if (std::find(known.begin(), known.end(), child.name()) == known.end()) {
            const bool isPlain = child.nodesForXPath("@*").value_or(std::vector<MSPCXMLNode>()).empty();
            facts.push_back({std::string(child.name()), isPlain ? KZDXPageContent(child) : child.markup()});
        }
    }
    for (const auto& attribute : resource.nodesForXPath("@*[name() != 'id']").value_or(std::vector<MSPCXMLNode>())) {
        facts.push_back({std::string(attribute.name()), attribute.stringValue()});
    }
    return facts;
}

JSON resourceOf(const MSPCXMLNode& element) {
    JSON resource = {{"id", KZDXAttribute(element, "id").value_or("")}};
    for (const std::string name : {"name", "type", "cost-per-use", "cost-per-hour", "units-available"}) {
        putText(resource, name, KZDXChildText(element, name));
    }
    putText(resource, "note", KZDXPageNote(element));
    auto fields = JSON::array();
    for (const auto& [name, value] : KZDXPageFields(element)) {
        fields.push_back({name, value});
    }
    resource["fields"] = std::move(fields);
    resource["facts"] = factsOf(element);
    resource["schedule"] = KZDXPageSchedule(element);
    return resource;
}

}  // namespace

JSON KZDXPageSchedule(const MSPCXMLNode& resource) {
    const auto schedule = resource.firstChildElement("schedule");
    if (!schedule) {
        return nullptr;
    }
    return {{"days", daysOf(schedule)}, {"off", eventsOf(schedule, false)}, {"over", eventsOf(schedule, true)}};
}

JSON KZDXPageProjectSchedule(const KZDXScenario& scenario) {
    const auto top = scenario.topResource();
    return top ? KZDXPageSchedule(scenario.resources()[*top].element) : JSON(nullptr);
}

JSON KZDXPageResources(const KZDXScenario& scenario) {
    auto resources = JSON::array();
    const auto top = scenario.topResource();
    for (std::size_t resource = 0; resource < scenario.resources().size(); ++resource) {
        resources.push_back(resource == top ? JSON(nullptr) : resourceOf(scenario.resources()[resource].element));
    }
    return resources;
}
