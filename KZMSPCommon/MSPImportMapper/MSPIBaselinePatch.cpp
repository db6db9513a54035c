#include "MSPIBaselinePatch.h"

#include <algorithm>
#include <utility>

#include "MSPCException.h"
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

}  // namespace

void appendBaselineValues(const MSPCFields& element, const MSPCXMLNode& baseline, std::vector<MSPIBaselineValue>& values) {
    const MSPCFields fields(baseline);
    for (const auto& [name, value] : fields.elements()) {
        // Of several of one name, which timephased data gives by the hundred, the last one is what shows.
        if (name == "Number" || value != fields.singleObject(name)) {
            continue;
        }
        if (const auto child = element.singleObject(name)) {
            values.push_back({child, value});
        }
    }
}

MSPIBaselinePatch::MSPIBaselinePatch(MSPCXMLNode target, std::int32_t baselineNumber)
    : _target(target), _baseline(baselineOf(target, baselineNumber)) {
    if (_baseline) {
        appendBaselineValues(MSPCFields(target), _baseline, _ownValues);
        _values = _ownValues;
    }
}

MSPIBaselinePatch::MSPIBaselinePatch(MSPCXMLNode target, MSPCXMLNode baseline,
                                     std::span<const MSPIBaselineValue> values)
    : _target(target), _baseline(baseline), _values(values) {
}

void MSPIBaselinePatch::apply() {
    if (_isPatched) {
        throw MSPCInternalInconsistency("Can not apply patch to already patched target. Must revert first.");
    }
    _isPatched = true;
    if (_baseline) {
        _replacements.reserve(_values.size());
        std::for_each(_values.begin(), _values.end(), [this](const auto& value) { show(value); });
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

// A child that is one text gets another one and stays where it is. Any other child, and a text that is or becomes empty,
// gives way to a new element.
void MSPIBaselinePatch::show(MSPIBaselineValue shown) {
    auto& [child, value] = shown;
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
