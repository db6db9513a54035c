#include "MSPDIPlansToMigrate.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "MSPCFileSystem.h"
#include "MSPCPath.h"
#include "MSPDIInputList.h"
#include "MSPDIPathIndex.h"

namespace {

bool isPlanName(const std::string& name) {
    const auto extension = lowerCased(pathExtension(name));
    return extension == "xml" || extension == "mspxml";
}

// A link may lead back to where it is.
bool isLink(const std::string& path, const MSPCFileSystem& fileSystem) {
    const auto parent = fileSystem.resolvedPath(pathByDeletingLastComponent(path));
    return fileSystem.resolvedPath(path) != pathByAppendingComponent(parent, lastPathComponent(path));
}

// Whether a name is there still; somebody may have taken it away since the folder was listed.
bool isListed(const std::string& name, const std::string& folder, const MSPCFileSystem& fileSystem) {
    const auto names = fileSystem.namesIn(folder);
    return names && std::ranges::find(*names, name) != names->end();
}

// None, or why the folder itself cannot be looked through; what is in it and cannot be is told.
std::optional<std::string> takeFolder(const std::string& folder, const MSPCFileSystem& fileSystem,
                                      MSPDIPlansToMigrate& found) {
    std::string failure;
    const auto names = fileSystem.namesIn(folder, &failure);
    if (!names) {
        return failure;
    }
    if (!fileSystem.leadsToAnything(pathByAppendingComponent(folder, "."))) {
        return "the names in it are known, but nothing else";
    }
    for (const auto& name : *names) {
        const auto path = pathByAppendingComponent(folder, name);
        if (!fileSystem.isDirectory(path)) {
            if (isPlanName(name)) {
                found.plans.add(path);
            } else if (!fileSystem.exists(path) && isListed(name, folder, fileSystem)) {
                found.unread.emplace_back(path, "it cannot be looked at");
            }
        } else if (lowerCased(pathExtension(name)) != "kdzx" && !name.starts_with('.') && !isLink(path, fileSystem)) {
            if (auto reason = takeFolder(path, fileSystem, found)) {
                found.unread.emplace_back(path, std::move(*reason));
            }
        }
    }
    return std::nullopt;
}

// False where it cannot be read.
bool takeList(const std::string& path, const MSPCFileSystem& fileSystem, MSPDIPlansToMigrate& found) {
    auto source = fileSystem.openFile(path);
    if (!source) {
        auto content = fileSystem.readFile(path);  // a pipe's
        if (!content) {
            return false;
        }
        source = std::make_unique<MSPCContentSource>(std::move(*content));
    }
    MSPDIPathIndex known;
    return MSPDIForEachLine(*source, [&](const std::string& line) {
        if (!MSPDIIsInputEntry(line)) {
            return;
        }
        const auto plan = fileSystem.absolutePath(line);
        if (known.find(plan) == nullptr) {
            known.set(plan, 1);
            found.plans.add(plan);
        }
    });
}

}  // namespace

MSPDIPlansToMigrate MSPDIFindPlans(const std::string& listOrFolder, bool keepsTree, const MSPCFileSystem& fileSystem) {
    const auto path = fileSystem.absolutePath(listOrFolder);
    MSPDIPlansToMigrate found;
    if (path.empty() || !fileSystem.leadsToAnything(path)) {
        found.obstacle = listOrFolder + ": no such list or folder";
    } else if (fileSystem.isDirectory(path)) {
        found.treeRoot = keepsTree ? path : "";
        if (const auto reason = takeFolder(path, fileSystem, found)) {
            found.obstacle = path + ": " + *reason;
        }
    } else if (isPlanName(path)) {
        found.obstacle = listOrFolder + ": a plan, not a list; mspdi import takes it";
    } else {
        found.isList = true;
        if (!takeList(path, fileSystem, found)) {
            found.obstacle = listOrFolder + ": it cannot be read as a list in UTF-8";
        }
    }
    return found;
}
