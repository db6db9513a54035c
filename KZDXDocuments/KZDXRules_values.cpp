#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <set>

#include "KZDXDateTime.h"
#include "KZDXRules.h"
#include "KZDXWorkingWeek.h"

namespace {

// Calls `visit` with every child element of every task.
template <typename Visit>
void forEachTaskValue(const KZDXScenario& scenario, const Visit& visit) {
    for (const auto& task : scenario.tasks()) {
        for (auto child = KZDXElementFrom(task.element.firstChild()); child;
             child = KZDXElementFrom(child.nextSibling())) {
            visit(child);
        }
    }
}

bool isDate(std::string_view name) {
    return name.ends_with("-date") || name == "leveled-start";
}

void expectDate(const MSPCXMLNode& element, std::string_view text, const KZDXTell& tell) {
    if (!KZDXDateTimeFrom(text)) {
        tell(element, fmt::format("'{}' is no date with a time and an offset", text));
    }
}

void lookAtDates(const KZDXSubject& subject, const KZDXTell& tell) {
    std::string buffer;
    const auto look = [&](const MSPCXMLNode& element) {
        if (isDate(element.name())) {
            expectDate(element, element.stringValue(buffer), tell);
        }
    };
    const auto& root = subject.scenario.root();
    for (const std::string_view name : {"start-date", "end-date"}) {
        if (const auto date = root.firstChildElement(name)) {
            look(date);
        }
    }
    forEachTaskValue(subject.scenario, look);
}

// The dates of a task, or of the project, that are dates.
struct Span {
    std::optional<KZDXDateTime> start;
    std::optional<KZDXDateTime> end;

