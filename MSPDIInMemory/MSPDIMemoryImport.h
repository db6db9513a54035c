#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCServices.h"
#include "MSPDIMemoryFileSystem.h"
#include "MSPDIRefusal.h"
#include "MSPIXMLImporter.h"

// What became of a plan that was imported in memory.
struct MSPDIMemoryImport {
    // None when the plan was imported.
    std::optional<MSPDIRefusal> refusal;
    // The files of the bundle by name ("__TOC.xml", "Actual.xml", "Baseline3.xml", ...): all of them where the plan was
    // imported, otherwise none. Empty texts where only names were to be kept.
    std::map<std::string, std::string> bundle;
    // What the import warned of, without "WARNING: ".
    std::vector<std::string> warnings;

    [[nodiscard]] bool isImported() const { return !refusal; }
};

// Imports the plan at a path into a bundle in memory, with the importer and the empty document of this program; nothing
// is written to the disk. Of `services` the file system is only read, and the log and the progress get nothing.
// `mapScenario` may look at the documents on their way. What the importer does not catch passes.
[[nodiscard]] MSPDIMemoryImport MSPDIImportInMemory(const std::string& planPath, const MSPCServices& services,
                                                    MSPDIMemoryKeeping keeping = MSPDIMemoryKeeping::Content,
                                                    MSPIScenarioMapping mapScenario = MSPIMapScenario);

// The same of a plan whose bytes are there already, and are not copied; `name` is that of its file.
[[nodiscard]] MSPDIMemoryImport MSPDIImportBytesInMemory(std::string_view name, std::string_view bytes,
                                                         const MSPCServices& services,
                                                         MSPDIMemoryKeeping keeping = MSPDIMemoryKeeping::Content,
                                                         MSPIScenarioMapping mapScenario = MSPIMapScenario);
