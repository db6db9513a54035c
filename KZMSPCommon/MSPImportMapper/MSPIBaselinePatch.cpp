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

bool holdsElements(const MSPCXMLNode& element) {
    auto child = element.firstChild();
    while (child && !child.isElement()) {
        child = child.nextSibling();
    }
    return static_cast<bool>(child);
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
        if (replacement->keptOriginal) {
            _target.insertChildBefore(std::move(replacement->keptOriginal), replacement->standIn);
            static_cast<void>(replacement->standIn.detach());
        } else {
            replacement->standIn.exchangeWith(replacement->original);
        }
    }
    _replacements.clear();
    _isPatched = false;
}

// From the last child of the baseline to the first: of several of one name, which timephased data gives by the hundred,
// the last one is what shows.
void MSPIBaselinePatch::showBaseline(const MSPCXMLNode& baseline) {
    ChildrenByName children(_target, _children);
    const auto values = baseline.childElements();
    for (auto value = values.rbegin(); value != values.rend(); ++value) {
        if (value->name == "Number") {
            continue;
        }
        const auto child = children.named(value->name);
        if (child && child.parent() == _target) {  // else it has been replaced already
            show(value->element, child);
        }
    }
}

// A plain value changes places with the child: nothing is copied, and no reader sees the difference. Only the text of a
// value shows, so one with elements in it, or a child that holds the value, needs a new element.
void MSPIBaselinePatch::show(const MSPCXMLNode& value, MSPCXMLNode child) {
    if (!holdsElements(value) && child != value.parent()) {
        child.exchangeWith(value);
        _replacements.push_back({child, value, {}});
        return;
    }
    auto standIn = _target.insertChildBefore(_target.newElement(value.name()), child);
    standIn.setStringValue(value.stringValue());
    _replacements.push_back({child, standIn, child.detach()});
}

void MSPIBaselinePatch::removeTarget() {
    _parentOfRemoved = _target.parent();
    _siblingAfterRemoved = _target.nextSibling();
    _removedTarget = _target.detach();
}
