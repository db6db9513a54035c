#include <fmt/format.h>

#include <array>
#include <vector>

#include "KZDXRules.h"

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

void lookForTasksWithoutGroup(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto& tasks = subject.scenario.tasks();
    const auto counts = countsOfTargets(subject.scenario.childTasks(), tasks.size());
    const auto top = subject.scenario.topTask();
    for (std::size_t task = 0; task < tasks.size(); ++task) {
        if (counts[task] == 0 && task != top && isNamedByIts(tasks, task)) {
            tell(tasks[task].element, "the task is in no group: the plan's outline does not lead to it");
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

// Goes along the references from item to item, each item once and without recursion, and calls `tell` for every
// reference that closes a circle.
class CircleSearch {
public:
    CircleSearch(const std::vector<KZDXReference>& references, std::size_t itemCount)
        : _references(references), _starts(KZDXStarts(references, itemCount)), _states(itemCount, State::New) {}

    template <typename Tell>
    void search(const Tell& tell) {
        for (std::size_t item = 0; item < _states.size(); ++item) {
            if (_states[item] == State::New) {
                enter(item);
                walk(tell);
            }
        }
    }

private:
    enum class State : unsigned char { New, OnTheWay, Done };
    struct Step {
        std::size_t item;
        std::size_t next;  // reference
    };

    void enter(std::size_t item) {
        _states[item] = State::OnTheWay;
        _way.push_back({item, _starts[item]});
    }

    template <typename Tell>
    void walk(const Tell& tell) {
        while (!_way.empty()) {
            auto& step = _way.back();
            if (step.next == _starts[step.item + 1]) {
                _states[step.item] = State::Done;
                _way.pop_back();
                continue;
            }
            const auto& reference = _references[step.next++];
            if (reference.to && _states[*reference.to] == State::OnTheWay) {
                tell(reference);
            } else if (reference.to && _states[*reference.to] == State::New) {
                enter(*reference.to);
            }
        }
    }

    const std::vector<KZDXReference>& _references;
    std::vector<std::size_t> _starts;
    std::vector<State> _states;
    std::vector<Step> _way;
};

void lookForOutlineCircles(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto& tasks = subject.scenario.tasks();
    CircleSearch(subject.scenario.childTasks(), tasks.size()).search([&](const KZDXReference& child) {
        tell(child.element, fmt::format("the task '{}' is in a group below itself", tasks[*child.to].id));
    });
}

void lookForLinkCircles(const KZDXSubject& subject, const KZDXTell& tell) {
    const auto& tasks = subject.scenario.tasks();
    CircleSearch(subject.scenario.links(), tasks.size()).search([&](const KZDXReference& link) {
        tell(link.element, fmt::format("the task '{}' waits for itself", tasks[*link.to].id));
    });
}

}  // namespace

std::span<const KZDXScenarioRule> KZDXOutlineRules() {
    static constexpr std::array<KZDXScenarioRule, 6> rules = {{
        {{"several-groups", KZDXSeverity::Fault, "No task is in two groups"}, lookForSeveralGroups},
        {{"resource-group", KZDXSeverity::Fault, "Every resource is in the group of resources once"},
         lookAtGroupOfResources},
        {{"no-group-parent", KZDXSeverity::Fault, "Only groups and split tasks have child tasks"}, lookAtParents},
        {{"outline-circle", KZDXSeverity::Fault, "No group is below itself"}, lookForOutlineCircles},
        {{"link-circle", KZDXSeverity::Fault, "No task waits for itself, over others either"}, lookForLinkCircles},
        {{"no-group", KZDXSeverity::Note, "A task is in no group, and the group of all tasks does not lead to it"},
         lookForTasksWithoutGroup},
    }};
    return rules;
}
