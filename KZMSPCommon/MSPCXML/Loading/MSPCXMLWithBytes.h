#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCXMLDocument.h"
#include "MSPCXMLSelectiveReader.h"

class MSPCXMLSelection;

// A document together with its bytes.
struct MSPCXMLWithBytes {
    MSPCXMLDocument document;
    std::string utf8;
    std::vector<MSPCXMLPlace> places;  // of a document that was read in part
    bool isConverted = false;          // the document was in another encoding; its declaration still says so
    bool isWrittenAnew = false;        // its markup had to be mended, or its entities were expanded

    // Where in `utf8` the start tag of an element of the document begins; none for one that was not read.
    [[nodiscard]] std::optional<std::size_t> startOf(const MSPCXMLNode& element) const;
};

// The document in bytes, data only, read as `MSPCXMLLoader` reads it: what a selection that defers nothing names, and
// perhaps more. Markup that does not parse is mended where that yields a root element named `mendableRoot`. None where
// there is no document; the bytes are used up otherwise.
[[nodiscard]] std::optional<MSPCXMLWithBytes> MSPCXMLLoadWithBytes(std::string& bytes, std::string_view mendableRoot,
                                                                   const MSPCXMLSelection& selection);
