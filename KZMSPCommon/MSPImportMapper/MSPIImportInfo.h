#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "MSPCURL.h"

// What the runner, the importer and the mappers tell each other about one import. A field without a value is absent.
// The key in each comment is the name under which the value is known.
struct MSPIImportInfo {
    // InfoMSPDIProjectName: the MSPDI file's name without its extension. Set by the runner, read by the mapper.
    std::optional<std::string> mspdiProjectName;
    // InfoKDZXTemplateUrll (the doubled letter belongs to the key): the template bundle, a folder. Set by the runner,
    // read by the importer.
    std::optional<MSPCURL> kdzxTemplateURL;
    // InfoMSPDIBaselineNumber: 0 to 10; absent for the actual scenario. Set by the importer, read by the mapper.
    std::optional<int> mspdiBaselineNumber;
    // InfoKDZXScenarioName: "Actual", "Baseline" (of number 0) or "Baseline1" to "Baseline10". Set by the importer,
    // read by the mapper.
    std::optional<std::string> kdzxScenarioName;
    // Whether what has the new bundle's name is replaced by it. Set by the runner, read by the importer.
    bool replacesOldBundle = false;
    // Whether the bundle of a failed import appears with what was written until then, and does not go away. Set by the
    // runner, read by the importer.
    bool keepsFailedBundle = true;
    // The number that the names of the bundles have reached, by the path that was wanted, for all imports of a run.
    // Numbers below it were taken when they were looked at and are not looked at again. Set by the runner, kept by the
    // importer; one that is not told begins with number 1.
    std::shared_ptr<std::map<std::string, std::uint64_t>> bundleNumbers;
    // InfoMPPTemplateUrl: the template of a sibling importer for the binary format; nothing here sets or reads it.
    std::optional<MSPCURL> mppTemplateURL;
};
