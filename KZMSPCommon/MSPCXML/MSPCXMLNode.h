#pragma once

#include <bit>
#include <compare>
#include <cstddef>
#include <memory_resource>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace pugi {
class xml_node;
struct xml_node_struct;
struct xml_attribute_struct;
}  // namespace pugi

enum class MSPCXMLNodeKind {
    None,  // an empty handle
    Document,
    Element,
    Attribute,
    Text,
    CData,
    Comment,
    ProcessingInstruction,
    Declaration,
    DocumentType,
};

class MSPCXMLNewElement;
struct MSPCXMLLastChild;
struct MSPCXMLNamedElement;

// A namespace declaration as it stands on an element.
struct MSPCXMLNamespace {
    std::string_view prefix;  // empty for the default namespace
    std::string_view uri;
};

// A borrowed handle to a node of an `MSPCXMLDocument`: cheap to copy, empty or valid as long as the document lives and
// the node has not been destroyed. Names are those written in the document, prefix included; an unprefixed name
// therefore also finds elements of the default namespace. Reading from an empty handle gives empty answers; changing
// the tree through one does nothing and gives an empty handle.
class MSPCXMLNode {
public:
    MSPCXMLNode() noexcept = default;

    [[nodiscard]] explicit operator bool() const noexcept { return _node != nullptr; }
    friend bool operator==(const MSPCXMLNode&, const MSPCXMLNode&) noexcept = default;
    // Some order that stays as long as the nodes do, for keeping what is known about them; not that of the document.
    friend std::strong_ordering operator<=>(const MSPCXMLNode&, const MSPCXMLNode&) noexcept = default;

    [[nodiscard]] MSPCXMLNodeKind kind() const noexcept;
    [[nodiscard]] bool isElement() const noexcept;
    // The name as written; empty for nodes without one. Valid as long as the node.
    [[nodiscard]] std::string_view name() const noexcept;

    // Where an element's name stands in the bytes that its document was read from; none for any other node, and for an
    // element that was not read.
    [[nodiscard]] std::optional<std::size_t> offset() const noexcept;

    // The text of the node: an attribute's value, a comment's or text's characters; of an element all text and CDATA
    // below it in document order, comments left out (`<Name>a<!--x-->b<![CDATA[c]]></Name>` is "abc").
    [[nodiscard]] std::string stringValue() const;
    // The same without a copy where the text is one piece; else the text is put together in `buffer`. Valid until the
    // node or the buffer changes.
    [[nodiscard]] std::string_view stringValue(std::string& buffer) const;
    // Replaces the value of an attribute, text or comment; of an element all its children, by one text (no child at all
    // when the text is empty). In a comment "--" is written as "- -" and a "-" at its end gets a blank behind it, since
    // XML forbids both.
    void setStringValue(std::string_view text);

    // Replaces the text of an element that holds one text and nothing else, in place, and appends the old text to
    // `former`; gives false and changes nothing for any other node and for an empty text. Doing it again with the old
    // text leaves no trace.
    bool replaceOnlyText(std::string_view text, std::string* former = nullptr);

    [[nodiscard]] MSPCXMLNode parent() const noexcept;
    [[nodiscard]] MSPCXMLNode firstChild() const noexcept;
    [[nodiscard]] MSPCXMLNode lastChild() const noexcept;
    [[nodiscard]] MSPCXMLNode nextSibling() const noexcept;
    [[nodiscard]] MSPCXMLNode previousSibling() const noexcept;
    // The first child element, or the next sibling element, of a name; empty when there is none.
    [[nodiscard]] MSPCXMLNode firstChildElement(std::string_view name) const noexcept;
    [[nodiscard]] MSPCXMLNode nextSiblingElement(std::string_view name) const noexcept;
    // The node as it would be written, without added line ends and indentation: `<UID>12</UID>`, `id="t12"`.
    [[nodiscard]] std::string markup() const;
    // The last child element of a name, and how many there are; for a field of which the last one counts.
    [[nodiscard]] MSPCXMLLastChild lastChildElement(std::string_view name) const noexcept;
    // All child elements with their names, in order; for reading many of them in one walk. The list takes its room from
    // `memory`.
    [[nodiscard]] std::pmr::vector<MSPCXMLNamedElement> childElements(
        std::pmr::memory_resource* memory = std::pmr::get_default_resource()) const;
    // The child elements of a name, in order.
    [[nodiscard]] std::vector<MSPCXMLNode> childElements(std::string_view name) const;
    // The root element of the node's document.
    [[nodiscard]] MSPCXMLNode rootElement() const noexcept;

    // The attribute of a name; empty when there is none.
    [[nodiscard]] MSPCXMLNode attribute(std::string_view name) const noexcept;
    // The namespace declarations of this element itself, in order. Views are valid as long as the element.
    [[nodiscard]] std::vector<MSPCXMLNamespace> namespaceDeclarations() const;
    // The prefixes in the names of this element, of the elements below it, and of all their attributes. Views are valid
    // as long as these.
    [[nodiscard]] std::set<std::string_view> usedPrefixes() const;

    // Appends an attribute with an empty value, or gives the one that is there.
    MSPCXMLNode findOrAddAttribute(std::string_view name);
    // Gives an attribute that value and gives the attribute, appended where it was missing.
    MSPCXMLNode setAttribute(std::string_view name, std::string_view value);
    // Removes an attribute; nothing happens when there is none.
    void removeAttribute(std::string_view name);

