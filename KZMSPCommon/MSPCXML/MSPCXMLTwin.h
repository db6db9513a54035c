#pragma once

#include <memory>
#include <vector>

#include "MSPCXMLNode.h"

namespace pugi {
class xml_document;
}

// A copy of the document around a node, without its free elements; of a free element's surroundings only what is inside
// that element. Lets a query that leads upwards or starts at the document run where there is no side room to meet.
// Costs as much as the document is large, so it serves only such queries, and only while free elements exist.
class MSPCXMLTwin {
public:
    explicit MSPCXMLTwin(const MSPCXMLNode& original);
    MSPCXMLTwin(const MSPCXMLTwin&) = delete;
    MSPCXMLTwin& operator=(const MSPCXMLTwin&) = delete;
    ~MSPCXMLTwin();

    // The node that stands for the original one.
    [[nodiscard]] MSPCXMLNode node() const noexcept { return _node; }
    // The nodes for which nodes of the copy stand. The document node of a free element's copy stands for none.
    [[nodiscard]] std::vector<MSPCXMLNode> originalsOf(const std::vector<MSPCXMLNode>& copies) const;

private:
    std::unique_ptr<pugi::xml_document> _document;
    MSPCXMLNode _originalTop;  // the document, or the free element
    bool _topIsFree = false;
    MSPCXMLNode _node;
};
