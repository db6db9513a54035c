#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <set>

#include "KZDXRules.h"
#include "KZDXWords.h"

namespace {

// How often a child element is there, and the last one.
void expectOnce(const MSPCXMLNode& parent, std::string_view name, const KZDXTell& tell) {
    const auto found = parent.lastChildElement(name);
    if (found.count == 0) {
        tell(parent, fmt::format("there is no '{}'", name));
    } else if (found.count > 1) {
        tell(found.element, fmt::format("there are {} of '{}'", found.count, name));
    }
}

void lookAtFrame(const KZDXContents& contents, const KZDXTell& tell) {
    expectOnce(contents.root(), "window", tell);
    expectOnce(contents.root(), "project", tell);
    if (contents.window()) {
        expectOnce(contents.window(), "editing-scenario", tell);
    }
}

void lookAtNextNumber(const MSPCXMLNode& project, std::string_view name, const KZDXTell& tell) {
    const auto text = KZDXChildText(project, name);
    if (text && KZDXInteger(*text).value_or(0) < 1) {
        const bool isTooLarge = !text->empty() && text->find_first_not_of("0123456789") == std::string::npos &&
                                text->find_first_not_of('0') != std::string::npos;
        tell(project.firstChildElement(name), isTooLarge
                                                  ? fmt::format("'{}' is too large", KZDXShortened(*text))
                                                  : fmt::format("'{}' is no number from 1 on", KZDXShortened(*text)));
    }
}

void lookAtHours(const MSPCXMLNode& format, const KZDXTell& tell) {
    for (const std::string_view name : {"hours-per-day", "hours-per-week", "hours-per-month", "hours-per-year"}) {
        const auto hours = KZDXAttribute(format, name);
        if (!hours) {
            tell(format, fmt::format("'{}' is missing", name));
        } else if (!KZDXInteger(*hours)) {
            tell(format, fmt::format("'{}' is '{}', which is no whole number", name, *hours));
        } else if (*KZDXInteger(*hours) < 0) {
            tell(format, fmt::format("'{}' is '{}', which is below 0", name, *hours));
        }
    }
}

// A sample amount, which shows where the symbol stands and how many decimals there are: "$1,234.56".
void lookAtCurrency(const MSPCXMLNode& format, const KZDXTell& tell) {
    const auto sample = format.stringValue();
    if (sample.find_first_of("0123456789") == std::string::npos) {
        tell(format, fmt::format("'{}' is no sample of an amount", KZDXShortened(sample)));
    }
}

void lookAtSettings(const KZDXContents& contents, const KZDXTell& tell) {
    const auto& project = contents.project();
    if (!project) {
        return;
    }
    for (const std::string_view name :
         {"title", "next-task-id", "next-resource-id", "currency-format", "duration-format", "effort-format"}) {
        expectOnce(project, name, tell);
    }
    lookAtNextNumber(project, "next-task-id", tell);
    lookAtNextNumber(project, "next-resource-id", tell);
    if (const auto format = project.firstChildElement("currency-format")) {
        lookAtCurrency(format, tell);
    }
    for (const std::string_view name : {"duration-format", "effort-format"}) {
        if (const auto format = project.firstChildElement(name)) {
            lookAtHours(format, tell);
        }
    }
}

// Places in the order that the elements of a project keep; those of other names may stand anywhere.
std::optional<std::size_t> placeOf(std::string_view name) {
    constexpr std::array<std::string_view, 26> order = {"title",
                                                        "next-task-id",
                                                        "next-resource-id",
                                                        "scenario",
                                                        "date-display",
                                                        "numbering-style",
                                                        "no-numbers",
                                                        "auto-level",
                                                        "critical-path-slack",
                                                        "currency-format",
                                                        "duration-format",
                                                        "effort-format",
                                                        "base-style",
                                                        "column-title-style",
                                                        "note-style",
                                                        "standard-task-style",
                                                        "overdue-task-style",
                                                        "completed-task-style",
                                                        "group-task-style",
                                                        "milestone-task-style",
                                                        "resource-style",
                                                        "not-editable-style",
                                                        "named-styles",
                                                        "user-data",
                                                        "task-user-data-keys",
                                                        "resource-user-data-keys"};
    const auto found = std::find(order.begin(), order.end(), name);
    return found == order.end() ? std::nullopt : std::optional<std::size_t>(found - order.begin());
}

void lookAtOrder(const KZDXContents& contents, const KZDXTell& tell) {
    std::size_t reached = 0;
    std::string_view reachedName;
    for (auto child = KZDXElementFrom(contents.project().firstChild()); child;
         child = KZDXElementFrom(child.nextSibling())) {
        const auto place = placeOf(child.name());
        if (!place) {
            continue;
        }
        if (*place < reached) {
            tell(child, fmt::format("stands behind '{}'", reachedName));
        } else {
            reached = *place;
            reachedName = child.name();
        }
    }
}

void lookAtEntries(const KZDXContents& contents, const KZDXTell& tell) {
    if (contents.project() && contents.entries().empty()) {
        tell(contents.project(), "no scenario is named");
    }
    for (const auto& entry : contents.entries()) {
        for (const auto& [name, value] :
             {std::pair("id", entry.id), std::pair("name", entry.name), std::pair("filename", entry.filename)}) {
            if (value.empty()) {
                tell(entry.element, fmt::format("'{}' is missing", name));
            }
        }
        if (!entry.filename.empty() && !entry.staysInBundle()) {
            tell(entry.element, fmt::format("'{}' is no file of the bundle", entry.filename));
        }
    }
}

void lookAtRepetitions(const KZDXContents& contents, const KZDXTell& tell) {
    for (const auto& [name, member] : {std::pair("id", &KZDXEntry::id), std::pair("name", &KZDXEntry::name),
                                       std::pair("filename", &KZDXEntry::filename)}) {
        std::set<std::string_view> values;
        for (const auto& entry : contents.entries()) {
            const auto value = entry.*member;
            if (!value.empty() && !values.insert(value).second) {
                tell(entry.element, fmt::format("another scenario has the {} '{}', too", name, value));
            }
        }
    }
}

void lookAtWindow(const KZDXContents& contents, const KZDXTell& tell) {
    std::set<std::string_view> ids;
    for (const auto& entry : contents.entries()) {
        ids.insert(entry.id);
    }
    for (const std::string_view name : {"editing-scenario", "comparison-scenario"}) {
        const auto id = KZDXChildText(contents.window(), name);
        if (id && !ids.contains(*id)) {
            tell(contents.window().firstChildElement(name), fmt::format("no scenario has the id '{}'", *id));
        }
    }
}

}  // namespace

std::span<const KZDXContentsRule> KZDXContentsRules() {
    static constexpr std::array<KZDXContentsRule, 6> rules = {{
        {{"contents-frame", KZDXSeverity::Fault,
          "The table of contents has one window, with the scenario that is edited, and one project"},
         lookAtFrame},
        {{"needed-setting", KZDXSeverity::Fault,
          "The project has a title, the next ids, and the formats of money, durations and effort"},
         lookAtSettings},
        {{"setting-order", KZDXSeverity::Fault,
          "Title, next ids, scenarios, settings and keys of custom fields keep their order"},
         lookAtOrder},
        {{"scenario-entry", KZDXSeverity::Fault,
          "Every scenario in the table of contents has an id, a name, and a file in the bundle"},
         lookAtEntries},
        {{"repeated-scenario", KZDXSeverity::Fault, "No two scenarios share an id, a name or a file"},
         lookAtRepetitions},
        {{"window-scenario", KZDXSeverity::Fault, "The window shows scenarios that are there"}, lookAtWindow},
    }};
    return rules;
}
