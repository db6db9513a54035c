#pragma once

#include <optional>
#include <string>

#include "MSPDIMigrationRecord.h"

class MSPCFileSystem;

// Writes the reports of a migration into its output folder, an absolute path; each replaces that of an earlier run when
// it is complete:
//
//   report.tsv    a line for each plan, behind one with the names of the columns
//   report.json   the same in the form of share/mspdi/migrate.schema.json
//   report.html   a page for people, which needs nothing else; `made` on it says when, and by what
//   failed.txt    a list of the plans that are not imported
//
// None, or the first failure, in one line that names the file.
[[nodiscard]] std::optional<std::string> MSPDIWriteMigrationReports(const std::string& outputFolder,
                                                                    const std::string& made,
                                                                    const MSPDIMigrationRecords& records,
                                                                    MSPCFileSystem& fileSystem);

// The first file in a folder that has the name of a report; none where there is none.
[[nodiscard]] std::optional<std::string> MSPDIMigrationReportIn(const std::string& folder,
                                                                const MSPCFileSystem& fileSystem);
