#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "MSPCXMLDeferredElements.h"
#include "MSPCXMLSelection.h"
#include "MSPCXMLTreeBuilder.h"

class MSPCByteSource;

// From an offset in the bytes that are kept on, up to the next such place, they stood in the document from this offset
// on.
struct MSPCXMLPlace {
    std::size_t kept;
    std::size_t original;
};

// A document reduced to a selection.
struct MSPCXMLSelected {
    std::string bytes;  // UTF-8 without declaration, comments and processing instructions
    // What a tree of these bytes must be built with: what is known about all of the document decides, so that the
    // answers are those of the whole document.
    MSPCXMLReading reading{.content = MSPCXMLContent::DataOnly,
                           .hasSections = false,      // anywhere in the document's content
                           .hasMixedContent = false,  // in what is kept whole, deferred elements included
                           .hasNestedValues = false,  // in what is kept whole and not deferred
                           .isMended = false};
    MSPCXMLDeferredElements deferred;
    std::vector<MSPCXMLPlace> places;  // in order; empty unless they were asked for
};

// Reads a document in pieces and keeps the elements that are selected: start tags, text, CDATA sections and end tags as
// they stand. None for a document that is not plain: another encoding than UTF-8, a document type, attributes on
// elements that are left out or deferred, text in elements of which only children are kept, or anything that a parser
// might refuse or would have to mend. Such documents must be read as a whole. None, too, when reading fails. Takes a
// little more memory than the bytes it keeps. `keepsPlaces` asks where they stood, of a selection that defers nothing.
[[nodiscard]] std::optional<MSPCXMLSelected> selectedXML(MSPCByteSource& source, const MSPCXMLSelection& selection,
                                                         bool keepsPlaces = false);
