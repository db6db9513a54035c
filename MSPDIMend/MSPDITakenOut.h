#pragma once

#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include "MSPCXMLNode.h"

// Elements that are out of the tree as long as this object lives, and come back where they were.
class MSPDITakenOut {
public:
    MSPDITakenOut() = default;
    // The children of those names.
    MSPDITakenOut(MSPCXMLNode parent, std::initializer_list<std::string_view> names);
    ~MSPDITakenOut();
    MSPDITakenOut(const MSPDITakenOut&) = delete;
    MSPDITakenOut& operator=(const MSPDITakenOut&) = delete;

    void take(MSPCXMLNode element);
    // The elements, in the order in which they were taken.
    [[nodiscard]] std::vector<MSPCXMLNode> elements() const;
    // Puts one of them, by its number, back as the last child of its parent, and calls `look` before it goes again.
    template <typename Look>
    void showing(std::size_t number, const Look& look) {
        auto& [parent, before, element] = _taken[number];
        auto shown = parent.appendChild(std::move(element));
        look(shown);
        element = shown.detach();
    }

private:
    struct Taken {
        MSPCXMLNode parent;
        MSPCXMLNode before;
        MSPCXMLNewElement element;
    };
    std::vector<Taken> _taken;
};
