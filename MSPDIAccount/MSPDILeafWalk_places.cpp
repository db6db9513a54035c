// Where losses are: paths, and who is meant.
#include <fmt/format.h>

#include "MSPCTextScanner.h"
#include "MSPDILeafWalk.h"

namespace {

// The name of an item, by its position; empty where there is none.
std::string nameAt(const std::optional<std::size_t>& position, const std::vector<std::string>& names) {
    return position && *position < names.size() ? names[*position] : std::string();
}

}  // namespace

void MSPDILeafWalk::setPlace(const MSPDIItem& item, std::string_view value, MSPDIPlace& place) {
    if (!item.identity) {
        item.identity = identityOf(item);
    }
    place.path = path();
    place.uid = item.identity->first;
    place.name = item.identity->second;
    place.value = value;
    setTarget(item, value, place);
}

// The number and the name by which people know an item.
std::pair<std::string, std::string> MSPDILeafWalk::identityOf(const MSPDIItem& item) const {
    const auto textOf = [&item](std::string_view name) { return item.fields.text(name).textOrEmpty(); };
    if (item.node.name() == "ExtendedAttribute") {
        return {textOf("FieldID"), textOf(item.fields.singleObject("Alias") ? "Alias" : "FieldName")};
    }
    if (item.node.name() == "Assignment") {
        // Nobody knows an assignment by its number, but its task.
        return {textOf("TaskUID"), nameAt(_facts.assignments[item.position].task, _taskNames)};
    }
    if (item.node.name() == "Project") {
        return {};
    }
    return {textOf("UID"), textOf("Name")};
}

void MSPDILeafWalk::setTarget(const MSPDIItem& item, std::string_view value, MSPDIPlace& place) const {
    const auto& step = _steps.back();
    // One that was taken has no node, and is known.
    const auto name = step.node ? step.node.name() : step.name;
    if (name == "LinkLag") {
        place.unit = item.lastText(step.node.parent(), "LagFormat");
        place.targetUID = item.lastText(step.node.parent(), "PredecessorUID");
    } else if (name == "PredecessorUID" || name == "ResourceUID" || name == "CalendarUID") {
        place.targetUID = value;
    }
}

// At the end, when the tasks are known that come behind the links to them.
void MSPDILeafWalk::nameTarget(MSPDIPlace& place) const {
    const auto uid = scanInteger64(place.targetUID);
    if (!uid) {
        return;
    }
    const auto element = std::string_view(place.path).substr(place.path.rfind('/') + 1);
    if (element.starts_with("CalendarUID")) {
        const auto calendar = _facts.calendarWithUID(MSPCCalendarUID{*uid});
        place.targetName = calendar ? _facts.calendars[*calendar].name : std::string();
    } else if (element.starts_with("ResourceUID")) {
        const auto resource = _facts.mappedResource(MSPCResourceUID{*uid});
        place.targetName = resource && *resource < _resources.size() ? _resources[*resource].name : std::string();
    } else {
        place.targetName = nameAt(_facts.mappedTask(MSPCTaskUID{*uid}), _taskNames);
    }
}

std::size_t MSPDILeafWalk::numberOf(const Step& step) {
    if (step.number > 0) {
        return step.number;
    }
    std::size_t number = 1;
    for (auto before = step.node.previousSibling(); before; before = before.previousSibling()) {
        if (before.isElement() && MSPDIWithoutPrefix(before.name()) == step.name) {
            ++number;
        }
    }
    return number;
}

MSPDIPathStep MSPDILeafWalk::pathStepOf(const Step& step) {
    return {step.known, step.name, step.number};
}

// Those of one element have most of their steps in common.
const std::string& MSPDILeafWalk::path() {
    for (auto index = _pathEnds.size(); index < _steps.size(); ++index) {
        const auto& step = _steps[index];
        _path += '/';
        _path += step.known == nullptr ? MSPDINameInPath(step.name) : std::string(step.name);
        if (index > 0) {
            const fmt::format_int number(numberOf(step));
            _path += '[';
            _path.append(number.data(), number.size());
            _path += ']';
        }
        _pathEnds.push_back(_path.size());
    }
    return _path;
}

std::string MSPDILeafWalk::elementPath() const {
    std::string path;
    for (const auto& step : _steps) {
        if (&step != &_steps.front()) {
            path += path.empty() ? "" : "/";
            path += step.known == nullptr ? MSPDINameInPath(step.name) : std::string(step.name);
        }
    }
    return path;
}
