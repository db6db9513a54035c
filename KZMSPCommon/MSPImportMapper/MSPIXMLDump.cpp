#include "MSPIXMLDump.h"

#include <fmt/format.h>

#include <string>

#include "MSPCException.h"
#include "MSPCFileSystem.h"
#include "MSPCPath.h"
#include "MSPCURL.h"
#include "MSPCXMLDocument.h"

namespace {

constexpr std::string_view DumpFolderName = "KZMSPDIFilterDump";
constexpr std::string_view DefaultDumpName = "KZMSPDIFilter";

std::string fileNameFor(std::optional<std::string_view> name, std::int32_t number) {
    const auto suffix = number > 0 ? fmt::format("({})", number) : std::string();
    return fmt::format("{}_dump{}.xml", name.value_or(DefaultDumpName), suffix);
}

}  // namespace

void dumpXMLDocumentWorkingFolderUrlDumpNameDumpNumber(const MSPCXMLDocument& document, const MSPCURL& workingFolder,
                                                       std::optional<std::string_view> name, std::int32_t number,
                                                       MSPCFileSystem& fileSystem) {
    if (!workingFolder.isFileURL()) {
        throw MSPCInternalInconsistency(
            fmt::format("*** ERROR: MSPIUtilities dumpXMLDocument:workingFolderUrl: Not a file URL: '{}'",
                        workingFolder.absoluteString()));
    }
    if (!fileSystem.isDirectory(workingFolder.path())) {
        return;
    }
    const auto dumpFolder = pathByAppendingComponent(workingFolder.path(), DumpFolderName);
    if (!fileSystem.exists(dumpFolder)) {
        static_cast<void>(fileSystem.createFolder(dumpFolder));  // whether it worked is looked at next
    }
    if (!fileSystem.isDirectory(dumpFolder)) {
        throw MSPCInternalInconsistency(fmt::format(
            "*** ERROR: MSPIUtilities dumpXMLDocument:workingFolderUrl: Failed to locate dump folder: '{}'.",
            dumpFolder));
    }
    // A dump is an aid, its failure is nobody's trouble.
    static_cast<void>(fileSystem.writeAtomically(pathByAppendingComponent(dumpFolder, fileNameFor(name, number)),
                                                 [&document](MSPCByteWriter& writer) { document.write(writer); }));
}

void dumpXMLDocumentWorkingFolderUrlDumpName(const MSPCXMLDocument& document, const MSPCURL& workingFolder,
                                             std::optional<std::string_view> name, MSPCFileSystem& fileSystem) {
    dumpXMLDocumentWorkingFolderUrlDumpNameDumpNumber(document, workingFolder, name, 0, fileSystem);
}
