#include "MSPDIItem.h"

#include <algorithm>

#include "MSPIBaselineNumbers.h"

namespace {

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
        const auto number = MSPIBaselineNumber(baseline);
        return number ? std::optional(static_cast<int>(*number)) : std::nullopt;
    });
}

const std::vector<std::pair<int, MSPCXMLNode>>& MSPDIItem::baselines() const {
    if (_baselines) {
        return *_baselines;
    }
    const auto first = node.firstChildElement("Baseline");
    const auto last = MSPILastBaselines(first);
    std::vector<std::pair<int, MSPCXMLNode>> counting;
    for (auto baseline = first; baseline; baseline = baseline.nextSiblingElement("Baseline")) {
        const auto own = MSPIBaselineNumber(baseline);
        if (own && last[*own] == baseline) {
            counting.emplace_back(static_cast<int>(*own), baseline);
        }
    }
    return _baselines.emplace(std::move(counting));
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
