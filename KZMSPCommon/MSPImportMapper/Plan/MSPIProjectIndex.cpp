#include "MSPIProjectIndex.h"

#include <algorithm>
#include <utility>

#include "MSPCExtensions.h"
#include "MSPCNodeValues.h"
#include "MSPCXPathNumber.h"

namespace {

// The elements at `path`, once for each different key that `keyOf` reads from their children; ascending by key and in
// document order within one key. Tells whether any has several.
template <typename Key, typename KeyOf>
std::vector<std::pair<Key, MSPCXMLNode>> entriesByKey(const MSPCXMLNode& project, std::string_view path,
                                                      std::string_view name, std::string_view required,
                                                      const KeyOf& keyOf, bool& hasNodesOfSeveralKeys) {
    std::vector<std::pair<Key, MSPCXMLNode>> entries;
    for (const auto& node : nodesForXQuery(project, path)) {
        if (!required.empty() && !node.firstChildElement(required)) {
            continue;
        }
        for (auto child = node.firstChildElement(name); child; child = child.nextSiblingElement(name)) {
            if (auto key = keyOf(child)) {
                hasNodesOfSeveralKeys = hasNodesOfSeveralKeys || (!entries.empty() && entries.back().second == node &&
                                                                  entries.back().first != *key);
                entries.emplace_back(std::move(*key), node);
            }
        }
    }
    const auto isLess = [](const auto& a, const auto& b) { return a.first < b.first; };
    if (!std::is_sorted(entries.begin(), entries.end(), isLess)) {
        std::stable_sort(entries.begin(), entries.end(), isLess);
    }
    entries.erase(std::unique(entries.begin(), entries.end()), entries.end());
    return entries;
}

}  // namespace

MSPINumberIndex::MSPINumberIndex(const MSPCXMLNode& project, std::string_view path, std::string_view key,
                                 std::string_view required) {
    std::string buffer;
    const auto entries = entriesByKey<double>(
        project, path, key, required, [&](const MSPCXMLNode& child) { return xpathNumber(child.stringValue(buffer)); },
        _hasNodesOfSeveralKeys);
    _keys.reserve(entries.size());
    _nodes.reserve(entries.size());
    for (const auto& [number, node] : entries) {
        _keys.push_back(number);
        _nodes.push_back(node);
    }
}

std::span<const MSPCXMLNode> MSPINumberIndex::nodesWithKey(std::int64_t number) const {
    const auto key = static_cast<double>(number);
    const auto first = std::lower_bound(_keys.begin(), _keys.end(), key);
    // Mostly there is one; a second search finds the end of any number of them.
    const auto next = first == _keys.end() ? first : std::next(first);
    const bool isOne = first != next && *first == key && (next == _keys.end() || *next != key);
    const auto last = isOne ? next : std::upper_bound(first, _keys.end(), key);
    return std::span(_nodes).subspan(static_cast<std::size_t>(first - _keys.begin()),
                                     static_cast<std::size_t>(last - first));
}

MSPCXMLNode MSPINumberIndex::singleNodeWithKey(std::int64_t number, Error* error) const {
    const auto matches = nodesWithKey(number);
    reportMatches(matches.size(), error);
    return matches.empty() ? MSPCXMLNode() : matches.back();
}

MSPITextIndex::MSPITextIndex(const MSPCXMLNode& project, std::string_view path, std::string_view key) {
    bool hasNodesOfSeveralKeys = false;
    _entries = entriesByKey<std::string>(
        project, path, key, {}, [](const MSPCXMLNode& child) { return std::optional(child.stringValue()); },
        hasNodesOfSeveralKeys);
}

MSPCXMLNode MSPITextIndex::singleNodeWithKey(std::string_view text, Error* error) const {
    if (text.find('\'') != std::string_view::npos) {
        // Deliberate: the query ends there and finds nothing.
        reportMatches(0, error);
        return {};
    }
    const auto first = std::lower_bound(_entries.begin(), _entries.end(), text,
                                        [](const auto& entry, std::string_view key) { return entry.first < key; });
    const auto last = std::upper_bound(first, _entries.end(), text,
                                       [](std::string_view key, const auto& entry) { return key < entry.first; });
    reportMatches(static_cast<std::size_t>(last - first), error);
    return first == last ? MSPCXMLNode() : std::prev(last)->second;
}

namespace {

template <typename Index, typename... Names>
const Index& builtOnce(std::optional<Index>& index, const MSPCXMLNode& project, const Names&... names) {
    if (!index) {
        index.emplace(project, names...);
    }
    return *index;
}

}  // namespace

MSPIProjectIndex::MSPIProjectIndex(MSPIProjectIndex& asLoaded, MSPIUnchangedLists unchanged)
    : _project(asLoaded._project), _asLoaded(&asLoaded), _unchanged(unchanged) {
}

const MSPIUIDIndex<MSPCTaskUID>& MSPIProjectIndex::tasksByUID() {
    return builtOnce(holderOf(_unchanged.tasks)._tasksByUID, _project, "Tasks/Task", "UID");
}

const MSPIUIDIndex<MSPCCalendarUID>& MSPIProjectIndex::calendarsByUID() {
    return builtOnce(holderOf(true)._calendarsByUID, _project, "Calendars/Calendar", "UID");
}

const MSPIUIDIndex<MSPCTaskUID>& MSPIProjectIndex::assignmentsByTaskUID() {
    return builtOnce(holderOf(_unchanged.assignments)._assignmentsByTaskUID, _project, "Assignments/Assignment",
                     "TaskUID");
}

const MSPIUIDIndex<MSPCTaskUID>& MSPIProjectIndex::timephasedAssignmentsByTaskUID() {
    return builtOnce(holderOf(_unchanged.assignments)._timephasedAssignmentsByTaskUID, _project,
                     "Assignments/Assignment", "TaskUID", "TimephasedData");
}

const MSPIUIDIndex<MSPCResourceUID>& MSPIProjectIndex::assignmentsByResourceUID() {
    return builtOnce(holderOf(_unchanged.assignments)._assignmentsByResourceUID, _project, "Assignments/Assignment",
                     "ResourceUID");
}

const MSPITextIndex& MSPIProjectIndex::definitionsByFieldID() {
    return builtOnce(holderOf(true)._definitionsByFieldID, _project, "ExtendedAttributes/ExtendedAttribute", "FieldID");
}

std::shared_ptr<MSPIAssignmentKeys> MSPIProjectIndex::assignmentKeys() {
    auto& keys = holderOf(_unchanged.assignments)._assignmentKeys;
    if (!keys) {
        keys = std::make_shared<MSPIAssignmentKeys>(nodesForXQuery(_project, "Assignments/Assignment"));
    }
    return keys;
}
