#include "MSPDIImportLog.h"

#include <fmt/format.h>

#include <algorithm>

#include "KZDXXMLFile.h"
#include "MSPCFileSystem.h"
#include "MSPDIDocumentAround.h"

namespace {

bool beginsAsXML(const std::string& path, const MSPCFileSystem& fileSystem) {
    std::string beginning(KZDXBeginningSize, '\0');
    const auto file = fileSystem.openFile(path);
    const auto count = file ? file->read(beginning.data(), beginning.size()).value_or(0) : 0;
    beginning.resize(count);
    return KZDXBeginsAsXML(beginning);
}

}  // namespace

std::optional<std::string> MSPDIObstacleToLog(const std::string& log, const std::vector<std::string>& plans,
                                              const MSPCFileSystem& fileSystem) {
    if (std::ranges::any_of(plans, [&](const auto& plan) { return fileSystem.isSameFile(plan, log); })) {
        return "a plan cannot be the log";
    }
    if (fileSystem.exists(log) && !fileSystem.leadsToAnything(log)) {
        return "a link that leads nowhere";
    }
    if (const auto document = MSPDIDocumentAround(log, fileSystem)) {
        return fmt::format("the log would become a part of the document {}", *document);
    }
    // Another name of a plan's or a document's file is not told by its place.
    return beginsAsXML(log, fileSystem) ? std::optional<std::string>("it holds XML, which a log would spoil")
                                        : std::nullopt;
}
