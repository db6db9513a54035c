#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <set>

#include "KZDXRules.h"
#include "KZDXWords.h"

namespace {

void lookAtRoot(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto& root = subject.scenario.root();
    if (root.name() != "scenario") {
        tell(root, fmt::format("the root element is '{}' instead of 'scenario'", root.name()));
    }
    if (const auto count = root.namespaceDeclarations().size(); count != 1) {
        tell(root, fmt::format("{} namespaces are declared instead of one", count));
    }
}

void lookAtNamespace(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto namespaces = subject.scenario.root().namespaceDeclarations();
    const auto expected = subject.contents.namespaceURI();
    if (namespaces.size() == 1 && !expected.empty() && namespaces.front().uri != expected) {
        tell(subject.scenario.root(), fmt::format("the namespace is '{}' here and '{}' in the table of contents",
                                                  KZDXShortened(namespaces.front().uri), KZDXShortened(expected)));
    }
}

void lookAtScenarioId(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto& root = subject.scenario.root();
    const auto id = KZDXAttribute(root, "id").value_or("");
    if (id.empty()) {
        tell(root, "the scenario has no id");
    } else if (id != subject.entry.id) {
        tell(root, fmt::format("the id is '{}' here and '{}' in the table of contents", id, subject.entry.id));
    }
}

void lookAtImportComments(const KZDXSubject& subject, const KZDXTell& tell) {
    const KZDXImportComments comments(subject.scenario.root());
    if (comments.tellImporter != comments.tellPlan) {
        tell(subject.scenario.root(), comments.tellPlan ? "no comment tells the importer and the time of the import"
                                                        : "no comment tells the plan that was imported");
    }
}

// A group of all items: named at the top, the first of its kind, and a group.
void lookAtTop(const KZDXSubject& subject, std::string_view kind, std::string_view id, std::string_view type,
               const KZDXItems& items, const KZDXTell& tell) {
    const auto name = fmt::format("top-{}", kind);
    const auto top = subject.scenario.root().firstChildElement(name);
    if (!top) {
        tell(subject.scenario.root(), fmt::format("there is no '{}'", name));
    } else if (KZDXAttribute(top, "idref") != id) {
        tell(top, fmt::format("'idref' is '{}' instead of '{}'", KZDXAttribute(top, "idref").value_or(""), id));
    }
    if (items.size() == 0 || items[0].id != id) {
        tell(items.size() == 0 ? subject.scenario.root() : items[0].element,
             fmt::format("the first {} is not '{}'", kind, id));
    } else if (const auto found = KZDXChildText(items[0].element, "type"); found != type) {
        tell(items[0].element, fmt::format("the type is '{}' instead of '{}'", found.value_or(""), type));
    }
}

void lookAtTopTask(const KZDXSubject& subject, const KZDXTell& tell) {
    lookAtTop(subject, "task", KZDXTopTaskId, "group", subject.scenario.tasks(), tell);
}

// Deliberately "Group" with a capital here: the two kinds of group are spelled differently.
void lookAtTopResource(const KZDXSubject& subject, const KZDXTell& tell) {
    lookAtTop(subject, "resource", KZDXTopResourceId, "Group", subject.scenario.resources(), tell);
}

void lookForMissingIds(const KZDXSubject& subject, const KZDXTell& tell) {
    for (const auto* const items : {&subject.scenario.tasks(), &subject.scenario.resources()}) {
        for (const auto& item : *items) {
            if (item.id.empty()) {
                tell(item.element, "there is no id");
            }
        }
    }
}

// Ids of tasks and resources are compared with each other, too.
void lookForRepeatedIds(const KZDXSubject& subject, const KZDXTell& tell) {
    for (const auto* const items : {&subject.scenario.tasks(), &subject.scenario.resources()}) {
        const auto byId = items->byId();
        for (std::size_t i = 0; i < byId.size(); ++i) {
            const auto& item = (*items)[byId[i]];
            const bool isRepeated = i > 0 && (*items)[byId[i - 1]].id == item.id;
            const bool isTaskToo = items == &subject.scenario.resources() && subject.scenario.tasks().find(item.id);
            if (isRepeated || isTaskToo) {
                tell(item.element, fmt::format("the id '{}' is taken", item.id));
            }
        }
    }
}

// Elements that name a task or a resource.
struct References {
    const std::vector<KZDXReference>& all;
    std::string_view kind;
    const std::set<std::string, std::less<>>& idsOfActual;  // of that kind
};

std::array<References, 4> referencesIn(const KZDXSubject& subject) {
    const auto& [tasks, resources] = subject.idsOfActual;
    const auto& scenario = subject.scenario;
    return {{{scenario.childTasks(), "task", tasks},
             {scenario.links(), "task", tasks},
             {scenario.assignments(), "resource", resources},
             {scenario.childResources(), "resource", resources}}};
}

// Whether a baseline names a task or a resource that has no such baseline, and is left out there.
bool isLeftOutOfBaseline(const KZDXSubject& subject, const References& references, std::string_view idref) {
    return subject.entry.name != KZDXActualScenario && references.idsOfActual.contains(idref);
}

void lookAtReferences(const KZDXSubject& subject, const KZDXTell& tell) {
    for (const auto& references : referencesIn(subject)) {
        for (const auto& reference : references.all) {
            const auto idref = KZDXAttribute(reference.element, "idref");
            if (!reference.to && idref && !isLeftOutOfBaseline(subject, references, *idref)) {
                tell(reference.element, fmt::format("no {} has the id '{}'", references.kind, *idref));
            } else if (!idref && &references.all != &subject.scenario.assignments()) {
                tell(reference.element, "'idref' is missing");
            }
        }
    }
}

void lookForLeftOut(const KZDXSubject& subject, const KZDXTell& tell) {
    for (const auto& references : referencesIn(subject)) {
        for (const auto& reference : references.all) {
            const auto idref = KZDXAttribute(reference.element, "idref");
            if (!reference.to && idref && isLeftOutOfBaseline(subject, references, *idref)) {
                tell(reference.element, fmt::format("'{}' has no such baseline, and is left out here", *idref));
            }
        }
    }
}

void lookForBareAssignments(const KZDXSubject& subject, const KZDXTell& tell) {
    for (const auto& assignment : subject.scenario.assignments()) {
        if (!KZDXAttribute(assignment.element, "idref")) {
            tell(assignment.element, "the assignment names no resource: the plan does not tell it");
        }
    }
}

void lookForLinksWithoutKind(const KZDXSubject& subject, const KZDXTell& tell) {
    for (const auto& link : subject.scenario.links()) {
        if (!KZDXAttribute(link.element, "kind")) {
            tell(link.element, "the link has no kind: the plan tells none, or one that nobody knows");
        }
    }
}

// What one task names twice.
void lookForRepeatedReferences(const std::vector<KZDXReference>& references, std::string_view what,
                               const KZDXTell& tell) {
    std::set<std::string_view> seen;
    const KZDXReference* last = nullptr;
    for (const auto& reference : references) {
        if (last != nullptr && last->from != reference.from) {
            seen.clear();
        }
        last = &reference;
        const auto idref = KZDXAttribute(reference.element, "idref");
        if (idref && !seen.insert(*idref).second) {
            tell(reference.element, fmt::format("the task has the {} '{}' twice", what, *idref));
        }
    }
}

void lookForRepetitions(const KZDXSubject& subject, const KZDXTell& tell) {
    lookForRepeatedReferences(subject.scenario.links(), "link to", tell);
    lookForRepeatedReferences(subject.scenario.assignments(), "assignment of", tell);
}

// The number of an id such as "t12"; of one with more digits than any number that is looked at, the greatest of these.
std::optional<std::int64_t> numberOfId(std::string_view id, char letter) {
    if (!id.starts_with(letter)) {
        return std::nullopt;
    }
    const auto digits = id.substr(1);
    const bool isNumber = !digits.empty() && digits.find_first_not_of("0123456789") == std::string_view::npos;
    const auto number = KZDXInteger(digits);
    return isNumber && !number ? std::numeric_limits<std::int64_t>::max() : number;
}

// Tells the highest number among ids where it is not free of the next one.
void lookAtHighestId(const KZDXItems& items, char letter, std::optional<std::int64_t> next, const KZDXTell& tell) {
    MSPCXMLNode highest;
    for (const auto& item : items) {
        const auto number = numberOfId(item.id, letter);
        if (next && number && *number >= *next) {
            next = *number;
            highest = item.element;
        }
    }
    if (highest) {
        tell(highest, "the next free id in the table of contents is not above this one");
    }
}

void lookAtNextIds(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto next = [&subject](std::string_view name) {
        const auto text = KZDXChildText(subject.contents.project(), name);
        return text ? KZDXInteger(*text) : std::nullopt;
    };
    lookAtHighestId(subject.scenario.tasks(), 't', next("next-task-id"), tell);
    lookAtHighestId(subject.scenario.resources(), 'r', next("next-resource-id"), tell);
}

}  // namespace

