#include <fmt/format.h>

#include <array>
#include <map>
#include <vector>

#include "KZDXCircles.h"
#include "KZDXRules.h"
#include "KZDXWords.h"

namespace {

// How many references lead to each item.
std::vector<std::size_t> countsOfTargets(const std::vector<KZDXReference>& references, std::size_t itemCount) {
    std::vector<std::size_t> counts(itemCount, 0);
    for (const auto& reference : references) {
        if (reference.to) {
            ++counts[*reference.to];
        }
    }
    return counts;
}

// Of two items with one id only the first is ever named.
bool isNamedByIts(const KZDXItems& items, std::size_t index) {
    return items.find(items[index].id) == index;
}

void lookForSeveralGroups(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto& scenario = subject.scenario;
    std::vector<bool> isInGroup(scenario.tasks().size(), false);
    for (const auto& child : scenario.childTasks()) {
        if (!child.to) {
            continue;
        }
        if (isInGroup[*child.to]) {
            tell(child.element, fmt::format("the task '{}' is in another group, too", scenario.tasks()[*child.to].id));
        }
        isInGroup[*child.to] = true;
    }
}

// The tasks that one leads to, over groups and split tasks, and that task itself.
std::vector<bool> reachedFrom(std::size_t top, const KZDXScenario& scenario) {
    const auto& children = scenario.childTasks();
    const auto starts = KZDXStarts(children, scenario.tasks().size());
    std::vector<bool> isReached(scenario.tasks().size(), false);
    std::vector<std::size_t> pending = {top};
    isReached[top] = true;
    while (!pending.empty()) {
        const auto group = pending.back();
        pending.pop_back();
        for (auto child = starts[group]; child < starts[group + 1]; ++child) {
            const auto& task = children[child].to;
            if (task && !isReached[*task]) {
                isReached[*task] = true;
                pending.push_back(*task);
            }
        }
    }
    return isReached;
}

// Without the group of all tasks, which another rule tells of, no task is reached.
void lookForUnreachedTasks(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto& tasks = subject.scenario.tasks();
    const auto top = subject.scenario.topTask();
    if (!top || tasks[*top].id != KZDXTopTaskId) {
        return;
    }
    const auto counts = countsOfTargets(subject.scenario.childTasks(), tasks.size());
    const auto isReached = reachedFrom(*top, subject.scenario);
    for (std::size_t task = 0; task < tasks.size(); ++task) {
        if (!isReached[task] && isNamedByIts(tasks, task)) {
            tell(tasks[task].element, counts[task] == 0
                                          ? "the task is in no group: the plan's outline does not lead to it"
                                          : "the group of all tasks does not lead to the task's group");
        }
    }
}

void lookAtGroupOfResources(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto& resources = subject.scenario.resources();
    const auto counts = countsOfTargets(subject.scenario.childResources(), resources.size());
    const auto top = subject.scenario.topResource();
    for (std::size_t resource = 0; resource < resources.size(); ++resource) {
        if (counts[resource] != 1 && resource != top && isNamedByIts(resources, resource)) {
            tell(resources[resource].element, fmt::format("the resource is in {} groups", counts[resource]));
        }
    }
}

bool isGroup(const MSPCXMLNode& task) {
    return task.firstChildElement("split") || KZDXChildText(task, "type") == "group";
}

void lookAtParents(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto& tasks = subject.scenario.tasks();
    std::size_t looked = tasks.size();  // at all children of this one, with one look at it
    for (const auto& child : subject.scenario.childTasks()) {
        if (child.from != looked && !isGroup(tasks[child.from].element)) {
            tell(child.element, "the task has child tasks, but is neither a group nor split");
        }
        looked = child.from;
    }
}

std::vector<KZDXEdge> edgesOf(const std::vector<KZDXReference>& references) {
    std::vector<KZDXEdge> edges;
    for (const auto& reference : references) {
        if (reference.to) {
            edges.push_back({reference.from, *reference.to, &reference, false});
        }
    }
    return edges;
}

// The names of tasks, each looked up once: many findings can be about one.
class Names {
public:
    explicit Names(const KZDXItems& tasks) : _tasks(tasks) {}

    const std::string& of(std::size_t task) {
        auto& name = _names[task];
        if (name.empty()) {
            name = KZDXNamed(KZDXChildText(_tasks[task].element, "title").value_or(""), _tasks[task].id);
        }
        return name;
    }

