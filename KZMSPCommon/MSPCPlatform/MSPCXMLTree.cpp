#include "MSPCXMLTree.h"

#include <cstring>
#include <pugixml.hpp>

#include "MSPCXMLNodeAccess.h"

namespace {

// No document can hold an element of this name, since U+0001 is no XML character.
constexpr const char* SideRoomName = "\x01";

}  // namespace

pugi::xml_node treeNode(const MSPCXMLNode& handle) {
    return pugi::xml_node(MSPCXMLNodeAccess::node(handle));
}

MSPCXMLNode handleOf(const pugi::xml_node& node) {
    return MSPCXMLNodeAccess::handle(node.internal_object());
}

bool isSideRoom(const pugi::xml_node& node) {
    return node.name()[0] == SideRoomName[0];
}

pugi::xml_node sideRoomIfAny(const pugi::xml_node& document) {
    const auto first = document.first_child();
    return isSideRoom(first) ? first : pugi::xml_node();
}

pugi::xml_node sideRoom(pugi::xml_node document) {
    const auto room = sideRoomIfAny(document);
    return room ? room : document.prepend_child(SideRoomName);
}

bool isFree(const pugi::xml_node& node) {
    return isSideRoom(node.parent());
}

pugi::xml_node firstVisibleChild(const pugi::xml_node& document) {
    const auto first = document.first_child();
    return isSideRoom(first) ? first.next_sibling() : first;
}

pugi::xml_node rootElementOf(const pugi::xml_node& document) {
    auto child = firstVisibleChild(document);
    while (child && child.type() != pugi::node_element) {
        child = child.next_sibling();
    }
    return child;
}

bool isTextOrCData(const pugi::xml_node& node) {
    const auto type = node.type();
    return type == pugi::node_pcdata || type == pugi::node_cdata;
}

bool isXMLBlank(const char* text) {
    return text[std::strspn(text, " \t\r\n")] == '\0';
}

pugi::xml_node nextBelow(pugi::xml_node node, const pugi::xml_node& top) {
    if (const auto child = node.first_child()) {
        return child;
    }
    while (node && node != top) {
        if (const auto sibling = node.next_sibling()) {
            return sibling;
        }
        node = node.parent();
    }
    return {};
}

void destroySubtree(pugi::xml_node top) {
    // The library would recurse into the children; without any left it has nothing to recurse into.
    for (auto node = top; node;) {
        if (const auto child = node.first_child()) {
            node = child;
            continue;
        }
        const bool isTop = node == top;
        auto parent = node.parent();
        parent.remove_child(node);
        node = isTop ? pugi::xml_node() : parent;
    }
}

MSPCXMLTerminatedName::MSPCXMLTerminatedName(std::string_view name) {
    if (name.size() < ShortSize) {
        name.copy(_short, name.size());
        _short[name.size()] = '\0';
        _text = _short;
    } else {
        _long = name;
        _text = _long.c_str();
    }
}
