#pragma once

#include <string>

#include "CountedWork.h"

struct ImportWork {
    CountedWork work;
    bool succeeded = false;
};

// What the import of a plan takes, into a bundle in memory made from the delivered template.
[[nodiscard]] ImportWork workOfImporting(std::string plan);
// What it takes to tell what of a plan is lost.
[[nodiscard]] ImportWork workOfTellingLosses(std::string plan);
