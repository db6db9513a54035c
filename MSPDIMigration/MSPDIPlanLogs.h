#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "MSPCFileLog.h"

class MSPCFileSystem;

// The importer's logs of plans, one for each, in a folder: named after the plan, with a number where the name is taken,
// in the sub-folder that the plan's document has in the output folder. Paths are absolute.
class MSPDIPlanLogs {
public:
    MSPDIPlanLogs(std::string folder, std::string outputFolder, MSPCFileSystem& fileSystem);

    // The log of a plan whose document is to be in `documentFolder`: the one that an earlier run has written for it
    // where that is in the folder, or that one has begun which was killed, begun anew; else a new file. Empty where it
    // cannot be made, with the reason in `failure`, which names the file.
    [[nodiscard]] std::string logOf(const std::string& plan, const std::string& documentFolder,
                                    const std::string& earlierLog, std::string& failure);
    // Begins a log anew, with a line that says which plan it is about; a null pointer where it cannot be written to,
    // with the reason in `failure`. No link in its place is followed.
    [[nodiscard]] static std::unique_ptr<MSPCFileLog> open(const std::string& log, const std::string& plan,
                                                           const std::string& outputFolder, std::string& failure);
    // Adds a line to a log that its writer could not end.
    static void addVerdict(const std::string& log, const std::string& plan, const std::string& verdict);

private:
    [[nodiscard]] bool isBegunFor(const std::string& plan, const std::string& log) const;
    [[nodiscard]] std::string begunAnew(const std::string& log, const std::string& plan, std::string& failure);

    std::string _folder;
    std::string _outputFolder;
    MSPCFileSystem& _fileSystem;
    std::map<std::string, std::uint64_t> _numbers;  // that names have reached which were taken
};
