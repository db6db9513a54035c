#include "MSPDILeafWalk.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "MSPCException.h"
#include "MSPCTextScanner.h"
#include "MSPDIArrival.h"
#include "MSPDIConditions.h"
#include "MSPDIExternalTexts.h"
#include "MSPDIKinds.h"
#include "MSPDIValues.h"

namespace {

constexpr std::string_view unknownElement = "unknown-element";
constexpr std::string_view strayText = "stray-text";
constexpr std::string_view resourceWeek = "resource-week";

MSPCXMLNode nextElement(MSPCXMLNode node) {
    while (node && !node.isElement()) {
        node = node.nextSibling();
    }
    return node;
}

bool isLeaf(const MSPCXMLNode& node) {
    return !nextElement(node.firstChild());
}

// The text of an element itself, without that of its children.
std::string ownText(const MSPCXMLNode& node) {
    std::string text;
    for (auto child = node.firstChild(); child; child = child.nextSibling()) {
        if (child.kind() == MSPCXMLNodeKind::Text || child.kind() == MSPCXMLNodeKind::CData) {
            text += child.stringValue();
        }
    }
    return std::string(trimmed(text));
}

// The name of an element without prefix; those of the table have none.
std::string_view nameOf(const MSPCXMLNode& node, const MSPDIElementTree* known) {
    return known == nullptr ? MSPDIWithoutPrefix(node.name()) : known->name();
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

// How many items of that kind the facts know.
std::size_t itemCountOf(const MSPDIPlanFacts& facts, std::string_view name) {
    return name == "Task"         ? facts.tasks.size()
           : name == "Resource"   ? facts.resources.size()
           : name == "Assignment" ? facts.assignments.size()
           : name == "Calendar"   ? facts.calendars.size()
                                  : facts.definitions.size();
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// Of a text where elements belong, and nobody reads any: that nothing stands there may still mean something.
MSPDIJudgement ofTextInstead(MSPDIFate fate) {
    return {fate == MSPDIFate::Default ? MSPDIFate::Lost : fate, strayText};
}

// Whether the table knows a value there, and nothing within.
bool isValue(const MSPDIElementTree& known) {
    return known.element() != nullptr && !known.hasChildren();
}

// What is to be kept of what passes.
MSPDIPassedLeaves::Keeping keepingFor(const MSPDIAccountOptions& options, bool countsAll) {
    using enum MSPDIPassedLeaves::Keeping;
    return options.fates != nullptr ? Fates : countsAll ? Losses : Nothing;
}

}  // namespace

MSPDILeafWalk::MSPDILeafWalk(const MSPDIPlanFacts& facts, const MSPDIAccountOptions& options, MSPDIAccount& account)
    : _facts(facts),
      _options(options),
      _countsAll(options.fates != nullptr || options.mostPlaces > MSPDIAccountOptions().mostPlaces),
      _account(account),
      _emptyProject(std::move(*MSPCXMLDocument::read("<Project/>", {.content = MSPCXMLContent::DataOnly}))),
      _emptyFields(_emptyProject.root()),
      _projectItem(facts, MSPDIProjectElements(), _emptyProject.root(), _emptyFields, 0),
      _losses(MSPDIKinds().size()),
      _passed(keepingFor(options, _countsAll)) {
    _steps.push_back({&MSPDIProjectElements(), "Project", {}, 1, 0});
}

void MSPDILeafWalk::walk(const MSPCXMLNode& project) {
    for (auto list = nextElement(project.firstChild()); list; list = nextElement(list.nextSibling())) {
        if (isLeaf(list) || !isList(list.name())) {
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

// What stands within a value is part of it.
bool MSPDILeafWalk::isList(std::string_view name) {
    const auto* const known = MSPDIProjectElements().child(name);
    return known == nullptr || !isValue(*known);
}

// Values of the project are judged at the end, when all of them are there.
void MSPDILeafWalk::value(std::string_view name) {
    _areLists.push_back(false);
    ++countOf(_listCounts, MSPDIWithoutPrefix(name));
}

void MSPDILeafWalk::beginList(std::string_view name) {
    _areLists.push_back(true);
    _listName = name;
    _pieceCounts.clear();
    enter(_listName, {}, ++countOf(_listCounts, MSPDIWithoutPrefix(_listName)));
}

void MSPDILeafWalk::endList() {
    leave();
}

bool MSPDILeafWalk::wantsLeavesOf(std::string_view name) {
    const auto* const list = _steps.back().known;
    const auto* const known = list == nullptr ? nullptr : list->child(name);
    _passed.beginPiece(known);
    return known != nullptr;
}

void MSPDILeafWalk::beginElement(std::string_view name) {
    _passed.beginElement(name);
}

void MSPDILeafWalk::endElement() {
    _passed.endElement();
}

bool MSPDILeafWalk::takeLeaf(std::string_view name, std::string_view text) {
    const auto judgement = _passed.judge(name, text);
    if (!judgement.isMade) {
        return false;
    }
    ++_tally.leaves[MSPDIFateIndex(judgement.fate)];
    if (judgement.kind != MSPDIPassedLeaves::NoKind) {
        _tally.lacksPlaces = _tally.lacksPlaces || (!_countsAll && wantsPlace(judgement.kind));
        _tally.kinds.push_back(judgement.kind);
    }
    return true;
}

void MSPDILeafWalk::passLeaf(std::string_view name) {
    _passed.passLeaf(name);
}

void MSPDILeafWalk::forgetLeaves() {
    _tally.clear();
    _passed.clear();
}

bool MSPDILeafWalk::restOfPiece(const MSPCXMLNode& element) {
    if (!_tally.lacksPlaces) {
        _isReduced = true;
        _hasPassed = _countsAll;
        walkPiece(element);
        _hasPassed = false;
        _isReduced = false;
    }
    if (_tally.lacksPlaces) {
        _tally.clear();
        return false;
    }
    takePiece(element);
    return true;
}

void MSPDILeafWalk::piece(const MSPCXMLNode& element) {
    walkPiece(element);
    takePiece(element);
}

void MSPDILeafWalk::walkPiece(const MSPCXMLNode& element) {
    enter(element.name(), element, countOf(_pieceCounts, MSPDIWithoutPrefix(element.name())) + 1);
    if (isItem(_steps.back().known)) {
        walkItem(element);
    } else if (isLeaf(element) && !isEmptied(element)) {
        takeLeaf(element, _projectItem);
    } else {
        walkChildren(element, _projectItem);
    }
    leave();
}

// Whether an item is a task of the document, or an assignment of one.
bool MSPDILeafWalk::isOfArrivingTask(std::string_view path, std::size_t position) const {
    if (path == "Tasks/Task") {
        return position < _facts.tasks.size() && _facts.tasks[position].state == MSPDITaskState::Mapped;
    }
    return path == "Assignments/Assignment" && position < _facts.assignments.size() &&
           _facts.assignments[position].task.has_value();
}

// The piece counts once, however often it comes.
void MSPDILeafWalk::takePiece(const MSPCXMLNode& element) {
    const auto* const list = _steps.back().known;
    ++countOf(_pieceCounts, MSPDIWithoutPrefix(element.name()));
    bool isOfTask = false;
    if (const auto* const known = list == nullptr ? nullptr : list->child(element.name())) {
        const auto position = _itemCounts[known]++;
        isOfTask = isOfArrivingTask(known->path(), position);
    }
    enterTally(isOfTask);
}

void MSPDILeafWalk::root(const MSPCXMLNode& element) {
    const MSPCFields fields(element);
    const MSPDIItem item(_facts, MSPDIProjectElements(), element, fields, 0);
    _listCounts.clear();
    if (_areLists.empty()) {
        takeEmptyProject(item);
    } else {
        tellOfOwnText(element, item);
    }
    auto isList = _areLists.begin();
    for (auto child = nextElement(element.firstChild()); child; child = nextElement(child.nextSibling())) {
        enter(child.name(), child, ++countOf(_listCounts, MSPDIWithoutPrefix(child.name())));
        if (*isList++) {
            tellOfOwnText(child, item);
        } else if (isLeaf(child)) {
            takeLeaf(child, item);
        } else {
            walkChildren(child, item);
        }
        leave();
    }
    enterTally();
}

// The project itself is a leaf.
void MSPDILeafWalk::takeEmptyProject(const MSPDIItem& project) {
    const auto fate = ownText(project.node).empty() ? MSPDIFate::Default : MSPDIFate::Lost;
    count(fate);
    tellFate(pathStepOf(_steps.back()), 0, fate);
    tellOfOwnText(project.node, project);
}

void MSPDILeafWalk::walkItem(const MSPCXMLNode& node) {
    const auto position = _itemCounts[_steps.back().known];
    if (position >= itemCountOf(_facts, node.name())) {
        throw MSPCInternalInconsistency("The plan has changed while it was read.");
    }
    if (isLeaf(node) && !isEmptied(node)) {
        takeLeaf(node, _projectItem);
        return;
    }
    const MSPCFields fields(node);
    const MSPDIItem item(_facts, *_steps.back().known, node, fields, position);
    remember(item);
    tellOfItem(item);
    walkChildren(node, item);
}

// What stands beside the children of an element is no leaf, but it may say something.
void MSPDILeafWalk::tellOfOwnText(const MSPCXMLNode& node, const MSPDIItem& item) {
    const auto text = _isReduced ? std::string() : ownText(node);  // a piece with such text comes as a whole
    if (text.empty()) {
        return;
    }
    const auto* const known = _steps.back().known;
    if (known == nullptr || !isValue(*known)) {
        tell(strayText, item, text);
        return;
    }
    const auto whole = node.stringValue();
    const auto judgement = judge(node, item, whole);
    if (!judgement.kind.empty()) {
        tell(judgement.kind, item, whole);
    }
}

// Without recursion: nothing bounds the depth of a plan.
void MSPDILeafWalk::walkChildren(const MSPCXMLNode& parent, const MSPDIItem& item) {
    tellOfOwnText(parent, item);
    auto node = nextElement(parent.firstChild());
    const auto floor = _steps.size();
    while (node) {
        enterChild(node, item);
        if (const auto child = nextElement(node.firstChild())) {
            tellOfOwnText(node, item);
            node = child;
            continue;
        }
        if (!isEmptied(node)) {
            takeLeaf(node, item);
        }
        for (;;) {
            tellOfTaken(item);
            leave();
            if (const auto next = nextElement(node.nextSibling())) {
                node = next;
                break;
            }
            if (_steps.size() == floor) {
                node = {};
                break;
            }
            node = node.parent();
        }
    }
    tellOfTaken(item);
}

void MSPDILeafWalk::takeLeaf(const MSPCXMLNode& node, const MSPDIItem& item) {
    std::string buffer;
    const auto text = node.stringValue(buffer);
    auto judgement = judge(node, item, text);
    if (_hasExternalTexts && judgement.fate == MSPDIFate::Carried && MSPDIHoldsExternalText(text)) {
        judgement = {MSPDIFate::Changed, "external-text"};
    }
    count(judgement.fate);
    tellFate(pathStepOf(_steps.back()), _steps.size() - 1, judgement.fate);
    if (!judgement.kind.empty()) {
        tell(judgement.kind, item, text);
    }
}

bool MSPDILeafWalk::isEmptied(const MSPCXMLNode& node) const {
    const auto* const known = _steps.back().known;
    return _isReduced && known != nullptr && known->hasChildren() && isEmptiedXMLPiece(node);
}

void MSPDILeafWalk::count(MSPDIFate fate) {
    ++_tally.leaves[MSPDIFateIndex(fate)];
}

// What was taken right here, before the element that follows. It is counted already.
void MSPDILeafWalk::tellOfTaken(const MSPDIItem& item) {
    if (!_hasPassed) {
        return;
    }
    constexpr std::size_t pieceLevel = 2;  // the project and its list stand around the piece
    while (const auto* const taken = _passed.nextTaken(_steps.size() - pieceLevel)) {
        if (taken->what == MSPDIPassedLeaves::What::Fates) {
            enterSteps(_steps.size());
            _options.fates->addAll(_passed.fatesOf(*taken));
        } else {
            push(taken->known, taken->known->name(), {}, taken->number);
            tellPlace(taken->kind, item, _passed.textOf(*taken));
            leave();
        }
    }
}

// Of a leaf below the first so many steps.
void MSPDILeafWalk::tellFate(const MSPDIPathStep& leaf, std::size_t owners, MSPDIFate fate) {
    if (_options.fates != nullptr) {
        enterSteps(owners);
        _options.fates->add(leaf, fate);
    }
}

// The first so many, in the list of fates.
void MSPDILeafWalk::enterSteps(std::size_t count) {
    for (; _enteredCount < count; ++_enteredCount) {
        _options.fates->enter(pathStepOf(_steps[_enteredCount]));
    }
}

MSPDIJudgement MSPDILeafWalk::judge(const MSPCXMLNode& node, const MSPDIItem& item, std::string_view text) const {
    const auto* const known = _steps.back().known;
    if (known == nullptr) {
        return judgeUnknown(node, item);
    }
    const auto* const element = known->element();
    const auto judgement = element == nullptr ? MSPDIJudgement(MSPDIFate::Default)
                                              : element->condition({item, *element, node, text, known->name()});
    if (known->hasChildren() && judgement.kind.empty() && !isBlank(text)) {
        return ofTextInstead(judgement.fate);
    }
    const bool isReplaced = judgement.fate == MSPDIFate::Carried && MSPDIArrival::isUnreadable(text);
    return isReplaced ? MSPDIJudgement(MSPDIFate::Changed, "unreadable-characters") : judgement;
}

// A baseline's value of any name hides what its owner has by that name; what stands in an element that is read as text
// adds to that text.
MSPDIJudgement MSPDILeafWalk::judgeUnknown(const MSPCXMLNode& node, const MSPDIItem& item) const {
    const auto& step = _steps[_steps.back().lastKnown];
    const auto& ancestor = step.node;
    const MSPDIJudgement lost(MSPDIFate::Lost, unknownElement);
    if (ancestor && ancestor == node.parent() && ancestor.name() == "Baseline") {
        const auto* const hidden = MSPDIElementAt(ownerPath(step.known->path()), node.name());
        const bool hides = hidden != nullptr && MSPDIMayArrive(*hidden) && item.fields.singleObject(node.name());
        return hides ? MSPDIJudgement(MSPDIFate::Shaping) : lost;
    }
    const auto* const element = step.known->element();
    if (!ancestor || element == nullptr || step.known->hasChildren()) {
        return lost;
    }
    const bool arrives = item.arrivesAsText.of(ancestor, [&] {
        const auto text = ancestor.stringValue();
        return element->condition({item, *element, ancestor, text, step.known->name()}).arrives();
    });
    if (!arrives && MSPDIMayArrive(*element) && !isBlank(node.stringValue())) {
        return {MSPDIFate::Shaping, unknownElement};  // without it the value may be one that is read
    }
    return arrives ? MSPDIJudgement(MSPDIFate::Changed, unknownElement) : lost;
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
        if (definition.isLast && definition.isShownByTask && _facts.isMissingInTOC(definition.name, true)) {
            tell("unregistered-field", item, definition.name);
        }
        if (definition.isLast && definition.isShownByResource && _facts.isMissingInTOC(definition.name, false)) {
            tell("unregistered-resource-field", item, definition.name);
        }
    }
}

bool MSPDILeafWalk::wantsPlace(std::size_t kind) const {
    const auto& loss = _losses.at(kind);
    return loss.element.empty() || loss.where.size() < _options.mostPlaces;
}

// Whether a loss that is told once for an element was told for that around the present leaf; from now on it was.
bool MSPDILeafWalk::wasToldOfOwner(std::size_t kind) {
    const auto owners = MSPDIKinds()[kind].owners;
    if (owners.empty()) {
        return false;
    }
    auto owner = _steps.size() - 1;
    while (owner > 0 && !MSPDIIsOneOf(_steps[owner].name, owners)) {
        --owner;
    }
    const auto told = std::pair(owner, kind);
    if (std::find(_told.begin(), _told.end(), told) != _told.end()) {
        return true;
    }
    _told.push_back(told);
    return false;
}

void MSPDILeafWalk::tell(std::string_view kind, const MSPDIItem& item, std::string_view value) {
    if (kind == resourceWeek) {
        auto& without = isListOf(item, "Calendar") ? _calendarsWithoutWeek : _resourcesWithoutWeek;
        without.insert(item.position);
        return;
    }
    const auto index = MSPDIKindIndex(kind);
    if (wasToldOfOwner(index)) {
        return;
    }
    _tally.kinds.push_back(index);
    if (!wantsPlace(index)) {
        return;
    }
    if (_isReduced && !_hasPassed) {
        _tally.lacksPlaces = true;
        return;
    }
    tellPlace(index, item, value);
}

void MSPDILeafWalk::tellPlace(std::size_t kind, const MSPDIItem& item, std::string_view value) {
    auto& loss = _losses.at(kind);
    if (loss.element.empty()) {
        loss.element = elementPath();
    }
    if (loss.where.size() < _options.mostPlaces) {
        setPlace(item, value, loss.where.emplace_back());
    }
}

void MSPDILeafWalk::enterTally(bool isOfTask) {
    for (std::size_t fate = 0; fate < _tally.leaves.size(); ++fate) {
        _account.leaves[fate] += _tally.leaves[fate];
    }
    for (const auto kind : _tally.kinds) {
        ++_losses[kind].count;
        _losses[kind].countInTasks += isOfTask ? 1 : 0;
    }
    _tally.clear();
}

// An item may come twice: first without the leaves that were taken.
void MSPDILeafWalk::remember(const MSPDIItem& item) {
    if (isListOf(item, "Task")) {
        _taskNames.resize(item.position);
        _taskNames.emplace_back(item.fields.text("Name").textOrEmpty());
    } else if (isListOf(item, "Resource")) {
        const auto textOf = [&item](std::string_view name) { return item.fields.text(name).textOrEmpty(); };
        _resources.resize(item.position);
        _resources.push_back(
            {_steps.at(1).number, _steps.back().number, textOf("UID"), textOf("Name"), textOf("CalendarUID")});
    }
}

void MSPDILeafWalk::tellOfWeeks() {
    auto& loss = _losses.at(MSPDIKindIndex(resourceWeek));
    for (std::size_t position = 0; position < _resources.size(); ++position) {
        const auto& calendar = _facts.resources[position].calendar;
        if (!_resourcesWithoutWeek.contains(position) && !(calendar && _calendarsWithoutWeek.contains(*calendar))) {
            continue;
        }
        const auto& [list, number, uid, name, calendarUID] = _resources[position];
        loss.element = "Resources/Resource/CalendarUID";
        ++loss.count;
        if (loss.where.size() < _options.mostPlaces) {
            loss.where.push_back({fmt::format("/Project/Resources[{}]/Resource[{}]/CalendarUID[1]", list, number),
                                  uid,
                                  name,
                                  calendarUID,
                                  {},
                                  calendarUID,
                                  {}});
        }
    }
}

void MSPDILeafWalk::finish() {
    tellOfWeeks();
    for (std::size_t kind = 0; kind < _losses.size(); ++kind) {
        auto& loss = _losses[kind];
        if (loss.count > 0) {
            loss.kind = MSPDIKinds()[kind].name;
            loss.what = MSPDIKinds()[kind].what;
            for (auto& place : loss.where) {
                nameTarget(place);
                if (_hasExternalTexts) {
                    MSPDIRemoveExternalTexts(place.name);
                    MSPDIRemoveExternalTexts(place.value);
                }
            }
            _account.losses.push_back(std::move(loss));
        }
    }
}

std::size_t& MSPDILeafWalk::countOf(Counts& counts, std::string_view name) {
    const auto known = counts.find(name);
    return known != counts.end() ? known->second : counts.emplace(name, 0).first->second;
}

void MSPDILeafWalk::enterChild(const MSPCXMLNode& node, const MSPDIItem& item) {
    if (_hasPassed) {
        MSPDIExpectFewLevels(_steps.size());
        tellOfTaken(item);
        const auto& passed = _passed.next();
        push(passed.known, nameOf(node, passed.known), node, passed.number);
        return;
    }
    const auto* const parent = _steps.back().known;
    const auto* const known = parent == nullptr ? nullptr : parent->child(node.name());
    push(known, nameOf(node, known), node, _countsAll ? numberOfChild(node, known) : 0);
}

std::size_t MSPDILeafWalk::numberOfChild(const MSPCXMLNode& node, const MSPDIElementTree* known) {
    MSPDIExpectFewLevels(_steps.size());
    return countsOfChildren().nextOf(node.name(), _steps.back().known, known);
}

MSPDINameCounts& MSPDILeafWalk::countsOfChildren() {
    const auto depth = _steps.size();
    if (!_steps.back().hasCounted) {
        _steps.back().hasCounted = true;
        _childCounts.resize(std::max(_childCounts.size(), depth));
        _childCounts[depth - 1].clear();
    }
    return _childCounts[depth - 1];
}

void MSPDILeafWalk::enter(std::string_view name, const MSPCXMLNode& node, std::size_t number) {
    const auto* const parent = _steps.back().known;
    push(parent == nullptr ? nullptr : parent->child(name), MSPDIWithoutPrefix(name), node, number);
}

void MSPDILeafWalk::push(const MSPDIElementTree* known, std::string_view name, const MSPCXMLNode& node,
                         std::size_t number) {
    const auto lastKnown = known == nullptr ? _steps.back().lastKnown : _steps.size();
    _steps.push_back({known, name, node, number, lastKnown});
}

void MSPDILeafWalk::leave() {
    _steps.pop_back();
    if (_enteredCount > _steps.size()) {
        _options.fates->leave();
        --_enteredCount;
    }
    if (_pathEnds.size() > _steps.size()) {
        _pathEnds.pop_back();
        _path.resize(_pathEnds.back());
    }
    if (_told.empty()) {
        return;
    }
    std::erase_if(_told, [this](const auto& told) { return told.first >= _steps.size(); });
}
