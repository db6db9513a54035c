#include "MSPCXMLTwin.h"

#include <algorithm>
#include <cstddef>
#include <pugixml.hpp>

#include "MSPCXMLNodeAccess.h"
#include "MSPCXMLTree.h"

namespace {

// Where a node stands: the positions among siblings on the way up to the top, and that of the attribute.
struct Position {
    std::vector<std::size_t> steps;  // the deepest first
    std::size_t attribute = 0;       // from 1; 0 for a node that is no attribute
};

Position positionOf(const MSPCXMLNode& node, const pugi::xml_node& top) {
    Position position;
    if (const pugi::xml_attribute attribute(MSPCXMLNodeAccess::attribute(node)); attribute) {
        for (auto at = attribute; at; at = at.previous_attribute()) {
            ++position.attribute;
        }
    }
    for (auto at = treeNode(node); at && at != top; at = at.parent()) {
        std::size_t index = 0;
        for (auto sibling = at.previous_sibling(); sibling && !isSideRoom(sibling);
             sibling = sibling.previous_sibling()) {
            ++index;
        }
        position.steps.push_back(index);
    }
    return position;
}

MSPCXMLNode nodeAt(const Position& position, const pugi::xml_node& top) {
    auto node = top;
    for (auto step = position.steps.rbegin(); step != position.steps.rend(); ++step) {
        node = firstVisibleChild(node);
        for (auto left = *step; left > 0; --left) {
            node = node.next_sibling();
        }
    }
    if (position.attribute == 0) {
        return handleOf(node);
    }
    auto attribute = node.first_attribute();
    for (auto left = position.attribute; left > 1; --left) {
        attribute = attribute.next_attribute();
    }
    return MSPCXMLNodeAccess::handle(node.internal_object(), attribute.internal_object());
}

pugi::xml_node topOf(pugi::xml_node node) {
    while (node.parent() && !isFree(node)) {
        node = node.parent();
    }
    return node;
}

}  // namespace

MSPCXMLTwin::MSPCXMLTwin(const MSPCXMLNode& original) : _document(std::make_unique<pugi::xml_document>()) {
    const auto top = topOf(treeNode(original));
    _originalTop = handleOf(top);
    _topIsFree = isFree(top);
    if (_topIsFree) {
        _document->append_copy(top);
    } else {
        for (auto child = firstVisibleChild(top); child; child = child.next_sibling()) {
            _document->append_copy(child);
        }
    }
    _node = nodeAt(positionOf(original, top), _topIsFree ? _document->first_child() : *_document);
}

MSPCXMLTwin::~MSPCXMLTwin() = default;

std::vector<MSPCXMLNode> MSPCXMLTwin::originalsOf(const std::vector<MSPCXMLNode>& copies) const {
    const pugi::xml_node top = _topIsFree ? _document->first_child() : *_document;
    std::vector<MSPCXMLNode> originals;
    for (const auto& copy : copies) {
        if (!_topIsFree || treeNode(copy) != *_document) {
            originals.push_back(nodeAt(positionOf(copy, top), treeNode(_originalTop)));
        }
    }
    return originals;
}
