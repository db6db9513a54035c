#pragma once

#include <functional>
#include <string_view>

#include "MSPCXMLNode.h"

// Is shown a document of lists, piece by piece: the root's children that hold elements are the lists, and what they
// hold comes one at a time, each as the root of a small document of its own that is gone afterwards.
class MSPCXMLPieceVisitor {
public:
    virtual ~MSPCXMLPieceVisitor() = default;
    // A child of the root that holds no elements has passed. Names are as written.
    virtual void value(std::string_view name) = 0;
    // A list begins, and ends.
    virtual void beginList(std::string_view name) = 0;
    virtual void piece(const MSPCXMLNode& element) = 0;
    virtual void endList() = 0;
    // The root, at the end: with its start tag, and with its children in order, but the lists among them empty.
    virtual void root(const MSPCXMLNode& element) = 0;
};

// Reads a document in pieces and shows them, in memory for the largest piece and the root's own values. False for a
// document that is not plain: another encoding than UTF-8, a document type, a piece that does not parse. Some pieces
// may have been shown by then. The document is known to be well-formed: end tags are not compared with their start tags
// outside of pieces. Gives the next bytes of the document, at most `capacity`, and their number; 0 at the end.
[[nodiscard]] bool visitXMLPieces(const std::function<std::size_t(char* buffer, std::size_t capacity)>& read,
                                  MSPCXMLPieceVisitor& visitor);
