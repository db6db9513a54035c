#include "KZDXPageData.h"

#include <nlohmann/json.hpp>

#include "KZDXPageResources.h"
#include "KZDXXMLFile.h"
#include "MSPDIAccount.h"

namespace {

using JSON = KZDXPageJSON;

JSON dateOf(const MSPCXMLNode& element, std::string_view name) {
    const auto text = KZDXChildText(element, name);
    return KZDXPageDate(text ? KZDXDateTimeFrom(*text) : std::nullopt);
}

// What the table of contents says of the project: texts by name, and the attributes of formats.
JSON settingsOf(const MSPCXMLNode& project) {
    JSON settings = JSON::object();
    for (const std::string name : {"currency-format", "date-display", "critical-path-slack"}) {
        if (const auto text = KZDXChildText(project, name)) {
            settings[name] = *text;
        }
    }
    for (const std::string name : {"duration-format", "effort-format"}) {
        const auto format = project.firstChildElement(name);
        for (const std::string unit : {"hours-per-day", "hours-per-week", "hours-per-month", "hours-per-year"}) {
            const auto hours = KZDXInteger(KZDXAttribute(format, unit).value_or(""));
            if (hours) {
                settings[name][unit] = *hours;
            }
        }
    }
    return settings;
}

JSON headOf(const MSPCXMLNode& scenario) {
    JSON head = {{"start-date", dateOf(scenario, "start-date")},
                 {"end-date", dateOf(scenario, "end-date")},
                 {"fixed-end", KZDXAttribute(scenario, "fixed-end") == "yes"}};
    const auto granularity = KZDXChildText(scenario, "granularity");
    head["granularity"] = granularity ? JSON(*granularity) : JSON(nullptr);
    return head;
}

JSON actualOf(const KZDXPageOpenScenario& scenario) {
    const auto& content = *scenario.content;
    auto told = headOf(content.scenario.root());
    told["name"] = scenario.name;
    if (const auto top = content.scenario.topTask()) {
        const auto& element = content.scenario.tasks()[*top].element;
        told["project"] = {{"start-date", dateOf(element, "start-date")}, {"end-date", dateOf(element, "end-date")}};
    }
    told["schedule"] = KZDXPageProjectSchedule(content.scenario);
    told["resources"] = KZDXPageResources(content.scenario);
    told["tasks"] = KZDXPageTasks(content);
    told["links"] = KZDXPageLinks(content);
    return told;
}

JSON baselineOf(const KZDXPageOpenScenario& baseline, const KZDXPageOpenScenario& actual) {
    auto told = headOf(baseline.content->scenario.root());
    told["name"] = baseline.name;
    told["tasks"] = KZDXPageBaselineTasks(*baseline.content, *actual.content);
    return told;
}

// The id that a place of the plan has in the document; empty where it has none.
std::string itemOf(const MSPDIPlace& place) {
    const auto isIn = [&place](std::string_view list) { return place.path.starts_with(list); };
    const bool isTask = isIn("/Project/Tasks[") || isIn("/Project/Assignments[");
    const bool isResource = isIn("/Project/Resources[");
    return place.uid.empty() || !(isTask || isResource) ? std::string() : (isTask ? "t" : "r") + place.uid;
}

JSON placeOf(const MSPDIPlace& place, const KZDXPageSubject& subject) {
    auto told = JSON::array({place.path, place.name, place.value, itemOf(place)});
    auto meaning = subject.meaningOf ? subject.meaningOf(place) : JSON();
    if (!meaning.is_null()) {
        told.push_back(std::move(meaning));
    }
    return told;
}

JSON lossesOf(const KZDXPageSubject& subject) {
    const auto& account = *subject.account;
    JSON leaves = {{"total", account.total()}};
    for (std::size_t fate = 0; fate < account.leaves.size(); ++fate) {
        leaves[std::string(MSPDIFateNames[fate])] = account.leaves[fate];
    }
    auto kinds = JSON::array();
    for (const auto& loss : account.losses) {
        auto where = JSON::array();
        for (const auto& place : loss.where) {
            where.push_back(placeOf(place, subject));
        }
        kinds.push_back({{"kind", loss.kind},
                         {"count", loss.count},
                         {"what", loss.what},
                         {"element", loss.element},
                         {"where", std::move(where)}});
    }
    return {{"leaves", std::move(leaves)}, {"kinds", std::move(kinds)}};
}

}  // namespace

std::string KZDXPageTitle(const KZDXPageDocument& document, const KZDXPageSubject& subject) {
    auto title = KZDXChildText(document.contents->project(), "title").value_or("");
    return title.empty() ? subject.name : title;
}

JSON KZDXPageData(const KZDXPageDocument& document, const KZDXPageSubject& subject) {
    JSON data = {{"format", 1},
                 {"title", KZDXPageTitle(document, subject)},
                 {"source", subject.name},
                 {"maker", subject.maker},
                 {"settings", settingsOf(document.contents->project())},
                 {"scenario", actualOf(document.actual)}};
    const auto comparison = KZDXChildText(document.contents->window(), "comparison-scenario");
    auto baselines = JSON::array();
    data["comparison"] = nullptr;
    for (const auto& baseline : document.baselines) {
        baselines.push_back(baselineOf(baseline, document.actual));
        if (comparison && KZDXAttribute(baseline.content->scenario.root(), "id") == *comparison) {
            data["comparison"] = baselines.size() - 1;
        }
    }
    data["baselines"] = std::move(baselines);
    data["losses"] = subject.account == nullptr ? JSON(nullptr) : lossesOf(subject);
    data["notes"] = document.notes;
    return data;
}
