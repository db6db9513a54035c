#pragma once

#include <string>
#include <string_view>

#include "MSPIXMLImporter.h"

// The bytes of the documents that an import reads.
struct BundleImportInput {
    std::string plan;
    std::string actual;  // the template's
    std::string toc;
};

// The template that the program is delivered with.
[[nodiscard]] const BundleImportInput& emptyTemplate();

// Imports a plan into a new bundle on a disk in memory. Ends the run when the importer lets anything through but its
// own answer, when a document of the new bundle does not read back strictly with the texts that were mapped, or when it
// takes more steps than the bytes that are read and written account for.
void importIntoBundle(const BundleImportInput& input, const MSPIScenarioMapping& mapScenario = MSPIMapScenario);