    // Appends, or inserts before the child with that position among all children (at the end when there are fewer), a
    // new element or comment. The handle is valid as long as this node holds it.
    MSPCXMLNode appendElement(std::string_view name);
    // The same with a text in the element; without any child when the text is empty.
    MSPCXMLNode appendElement(std::string_view name, std::string_view text);
    MSPCXMLNode insertElement(std::string_view name, std::size_t index);
    MSPCXMLNode appendComment(std::string_view text);
    MSPCXMLNode insertComment(std::string_view text, std::size_t index);

    // A free element, or a free deep copy of an element of any document, in this node's document.
    [[nodiscard]] MSPCXMLNewElement newElement(std::string_view name) const;
    [[nodiscard]] MSPCXMLNewElement newCopyOf(const MSPCXMLNode& element) const;

    // Puts a free element into the tree and gives its handle. One that belongs to another document is copied. `before`
    // and `after` are children of this node; an empty `before` appends, an empty `after` puts the element first.
    MSPCXMLNode appendChild(MSPCXMLNewElement&& element);
    MSPCXMLNode insertChildBefore(MSPCXMLNewElement&& element, const MSPCXMLNode& before);
    MSPCXMLNode insertChildAfter(MSPCXMLNewElement&& element, const MSPCXMLNode& after);
    // Takes this element out of its parent. It stays alive, owned by the result, and no query finds it. Empty for a
    // free element, which has its owner already.
    [[nodiscard]] MSPCXMLNewElement detach();

    // The nodes that an XPath 1.0 query relative to this node selects, in document order; none when the query itself
    // is malformed or does not select nodes. Query texts in use are compiled once. From a free element only what is
    // inside it is found, and that from nowhere else. What a query counts may include free elements: one that leaves
    // its node had better count nothing while there are any.
    [[nodiscard]] std::optional<std::vector<MSPCXMLNode>> nodesForXPath(std::string_view query) const;

private:
    friend class MSPCXMLDocument;
    friend class MSPCXMLNewElement;
    friend struct MSPCXMLNodeAccess;  // the library's own node behind a handle, for the units of this folder

    // Whether a free element may become a child of this node; one of another document is replaced by a copy in this
    // one.
    [[nodiscard]] bool takesIn(MSPCXMLNewElement& element) const;

    MSPCXMLNode(void* node, void* attribute) noexcept : _node(node), _attribute(attribute) {}

    void* _node = nullptr;       // the element, for an attribute
    void* _attribute = nullptr;  // set for attributes only
};

// The last of the child elements of a name, empty when there is none, and their number.
struct MSPCXMLLastChild {
    MSPCXMLNode element;
    std::size_t count = 0;
};

// A child element and its name, which is valid as long as the element.
struct MSPCXMLNamedElement {
    std::string_view name;
    MSPCXMLNode element;
};

// An element that belongs to a document but has no parent, owned by this object: destroyed with it unless it was put
// into the tree. Must not outlive its document. Empty when default-made or moved from.
class MSPCXMLNewElement {
public:
    MSPCXMLNewElement() noexcept = default;
    MSPCXMLNewElement(MSPCXMLNewElement&& other) noexcept;
    MSPCXMLNewElement& operator=(MSPCXMLNewElement&& other) noexcept;
    MSPCXMLNewElement(const MSPCXMLNewElement&) = delete;
    MSPCXMLNewElement& operator=(const MSPCXMLNewElement&) = delete;
    ~MSPCXMLNewElement();

    [[nodiscard]] explicit operator bool() const noexcept { return static_cast<bool>(_element); }
    // The element's handle, for reading and for building its content.
    [[nodiscard]] MSPCXMLNode node() const noexcept { return _element; }

private:
    friend class MSPCXMLNode;
    friend class MSPCXMLDocument;

    explicit MSPCXMLNewElement(MSPCXMLNode element) noexcept : _element(element) {}
    MSPCXMLNode release() noexcept;

    MSPCXMLNode _element;
};

// The library's own node behind a handle, for the units of this folder only.
struct MSPCXMLNodeAccess {
    [[nodiscard]] static pugi::xml_node_struct* node(const MSPCXMLNode& handle) noexcept {
        return static_cast<pugi::xml_node_struct*>(handle._node);
    }
    [[nodiscard]] static pugi::xml_attribute_struct* attribute(const MSPCXMLNode& handle) noexcept {
        return static_cast<pugi::xml_attribute_struct*>(handle._attribute);
    }
    // `attribute` is given for attributes only, with the element that holds it.
    [[nodiscard]] static MSPCXMLNode handle(pugi::xml_node_struct* node,
                                            pugi::xml_attribute_struct* attribute = nullptr) noexcept {
        return {node, attribute};
    }
};

// The same as the library's handle (of an attribute that of the element that holds it), and the other way round.
// Templates only because the library's types are complete in .cpp files alone.
template <typename TreeNode = pugi::xml_node>
[[nodiscard]] TreeNode treeNode(const MSPCXMLNode& handle) noexcept {
    return std::bit_cast<TreeNode>(MSPCXMLNodeAccess::node(handle));
}
template <typename TreeNode = pugi::xml_node>
[[nodiscard]] MSPCXMLNode handleOf(const std::type_identity_t<TreeNode>& node) noexcept {
    return MSPCXMLNodeAccess::handle(std::bit_cast<pugi::xml_node_struct*>(node));
}
