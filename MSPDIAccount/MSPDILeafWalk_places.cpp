// Where losses are: paths, and who is meant.
#include <fmt/format.h>

#include "MSPCCharacters.h"
#include "MSPCMessage.h"
#include "MSPCTextScanner.h"
#include "MSPDILeafWalk.h"

namespace {

// Bytes that are no UTF-8, which only broken markup has in a name, as escapes: one character for all of them would make
// two paths alike.
void appendName(std::string_view name, std::string& path) {
    path += MSPCIsUTF8(name) ? name : MSPCShownText(name).view();
}

// The name of an item, by its position; empty where there is none.
std::string nameAt(const std::optional<std::size_t>& position, const std::vector<std::string>& names) {
    return position && *position < names.size() ? names[*position] : std::string();
}

}  // namespace

MSPDIPlace MSPDILeafWalk::placeOf(const MSPDIItem& item, std::string_view value) const {
    MSPDIPlace place{path(), {}, {}, std::string(value), {}, {}, {}};
    setTarget(item, value, place);
    const auto textOf = [&item](std::string_view name) { return item.fields.text(name).textOrEmpty(); };
    if (item.node.name() == "ExtendedAttribute") {
        place.uid = textOf("FieldID");
        place.name = textOf(item.fields.singleObject("Alias") ? "Alias" : "FieldName");
    } else if (item.node.name() == "Assignment") {
        // Nobody knows an assignment by its number, but its task.
        const auto& task = _facts.assignments[item.position].task;
        place.uid = textOf("TaskUID");
        place.name = nameAt(task, _taskNames);
    } else if (item.node.name() != "Project") {
        place.uid = textOf("UID");
        place.name = textOf("Name");
    }
    return place;
}

void MSPDILeafWalk::setTarget(const MSPDIItem& item, std::string_view value, MSPDIPlace& place) const {
    const auto& node = _steps.back().node;
    if (!node) {
        return;
    }
    if (node.name() == "LinkLag") {
        place.unit = item.lastText(node.parent(), "LagFormat");
        place.targetUID = item.lastText(node.parent(), "PredecessorUID");
    } else if (node.name() == "PredecessorUID" || node.name() == "ResourceUID" || node.name() == "CalendarUID") {
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
        if (before.isElement() && withoutPrefix(before.name()) == step.name) {
            ++number;
        }
    }
    return number;
}

void MSPDILeafWalk::appendStep(const Step& step, std::size_t number, std::string& path) {
    path += '/';
    if (step.known != nullptr) {
        path += step.name;
    } else {
        appendName(step.name, path);
    }
    path += '[';
    const fmt::format_int digits(number);
    path.append(digits.data(), digits.size());
    path += ']';
}

std::string MSPDILeafWalk::path() const {
    auto path = _path;
    if (!_countsAll) {
        for (std::size_t step = 1; step < _steps.size(); ++step) {
            appendStep(_steps[step], numberOf(_steps[step]), path);
        }
    }
    return path;
}

std::string MSPDILeafWalk::elementPath() const {
    std::string path;
    for (const auto& step : _steps) {
        if (&step != &_steps.front()) {
            path += path.empty() ? "" : "/";
            appendName(step.name, path);
        }
    }
    return path;
}
