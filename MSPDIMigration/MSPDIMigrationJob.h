#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "MSPCWorkers.h"
#include "MSPDIMigrationRecord.h"
#include "MSPDIPlanImporter.h"

class MSPDIReadingWithDigest;

// A plan, and where what is made of it is to be; absolute paths.
struct MSPDIPlanToMigrate {
    std::string path;
    std::string folder;  // of the document
    std::string log{};   // the file for the importer's log; empty where none is wanted
};

// Imports plans of a migration, those of a worker in a folder of its own, `<work folder>/<worker>`, and moves each
// document to its place when it is complete, under a name that is free then. Before that the record of the plan is
// written to the file "record" in the folder: where that is without a document beside it, the document has appeared,
// whatever was killed since. Whoever keeps the records takes the folders away.
class MSPDIMigrationJob {
public:
    // The services outlive the job. Of the options the folder is of no account.
    MSPDIMigrationJob(const MSPCServices& services, MSPDIPlanImportOptions options, std::string outputFolder,
                      std::string workFolder);

    // Raises nothing that the plan is to blame for.
    [[nodiscard]] MSPDIMigrationRecord migrate(const MSPDIPlanToMigrate& plan, std::size_t worker);

    // The parts of that, for where they are not done by the same process. The document of a plan is made in the folder
    // `work`, where the record names it, ...
    [[nodiscard]] MSPDIMigrationRecord make(const MSPDIPlanToMigrate& plan, const std::string& work);
    // ... moved from there to its place, which the record names then, or why it has none, ...
    void publish(MSPDIMigrationRecord& record, const std::string& work);
    // ... and the plan's log, where there is one, is ended by a line with the verdict.
    static void endLog(const MSPDIMigrationRecord& record);

    // The record of a plan whose process came to its end without one.
    [[nodiscard]] static MSPDIMigrationRecord unanswered(const MSPDIPlanToMigrate& plan, const MSPCJobEnd& end,
                                                         const MSPCWorkerBounds& bounds);

    // The folder of a worker.
    [[nodiscard]] static std::string folderOf(const std::string& workFolder, std::size_t worker);
    // The record of the last document that has appeared, from the folder that it was made in; none where none has.
    [[nodiscard]] static std::optional<MSPDIMigrationRecord> appeared(const std::string& folder,
                                                                      const std::string& outputFolder,
                                                                      const MSPCFileSystem& fileSystem);
    // The digest of a file's content as records keep it; empty where it cannot be read, or only once, as a pipe.
    [[nodiscard]] static std::string digestOf(const std::string& path, const MSPCFileSystem& fileSystem);

private:
    [[nodiscard]] MSPDIImportedPlan import(const std::string& path, const std::string& work, MSPCFileSystem& files,
                                           MSPCLog& log);
    [[nodiscard]] std::string digestOf(const std::string& path, const MSPCFileStamp& stamp,
                                       const MSPDIReadingWithDigest& files) const;
    [[nodiscard]] std::optional<std::string> writeRecord(const std::string& work,
                                                         const MSPDIMigrationRecord& record) const;

    const MSPCServices& _services;
    MSPDIPlanImportOptions _options;
    std::string _outputFolder;
    std::string _workFolder;
    std::shared_ptr<MSPDITemplateDocuments> _templateDocuments = std::make_shared<MSPDITemplateDocuments>();
    std::map<std::string, std::uint64_t> _numbers;  // that names have reached which were taken
};
