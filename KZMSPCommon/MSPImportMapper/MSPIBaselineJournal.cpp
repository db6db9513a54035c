#include "MSPIBaselineJournal.h"

#include <utility>

// A child that is one text gets another one and stays where it is. Any other child, and a text that is or becomes empty,
// gives way to a new element.
void MSPIBaselineJournal::show(MSPCXMLNode target, const MSPIBaselineValue& value) {
    auto child = value.child;
    std::string buffer;
    const auto originalText = child.stringValue(buffer);
    _originalTexts += originalText;
    _originalSizes.push_back(originalText.size());
    if (child.replaceOnlyText(value.text)) {
        return;
    }
    _originalTexts.resize(_originalTexts.size() - _originalSizes.back());
    _originalSizes.back() = ByStandIn;
    auto standIn = target.insertChildBefore(target.newElement(child.name()), child);
    standIn.setStringValue(value.text);
    _standIns.push_back({standIn, child.detach()});
}

void MSPIBaselineJournal::takeBack(MSPCXMLNode target, const MSPIBaselineValue& value) {
    const auto originalSize = _originalSizes.back();
    _originalSizes.pop_back();
    if (originalSize == ByStandIn) {
        auto& [standIn, keptChild] = _standIns.back();
        target.insertChildBefore(std::move(keptChild), standIn);
        static_cast<void>(standIn.detach());
        _standIns.pop_back();
        return;
    }
    const auto start = _originalTexts.size() - originalSize;
    auto child = value.child;
    child.replaceOnlyText(std::string_view(_originalTexts).substr(start));
    _originalTexts.resize(start);
}
