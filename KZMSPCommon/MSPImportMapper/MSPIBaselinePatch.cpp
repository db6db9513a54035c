#include "MSPIBaselinePatch.h"

#include <optional>
#include <utility>

#include "MSPCException.h"
#include "MSPCFields.h"
#include "MSPIXPathNumber.h"

namespace {

// "Baseline[Number=<n>]", the last of several.
MSPCXMLNode baselineOf(const MSPCXMLNode& target, std::int32_t number) {
    MSPCXMLNode found;
    for (auto baseline = target.firstChildElement("Baseline"); baseline;
         baseline = baseline.nextSiblingElement("Baseline")) {
        if (hasChildWithNumber(baseline, "Number", number)) {
            found = baseline;
        }
    }
    return found;
}

// The last child of a name, of those that a baseline names from its last to its first. The baselines of an element name
// the same ones in the same order, so that most are known from another one.
class ChildrenByName {
public:
    ChildrenByName(const MSPCXMLNode& element, std::span<const MSPCXMLNamedElement> known)
        : _element(element), _known(known) {
    }

    MSPCXMLNode named(std::string_view name) {
        while (!_known.empty()) {
            const auto& candidate = _known.back();
            _known = _known.first(_known.size() - 1);
            if (candidate.name == name) {
                return candidate.element;
            }
        }
        if (!_fields) {
            _fields.emplace(_element);
        }
        return _fields->singleObject(name);
    }

private:
    MSPCXMLNode _element;
    std::span<const MSPCXMLNamedElement> _known;  // those that may still come
    std::optional<MSPCFields> _fields;
};

}  // namespace

MSPIBaselinePatch::MSPIBaselinePatch(MSPCXMLNode target, std::int32_t baselineNumber)
    : MSPIBaselinePatch(target, baselineOf(target, baselineNumber)) {
}

MSPIBaselinePatch::MSPIBaselinePatch(MSPCXMLNode target, MSPCXMLNode baseline,
                                     std::span<const MSPCXMLNamedElement> children)
    : _target(target), _baseline(baseline), _children(children) {
}

void MSPIBaselinePatch::apply() {
    if (_isPatched) {
        throw MSPCInternalInconsistency("Can not apply patch to already patched target. Must revert first.");
    }
    _isPatched = true;
    if (_baseline) {
        showBaseline(_baseline);
    } else {
        removeTarget();
    }
}

void MSPIBaselinePatch::revert() {
    if (!_isPatched) {
        throw MSPCInternalInconsistency("Can not revert patch at non-patched target. Must apply patch first.");
    }
    if (_removedTarget) {
        _target = _parentOfRemoved.insertChildBefore(std::move(_removedTarget), _siblingAfterRemoved);
    }
    for (auto replacement = _replacements.rbegin(); replacement != _replacements.rend(); ++replacement) {
        auto& [child, originalTextSize, standIn, keptChild] = *replacement;
        if (keptChild) {
            _target.insertChildBefore(std::move(keptChild), standIn);
            static_cast<void>(standIn.detach());
        } else {
            const auto start = _originalTexts.size() - originalTextSize;
            child.replaceOnlyText(std::string_view(_originalTexts).substr(start));
            _originalTexts.resize(start);
        }
    }
    _replacements.clear();
    _isPatched = false;
}

// Of several values of one name, which timephased data gives by the hundred, the last one is what shows.
void MSPIBaselinePatch::showBaseline(const MSPCXMLNode& baseline) {
    ChildrenByName children(_target, _children);
    const MSPCFields values(baseline);
    _replacements.reserve(values.elements().size());
    const auto elements = values.elements();
    for (auto element = elements.rbegin(); element != elements.rend(); ++element) {
        const auto& [name, value] = *element;
        if (name == "Number" || value != values.singleObject(name)) {
            continue;
        }
        if (const auto child = children.named(name)) {
            show(value, child);
        }
    }
}

// A child that is one text gets another one and stays where it is. Any other child, and a text that is or becomes empty,
// gives way to a new element.
void MSPIBaselinePatch::show(const MSPCXMLNode& value, MSPCXMLNode child) {
    std::string buffer;
    const auto text = value.stringValue(buffer);
    std::string originalBuffer;
    const auto originalText = child.stringValue(originalBuffer);
    _originalTexts += originalText;
    if (child.replaceOnlyText(text)) {
        _replacements.push_back({child, originalText.size(), {}, {}});
        return;
    }
    _originalTexts.resize(_originalTexts.size() - originalText.size());
    auto standIn = _target.insertChildBefore(_target.newElement(value.name()), child);
    standIn.setStringValue(text);
    _replacements.push_back({child, 0, standIn, child.detach()});
}

void MSPIBaselinePatch::removeTarget() {
    _parentOfRemoved = _target.parent();
    _siblingAfterRemoved = _target.nextSibling();
    _removedTarget = _target.detach();
}
