#include "MSPDIImportDestination.h"

#include <fmt/format.h>

#include <algorithm>

#include "MSPCException.h"
#include "MSPCFileSystem.h"
#include "MSPCPath.h"

namespace {

std::string folderOfInput(const std::string& inputPath, const MSPCFileSystem& fileSystem) {
    auto folder = pathByDeletingLastComponent(fileSystem.absolutePath(inputPath));
    if (!fileSystem.isDirectory(folder)) {
        throw MSPCInternalInconsistency(
            fmt::format("*** ERROR: Failed to get directory from input path: {}", inputPath));
    }
    return folder;
}

// Whether a path or one of the folders above it is the destination.
bool leadsThrough(std::string path, const std::string& destination, const MSPCFileSystem& fileSystem) {
    for (; !path.empty() && path != "/"; path = pathByDeletingLastComponent(path)) {
        if (fileSystem.isSameFile(path, destination)) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::string MSPDIOutputFolder(const std::string& inputPath, const std::optional<std::string>& outputFolder,
                              const MSPCFileSystem& fileSystem) {
    const auto folder =
        outputFolder ? fileSystem.standardizedPath(*outputFolder) : folderOfInput(inputPath, fileSystem);
    if (!fileSystem.isDirectory(folder)) {
        throw FileNotFoundException(fmt::format("Output directoty not found: {}", folder));
    }
    return fileSystem.absolutePath(folder);
}

std::string MSPDIBundlePath(const std::string& folder, const std::string& inputPath, bool includesInputExtension) {
    const auto inputName = lastPathComponent(inputPath);
    auto name = pathByDeletingExtension(inputName);
    if (includesInputExtension) {
        name = pathByAppendingExtension(name, lowerCased(pathExtension(inputName)));
    }
    return pathByAppendingComponent(folder, pathByAppendingExtension(name, "kdzx"));
}

bool MSPDIWouldBeRemoved(const std::string& needed, const std::string& destination, const MSPCFileSystem& fileSystem) {
    // The path as written finds a link inside the destination, the resolved one a link that leads into it.
    return leadsThrough(needed, destination, fileSystem) ||
           leadsThrough(fileSystem.resolvedPath(needed), destination, fileSystem);
}

bool MSPDIMayBeReplaced(const std::string& bundlePath, const std::vector<std::string>& needed,
                        const MSPCFileSystem& fileSystem) {
    const auto wouldBeRemoved = [&](const std::string& path) {
        return MSPDIWouldBeRemoved(path, bundlePath, fileSystem);
    };
    return !fileSystem.exists(bundlePath) || std::ranges::none_of(needed, wouldBeRemoved);
}
