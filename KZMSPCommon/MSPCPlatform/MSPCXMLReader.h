#pragma once

#include <cstddef>

#include "MSPCXMLDocument.h"

namespace pugi {
class xml_document;
}

// Builds the tree from UTF-8 bytes, in place: the bytes are changed, and must live as long as the document. Says whether
// the bytes are one well-formed element with what may stand around it; the document is of no use otherwise.
// `hasSections` tells whether the content may hold CDATA sections, comments or processing instructions.
[[nodiscard]] bool loadXMLTree(pugi::xml_document& document, char* bytes, std::size_t size, MSPCXMLContent content,
                               bool hasSections);
