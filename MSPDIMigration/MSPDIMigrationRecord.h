#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MSPCFileStamp.h"

// What became of a plan of a migration, as it is kept from run to run.
struct MSPDIMigrationRecord {
    using Counts = std::vector<std::pair<std::string, std::size_t>>;

    std::string plan;      // absolute path
    MSPCFileStamp stamp;   // of the plan's file before it was read; zeros where there was none
    std::string verdict;   // "imported", "refused", "unreadable", "failed"
    std::string reason;    // in one line; empty of an imported plan
    Counts mending;        // steps by name; of a plan that is not imported, those that would help
    std::string document;  // absolute path; empty unless it was imported
    std::size_t tasks = 0;
    std::size_t resources = 0;
    std::size_t scenarios = 0;
    std::size_t customFields = 0;
    std::vector<std::string> warnings;
    Counts losses;  // by kind, the most important first
    std::size_t milliseconds = 0;
    std::string digest;  // of the content of the plan's file, as it was imported; empty where that is not known
    std::string folder;  // where the document is to be, absolute path; empty where that is not known
    std::string log;     // absolute path of the importer's log of it; empty where none was wanted

    [[nodiscard]] bool isImported() const { return verdict == "imported"; }
};

// The records of plans, in the order in which they are to be told.
using MSPDIMigrationRecords = std::function<void(const std::function<void(const MSPDIMigrationRecord&)>&)>;

// A path as it counts from a folder: "a/b" of "/out/a/b" in "/out", and "." of the folder itself. What does not lie
// below it stays as it is.
[[nodiscard]] std::string MSPDIPathInFolder(const std::string& path, const std::string& folder);

// A record as one line without a line feed, whatever its texts hold; and back again: none where the line is no record.
// Document, folder and log count from the output folder, an absolute path, where they lie below it, so that it may be
// moved. Lines without what was added since the first records, or with absolute paths, are understood as well.
[[nodiscard]] std::string MSPDILineOf(const MSPDIMigrationRecord& record, const std::string& outputFolder);
[[nodiscard]] std::optional<MSPDIMigrationRecord> MSPDIRecordFrom(std::string_view line,
                                                                  const std::string& outputFolder);
