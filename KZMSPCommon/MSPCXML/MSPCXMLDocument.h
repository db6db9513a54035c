#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "MSPCXMLNode.h"
#include "MSPCXMLTreeBuilder.h"

class MSPCByteWriter;

// An XML document: the tree and all its nodes. Handles and new elements of it must not outlive it.
class MSPCXMLDocument {
public:
    // A document without a root.
    MSPCXMLDocument();
    MSPCXMLDocument(MSPCXMLDocument&& other) noexcept;
    MSPCXMLDocument& operator=(MSPCXMLDocument&& other) noexcept;
    MSPCXMLDocument(const MSPCXMLDocument&) = delete;
    MSPCXMLDocument& operator=(const MSPCXMLDocument&) = delete;
    ~MSPCXMLDocument();

    // The document in UTF-8 bytes that parse as they stand; none otherwise. The bytes are used up. Text made of blanks
    // alone is kept where it is all of an element's content. Names are not looked at, and of entities only the
    // predefined ones are known: what is not known to be sound is left to `MSPCXMLLoader`.
    [[nodiscard]] static std::optional<MSPCXMLDocument> read(std::string utf8, const MSPCXMLReading& reading = {});

    // The root element; empty for a document without one.
    [[nodiscard]] MSPCXMLNode root() const noexcept;
    // Makes a free element the root; a former root is destroyed. Gives the root's handle.
    MSPCXMLNode setRoot(MSPCXMLNewElement&& element);

    [[nodiscard]] MSPCXMLNewElement newElement(std::string_view name);

    // Writes the document as UTF-8 with an XML declaration, one element per line, indented by four blanks; elements
    // with text are written on one line, empty ones in the compact form. A carriage return in a text is written
    // "&#13;". An element with text beside other content, or with xml:space="preserve", is written as it is on one
    // line. Levels deeper than 64 are not indented any further. Gives the number of characters that XML 1.0 cannot hold
    // (or bytes that are no UTF-8), each written as U+FFFD.
    std::size_t write(MSPCByteWriter& writer) const;
    // The same as text.
    [[nodiscard]] std::string serialized() const;

private:
    class Tree;
    explicit MSPCXMLDocument(std::unique_ptr<Tree> tree);
    std::unique_ptr<Tree> _tree;
};
