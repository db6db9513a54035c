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
    : _facts(facts),
      _options(options),
      _countsAll(options.visitLeaf || options.mostPlaces > 3),
      _account(account),
      _emptyProject(std::move(*MSPCXMLDocument::read("<Project/>", MSPCXMLContent::DataOnly))),
      _emptyFields(_emptyProject.root()),
      _projectItem{facts, _emptyProject.root(), _emptyFields, 0},
      _losses(MSPDIKinds().size()) {
    _steps.push_back({&MSPDIElementTree::project(), "Project", {}});
}

void MSPDILeafWalk::walk(const MSPCXMLNode& project) {
    for (auto list = nextElement(project.firstChild()); list; list = nextElement(list.nextSibling())) {
        if (isLeaf(list)) {
            value(list.name());
            continue;
        }
        beginList(list.name());
        for (auto element = nextElement(list.firstChild()); element; element = nextElement(element.nextSibling())) {
            piece(element);
        }
        endList();
    }
    root(project);
}

// Values of the project are judged at the end, when all of them are there.
void MSPDILeafWalk::value(std::string_view /*name*/) {
    _areLists.push_back(false);
}

void MSPDILeafWalk::beginList(std::string_view name) {
    _areLists.push_back(true);
    enter(name, {}, true);
}

void MSPDILeafWalk::endList() {
    leave();
}

void MSPDILeafWalk::piece(const MSPCXMLNode& element) {
    enter(element.name(), element, true);
    if (isItem(_steps.back().known)) {
        walkItem(element);
    } else if (isLeaf(element)) {
        takeLeaf(element, _projectItem);
    } else {
        walkChildren(element, _projectItem);
    }
    leave();
}

void MSPDILeafWalk::root(const MSPCXMLNode& element) {
    const MSPCFields fields(element);
    const MSPDIItem item{_facts, element, fields, 0};
    _steps.back().counts.clear();
    if (_areLists.empty()) {
        ++_account.leaves[MSPDIFateIndex(MSPDIFate::Default)];  // the project itself is a leaf
        return;
    }
    auto isList = _areLists.begin();
    for (auto child = nextElement(element.firstChild()); child; child = nextElement(child.nextSibling())) {
        enter(child.name(), child, true);
        if (!*isList++) {
            takeLeaf(child, item);
        }
        leave();
    }
}

// Without recursion: nothing bounds the depth of a plan.
void MSPDILeafWalk::walkChildren(const MSPCXMLNode& parent, const MSPDIItem& item) {
    auto node = nextElement(parent.firstChild());
    const auto floor = _steps.size();
    while (node) {
        enter(node.name(), node, _countsAll);
        if (const auto child = nextElement(node.firstChild())) {
            node = child;
            continue;
        }
        takeLeaf(node, item);
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

void MSPDILeafWalk::walkItem(const MSPCXMLNode& node) {
    const auto position = _itemCounts[_steps.back().known]++;
    if (isLeaf(node)) {
        takeLeaf(node, _projectItem);
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

void MSPDILeafWalk::enter(std::string_view name, const MSPCXMLNode& node, bool counts) {
    auto& parent = _steps.back();
    const auto* const known = parent.known == nullptr ? nullptr : parent.known->child(name);
    std::string ownName(withoutPrefix(name));
    const auto number = counts ? ++parent.counts[ownName] : 0;
    _steps.push_back({known, std::move(ownName), node, number});
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

std::string MSPDILeafWalk::path() const {
    std::string path;
    for (const auto& step : _steps) {
        path += '/';
        path += step.name;
        if (&step != &_steps.front()) {
            path += fmt::format("[{}]", numberOf(step));
        }
    }
    return path;
}

std::string MSPDILeafWalk::elementPath() const {
    std::string path;
    for (const auto& step : _steps) {
        if (&step != &_steps.front()) {
            path += path.empty() ? "" : "/";
            path += step.name;
        }
    }
    return path;
}
