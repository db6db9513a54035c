#pragma once

#include <optional>
#include <string>

class MSPCFileSystem;

// The document that holds what a path leads to, or would lead to if it were there; none where there is none. Links on
// the way are followed, and a document is a folder with a table of contents, whatever it is called. The path is
// absolute.
[[nodiscard]] std::optional<std::string> MSPDIDocumentAround(const std::string& path, const MSPCFileSystem& fileSystem);
