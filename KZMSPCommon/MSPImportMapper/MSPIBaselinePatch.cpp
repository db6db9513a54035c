#include "MSPIBaselinePatch.h"

#include <utility>

#include "MSPCException.h"

// A child that is one text gets another one and stays where it is. Any other child, and a text that is or becomes
// empty, gives way to a new element.
void MSPIBaselineJournal::show(MSPCXMLNode target, const MSPIBaselineValue& value) {
    auto child = value.child;
    const auto start = _originalTexts.size();
    if (child.replaceOnlyText(value.text, &_originalTexts)) {
        _starts.push_back(start);
        return;
    }
    _starts.push_back(ByStandIn);
    auto standIn = target.insertChildBefore(target.newElement(child.name()), child);
    standIn.setStringValue(value.text);
    _standIns.push_back({standIn, child.detach()});
}

void MSPIBaselineJournal::takeBack(MSPCXMLNode target, const MSPIBaselineValue& value) {
    const auto start = _starts.back();
    _starts.pop_back();
    if (start == ByStandIn) {
        auto& [standIn, keptChild] = _standIns.back();
        target.insertChildBefore(std::move(keptChild), standIn);
        static_cast<void>(standIn.detach());
        _standIns.pop_back();
        return;
    }
    auto child = value.child;
    child.replaceOnlyText(std::string_view(_originalTexts).substr(start));
    _originalTexts.resize(start);
}

MSPIBaselinePatch::MSPIBaselinePatch(const MSPIBaselineIndex::Target& target, MSPIBaselineJournal& journal)
    : _target(target), _journal(journal) {
}

void MSPIBaselinePatch::apply() {
    if (_isPatched) {
        throw MSPCInternalInconsistency("Can not apply patch to already patched target. Must revert first.");
    }
    _isPatched = true;
    if (!_target.hasBaseline) {
        removeTarget();
        return;
    }
    for (const auto& value : _target.values) {
        _journal.show(_target.element, value);
    }
}

void MSPIBaselinePatch::revert() {
    if (!_isPatched) {
        throw MSPCInternalInconsistency("Can not revert patch at non-patched target. Must apply patch first.");
    }
    if (_removedTarget) {
        _target.element = _parentOfRemoved.insertChildBefore(std::move(_removedTarget), _siblingAfterRemoved);
    }
    for (auto value = _target.values.rbegin(); value != _target.values.rend(); ++value) {
        _journal.takeBack(_target.element, *value);
    }
    _isPatched = false;
}

void MSPIBaselinePatch::removeTarget() {
    _parentOfRemoved = _target.element.parent();
    _siblingAfterRemoved = _target.element.nextSibling();
    _removedTarget = _target.element.detach();
}