    explicit Span(const MSPCXMLNode& owner) {
        const auto date = [&owner](std::string_view name) {
            const auto text = KZDXChildText(owner, name);
            return text ? KZDXDateTimeFrom(*text) : std::nullopt;
        };
        start = date("start-date");
        end = date("end-date");
    }
    [[nodiscard]] bool isReversed() const { return start && end && start->instant() > end->instant(); }
    [[nodiscard]] bool isReversedBeyondDoubt() const { return start && end && start->isBehind(*end); }
    [[nodiscard]] bool isReversedOnTheWall() const { return start && end && start->wallClock > end->wallClock; }
};

// What a plan may say itself: of groups and in baselines dates are taken as they are, and who ends in the evening may
// begin the next morning.
bool mayBeReversedInPlan(const KZDXSubject& subject, const KZDXWorkingWeek& week, const MSPCXMLNode& task,
                         const Span& span) {
    return subject.entry.name != KZDXActualScenario || KZDXChildText(task, "type") == "group" ||
           (span.isReversedOnTheWall() && !week.holdsWorkBetween(span.end->wallClock, span.start->wallClock));
}

// Calls `visit` with each task that starts behind its end, and whether its plan may say so.
template <typename Visit>
void forEachReversed(const KZDXSubject& subject, const Visit& visit) {
    const auto top = subject.scenario.topResource();
    const KZDXWorkingWeek week(top ? subject.scenario.resources()[*top].element : MSPCXMLNode());
    for (const auto& task : subject.scenario.tasks()) {
        const Span span(task.element);
        if (span.isReversed() || span.isReversedOnTheWall()) {
            const bool isSure = span.isReversedBeyondDoubt();
            visit(task.element.firstChildElement("start-date"), isSure,
                  isSure && mayBeReversedInPlan(subject, week, task.element, span));
        }
    }
}

void lookForReversedDates(const KZDXSubject& subject, const KZDXTell& tell) {
    forEachReversed(subject, [&tell](const MSPCXMLNode& start, bool isSure, bool mayBeInPlan) {
        if (isSure && !mayBeInPlan) {
            tell(start, "the start is behind the end");
        }
    });
}

void lookForReversedDatesOfPlans(const KZDXSubject& subject, const KZDXTell& tell) {
    forEachReversed(subject, [&tell](const MSPCXMLNode& start, bool isSure, bool mayBeInPlan) {
        if (isSure && mayBeInPlan) {
            tell(start, "the start is behind the end: the plan says so");
        }
    });
}

void lookForReversedOffsets(const KZDXSubject& subject, const KZDXTell& tell) {
    forEachReversed(subject, [&tell](const MSPCXMLNode& start, bool isSure, bool /*mayBeInPlan*/) {
        if (!isSure) {
            tell(start, "the start is behind the end by their offsets alone: the clocks change in between");
        }
    });
}

struct NumberForm {
    std::string_view element;
    double least;
    double most;
};

const NumberForm* numberFormOf(std::string_view element) {
    static constexpr std::array<NumberForm, 4> forms = {{
        {"effort", 0, HUGE_VAL},
        {"effort-done", 0, HUGE_VAL},
        {"duration", 0, HUGE_VAL},
        {"completion-percentage", 0, 1},
    }};
    const auto* const found =
        std::find_if(forms.begin(), forms.end(), [element](const auto& form) { return form.element == element; });
    return found == forms.end() ? nullptr : found;
}

void lookAtTaskNumber(const MSPCXMLNode& element, const KZDXTell& tell) {
    const bool isMoney = element.name() == "static-cost";
    const auto* const form = numberFormOf(element.name());
    if (form == nullptr && !isMoney) {
        return;
    }
    const auto text = element.stringValue();
    const auto number = KZDXNumber(text);
    if (!number) {
        tell(element, fmt::format("'{}' is no number", text));
    } else if (form != nullptr && !(*number >= form->least && *number <= form->most)) {
        tell(element, fmt::format("'{}' is out of range", text));
    }
}

void lookAtNumbers(const KZDXSubject& subject, const KZDXTell& tell) {
    forEachTaskValue(subject.scenario, [&tell](const MSPCXMLNode& element) { lookAtTaskNumber(element, tell); });
    for (const auto& resource : subject.scenario.resources()) {
        for (const std::string_view name : {"cost-per-use", "units-available"}) {
            const auto text = KZDXChildText(resource.element, name);
            if (text && !KZDXNumber(*text)) {
                tell(resource.element.firstChildElement(name), fmt::format("'{}' is no number", *text));
            }
        }
    }
}

// What an import takes from the plan as it is.
void lookAtNumbersOfPlans(const KZDXSubject& subject, const KZDXTell& tell) {
    forEachTaskValue(subject.scenario, [&tell](const MSPCXMLNode& element) {
        if (element.name() != "priority") {
            return;
        }
        const auto text = element.stringValue();
        if (!(KZDXNumber(text).value_or(-1) >= 0)) {
            tell(element, fmt::format("the priority '{}' is no number from 0 on: the plan says so", text));
        }
    });
    for (const auto& resource : subject.scenario.resources()) {
        const auto rate = KZDXChildText(resource.element, "cost-per-hour");
        if (rate && !KZDXNumber(*rate)) {
            tell(resource.element.firstChildElement("cost-per-hour"),
                 fmt::format("the cost per hour '{}' is no number: the plan says so", *rate));
        }
        const auto units = KZDXChildText(resource.element, "units-available");
        if (units && KZDXNumber(*units).value_or(0) < 0) {
            tell(resource.element.firstChildElement("units-available"),
                 fmt::format("the units '{}' are below 0: the plan says so", *units));
        }
    }
}

void lookForMoreDoneThanEffort(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto numberIn = [](const MSPCXMLNode& task, std::string_view name) {
        const auto text = KZDXChildText(task, name);
        return text ? KZDXNumber(*text) : std::nullopt;
    };
    for (const auto& task : subject.scenario.tasks()) {
        const auto done = numberIn(task.element, "effort-done");
        const auto effort = done ? numberIn(task.element, "effort") : std::nullopt;
        if (effort && *done > *effort) {
            tell(task.element.firstChildElement("effort-done"),
                 fmt::format("more is done than there is effort, {} of {} seconds: the plan says so", *done, *effort));
        }
    }
}

// Values of which a task or resource has one. Whatever else is in it may be there more often.
std::optional<std::size_t> placeOfSingleValue(std::string_view element) {
    constexpr std::array<std::string_view, 23> names = {"completion-percentage",
                                                        "cost-per-hour",
                                                        "cost-per-use",
                                                        "duration",
                                                        "effort",
                                                        "effort-done",
                                                        "email-address",
                                                        "end-constraint-date",
                                                        "end-date",
                                                        "leveled-start",
                                                        "locked-end-date",
                                                        "locked-start-date",
                                                        "name",
                                                        "note",
                                                        "priority",
                                                        "recalculate",
                                                        "schedule-type",
                                                        "split",
                                                        "start-constraint-date",
                                                        "start-date",
                                                        "static-cost",
                                                        "title",
                                                        "type"};
    const auto* const found = std::lower_bound(names.begin(), names.end(), element);
    const bool isFound = found != names.end() && *found == element;
    return isFound ? std::optional<std::size_t>(found - names.begin()) : std::nullopt;
}

void lookForRepeatedValues(const KZDXSubject& subject, const KZDXTell& tell) {
    for (const auto* const items : {&subject.scenario.tasks(), &subject.scenario.resources()}) {
        for (const auto& item : *items) {
            std::uint32_t seen = 0;
            for (auto child = KZDXElementFrom(item.element.firstChild()); child;
                 child = KZDXElementFrom(child.nextSibling())) {
                const auto place = placeOfSingleValue(child.name());
                const auto bit = place ? std::uint32_t(1) << *place : 0;
                if ((seen & bit) != 0) {
                    tell(child, fmt::format("there is another '{}' before it", child.name()));
                }
                seen |= bit;
            }
        }
    }
}

// Elements whose text is one of a few words.
struct Vocabulary {
    std::string_view element;
    std::string_view words;  // with a blank before and behind each
};

void expectWord(const MSPCXMLNode& element, std::string_view word, std::string_view words, const KZDXTell& tell) {
    const bool isOneWord = !word.empty() && word.find(' ') == std::string_view::npos;
    if (!isOneWord || words.find(fmt::format(" {} ", word)) == std::string_view::npos) {
        tell(element, fmt::format("'{}' is none of{}", word, words.substr(0, words.size() - 1)));
    }
}

void lookAtTaskWords(const MSPCXMLNode& element, const KZDXTell& tell) {
    static constexpr std::array<Vocabulary, 3> vocabularies = {{
        {"type", " group task milestone "},
        {"schedule-type", " asap alap "},
        {"recalculate", " duration effort "},
    }};
    for (const auto& [name, words] : vocabularies) {
        if (element.name() == name) {
            expectWord(element, element.stringValue(), words, tell);
        }
    }
    const auto kind = element.name() == "prerequisite-task" ? KZDXAttribute(element, "kind") : std::nullopt;
    if (kind) {
        expectWord(element, *kind, " FF FS SF SS ", tell);
    }
}

void lookAtWords(const KZDXSubject& subject, const KZDXTell& tell) {
    forEachTaskValue(subject.scenario, [&tell](const MSPCXMLNode& element) { lookAtTaskWords(element, tell); });
    for (const auto& resource : subject.scenario.resources()) {
        if (const auto type = resource.element.firstChildElement("type")) {
            expectWord(type, type.stringValue(), " Group Staff Material ", tell);
        }
    }
    const auto& root = subject.scenario.root();
    if (const auto granularity = root.firstChildElement("granularity")) {
        expectWord(granularity, granularity.stringValue(), " hours days minutes ", tell);
    }
    if (const auto isFixed = KZDXAttribute(root, "fixed-end")) {
        expectWord(root, *isFixed, " yes no ", tell);
    }
}

// Which tasks are pieces of a split one. A group is asked once, not for each of its children.
std::vector<bool> piecesIn(const KZDXScenario& scenario) {
    const auto& tasks = scenario.tasks();
    std::vector<bool> isSplit;
    for (const auto& task : tasks) {
        isSplit.push_back(static_cast<bool>(task.element.firstChildElement("split")));
    }
    std::vector<bool> isPiece(tasks.size(), false);
    for (const auto& child : scenario.childTasks()) {
        if (child.to && isSplit[child.from]) {
            isPiece[*child.to] = true;
        }
    }
    return isPiece;
}

// What every task and resource of an import has. The pieces of a split task have no type of their own.
void lookForMissingValues(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto& tasks = subject.scenario.tasks();
    const auto isPiece = piecesIn(subject.scenario);
    const auto top = subject.scenario.topTask();
    for (std::size_t task = 0; task < tasks.size(); ++task) {
        const auto& element = tasks[task].element;
        if (!isPiece[task] && !element.firstChildElement("type") && !element.firstChildElement("split")) {
            tell(element, "there is neither a type nor a split");
        }
        if (task != top && !element.firstChildElement("effort")) {
            tell(element, "there is no effort");
        }
    }
    for (const auto& resource : subject.scenario.resources()) {
        if (!resource.element.firstChildElement("type")) {
            tell(resource.element, "there is no type");
        }
    }
    const auto& root = subject.scenario.root();
    const bool isImported = KZDXImportComments(root).areOfImport();
    if (isImported && !root.firstChildElement("start-date") && !root.firstChildElement("end-date")) {
        tell(root, "there is neither a start-date nor an end-date");
    }
}

// The project's own dates: it is scheduled from one of them.
void lookAtProjectDates(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto& root = subject.scenario.root();
    if (Span(root).isReversed()) {
        tell(root.firstChildElement("start-date"), "the project starts behind its end");
    }
    if (KZDXAttribute(root, "fixed-end") == "yes" && !root.firstChildElement("end-date")) {
        tell(root, "the project is scheduled from its end, but has no end-date");
    }
}

// Pairs of a key and its value, which is a text or nothing.
void lookAtUserDataOf(const MSPCXMLNode& element, const KZDXTell& tell) {
    const auto userData = element.firstChildElement("user-data");
    for (auto key = KZDXElementFrom(userData.firstChild()); key;) {
        const auto value = KZDXElementFrom(key.nextSibling());
        if (key.name() != "key") {
            tell(key, fmt::format("'{}' stands where a key belongs", key.name()));
            return;
        }
        if (value.name() != "string" && value.name() != "null") {
            tell(key, "the key has no value");
            return;
        }
        key = KZDXElementFrom(value.nextSibling());
    }
}

void lookAtUserData(const KZDXSubject& subject, const KZDXTell& tell) {
    for (const auto* const items : {&subject.scenario.tasks(), &subject.scenario.resources()}) {
        for (const auto& item : *items) {
            lookAtUserDataOf(item.element, tell);
        }
    }
}

std::set<std::string> listedKeys(const MSPCXMLNode& list) {
    std::set<std::string> keys;
    for (auto userData = list.firstChildElement("user-data"); userData;
         userData = userData.nextSiblingElement("user-data")) {
        for (auto key = userData.firstChildElement("key"); key; key = key.nextSiblingElement("key")) {
            keys.insert(key.stringValue());
        }
    }
    return keys;
}

// Tells in one finding which custom fields the table of contents does not list.
void lookForUnlistedKeys(const KZDXSubject& subject, const KZDXItems& items, std::string_view list,
                         const KZDXTell& tell) {
    auto known = listedKeys(subject.contents.project().firstChildElement(list));
    MSPCXMLNode first;
    std::string names;
    for (const auto& item : items) {
        const auto userData = item.element.firstChildElement("user-data");
        for (auto key = userData.firstChildElement("key"); key; key = key.nextSiblingElement("key")) {
            if (auto name = key.stringValue(); known.insert(name).second) {
                first = first ? first : key;
                names += fmt::format("{}'{}'", names.empty() ? "" : ", ", name);
            }
        }
    }
    if (first) {
        tell(first, fmt::format("custom fields that the table of contents does not list: {}", names));
    }
}

void lookForUnregisteredFields(const KZDXSubject& subject, const KZDXTell& tell) {
    lookForUnlistedKeys(subject, subject.scenario.tasks(), "task-user-data-keys", tell);
    lookForUnlistedKeys(subject, subject.scenario.resources(), "resource-user-data-keys", tell);
}

}  // namespace

