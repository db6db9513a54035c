#pragma once

#include <cstddef>

namespace pugi {
class xml_document;
}

// What is kept beside elements, attributes and text.
enum class MSPCXMLContent {
    Everything,  // comments, processing instructions, blanks within mixed content: for documents that are written back
    DataOnly,    // comments and processing instructions are left out: for documents that are only read
};

// What is known about the bytes, and wanted from them.
struct MSPCXMLReading {
    MSPCXMLContent content = MSPCXMLContent::Everything;
    bool hasSections = true;      // the content may hold CDATA sections, comments or processing instructions
    bool hasMixedContent = true;  // text may stand beside elements, or blanks be said to count
    bool hasNestedValues = true;  // elements whose text queries ask for may hold elements
    bool isMended = false;        // of an attribute that an element has twice the first is kept; else that is an error
    bool isSound = false;         // known to be well-formed: nothing is looked for, and comments are kept
};

// Builds the tree from UTF-8 bytes, in place: the bytes are changed, and must live as long as the document. Says
// whether the bytes are one well-formed element with what may stand around it; the document is of no use otherwise.
[[nodiscard]] bool buildXMLTree(pugi::xml_document& document, char* bytes, std::size_t size,
                                const MSPCXMLReading& reading);
