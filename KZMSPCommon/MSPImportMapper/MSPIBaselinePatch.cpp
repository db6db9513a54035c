#include "MSPIBaselinePatch.h"

#include <utility>

#include "MSPCException.h"
#include "MSPCFields.h"
#include "MSPCXPathNumber.h"

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

MSPIBaselinePatch::MSPIBaselinePatch(MSPCXMLNode target, std::int32_t baselineNumber) : _target(target) {
    if (const auto baseline = baselineOf(target, baselineNumber)) {
        _own = std::make_unique<Own>();
        _values = _own->values.append(MSPCFields(target), baseline);
        _journal = &_own->journal;
        _hasBaseline = true;
    }
}

MSPIBaselinePatch::MSPIBaselinePatch(MSPCXMLNode target, bool hasBaseline, std::span<const MSPIBaselineValue> values,
                                     MSPIBaselineJournal& journal)
    : _target(target), _values(values), _journal(&journal), _hasBaseline(hasBaseline) {
}

void MSPIBaselinePatch::apply() {
    if (_isPatched) {
        throw MSPCInternalInconsistency("Can not apply patch to already patched target. Must revert first.");
    }
    _isPatched = true;
    if (!_hasBaseline) {
        removeTarget();
        return;
    }
    for (const auto& value : _values) {
        _journal->show(_target, value);
    }
}

void MSPIBaselinePatch::revert() {
    if (!_isPatched) {
        throw MSPCInternalInconsistency("Can not revert patch at non-patched target. Must apply patch first.");
    }
    if (_removedTarget) {
        _target = _parentOfRemoved.insertChildBefore(std::move(_removedTarget), _siblingAfterRemoved);
    }
    for (auto value = _values.rbegin(); value != _values.rend(); ++value) {
        _journal->takeBack(_target, *value);
    }
    _isPatched = false;
}

void MSPIBaselinePatch::prefetch() const {
    for (const auto& value : _values) {
        value.child.prefetch();
    }
}

void MSPIBaselinePatch::prefetchTexts() const {
    for (const auto& value : _values) {
        value.child.prefetchText();
    }
}

void MSPIBaselinePatch::removeTarget() {
    _parentOfRemoved = _target.parent();
    _siblingAfterRemoved = _target.nextSibling();
    _removedTarget = _target.detach();
}
