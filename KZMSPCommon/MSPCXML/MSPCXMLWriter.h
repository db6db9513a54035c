#pragma once

#include <cstddef>

#include "MSPCXMLNode.h"

class MSPCByteWriter;

// Writes a document node with all its content, indented, behind an XML declaration. Gives the number of characters that
// were replaced because XML 1.0 cannot hold them.
std::size_t writeXMLDocument(const MSPCXMLNode& document, MSPCByteWriter& bytes);
