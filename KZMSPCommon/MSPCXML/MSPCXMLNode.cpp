#include "MSPCXMLNode.h"

#include <pugixml.hpp>

#include "MSPCXMLTree.h"

namespace {

pugi::xml_attribute treeAttribute(const MSPCXMLNode& handle) {
    return pugi::xml_attribute(MSPCXMLNodeAccess::attribute(handle));
}

// The node behind a handle that may have children; empty for attributes.
pugi::xml_node nodeWithChildren(const MSPCXMLNode& handle) {
    return treeNode(MSPCXMLNodeAccess::attribute(handle) != nullptr ? MSPCXMLNode() : handle);
}

MSPCXMLNodeKind kindOf(pugi::xml_node_type type) {
    switch (type) {
        case pugi::node_document:
            return MSPCXMLNodeKind::Document;
        case pugi::node_element:
            return MSPCXMLNodeKind::Element;
        case pugi::node_pcdata:
            return MSPCXMLNodeKind::Text;
        case pugi::node_cdata:
            return MSPCXMLNodeKind::CData;
        case pugi::node_comment:
            return MSPCXMLNodeKind::Comment;
        case pugi::node_pi:
            return MSPCXMLNodeKind::ProcessingInstruction;
        case pugi::node_declaration:
            return MSPCXMLNodeKind::Declaration;
        case pugi::node_doctype:
            return MSPCXMLNodeKind::DocumentType;
        case pugi::node_null:
            break;
    }
    return MSPCXMLNodeKind::None;
}

// The text of an element: the piece that may be embedded in the element itself comes before all its children.
std::string_view elementText(const pugi::xml_node& element, std::string& buffer) {
    const auto first = element.first_child();
    if (!isThere(first)) {
        return element.value();
    }
    if (isTextOrCData(first) && !isThere(first.next_sibling()) && *element.value() == '\0') {
        return first.value();
    }
    buffer = element.value();
    for (auto node = first; isThere(node); node = nextBelow(node, element)) {
        if (isTextOrCData(node) || node.type() == pugi::node_element) {
            buffer += node.value();
        }
    }
    return buffer;
}

void replaceContent(pugi::xml_node element, std::string_view text) {
    // The new text is copied before the old nodes go, since it may be a view of one of them.
    pugi::xml_node added;
    if (!text.empty()) {
        added = element.append_child(pugi::node_pcdata);
        added.set_value(text.data(), text.size());
    }
    while (!areSame(element.first_child(), added)) {
        destroySubtree(element.first_child());
    }
    if (*element.value() != '\0') {
        element.text().set("");  // the embedded piece
    }
}

// The node itself or the next of its siblings with that name that is an element: processing instructions have names
// too.
pugi::xml_node elementFrom(pugi::xml_node node, const char* name) {
    while (isThere(node) && node.type() != pugi::node_element) {
        node = node.next_sibling(name);
    }
    return node;
}

// Calls `visit` with each child element of that name, in order.
template <typename Visit>
void visitChildElements(const pugi::xml_node& parent, std::string_view name, Visit&& visit) {
    const MSPCXMLTerminatedName terminated(name);
    for (auto child = parent.child(terminated.text()); isThere(child); child = child.next_sibling(terminated.text())) {
        if (child.type() == pugi::node_element) {
            visit(child);
        }
    }
}

}  // namespace

bool MSPCXMLNode::isElement() const noexcept {
    return _attribute == nullptr && treeNode(*this).type() == pugi::node_element;
}

MSPCXMLNodeKind MSPCXMLNode::kind() const noexcept {
    return _attribute != nullptr ? MSPCXMLNodeKind::Attribute : kindOf(treeNode(*this).type());
}

std::string_view MSPCXMLNode::name() const noexcept {
    return _attribute != nullptr ? treeAttribute(*this).name() : treeNode(*this).name();
}

std::optional<std::size_t> MSPCXMLNode::offset() const noexcept {
    const auto found = isElement() ? treeNode(*this).offset_debug() : -1;
    return found < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(found));
}

std::string MSPCXMLNode::stringValue() const {
    std::string buffer;
    const auto text = stringValue(buffer);
    return text.data() == buffer.data() ? std::move(buffer) : std::string(text);
}

std::string_view MSPCXMLNode::stringValue(std::string& buffer) const {
    if (_attribute != nullptr) {
        return treeAttribute(*this).value();
    }
    const auto node = treeNode(*this);
    const auto type = node.type();
    if (type == pugi::node_document) {
        return elementText(rootElementOf(node), buffer);
    }
    return type == pugi::node_element ? elementText(node, buffer) : node.value();
}

void MSPCXMLNode::setStringValue(std::string_view text) {
    if (_attribute != nullptr) {
        treeAttribute(*this).set_value(text.data(), text.size());
    } else if (isElement()) {
        replaceContent(treeNode(*this), text);
    } else {
        treeNode(*this).set_value(text.data(), text.size());
    }
}

