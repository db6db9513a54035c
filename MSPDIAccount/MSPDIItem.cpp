#include "MSPDIItem.h"

#include <algorithm>
#include <array>

#include "MSPCXPathNumber.h"

namespace {

constexpr int mostBaselines = 10;

// Calls `visit` with each number of a baseline that may be one that is imported.
template <typename Visit>
void visitBaselineNumbers(const MSPCXMLNode& baseline, const Visit& visit) {
    std::string buffer;
    for (auto child = baseline.firstChildElement("Number"); child; child = child.nextSiblingElement("Number")) {
        const auto number = xpathNumber(child.stringValue(buffer));
        if (number && *number >= 0 && *number <= mostBaselines && *number == static_cast<int>(*number)) {
            visit(static_cast<int>(*number));
        }
    }
}

// Up to so many children are looked through each time, which is faster than keeping what they are.
bool hasMany(const MSPCXMLNode& parent) {
    constexpr int few = 64;
    auto child = parent.firstChild();
    for (int count = 0; count < few && child; ++count) {
        child = child.nextSibling();
    }
    return static_cast<bool>(child);
}

}  // namespace

MSPCXMLLastChild MSPDIItem::lastChild(const MSPCXMLNode& parent, std::string_view name) const {
    if (parent == node) {
        return fields.lastChild(name);
    }
    auto children = _children.find(parent);
    if (children == _children.end()) {
        if (!hasMany(parent)) {
            return parent.lastChildElement(name);
        }
        children = _children.emplace(parent, LastChildren()).first;
        for (auto child = parent.firstChild(); child; child = child.nextSibling()) {
            if (child.isElement()) {
                auto& last = children->second[child.name()];
                last = {child, last.count + 1};
            }
        }
    }
    const auto found = children->second.find(name);
    return found == children->second.end() ? MSPCXMLLastChild() : found->second;
}

std::string MSPDIItem::lastText(const MSPCXMLNode& parent, std::string_view name) const {
    return lastChild(parent, name).element.stringValue();
}

std::optional<int> MSPDIItem::baselineNumber(const MSPCXMLNode& baseline) const {
    return _number.of(baseline, [&baseline] {
        std::optional<int> last;
        visitBaselineNumbers(baseline, [&last](int number) { last = number; });
        return last;
    });
}

const std::vector<std::pair<int, MSPCXMLNode>>& MSPDIItem::baselines() const {
    if (_baselines) {
        return *_baselines;
    }
    // A baseline counts where no later one has its number, be it as one of several.
    std::vector<std::pair<int, MSPCXMLNode>> all;
    std::array<MSPCXMLNode, mostBaselines + 1> lastWith;
    for (auto baseline = node.firstChildElement("Baseline"); baseline;
         baseline = baseline.nextSiblingElement("Baseline")) {
        std::optional<int> own;
        visitBaselineNumbers(baseline, [&](int number) {
            lastWith[static_cast<std::size_t>(number)] = baseline;
            own = number;
        });
        if (own) {
            all.emplace_back(*own, baseline);
        }
    }
    std::erase_if(all,
                  [&lastWith](const auto& one) { return lastWith[static_cast<std::size_t>(one.first)] != one.second; });
    return _baselines.emplace(std::move(all));
}

bool MSPDIItem::countsAsBaseline(const MSPCXMLNode& baseline) const {
    const auto& all = baselines();
    return std::any_of(all.begin(), all.end(), [&baseline](const auto& one) { return one.second == baseline; });
}

MSPCXMLNode MSPDIItem::lastFieldOfName(std::string_view name) const {
    if (!_lastFields) {
        _lastFields.emplace();
        for (auto field = node.firstChildElement("ExtendedAttribute"); field;
             field = field.nextSiblingElement("ExtendedAttribute")) {
            const auto id = lastChild(field, "FieldID").element;
            const auto definition = id ? facts.definitionOf(id.stringValue()) : std::nullopt;
            if (definition && facts.definitions[*definition].hasName) {
                (*_lastFields)[facts.definitions[*definition].name] = field;
            }
        }
    }
    const auto found = _lastFields->find(name);
    return found == _lastFields->end() ? MSPCXMLNode() : found->second;
}
