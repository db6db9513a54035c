#pragma once

#include <optional>
#include <string>
#include <vector>

class MSPCFileSystem;

// A plan, and where its document is to be.
struct MSPDIPlanToMigrate {
    std::string path;    // absolute
    std::string folder;  // absolute
};

struct MSPDIPlansToMigrate {
    std::vector<MSPDIPlanToMigrate> plans;  // each once, in the order of the list, or of their paths
    std::optional<std::string> obstacle;    // why none could be found, in one line that names the file; else none
};

// The plans of a list file (one path a line, from the current folder on, "::" begins a comment) or of a folder: all
// that ends in ".xml" or ".mspxml" below it, in any case, but nothing within documents (*.kdzx) and hidden folders.
// Links to folders are not followed. With `keepsTree`, for folders only, documents keep the sub-folders of their plans
// below `outputFolder`, which is absolute.
[[nodiscard]] MSPDIPlansToMigrate MSPDIFindPlans(const std::string& listOrFolder, bool keepsTree,
                                                 const std::string& outputFolder, const MSPCFileSystem& fileSystem);
