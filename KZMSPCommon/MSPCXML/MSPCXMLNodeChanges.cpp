#include <pugixml.hpp>
#include <utility>

#include "MSPCXMLNode.h"
#include "MSPCXMLTree.h"

namespace {

bool mayHoldComments(const MSPCXMLNode& node) {
    return node.kind() == MSPCXMLNodeKind::Element || node.kind() == MSPCXMLNodeKind::Document;
}

// The child at a position among all children; empty when there are fewer.
pugi::xml_node childAt(const pugi::xml_node& parent, std::size_t index) {
    auto child = firstVisibleChild(parent);
    for (; child && index > 0; --index) {
        child = child.next_sibling();
    }
    return child;
}

pugi::xml_node newChildBefore(pugi::xml_node parent, pugi::xml_node_type type, const pugi::xml_node& before) {
    return isThere(before) ? parent.insert_child_before(type, before) : parent.append_child(type);
}

MSPCXMLNode addElement(const MSPCXMLNode& parent, std::string_view name, const pugi::xml_node& before) {
    auto element = newChildBefore(treeNode(parent), pugi::node_element, before);
    element.set_name(MSPCXMLTerminatedName(name).text());
    return handleOf(element);
}

MSPCXMLNode addCommentNode(const MSPCXMLNode& parent, std::string_view text, const pugi::xml_node& before) {
    auto comment = newChildBefore(treeNode(parent), pugi::node_comment, before);
    comment.set_value(text.data(), text.size());
    return handleOf(comment);
}

// Whether one text is all of an element's content, in the element itself or in a node of its own.
bool holdsOnlyText(const pugi::xml_node& element) {
    const auto first = element.first_child();
    if (!isThere(first)) {
        return *element.value() != '\0';
    }
    return first.type() == pugi::node_pcdata && !isThere(first.next_sibling()) && *first.value() != '\0' &&
           *element.value() == '\0';
}

pugi::xml_attribute attributeOf(pugi::xml_node element, std::string_view name) {
    const MSPCXMLTerminatedName terminated(name);
    const auto found = element.attribute(terminated.text());
    return isThere(found) ? found : element.append_attribute(terminated.text());
}

}  // namespace

MSPCXMLNode MSPCXMLNode::findOrAddAttribute(std::string_view name) {
    return isElement() ? MSPCXMLNode(_node, attributeOf(treeNode(*this), name).internal_object()) : MSPCXMLNode();
}

MSPCXMLNode MSPCXMLNode::setAttribute(std::string_view name, std::string_view value) {
    if (!isElement()) {
        return {};
    }
    auto attribute = attributeOf(treeNode(*this), name);
    attribute.set_value(value.data(), value.size());
    return {_node, attribute.internal_object()};
}

void MSPCXMLNode::removeAttribute(std::string_view name) {
    if (_attribute == nullptr) {
        treeNode(*this).remove_attribute(MSPCXMLTerminatedName(name).text());
    }
}

MSPCXMLNode MSPCXMLNode::appendElement(std::string_view name) {
    return appendElement(name, {});
}

MSPCXMLNode MSPCXMLNode::appendElement(std::string_view name, std::string_view text) {
    if (!isElement()) {
        return {};
    }
    auto element = treeNode(*this).append_child(pugi::node_element);
    element.set_name(MSPCXMLTerminatedName(name).text());
    if (!text.empty()) {
        element.append_child(pugi::node_pcdata).set_value(text.data(), text.size());
    }
    return handleOf(element);
}

MSPCXMLNode MSPCXMLNode::insertElement(std::string_view name, std::size_t index) {
    return isElement() ? addElement(*this, name, childAt(treeNode(*this), index)) : MSPCXMLNode();
}

MSPCXMLNode MSPCXMLNode::appendComment(std::string_view text) {
    return mayHoldComments(*this) ? addCommentNode(*this, text, {}) : MSPCXMLNode();
}

MSPCXMLNode MSPCXMLNode::insertComment(std::string_view text, std::size_t index) {
    return mayHoldComments(*this) ? addCommentNode(*this, text, childAt(treeNode(*this), index)) : MSPCXMLNode();
}

MSPCXMLNewElement MSPCXMLNode::newElement(std::string_view name) const {
    auto element = holderOfFreeElements(treeNode(*this).root()).append_child(MSPCXMLTerminatedName(name).text());
    return MSPCXMLNewElement(handleOf(element));
}

MSPCXMLNewElement MSPCXMLNode::newCopyOf(const MSPCXMLNode& element) const {
    if (_node == nullptr || !element.isElement()) {
        return {};
    }
    return MSPCXMLNewElement(handleOf(holderOfFreeElements(treeNode(*this).root()).append_copy(treeNode(element))));
}

bool MSPCXMLNode::takesIn(MSPCXMLNewElement& element) const {
    if (!isElement() || !element) {
        return false;
    }
    if (treeNode(*this).root() != treeNode(element.node()).root()) {
        element = newCopyOf(element.node());
    }
    return true;
}

MSPCXMLNode MSPCXMLNode::appendChild(MSPCXMLNewElement&& element) {
    return insertChildBefore(std::move(element), {});
}

MSPCXMLNode MSPCXMLNode::insertChildBefore(MSPCXMLNewElement&& element, const MSPCXMLNode& before) {
    if (!takesIn(element)) {
        return {};
    }
    auto parent = treeNode(*this);
    const auto child = treeNode(element.node());
    const auto moved = before ? parent.insert_move_before(child, treeNode(before)) : parent.append_move(child);
    return moved ? element.release() : MSPCXMLNode();
}

MSPCXMLNode MSPCXMLNode::insertChildAfter(MSPCXMLNewElement&& element, const MSPCXMLNode& after) {
    if (!takesIn(element)) {
        return {};
    }
    auto parent = treeNode(*this);
    const auto child = treeNode(element.node());
    const auto moved = after ? parent.insert_move_after(child, treeNode(after)) : parent.prepend_move(child);
    return moved ? element.release() : MSPCXMLNode();
}

MSPCXMLNewElement MSPCXMLNode::detach() {
    const auto node = treeNode(*this);
    if (!isElement() || isFree(node)) {
        return {};  // a free element has its owner already
    }
    return MSPCXMLNewElement(handleOf(holderOfFreeElements(node.root()).append_move(node)));
}

bool MSPCXMLNode::replaceOnlyText(std::string_view text, std::string* former) {
    const auto node = treeNode(*this);
    if (text.empty() || !isElement() || !holdsOnlyText(node)) {
        return false;
    }
    auto present = node.text();
    if (former != nullptr) {
        *former += present.get();
    }
    return present.set(text.data(), text.size());
}

MSPCXMLNewElement::MSPCXMLNewElement(MSPCXMLNewElement&& other) noexcept : _element(other.release()) {
}

MSPCXMLNewElement& MSPCXMLNewElement::operator=(MSPCXMLNewElement&& other) noexcept {
    if (this != &other) {
        destroySubtree(treeNode(_element));
        _element = other.release();
    }
    return *this;
}

MSPCXMLNewElement::~MSPCXMLNewElement() {
    destroySubtree(treeNode(_element));
}

MSPCXMLNode MSPCXMLNewElement::release() noexcept {
    return std::exchange(_element, MSPCXMLNode());
}
