#pragma once

#include <functional>
#include <optional>
#include <string>

#include "MSPCXMLAsides.h"
#include "MSPCXMLSelection.h"

// Gives the next bytes of a document, at most `capacity`, and their number; 0 at the end.
using MSPCByteReader = std::function<std::size_t(char* buffer, std::size_t capacity)>;

// A document reduced to a selection.
struct MSPCXMLFiltered {
    std::string bytes;         // UTF-8 without declaration, comments and processing instructions
    bool hasSections = false;  // the document had CDATA sections, comments or processing instructions in its content
    bool hasMixedContent = false;  // text beside elements, or blanks that are said to count, in what is kept whole
    bool hasNestedValues = false;  // elements in what is kept whole and not set aside
    MSPCXMLAsides asides;
};

// Reads a document in pieces and keeps the elements that are selected: start tags, text, CDATA sections and end tags as
// they stand. None for a document that is not plain: another encoding than UTF-8, a document type, attributes on
// elements that are left out or set aside, text in elements of which only children are kept, or anything that a parser
// might refuse or would have to mend. Such documents must be read as a whole. Takes a little more memory than the bytes
// it keeps. `expectedSize` is that of the whole document in bytes.
[[nodiscard]] std::optional<MSPCXMLFiltered> filteredXML(const MSPCByteReader& read, std::size_t expectedSize,
                                                         const MSPCXMLSelection& selection);
