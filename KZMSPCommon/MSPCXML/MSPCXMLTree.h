#pragma once

#include <bit>
#include <cstddef>
#include <string>
#include <string_view>

namespace pugi {
class xml_node;
}

// What every unit over the library's tree needs. Walks never recurse, so that no depth of nesting overflows the stack.
//
// The library has no nodes without a parent. Free elements therefore have a holder: a reserved first child of the
// document, made when the first free element is. Nothing outside this folder ever sees it.

// The library's own handles are one pointer each, but to ask them anything is a call into its shared library. The
// questions that every step of a walk asks are answered here without one.
template <typename TreeHandle>
[[nodiscard]] bool isThere(const TreeHandle& handle) noexcept {
    return std::bit_cast<void*>(handle) != nullptr;
}
template <typename TreeHandle>
[[nodiscard]] bool areSame(const TreeHandle& one, const TreeHandle& other) noexcept {
    return std::bit_cast<void*>(one) == std::bit_cast<void*>(other);
}

// The holder of free elements of a document node; made when it is missing.
[[nodiscard]] pugi::xml_node holderOfFreeElements(pugi::xml_node document);
// The holder where a document has one; else an empty node.
[[nodiscard]] pugi::xml_node holderOfFreeElementsIfAny(const pugi::xml_node& document);
[[nodiscard]] bool isHolderOfFreeElements(const pugi::xml_node& node);
// Whether the node is a free element itself (not merely inside one).
[[nodiscard]] bool isFree(const pugi::xml_node& node);
// The first child of a document that is not the holder of free elements.
[[nodiscard]] pugi::xml_node firstVisibleChild(const pugi::xml_node& document);
// The root element of a document; empty when it has none.
[[nodiscard]] pugi::xml_node rootElementOf(const pugi::xml_node& document);

[[nodiscard]] bool isTextOrCData(const pugi::xml_node& node);

// The node after `node` in document order below `top`; empty after the last one.
[[nodiscard]] pugi::xml_node nextBelow(pugi::xml_node node, const pugi::xml_node& top);
// Removes a node with all that is below it.
void destroySubtree(pugi::xml_node top);

// A name with a zero at its end, as the library takes it, without an allocation for the usual ones.
class MSPCXMLTerminatedName {
public:
    explicit MSPCXMLTerminatedName(std::string_view name) {
        if (name.size() < ShortSize) {
            name.copy(_short, name.size());
            _short[name.size()] = '\0';
            _text = _short;
        } else {
            _long = name;
            _text = _long.c_str();
        }
    }
    MSPCXMLTerminatedName(const MSPCXMLTerminatedName&) = delete;
    MSPCXMLTerminatedName& operator=(const MSPCXMLTerminatedName&) = delete;
    [[nodiscard]] const char* text() const noexcept { return _text; }

private:
    static constexpr std::size_t ShortSize = 64;
    char _short[ShortSize];
    std::string _long;
    const char* _text;
};
