#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "MSPCXMLNode.h"

namespace pugi {
class xml_node;
}

// What every unit over the library's tree needs. Walks never recurse, so that no depth of nesting overflows the stack.
//
// The library has no nodes without a parent. Free elements therefore live in a side room: a reserved first child of the
// document, made when the first free element is. Nothing outside this folder ever sees it.

// The library's node behind a handle (of an attribute the element that holds it), and the handle of a node.
[[nodiscard]] pugi::xml_node treeNode(const MSPCXMLNode& handle);
[[nodiscard]] MSPCXMLNode handleOf(const pugi::xml_node& node);

// The side room of a document node; made when it is missing.
[[nodiscard]] pugi::xml_node sideRoom(pugi::xml_node document);
// The side room where a document has one; else an empty node.
[[nodiscard]] pugi::xml_node sideRoomIfAny(const pugi::xml_node& document);
[[nodiscard]] bool isSideRoom(const pugi::xml_node& node);
// Whether the node is a free element itself (not merely inside one).
[[nodiscard]] bool isFree(const pugi::xml_node& node);
// The first child of a document that is not the side room.
[[nodiscard]] pugi::xml_node firstVisibleChild(const pugi::xml_node& document);
// The root element of a document; empty when it has none.
[[nodiscard]] pugi::xml_node rootElementOf(const pugi::xml_node& document);

[[nodiscard]] bool isTextOrCData(const pugi::xml_node& node);
// Whether the text holds only blanks, tabs and line ends as XML counts them; true for an empty text.
[[nodiscard]] bool isXMLBlank(const char* text);

// The node after `node` in document order below `top`; empty after the last one.
[[nodiscard]] pugi::xml_node nextBelow(pugi::xml_node node, const pugi::xml_node& top);
// Removes a node with all that is below it.
void destroySubtree(pugi::xml_node top);

// A name with a zero at its end, as the library takes it, without an allocation for the usual ones.
class MSPCXMLTerminatedName {
public:
    explicit MSPCXMLTerminatedName(std::string_view name);
    MSPCXMLTerminatedName(const MSPCXMLTerminatedName&) = delete;
    MSPCXMLTerminatedName& operator=(const MSPCXMLTerminatedName&) = delete;
    [[nodiscard]] const char* text() const noexcept { return _text; }

private:
    static constexpr std::size_t ShortSize = 64;
    char _short[ShortSize];
    std::string _long;
    const char* _text;
};
