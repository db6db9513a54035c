#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "MSPDIMigrationRecord.h"
#include "MSPDIPlanImporter.h"
#include "MSPDIPlansToMigrate.h"

// Imports plans of a migration, each in a folder of its own, `<work folder>/<number>`, and moves the document to its
// place when it is complete, under a name that is free then. Before that the record of the plan is written to the file
// "record" in the folder: where that is without a document beside it, the document has appeared, whatever was killed
// since. The folders stay until whoever keeps the records takes them away.
class MSPDIMigrationJob {
public:
    // The services outlive the job. Of the options the folder is of no account.
    MSPDIMigrationJob(const MSPCServices& services, MSPDIPlanImportOptions options, std::string workFolder);

    // Raises nothing that the plan is to blame for.
    [[nodiscard]] MSPDIMigrationRecord migrate(const MSPDIPlanToMigrate& plan, std::size_t number);

    // The folder of that number.
    [[nodiscard]] static std::string folderOf(const std::string& workFolder, std::size_t number);
    // The record of a document that has appeared, from the folder that it was made in; none where none has.
    [[nodiscard]] static std::optional<MSPDIMigrationRecord> appeared(const std::string& folder,
                                                                      const MSPCFileSystem& fileSystem);

private:
    void publish(const std::string& bundle, const std::string& work, const std::string& folder,
                 MSPDIMigrationRecord& record);

    const MSPCServices& _services;
    MSPDIPlanImportOptions _options;
    std::string _workFolder;
    std::map<std::string, std::uint64_t> _numbers;  // that names have reached which were taken
};
