#include "MSPDIDocumentAround.h"

#include "MSPCFileSystem.h"
#include "MSPCPath.h"
#include "MSPIBundleNaming.h"

namespace {

// The path without links of what is there of a path.
std::string placeOf(std::string path, const MSPCFileSystem& fileSystem) {
    while (path.size() > 1 && !fileSystem.leadsToAnything(path)) {
        path = pathByDeletingLastComponent(path);
    }
    return fileSystem.resolvedPath(path);
}

}  // namespace

std::optional<std::string> MSPDIDocumentAround(const std::string& path, const MSPCFileSystem& fileSystem) {
    for (auto folder = placeOf(path, fileSystem); folder.size() > 1; folder = pathByDeletingLastComponent(folder)) {
        if (fileSystem.exists(pathByAppendingComponent(folder, MSPITOCFileName))) {
            return folder;
        }
    }
    return std::nullopt;
}