    // "Dig (t2) waits for itself, over Paint (t3), Done (t4)". Of a task with itself "over" is left out.
    std::string sentence(std::size_t task, std::string_view what, const std::vector<std::size_t>& others, bool isMore) {
        auto text = fmt::format("{} {}", of(task), what);
        for (std::size_t i = 0; i < others.size(); ++i) {
            text += fmt::format("{}{}", i == 0 ? ", over " : ", ", of(others[i]));
        }
        return text + (isMore ? ", ..." : "");
    }

private:
    const KZDXItems& _tasks;
    std::map<std::size_t, std::string> _names;
};

void lookForCircles(const KZDXItems& tasks, const std::vector<KZDXReference>& references, std::string_view what,
                    const KZDXTell& tell) {
    Names names(tasks);
    KZDXForEachCircle(edgesOf(references), tasks.size(), [&](const KZDXCircle& circle) {
        const std::vector<std::size_t> others(circle.places.begin() + 1, circle.places.end());
        tell(circle.link->element,
             names.sentence(circle.places.front(), what, others, circle.places.size() < circle.length));
    });
}

void lookForOutlineCircles(const KZDXSubject& subject, const KZDXTell& tell) {
    lookForCircles(subject.scenario.tasks(), subject.scenario.childTasks(), "is below itself", tell);
}

void lookForLinkCircles(const KZDXSubject& subject, const KZDXTell& tell) {
    lookForCircles(subject.scenario.tasks(), subject.scenario.links(), "waits for itself", tell);
}

// Starts and ends of tasks as places, and what each cannot come before: the end before its start, the start before that
// of the group, the end of a group before those of its tasks, and what the links say.
std::size_t startOf(std::size_t task) {
    return 2 * task;
}
std::size_t endOf(std::size_t task) {
    return 2 * task + 1;
}

std::vector<KZDXEdge> edgesOfTimes(const KZDXScenario& scenario) {
    std::vector<KZDXEdge> edges;
    for (std::size_t task = 0; task < scenario.tasks().size(); ++task) {
        edges.push_back({endOf(task), startOf(task), nullptr, false});
    }
    for (const auto& child : scenario.childTasks()) {
        if (child.to) {
            edges.push_back({startOf(*child.to), startOf(child.from), nullptr, true});
            edges.push_back({endOf(child.from), endOf(*child.to), nullptr, true});
        }
    }
    for (const auto& link : scenario.links()) {
        if (link.to) {
            const auto kind = KZDXAttribute(link.element, "kind").value_or("");
            const bool waitsAtItsEnd = kind == "FF" || kind == "SF";
            const bool waitsForTheStart = kind == "SS" || kind == "SF";
            edges.push_back({waitsAtItsEnd ? endOf(link.from) : startOf(link.from),
                             waitsForTheStart ? startOf(*link.to) : endOf(*link.to), &link, false});
        }
    }
    return edges;
}

// Circles of links alone are told by the rule for those.
void lookForCirclesThroughGroups(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto& tasks = subject.scenario.tasks();
    Names names(tasks);
    KZDXForEachCircle(edgesOfTimes(subject.scenario), 2 * tasks.size(), [&](const KZDXCircle& circle) {
        if (circle.link == nullptr || !circle.usesOutline) {
            return;
        }
        const auto first = circle.places.front() / 2;
        std::vector<std::size_t> others;
        for (const auto place : circle.places) {
            if (place / 2 != (others.empty() ? first : others.back())) {
                others.push_back(place / 2);
            }
        }
        tell(circle.link->element, names.sentence(first, "waits for itself through the groups", others,
                                                  circle.places.size() < circle.length));
    });
}

}  // namespace

std::span<const KZDXScenarioRule> KZDXOutlineRules() {
    static constexpr std::array<KZDXScenarioRule, 7> rules = {{
        {{"several-groups", KZDXSeverity::Fault, "No task is in two groups"}, lookForSeveralGroups},
        {{"resource-group", KZDXSeverity::Fault, "Every resource is in the group of resources once"},
         lookAtGroupOfResources},
        {{"no-group-parent", KZDXSeverity::Fault, "Only groups and split tasks have child tasks"}, lookAtParents},
        {{"outline-circle", KZDXSeverity::Fault, "No group is below itself"}, lookForOutlineCircles},
        {{"link-circle", KZDXSeverity::Fault, "No task waits for itself, over others either"}, lookForLinkCircles},
        {{"no-group", KZDXSeverity::Note,
          "A task is in no group, or the group of all tasks does not lead to its group"},
         lookForUnreachedTasks},
        {{"group-circle", KZDXSeverity::Note, "A task waits for a group that it is in, or a group for a task in it"},
         lookForCirclesThroughGroups},
    }};
    return rules;
}