MSPCXMLNode MSPCXMLNode::parent() const noexcept {
    if (_attribute != nullptr) {
        return {_node, nullptr};
    }
    const auto parent = treeNode(*this).parent();
    return isHolderOfFreeElements(parent) ? MSPCXMLNode() : handleOf(parent);
}

MSPCXMLNode MSPCXMLNode::firstChild() const noexcept {
    const auto child = nodeWithChildren(*this).first_child();
    return isHolderOfFreeElements(child) ? handleOf(child.next_sibling()) : handleOf(child);
}

MSPCXMLNode MSPCXMLNode::lastChild() const noexcept {
    const auto child = nodeWithChildren(*this).last_child();
    return isHolderOfFreeElements(child) ? MSPCXMLNode() : handleOf(child);
}

MSPCXMLNode MSPCXMLNode::nextSibling() const noexcept {
    const auto node = nodeWithChildren(*this);
    const auto sibling = node.next_sibling();
    return !isThere(sibling) || isFree(node) ? MSPCXMLNode() : handleOf(sibling);
}

MSPCXMLNode MSPCXMLNode::previousSibling() const noexcept {
    const auto node = nodeWithChildren(*this);
    const auto sibling = node.previous_sibling();
    return !isThere(sibling) || isHolderOfFreeElements(sibling) || isFree(node) ? MSPCXMLNode() : handleOf(sibling);
}

MSPCXMLNode MSPCXMLNode::firstChildElement(std::string_view name) const noexcept {
    const MSPCXMLTerminatedName terminated(name);
    return handleOf(elementFrom(nodeWithChildren(*this).child(terminated.text()), terminated.text()));
}

MSPCXMLNode MSPCXMLNode::nextSiblingElement(std::string_view name) const noexcept {
    const MSPCXMLTerminatedName terminated(name);
    const auto node = nodeWithChildren(*this);
    const auto sibling = elementFrom(node.next_sibling(terminated.text()), terminated.text());
    return !isThere(sibling) || isFree(node) ? MSPCXMLNode() : handleOf(sibling);
}

MSPCXMLLastChild MSPCXMLNode::lastChildElement(std::string_view name) const noexcept {
    MSPCXMLLastChild last;
    visitChildElements(nodeWithChildren(*this), name, [&](const pugi::xml_node& child) {
        last.element = handleOf(child);
        ++last.count;
    });
    return last;
}

std::vector<MSPCXMLNode> MSPCXMLNode::childElements(std::string_view name) const {
    std::vector<MSPCXMLNode> elements;
    visitChildElements(nodeWithChildren(*this), name,
                       [&](const pugi::xml_node& child) { elements.push_back(handleOf(child)); });
    return elements;
}

std::pmr::vector<MSPCXMLNamedElement> MSPCXMLNode::childElements(std::pmr::memory_resource* memory) const {
    constexpr std::size_t usualCount = 40;
    std::pmr::vector<MSPCXMLNamedElement> elements(memory);
    elements.reserve(usualCount);
    for (auto child = firstVisibleChild(nodeWithChildren(*this)); isThere(child); child = child.next_sibling()) {
        if (child.type() == pugi::node_element) {
            elements.push_back({child.name(), handleOf(child)});
        }
    }
    return elements;
}

MSPCXMLNode MSPCXMLNode::rootElement() const noexcept {
    return handleOf(rootElementOf(treeNode(*this).root()));
}

MSPCXMLNode MSPCXMLNode::attribute(std::string_view name) const noexcept {
    const MSPCXMLTerminatedName terminated(name);
    const auto found = nodeWithChildren(*this).attribute(terminated.text());
    return found ? MSPCXMLNode(_node, found.internal_object()) : MSPCXMLNode();
}

std::vector<MSPCXMLNamespace> MSPCXMLNode::namespaceDeclarations() const {
    constexpr std::string_view keyword = "xmlns";
    std::vector<MSPCXMLNamespace> declarations;
    for (const auto& attribute : nodeWithChildren(*this).attributes()) {
        const std::string_view name = attribute.name();
        if (name == keyword) {
            declarations.push_back({{}, attribute.value()});
        } else if (name.starts_with(keyword) && name[keyword.size()] == ':') {
            declarations.push_back({name.substr(keyword.size() + 1), attribute.value()});
        }
    }
    return declarations;
}

std::set<std::string_view> MSPCXMLNode::usedPrefixes() const {
    std::set<std::string_view> prefixes;
    const auto addPrefixOf = [&](std::string_view name) {
        if (const auto colon = name.find(':'); colon != std::string_view::npos) {
            prefixes.insert(name.substr(0, colon));
        }
    };
    const auto top = nodeWithChildren(*this);
    for (auto node = top; isThere(node); node = nextBelow(node, top)) {
        if (node.type() == pugi::node_element) {
            addPrefixOf(node.name());
            for (const auto& attribute : node.attributes()) {
                addPrefixOf(attribute.name());
            }
        }
    }
    return prefixes;
}
