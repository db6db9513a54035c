#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "MSPCXMLDocument.h"

// A document together with the bytes that its elements' offsets count in.
struct MSPCXMLWithBytes {
    MSPCXMLDocument document;
    std::string utf8;
    bool isConverted = false;    // the document was in another encoding; its declaration still says so
    bool isWrittenAnew = false;  // its markup had to be mended, or its entities were expanded
};

// The document in bytes, data only, read as `MSPCXMLLoader` reads it: markup that does not parse is mended where that
// yields a root element named `mendableRoot`. None where there is no document.
[[nodiscard]] std::optional<MSPCXMLWithBytes> MSPCXMLLoadWithBytes(const std::string& bytes,
                                                                   std::string_view mendableRoot);
