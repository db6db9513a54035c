#include "MSPDITakenOut.h"

MSPDITakenOut::MSPDITakenOut(MSPCXMLNode parent, std::initializer_list<std::string_view> names) {
    for (const auto name : names) {
        for (const auto& element : parent.childElements(name)) {
            take(element);
        }
    }
}

// The one that was taken last was the last neighbour.
MSPDITakenOut::~MSPDITakenOut() {
    for (auto taken = _taken.rbegin(); taken != _taken.rend(); ++taken) {
        taken->parent.insertChildAfter(std::move(taken->element), taken->before);
    }
}

void MSPDITakenOut::take(MSPCXMLNode element) {
    const auto parent = element.parent();
    const auto before = element.previousSibling();
    _taken.push_back({parent, before, element.detach()});
}

std::vector<MSPCXMLNode> MSPDITakenOut::elements() const {
    std::vector<MSPCXMLNode> elements;
    for (const auto& taken : _taken) {
        elements.push_back(taken.element.node());
    }
    return elements;
}
