#include "KZDXRelations.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <span>

#include "KZDXWords.h"
#include "KZDXXMLFile.h"

namespace {

constexpr auto nobody = std::numeric_limits<std::size_t>::max();

// A link or an assignment, so that those of both scenarios can be compared.
struct Relation {
    std::size_t target = nobody;  // in the new scenario
    std::string_view idref;       // where the target is in none, or not in the new one
    std::string_view kind;        // of a link
    std::size_t oldTarget = nobody;

    // Where the document has no item of that id.
    [[nodiscard]] bool leadsNowhere() const { return target == nobody && oldTarget == nobody; }
    [[nodiscard]] auto key() const { return std::pair(target, idref); }
};

std::span<const KZDXReference> referencesOf(const std::vector<KZDXReference>& references,
                                            const std::vector<std::size_t>& starts, std::size_t item) {
    return std::span(references).subspan(starts[item], starts[item + 1] - starts[item]);
}

// Sorted by what they lead to. `newOf` says which target of the new scenario one of the old is.
template <typename NewOf>
std::vector<Relation> relationsOf(std::span<const KZDXReference> references, bool isOld, const NewOf& newOf) {
    std::vector<Relation> relations;
    for (const auto& reference : references) {
        Relation relation;
        relation.kind = KZDXAttribute(reference.element, "kind").value_or("");
        if (reference.to && isOld) {
            relation.oldTarget = *reference.to;
            relation.target = newOf(*reference.to).value_or(nobody);
        } else if (reference.to) {
            relation.target = *reference.to;
        }
        if (relation.target == nobody) {
            relation.idref = KZDXAttribute(reference.element, "idref").value_or("");
        }
        relations.push_back(relation);
    }
    std::stable_sort(relations.begin(), relations.end(),
                     [](const Relation& one, const Relation& other) { return one.key() < other.key(); });
    return relations;
}

// Calls `visit` with the relations that lead to the same, or one of them and none.
template <typename Visit>
void forEachPair(const std::vector<Relation>& before, const std::vector<Relation>& after, const Visit& visit) {
    auto old = before.begin();
    auto now = after.begin();
    while (old != before.end() || now != after.end()) {
        const bool hasOld = old != before.end() && (now == after.end() || old->key() <= now->key());
        const bool hasNew = now != after.end() && (old == before.end() || now->key() <= old->key());
        visit(hasOld ? &*old : nullptr, hasNew ? &*now : nullptr);
        old += hasOld ? 1 : 0;
        now += hasNew ? 1 : 0;
    }
}

std::string nameOfOld(const KZDXOutline& outline, const Relation& relation) {
    return relation.oldTarget == nobody ? KZDXNamed("", relation.idref) : outline.shownName(relation.oldTarget);
}

std::string nameOfNew(const KZDXOutline& outline, const Relation& relation) {
    return relation.target == nobody ? KZDXNamed("", relation.idref) : outline.shownName(relation.target);
}

std::string wordsOfKind(std::string_view kind) {
    if (kind == "FS") {
        return "finish to start";
    }
    if (kind == "SS") {
        return "start to start";
    }
    if (kind == "FF") {
        return "finish to finish";
    }
    return kind == "SF" ? "start to finish" : kind.empty() ? "no kind" : KZDXQuoted(kind);
}

// What led somewhere, and still has its id, but there is nothing of that id any more.
bool isCutOff(const Relation& before, const Relation& after) {
    return !before.leadsNowhere() && after.leadsNowhere();
}

void compareLinks(const KZDXMatchedScenarios& scenarios, std::span<const KZDXReference> old,
                  std::span<const KZDXReference> now, const KZDXTellValue& tell) {
    const auto newOf = [&scenarios](std::size_t task) { return scenarios.tasks.newOf(task); };
    forEachPair(relationsOf(old, true, newOf), relationsOf(now, false, newOf),
                [&](const Relation* before, const Relation* after) {
                    if (before == nullptr) {
                        const auto name = nameOfNew(scenarios.newTasks, *after);
                        tell("link", fmt::format("waits for {} now, {}", name, wordsOfKind(after->kind)), "", name);
                    } else if (after == nullptr) {
                        const auto name = nameOfOld(scenarios.oldTasks, *before);
                        tell("link", fmt::format("no longer waits for {}", name), name, "");
                    } else if (isCutOff(*before, *after)) {
                        const auto name = nameOfOld(scenarios.oldTasks, *before);
                        tell("link", fmt::format("waits for {}, which is gone", name), name, "");
                    } else if (before->kind != after->kind) {
                        tell("link",
                             fmt::format("waits for {} {} instead of {}", nameOfNew(scenarios.newTasks, *after),
                                         wordsOfKind(after->kind), wordsOfKind(before->kind)),
                             std::string(before->kind), std::string(after->kind));
                    }
                });
}

void compareAssignments(const KZDXMatchedScenarios& scenarios, std::span<const KZDXReference> old,
                        std::span<const KZDXReference> now, const KZDXTellValue& tell) {
    const auto newOf = [&scenarios](std::size_t resource) { return scenarios.resources.newOf(resource); };
    forEachPair(relationsOf(old, true, newOf), relationsOf(now, false, newOf),
                [&](const Relation* before, const Relation* after) {
                    if (before == nullptr) {
                        const auto name = nameOfNew(scenarios.newResources, *after);
                        tell("assignment", fmt::format("is assigned to {} now", name), "", name);
                    } else if (after == nullptr) {
                        const auto name = nameOfOld(scenarios.oldResources, *before);
                        tell("assignment", fmt::format("is no longer assigned to {}", name), name, "");
                    } else if (isCutOff(*before, *after)) {
                        const auto name = nameOfOld(scenarios.oldResources, *before);
                        tell("assignment", fmt::format("is assigned to {}, who is gone", name), name, "");
                    }
                });
}

}  // namespace

KZDXRelationStarts::KZDXRelationStarts(const KZDXScenario& old, const KZDXScenario& now)
    : oldLinks(KZDXStarts(old.links(), old.tasks().size())),
      newLinks(KZDXStarts(now.links(), now.tasks().size())),
      oldAssignments(KZDXStarts(old.assignments(), old.tasks().size())),
      newAssignments(KZDXStarts(now.assignments(), now.tasks().size())) {
}

void KZDXCompareRelations(const KZDXMatchedScenarios& scenarios, std::size_t oldTask, std::size_t newTask,
                          const KZDXTellValue& tell) {
    const auto& starts = scenarios.starts;
    compareLinks(scenarios, referencesOf(scenarios.old.links(), starts.oldLinks, oldTask),
                 referencesOf(scenarios.now.links(), starts.newLinks, newTask), tell);
    compareAssignments(scenarios, referencesOf(scenarios.old.assignments(), starts.oldAssignments, oldTask),
                       referencesOf(scenarios.now.assignments(), starts.newAssignments, newTask), tell);
}
