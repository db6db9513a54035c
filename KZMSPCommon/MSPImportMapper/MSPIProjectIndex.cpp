#include "MSPIProjectIndex.h"

#include <algorithm>
#include <charconv>
#include <numeric>

#include "MSPCExtensions.h"

namespace {

// XPath's number(): blanks around, a "-", digits with a point among them; anything else is not a number.
std::optional<double> xpathNumber(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return std::nullopt;
    }
    text = text.substr(first, text.find_last_not_of(blanks) - first + 1);
    const auto digits = text.substr(text.starts_with('-') ? 1 : 0);
    const bool isPlain = digits.find_first_not_of("0123456789.") == std::string_view::npos;
    if (!isPlain || digits.find_first_of("0123456789") == std::string_view::npos ||
        std::count(digits.begin(), digits.end(), '.') > 1) {
        return std::nullopt;
    }
    double number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
    return number;
}

void report(std::size_t matches, Error* error) {
    if (error != nullptr && matches != 1) {
        *error = Error{MSPCXQueryErrorDomain, matches == 0 ? MSPCXQueryNoMatch : MSPCXQueryMoreThanOneMatch, {}};
    }
}

}  // namespace

MSPINumberIndex::MSPINumberIndex(const MSPCXMLNode& project, std::string_view path, std::string_view key) {
    std::vector<std::pair<double, MSPCXMLNode>> entries;
    std::string buffer;
    for (const auto& node : nodesForXQuery(project, path)) {
        const auto before = entries.size();
        for (auto child = node.firstChildElement(key); child; child = child.nextSiblingElement(key)) {
            const auto number = xpathNumber(child.stringValue(buffer));
            const auto sameNode = entries.begin() + static_cast<std::ptrdiff_t>(before);
            // A second child with the same number does not find the element twice.
            if (number && std::none_of(sameNode, entries.end(), [&](const auto& e) { return e.first == *number; })) {
                entries.emplace_back(*number, node);
            }
        }
    }
    const auto byKey = [](const auto& a, const auto& b) { return a.first < b.first; };
    if (!std::is_sorted(entries.begin(), entries.end(), byKey)) {
        std::stable_sort(entries.begin(), entries.end(), byKey);
    }
    _keys.reserve(entries.size());
    _nodes.reserve(entries.size());
    for (const auto& [number, node] : entries) {
        _keys.push_back(number);
        _nodes.push_back(node);
    }
}

std::span<const MSPCXMLNode> MSPINumberIndex::nodesWithKey(std::int64_t number) const {
    const auto [first, last] = std::equal_range(_keys.begin(), _keys.end(), static_cast<double>(number));
    return std::span(_nodes).subspan(static_cast<std::size_t>(first - _keys.begin()),
                                     static_cast<std::size_t>(last - first));
}

MSPCXMLNode MSPINumberIndex::singleNodeWithKey(std::int64_t number, Error* error) const {
    const auto matches = nodesWithKey(number);
    report(matches.size(), error);
    return matches.empty() ? MSPCXMLNode() : matches.back();
}

MSPITextIndex::MSPITextIndex(const MSPCXMLNode& project, std::string_view path, std::string_view key) {
    for (const auto& node : nodesForXQuery(project, path)) {
        const auto before = _entries.size();
        for (auto child = node.firstChildElement(key); child; child = child.nextSiblingElement(key)) {
            auto text = child.stringValue();
            const auto sameNode = _entries.begin() + static_cast<std::ptrdiff_t>(before);
            if (std::none_of(sameNode, _entries.end(), [&](const auto& entry) { return entry.first == text; })) {
                _entries.emplace_back(std::move(text), node);
            }
        }
    }
    std::stable_sort(_entries.begin(), _entries.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
}

MSPCXMLNode MSPITextIndex::singleNodeWithKey(std::string_view text, Error* error) const {
    const auto first = std::lower_bound(_entries.begin(), _entries.end(), text,
                                        [](const auto& entry, std::string_view key) { return entry.first < key; });
    const auto last = std::upper_bound(first, _entries.end(), text,
                                       [](std::string_view key, const auto& entry) { return key < entry.first; });
    report(static_cast<std::size_t>(last - first), error);
    return first == last ? MSPCXMLNode() : std::prev(last)->second;
}

namespace {

template <typename Index>
const Index& builtOnce(std::optional<Index>& index, const MSPCXMLNode& project, std::string_view path,
                       std::string_view key) {
    if (!index) {
        index.emplace(project, path, key);
    }
    return *index;
}

}  // namespace

const MSPINumberIndex& MSPIProjectIndex::tasksByUID() {
    return builtOnce(_tasksByUID, _project, "Tasks/Task", "UID");
}

const MSPINumberIndex& MSPIProjectIndex::calendarsByUID() {
    return builtOnce(_calendarsByUID, _project, "Calendars/Calendar", "UID");
}

const MSPINumberIndex& MSPIProjectIndex::assignmentsByTaskUID() {
    return builtOnce(_assignmentsByTaskUID, _project, "Assignments/Assignment", "TaskUID");
}

const MSPINumberIndex& MSPIProjectIndex::assignmentsByResourceUID() {
    return builtOnce(_assignmentsByResourceUID, _project, "Assignments/Assignment", "ResourceUID");
}

const MSPITextIndex& MSPIProjectIndex::definitionsByFieldID() {
    return builtOnce(_definitionsByFieldID, _project, "ExtendedAttributes/ExtendedAttribute", "FieldID");
}
