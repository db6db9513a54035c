#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "MSPCXMLNode.h"

class MSPCByteSink;
class MSPCXMLAsides;
struct MSPCXMLFiltered;

// What a reader keeps beside elements, attributes and text.
enum class MSPCXMLContent {
    Everything,  // comments, processing instructions, blanks within mixed content: for documents that are written back
    DataOnly,    // comments and processing instructions are left out: for documents that are only read
};

// What the reader had to mend in broken markup, or could not take.
struct MSPCXMLRepair {
    int line = 0;         // of the first error, from 1
    std::string message;  // the parser's own words, without a line end
};

// Gives the bytes of a document once more, none when they cannot be had.
using MSPCXMLReadAgain = std::function<std::optional<std::string>()>;

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

    // Reads a document from its bytes, in any encoding the XML declaration or a byte-order mark names. Text made of
    // blanks alone is kept where it is all of an element's content. Markup that does not parse (a bare "&", a missing
    // end tag) is mended where that yields a root element named `repairableRoot`, and reported in `repair`; otherwise
    // there is no document. What is kept with
    // `Everything` must be sound in every respect, names included, since it is written back. Internal entities are
    // expanded within bounds; nothing outside the bytes is ever read. Reading uses the bytes up: with `readAgain` a
    // repair fetches them from there, else it needs a copy made in advance.
    [[nodiscard]] static std::optional<MSPCXMLDocument> read(std::string bytes, MSPCXMLContent content,
                                                             std::string_view repairableRoot = {},
                                                             std::optional<MSPCXMLRepair>* repair = nullptr,
                                                             const MSPCXMLReadAgain& readAgain = {});

    // Reads a document from UTF-8 bytes that must be well-formed in every respect, namespaces included; mends nothing and
    // takes no declarations in a document type. Comments are kept, processing instructions are not, and blanks where
    // they are all of an element's content. None otherwise, and `error` tells what is wrong first (the line is 0 for
    // the document as a whole).
    [[nodiscard]] static std::optional<MSPCXMLDocument> readStrictly(std::string utf8, MSPCXMLRepair& error);

    // The document of a selection; none when it is not well-formed after all.
    [[nodiscard]] static std::optional<MSPCXMLDocument> readFiltered(MSPCXMLFiltered filtered);

    // What the selection sets aside; nothing of a document that was read as a whole, where it stands in the tree.
    [[nodiscard]] const MSPCXMLAsides& asides() const noexcept;
    // The same, which the document has no more afterwards.
    [[nodiscard]] MSPCXMLAsides takeAsides();

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
    std::size_t write(MSPCByteSink& sink) const;
    // The same as text.
    [[nodiscard]] std::string serialized() const;

private:
    class Tree;
    explicit MSPCXMLDocument(std::unique_ptr<Tree> tree);
    // What is left to `read` when the markup is broken or brings entities.
    static std::optional<MSPCXMLDocument> readMended(const std::string& utf8, bool hasInternalSubset,
                                                     MSPCXMLContent content, std::string_view repairableRoot,
                                                     std::optional<MSPCXMLRepair>* repair);
    std::unique_ptr<Tree> _tree;
};