std::span<const KZDXScenarioRule> KZDXValueRules() {
    static constexpr std::array<KZDXScenarioRule, 13> rules = {{
        {{"date", KZDXSeverity::Fault, "Dates are days and times that there are, with an offset"}, lookAtDates},
        {{"reversed-dates", KZDXSeverity::Fault, "No task starts behind its end, with work in between"},
         lookForReversedDates},
        {{"project-dates", KZDXSeverity::Fault,
          "A project starts before its end, and has an end where it is scheduled from there"},
         lookAtProjectDates},
        {{"number", KZDXSeverity::Fault, "Effort, completion and costs are numbers"}, lookAtNumbers},
        {{"word", KZDXSeverity::Fault, "Types and kinds are words that there are"}, lookAtWords},
        {{"missing-value", KZDXSeverity::Fault,
          "Every task has a type and an effort, every resource a type, and an imported project a start or an end"},
         lookForMissingValues},
        {{"repeated-value", KZDXSeverity::Fault, "No task or resource has a value twice"}, lookForRepeatedValues},
        {{"user-data", KZDXSeverity::Fault, "Every custom field has a key and a value"}, lookAtUserData},
        {{"unlisted-field", KZDXSeverity::Note, "The table of contents does not list a custom field"},
         lookForUnregisteredFields},
        {{"reversed-in-plan", KZDXSeverity::Note,
          "A group or a task of a baseline starts behind its end, or a task with no work in between"},
         lookForReversedDatesOfPlans},
        {{"reversed-offsets", KZDXSeverity::Note, "A task starts behind its end by the offsets of its dates alone"},
         lookForReversedOffsets},
        {{"number-in-plan", KZDXSeverity::Note,
          "A cost per hour or a priority is no number, or units or a priority are below 0"},
         lookAtNumbersOfPlans},
        {{"done-above-effort", KZDXSeverity::Note, "More effort is done than a task has"}, lookForMoreDoneThanEffort},
    }};
    return rules;
}
