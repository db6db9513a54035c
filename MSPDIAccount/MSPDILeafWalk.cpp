#include "MSPDILeafWalk.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "MSPDIKinds.h"

namespace {

constexpr std::string_view unknownElement = "unknown-element";

MSPCXMLNode nextElement(MSPCXMLNode node) {
    while (node && !node.isElement()) {
        node = node.nextSibling();
    }
    return node;
}

bool isLeaf(const MSPCXMLNode& node) {
    return !nextElement(node.firstChild());
}

std::string_view withoutPrefix(std::string_view name) {
    const auto colon = name.rfind(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

// The lists whose elements are looked at together with all that they hold.
bool isItem(const MSPDIElementTree* known) {
    static constexpr std::string_view items[] = {"Tasks/Task", "Resources/Resource", "Assignments/Assignment",
                                                 "Calendars/Calendar", "ExtendedAttributes/ExtendedAttribute"};
    return known != nullptr && std::find(std::begin(items), std::end(items), known->path()) != std::end(items);
}

// "Tasks/Task" of "Tasks/Task/Baseline".
std::string_view ownerPath(std::string_view path) {
    return path.substr(0, path.rfind('/'));
}

bool isListOf(const MSPDIItem& item, std::string_view name) {
    return item.node.name() == name;
}

}  // namespace

MSPDILeafWalk::MSPDILeafWalk(const MSPDIPlanFacts& facts, const MSPDIAccountOptions& options, MSPDIAccount& account)
    : _facts(facts), _options(options), _account(account), _losses(MSPDIKinds().size()) {
}

void MSPDILeafWalk::walk(const MSPCXMLNode& project) {
    const MSPCFields fields(project);
    const MSPDIItem item{_facts, project, fields, 0};
    _steps.push_back({&MSPDIElementTree::project(), withoutPrefix(project.name()), 0, {}});
    if (isLeaf(project)) {
        ++_account.leaves[MSPDIFateIndex(MSPDIFate::Default)];
        if (_options.visitLeaf) {
            _options.visitLeaf(path(), MSPDIFate::Default);
        }
    }
    walkChildren(project, item);
    leave();
}

// Without recursion: nothing bounds the depth of a plan.
void MSPDILeafWalk::walkChildren(const MSPCXMLNode& parent, const MSPDIItem& item) {
    auto node = nextElement(parent.firstChild());
    const auto floor = _steps.size();
    const bool isOfProject = parent == parent.rootElement();
    while (node) {
        enter(node);
        const bool isOther = isOfProject && isItem(_steps.back().known);
        const auto child = isOther ? MSPCXMLNode() : nextElement(node.firstChild());
        if (child) {
            node = child;
            continue;
        }
        if (isOther) {
            walkItem(node, item);
        } else {
            takeLeaf(node, item);
        }
        for (;;) {
            leave();
            if (const auto next = nextElement(node.nextSibling())) {
                node = next;
                break;
            }
            if (_steps.size() == floor) {
                return;
            }
            node = node.parent();
        }
    }
}

void MSPDILeafWalk::walkItem(const MSPCXMLNode& node, const MSPDIItem& project) {
    const auto position = _itemCounts[_steps.back().known]++;
    if (isLeaf(node)) {
        takeLeaf(node, project);
        return;
    }
    const MSPCFields fields(node);
    const MSPDIItem item{_facts, node, fields, position};
    if (isListOf(item, "Task")) {
        _taskNames.resize(position);
        _taskNames.emplace_back(*fields.text("Name"));
    }
    tellOfItem(item);
    walkChildren(node, item);
}

void MSPDILeafWalk::takeLeaf(const MSPCXMLNode& node, const MSPDIItem& item) {
    std::string buffer;
    const auto text = node.stringValue(buffer);
    const auto judgement = judge(node, item, text);
    ++_account.leaves[MSPDIFateIndex(judgement.fate)];
    if (!judgement.kind.empty()) {
        tell(judgement.kind, item, text);
    }
    if (_options.visitLeaf) {
        _options.visitLeaf(path(), judgement.fate);
    }
}

MSPDIJudgement MSPDILeafWalk::judge(const MSPCXMLNode& node, const MSPDIItem& item, std::string_view text) const {
    const auto* const known = _steps.back().known;
    if (known == nullptr) {
        return judgeUnknown(node, item);
    }
    if (const auto* const element = known->element()) {
        return element->condition({item, *element, node, text});
    }
    const bool isBlank = text.find_first_not_of(" \t\r\n") == std::string_view::npos;
    return isBlank ? MSPDIJudgement(MSPDIFate::Default) : MSPDIJudgement(MSPDIFate::Lost, unknownElement);
}

// A baseline's value of any name hides what its owner has by that name; what stands in an element that is read as text
// adds to that text.
MSPDIJudgement MSPDILeafWalk::judgeUnknown(const MSPCXMLNode& node, const MSPDIItem& item) const {
    auto ancestor = node;
    auto step = _steps.rbegin();
    while (step->known == nullptr) {
        ancestor = ancestor.parent();
        ++step;
    }
    if (ancestor == node.parent() && ancestor.name() == "Baseline") {
        const auto* const hidden = MSPDIElementAt(ownerPath(step->known->path()), node.name());
        const bool hides = hidden != nullptr && MSPDIMayArrive(*hidden) && item.fields.singleObject(node.name());
        return hides ? MSPDIJudgement(MSPDIFate::Shaping) : MSPDIJudgement(MSPDIFate::Lost, unknownElement);
    }
    const auto* const element = step->known->element();
    if (element != nullptr && !step->known->hasChildren()) {
        const auto text = ancestor.stringValue();
        if (element->condition({item, *element, ancestor, text}).arrives()) {
            return {MSPDIFate::Changed, unknownElement};
        }
    }
    return {MSPDIFate::Lost, unknownElement};
}

// What is no matter of a single leaf.
void MSPDILeafWalk::tellOfItem(const MSPDIItem& item) {
    if (isListOf(item, "Task")) {
        const bool isTold = !_facts.tasks[item.position].isReachable && !item.fields.singleObject("OutlineLevel");
        if (isTold) {
            tell("unreachable-task", item, "");
        }
    } else if (isListOf(item, "ExtendedAttribute")) {
        const auto& definition = _facts.definitions[item.position];
        if (definition.isLast && definition.isShownByTask && _facts.isMissingInTOC(definition.name)) {
            tell("unregistered-field", item, definition.name);
        }
    }
}

void MSPDILeafWalk::tell(std::string_view kind, const MSPDIItem& item, std::string_view value) {
    const auto index = MSPDIKindIndex(kind);
    auto& loss = _losses.at(index);
    if (loss.count == 0) {
        loss.kind = MSPDIKinds()[index].name;
        loss.what = MSPDIKinds()[index].what;
        loss.element = elementPath();
    }
    ++loss.count;
    if (loss.where.size() < _options.mostPlaces) {
        loss.where.push_back(placeOf(item, value));
    }
}

MSPDIPlace MSPDILeafWalk::placeOf(const MSPDIItem& item, std::string_view value) const {
    MSPDIPlace place{path(), {}, {}, std::string(value)};
    const auto textOf = [&item](std::string_view name) { return std::string(*item.fields.text(name)); };
    if (isListOf(item, "ExtendedAttribute")) {
        place.uid = textOf("FieldID");
        place.name = textOf(item.fields.singleObject("Alias") ? "Alias" : "FieldName");
    } else if (isListOf(item, "Assignment")) {
        // Nobody knows an assignment by its number, but its task.
        const auto& task = _facts.assignments[item.position].task;
        place.uid = textOf("TaskUID");
        place.name = task && *task < _taskNames.size() ? _taskNames[*task] : std::string();
    } else if (item.node.name() != "Project") {
        place.uid = textOf("UID");
        place.name = textOf("Name");
    }
    return place;
}

void MSPDILeafWalk::finish() {
    for (auto& loss : _losses) {
        if (loss.count > 0) {
            _account.losses.push_back(std::move(loss));
        }
    }
}

void MSPDILeafWalk::enter(const MSPCXMLNode& node) {
    auto& parent = _steps.back();
    const auto name = withoutPrefix(node.name());
    const auto* const known = parent.known == nullptr ? nullptr : parent.known->child(node.name());
    const auto number = ++parent.counts[name];
    _steps.push_back({known, name, number, {}});
}

std::string MSPDILeafWalk::path() const {
    std::string path;
    for (const auto& step : _steps) {
        path += '/';
        path += step.name;
        if (step.number > 0) {
            path += fmt::format("[{}]", step.number);
        }
    }
    return path;
}

std::string MSPDILeafWalk::elementPath() const {
    std::string path;
    for (const auto& step : _steps) {
        if (step.number > 0) {
            path += path.empty() ? "" : "/";
            path += step.name;
        }
    }
    return path;
}
