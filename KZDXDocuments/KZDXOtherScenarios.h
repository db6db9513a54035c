#pragma once

#include <optional>
#include <string>

#include "KZDXDiff.h"

// Why a scenario could not be compared.
struct KZDXScenarioObstacle {
    bool isOfNew = false;  // of the new document, else of the old one
    std::string reason;
};

struct KZDXOtherScenarios {
    KZDXDifferences differences;  // one for each scenario that differs, in the order of the old document
    std::optional<KZDXScenarioObstacle> obstacle;  // the first one, at which the comparison ended
};

// Compares the scenarios that both documents have beside those that are open, by their names, and tells which differ,
// without the differences. The files are those that the documents were opened from.
[[nodiscard]] KZDXOtherScenarios KZDXDiffOtherScenarios(const KZDXOpenDocument& old, KZDXFiles& oldFiles,
                                                        const KZDXOpenDocument& now, KZDXFiles& newFiles);
