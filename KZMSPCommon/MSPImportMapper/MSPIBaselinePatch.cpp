#include "MSPIBaselinePatch.h"

#include <string>
#include <utility>

#include "MSPCException.h"
#include "MSPIXPathNumber.h"

MSPIBaselinePatch::MSPIBaselinePatch(MSPCXMLNode target, std::int32_t baselineNumber)
    : _target(target), _baselineNumber(baselineNumber) {
}

void MSPIBaselinePatch::apply() {
    if (_isPatched) {
        throw MSPCInternalInconsistency("Can not apply patch to already patched target. Must revert first.");
    }
    _isPatched = true;
    const auto baseline = baselineOfTarget();
    if (!baseline) {
        removeTarget();
        return;
    }
    // Read whole before anything changes: a child may bear the name of the baseline itself.
    auto values = valuesOf(baseline);
    for (auto child = _target.firstChild(); child; child = child.nextSibling()) {
        if (const auto value = child.isElement() ? values.find(child.name()) : values.end(); value != values.end()) {
            value->second.child = child;
        }
    }
    for (const auto& [name, value] : values) {
        if (value.child) {
            showTextInChild(name, value);
        }
    }
}

// Of several children of one name, which timephased data gives by the hundred, the last one is what shows.
MSPIBaselinePatch::Values MSPIBaselinePatch::valuesOf(const MSPCXMLNode& baseline) {
    Values values;
    for (auto child = baseline.firstChild(); child; child = child.nextSibling()) {
        if (child.isElement() && child.name() != "Number") {
            values.insert_or_assign(std::string(child.name()), Value{child.stringValue(), {}});
        }
    }
    return values;
}

void MSPIBaselinePatch::revert() {
    if (!_isPatched) {
        throw MSPCInternalInconsistency("Can not revert patch at non-patched target. Must apply patch first.");
    }
    if (_removedTarget) {
        _target = _parentOfRemoved.insertChildBefore(std::move(_removedTarget), _siblingAfterRemoved);
    }
    for (auto& [original, standIn] : _replacements) {
        _target.insertChildBefore(std::move(original), standIn);
        static_cast<void>(standIn.detach());
    }
    _replacements.clear();
    _isPatched = false;
}

// "Baseline[Number=<n>]", the last of several.
MSPCXMLNode MSPIBaselinePatch::baselineOfTarget() const {
    MSPCXMLNode found;
    for (auto baseline = _target.firstChildElement("Baseline"); baseline;
         baseline = baseline.nextSiblingElement("Baseline")) {
        if (hasChildWithNumber(baseline, "Number", _baselineNumber)) {
            found = baseline;
        }
    }
    return found;
}

void MSPIBaselinePatch::removeTarget() {
    _parentOfRemoved = _target.parent();
    _siblingAfterRemoved = _target.nextSibling();
    _removedTarget = _target.detach();
}

void MSPIBaselinePatch::showTextInChild(std::string_view name, const Value& value) {
    auto child = value.child;
    auto standIn = _target.insertChildBefore(_target.newElement(name), child);
    standIn.setStringValue(value.text);
    _replacements.push_back({child.detach(), standIn});
}