std::span<const KZDXScenarioRule> KZDXReferenceRules() {
    static constexpr std::array<KZDXScenarioRule, 14> rules = {{
        {{"scenario-root", KZDXSeverity::Fault, "The root element is a scenario in one namespace"}, lookAtRoot},
        {{"namespace", KZDXSeverity::Fault, "A scenario is in the namespace of the table of contents"},
         lookAtNamespace},
        {{"scenario-id", KZDXSeverity::Fault, "A scenario has the same id in its file and in the table of contents"},
         lookAtScenarioId},
        {KZDXImportCommentRule, lookAtImportComments},
        {{"top-resource", KZDXSeverity::Fault, "The first resource is the group r-1 of all resources"},
         lookAtTopResource},
        {{"top-task", KZDXSeverity::Fault, "The first task is the group t-1 of all tasks"}, lookAtTopTask},
        {{"missing-id", KZDXSeverity::Fault, "Every task and every resource has an id"}, lookForMissingIds},
        {{"repeated-id", KZDXSeverity::Fault, "No two tasks or resources share an id"}, lookForRepeatedIds},
        {{"unresolved-idref", KZDXSeverity::Fault, "Every task or resource that is named is there"}, lookAtReferences},
        {{"next-id", KZDXSeverity::Fault, "The next free ids are above all ids"}, lookAtNextIds},
        {{"left-out", KZDXSeverity::Note, "A baseline names a task or a resource that has no such baseline"},
         lookForLeftOut},
        {{"bare-assignment", KZDXSeverity::Note, "An assignment names no resource"}, lookForBareAssignments},
        {{"link-kind", KZDXSeverity::Note, "A link has no kind"}, lookForLinksWithoutKind},
        {{"repeated-reference", KZDXSeverity::Note, "A task has the same link or the same assignment twice"},
         lookForRepetitions},
    }};
    return rules;
}
