#pragma once

#include <iosfwd>
#include <string>

#include "MSPDIMigrationRecord.h"

// "3 x link-lag, 1 x deadline".
[[nodiscard]] std::string MSPDICountsInOneLine(const MSPDIMigrationRecord::Counts& counts);
// "1.234".
[[nodiscard]] std::string MSPDISeconds(const MSPDIMigrationRecord& record);

// Writes a page of HTML that sums up a migration by verdict, reason and kind of loss, with a table of all plans to sort
// and to filter. `made` says when, and by what. It stands alone, and asks for nothing from anywhere; links lead to
// documents below the output folder, an absolute path, which the page lies in. What plans and paths hold stands in it
// as text only.
void MSPDIWriteMigrationPage(const std::string& outputFolder, const std::string& made,
                             const MSPDIMigrationRecords& records, std::ostream& out);
