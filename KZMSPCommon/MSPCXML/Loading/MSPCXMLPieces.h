#pragma once

#include <string_view>

#include "MSPCXMLNode.h"

class MSPCByteSource;

// Is shown a document of lists, piece by piece: most of the root's children that hold elements are lists, and what they
// hold comes one at a time, each as the root of a small document of its own that is gone afterwards. Names are as
// written, and gone afterwards, too.
class MSPCXMLPieceVisitor {
public:
    virtual ~MSPCXMLPieceVisitor() = default;
    // Before a child of the root that holds elements: whether it is a list. If not, it is a value like those that hold
    // none, and comes with the root.
    virtual bool isList(std::string_view name) = 0;
    // A child of the root that is no list has passed.
    virtual void value(std::string_view name) = 0;
    // A list begins, and ends.
    virtual void beginList(std::string_view name) = 0;
    virtual void endList() = 0;
    // The root, at the end: with its start tag, and with its children in order, but the lists among them without what
    // they hold. Text right in the root or in a list is there, however.
    virtual void root(const MSPCXMLNode& element) = 0;

    // Before a piece: whether its leaves are to be offered one by one, which is much faster than a document for those
    // that are taken. It may come without, where its markup is not of the plainest kind.
    virtual bool wantsLeavesOf(std::string_view name) = 0;
    // An element within such a piece begins, and ends.
    virtual void beginElement(std::string_view name) = 0;
    virtual void endElement() = 0;
    // A leaf within it, whose text holds no references. True when it is dealt with.
    virtual bool takeLeaf(std::string_view name, std::string_view text) = 0;
    // Another leaf within it, which is not offered.
    virtual void passLeaf(std::string_view name) = 0;
    // None of the leaves that were taken of the present piece counts.
    virtual void forgetLeaves() = 0;
    // The piece without the leaves that were taken. `isEmptiedXMLPiece` tells which of its elements have no others.
    // False to have it once more, as a whole.
    virtual bool restOfPiece(const MSPCXMLNode& element) = 0;
    // The whole piece.
    virtual void piece(const MSPCXMLNode& element) = 0;
};

// Whether an element within the rest of a piece looks like a leaf since all of its leaves were taken.
[[nodiscard]] bool isEmptiedXMLPiece(const MSPCXMLNode& element);

// Reads a document in pieces and shows them, in memory for the largest piece and the root's own values. False for a
// document that is not plain: another encoding than UTF-8, a document type, a piece that does not parse. Some pieces
// may have been shown by then. The document is known to be well-formed: end tags are not compared with their start tags
// outside of pieces. False, too, when reading fails.
[[nodiscard]] bool visitXMLPieces(MSPCByteSource& source, MSPCXMLPieceVisitor& visitor);
