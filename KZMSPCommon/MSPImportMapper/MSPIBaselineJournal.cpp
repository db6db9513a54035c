#include "MSPIBaselineJournal.h"

#include <utility>

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
