#include "MSPCXMLTree.h"

#include <pugixml.hpp>

namespace {

// No document can hold an element of this name, since U+0001 is no XML character.
constexpr const char* HolderName = "\x01";

}  // namespace

bool isHolderOfFreeElements(const pugi::xml_node& node) {
    return node.name()[0] == HolderName[0];
}

pugi::xml_node holderOfFreeElementsIfAny(const pugi::xml_node& document) {
    const auto first = document.first_child();
    return isHolderOfFreeElements(first) ? first : pugi::xml_node();
}

pugi::xml_node holderOfFreeElements(pugi::xml_node document) {
    const auto holder = holderOfFreeElementsIfAny(document);
    return isThere(holder) ? holder : document.prepend_child(HolderName);
}

bool isFree(const pugi::xml_node& node) {
    return isHolderOfFreeElements(node.parent());
}

pugi::xml_node firstVisibleChild(const pugi::xml_node& document) {
    const auto first = document.first_child();
    return isHolderOfFreeElements(first) ? first.next_sibling() : first;
}

pugi::xml_node rootElementOf(const pugi::xml_node& document) {
    auto child = firstVisibleChild(document);
    while (isThere(child) && child.type() != pugi::node_element) {
        child = child.next_sibling();
    }
    return child;
}

bool isTextOrCData(const pugi::xml_node& node) {
    const auto type = node.type();
    return type == pugi::node_pcdata || type == pugi::node_cdata;
}

pugi::xml_node nextBelow(pugi::xml_node node, const pugi::xml_node& top) {
    if (const auto child = node.first_child(); isThere(child)) {
        return child;
    }
    while (isThere(node) && !areSame(node, top)) {
        if (const auto sibling = node.next_sibling(); isThere(sibling)) {
            return sibling;
        }
        node = node.parent();
    }
    return {};
}

void destroySubtree(pugi::xml_node top) {
    // The library would recurse into the children; without any left it has nothing to recurse into.
    for (auto node = top; isThere(node);) {
        if (const auto child = node.first_child(); isThere(child)) {
            node = child;
            continue;
        }
        const bool isTop = areSame(node, top);
        auto parent = node.parent();
        parent.remove_child(node);
        node = isTop ? pugi::xml_node() : parent;
    }
}
