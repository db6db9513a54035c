#include "KZDXScenario.h"

#include <algorithm>
#include <numeric>

#include "KZDXXMLFile.h"

KZDXItems::KZDXItems(const MSPCXMLNode& scenario, std::string_view name) {
    for (auto element = scenario.firstChildElement(name); element; element = element.nextSiblingElement(name)) {
        _items.push_back({element, KZDXAttribute(element, "id").value_or("")});
    }
    for (std::size_t index = 0; index < _items.size(); ++index) {
        if (!_items[index].id.empty()) {
            _byId.push_back(index);
        }
    }
    std::stable_sort(_byId.begin(), _byId.end(),
                     [this](std::size_t one, std::size_t other) { return _items[one].id < _items[other].id; });
}

std::optional<std::size_t> KZDXItems::find(std::string_view id) const {
    const auto found =
        std::lower_bound(_byId.begin(), _byId.end(), id,
                         [this](std::size_t index, std::string_view wanted) { return _items[index].id < wanted; });
    const bool isFound = found != _byId.end() && _items[*found].id == id;
    return isFound ? std::optional(*found) : std::nullopt;
}

namespace {

std::optional<std::size_t> referred(const MSPCXMLNode& element, const KZDXItems& targets) {
    const auto idref = KZDXAttribute(element, "idref");
    return idref ? targets.find(*idref) : std::nullopt;
}

}  // namespace

KZDXScenario::KZDXScenario(const MSPCXMLNode& root) : _root(root), _tasks(root, "task"), _resources(root, "resource") {
    for (std::size_t task = 0; task < _tasks.size(); ++task) {
        for (auto child = KZDXElementFrom(_tasks[task].element.firstChild()); child;
             child = KZDXElementFrom(child.nextSibling())) {
            const auto name = child.name();
            if (name == "child-task") {
                _childTasks.push_back({child, task, referred(child, _tasks)});
            } else if (name == "prerequisite-task") {
                _links.push_back({child, task, referred(child, _tasks)});
            } else if (name == "assignment") {
                _assignments.push_back({child, task, referred(child, _resources)});
            }
        }
    }
    for (std::size_t resource = 0; resource < _resources.size(); ++resource) {
        const auto& element = _resources[resource].element;
        for (auto child = element.firstChildElement("child-resource"); child;
             child = child.nextSiblingElement("child-resource")) {
            _childResources.push_back({child, resource, referred(child, _resources)});
        }
    }
}

std::optional<std::size_t> KZDXScenario::topTask() const {
    return referred(_root.firstChildElement("top-task"), _tasks);
}

std::optional<std::size_t> KZDXScenario::topResource() const {
    return referred(_root.firstChildElement("top-resource"), _resources);
}

std::vector<std::size_t> KZDXStarts(const std::vector<KZDXReference>& references, std::size_t itemCount) {
    std::vector<std::size_t> starts(itemCount + 1, 0);
    for (const auto& reference : references) {
        ++starts[reference.from + 1];
    }
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    return starts;
}
