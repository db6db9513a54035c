#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "MSPDIPlanPaths.h"

class MSPCFileSystem;

struct MSPDIPlansToMigrate {
    MSPDIPlanPaths plans;  // absolute, each once, in the order of the list, or folder by folder in that of their names
    bool isList = false;
    std::string treeRoot;  // the folder whose sub-folders documents keep; empty where they keep none
    using Unread = std::vector<std::pair<std::string, std::string>>;
    Unread unread;  // sub-folders that could not be looked through, and why
    std::optional<std::string>
        obstacle;  // why no plans could be looked for, in one line that names the file; else none
};

// The plans of a list file (one path a line, from the current folder on, "::" begins a comment) or of a folder: all
// that ends in ".xml" or ".mspxml" below it, in any case, but nothing within documents (*.kdzx) and hidden folders.
// Links to folders are not followed. A sub-folder that cannot be looked through is told, and the others are. With
// `keepsTree` documents keep the sub-folders of their plans; in a list there is no folder to count them from.
[[nodiscard]] MSPDIPlansToMigrate MSPDIFindPlans(const std::string& listOrFolder, bool keepsTree,
                                                 const MSPCFileSystem& fileSystem);
