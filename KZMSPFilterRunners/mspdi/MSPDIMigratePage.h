#pragma once

#include <cstddef>
#include <iosfwd>
#include <map>
#include <string>

#include "MSPDIMigrationRecord.h"

// "3 x link-lag, 1 x deadline".
[[nodiscard]] std::string MSPDICountsInOneLine(const MSPDIMigrationRecord::Counts& counts);
// "1.234".
[[nodiscard]] std::string MSPDISeconds(const MSPDIMigrationRecord& record);

// How many plans of a migration came to which end, and why, and what was lost of them.
struct MSPDIMigrationSums {
    std::size_t plans = 0;
    std::map<std::string, std::size_t> verdicts{};
    std::map<std::string, std::size_t> reasons{};  // of plans that are not imported, without what is one plan's own
    std::map<std::string, std::size_t> losses{};   // by kind

    void add(const MSPDIMigrationRecord& record);
};

// Writes a page of HTML that sums up a migration by verdict, reason and kind of loss, with a table of all plans to sort
// and to filter. `made` says when, and by what. It stands alone, and asks for nothing from anywhere; links lead to
// documents below the output folder, an absolute path, which the page lies in. What plans and paths hold stands in it
// as text only. `sums` are those of the records.
void MSPDIWriteMigrationPage(const std::string& outputFolder, const std::string& made, const MSPDIMigrationSums& sums,
                             const MSPDIMigrationRecords& records, std::ostream& out);
