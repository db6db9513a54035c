#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "MSPCWorkers.h"
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
    MSPDIMigrationJob(const MSPCServices& services, MSPDIPlanImportOptions options, std::string workFolder = {});

    // Raises nothing that the plan is to blame for.
    [[nodiscard]] MSPDIMigrationRecord migrate(const MSPDIPlanToMigrate& plan, std::size_t number);

    // The two halves of that, for where they are not done by the same process. The document of a plan is made in the
    // folder `work`, of its own, ...
    [[nodiscard]] MSPDIMigrationRecord make(const std::string& plan, const std::string& work) const;
    // ... and moved from there to the folder of the documents. The record has its place then, or why it has none.
    void publish(MSPDIMigrationRecord& record, const std::string& work, const std::string& folder);

    // The record of a plan whose process came to an end without one.
    [[nodiscard]] static MSPDIMigrationRecord unanswered(const std::string& plan, const MSPCJobEnd& end,
                                                         const MSPCWorkerBounds& bounds);

    // The folder of that number.
    [[nodiscard]] static std::string folderOf(const std::string& workFolder, std::size_t number);
    // The record of a document that has appeared, from the folder that it was made in; none where none has.
    [[nodiscard]] static std::optional<MSPDIMigrationRecord> appeared(const std::string& folder,
                                                                      const MSPCFileSystem& fileSystem);

private:
    const MSPCServices& _services;
    MSPDIPlanImportOptions _options;
    std::string _workFolder;
    std::map<std::string, std::uint64_t> _numbers;  // that names have reached which were taken
};
