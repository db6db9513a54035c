#include "MSPDIMemoryImport.h"

#include <utility>

#include "MSPCLog.h"
#include "MSPCPath.h"
#include "MSPDIEmptyDocument.h"

namespace {

std::string inMemory(std::string_view name) {
    return pathByAppendingComponent(MSPDIMemoryFileSystem::Folder, name);
}

MSPDIMemoryImport importWith(MSPDIMemoryFileSystem& fileSystem, const std::string& planPath,
                             const MSPCServices& services, MSPIScenarioMapping mapScenario) {
    const auto templateFolder = inMemory("Empty.kdzx");
    const auto bundle = inMemory("Plan.kdzx");
    for (const auto& [name, content] : MSPDIEmptyDocument()) {
        fileSystem.addFile(pathByAppendingComponent(templateFolder, name), std::string(content));
    }
    MSPIImportInfo info;
    info.mspdiProjectName = pathByDeletingExtension(lastPathComponent(planPath));
    info.kdzxTemplateURL = MSPCURL::fileURL(templateFolder, true);

    MSPCNoLog noLog;
    MSPDIVerdictLog log(noLog);
    const MSPCServices ofImport{services.clock,        services.timeZone,   log,
                                services.userDefaults, fileSystem,          services.randomSource,
                                MSPCNoProgress(),      services.seasonClock};
    MSPIXMLImporter importer(std::move(info), ofImport, std::move(mapScenario));
    const bool isImported =
        importer.importFromMspdiURLToKdzxBundleURL(MSPCURL::fileURL(planPath, false), MSPCURL::fileURL(bundle, true));
    MSPDIMemoryImport result;
    result.warnings = std::move(log.warnings());
    if (isImported) {
        result.bundle = fileSystem.takeFilesBelow(bundle);
    } else {
        result.refusal = log.refusal();
    }
    return result;
}

}  // namespace

MSPDIMemoryImport MSPDIImportInMemory(const std::string& planPath, const MSPCServices& services,
                                      MSPDIMemoryKeeping keeping, MSPIScenarioMapping mapScenario) {
    MSPDIMemoryFileSystem fileSystem(services.fileSystem, keeping);
    return importWith(fileSystem, planPath, services, std::move(mapScenario));
}

MSPDIMemoryImport MSPDIImportBytesInMemory(std::string_view name, std::string_view bytes, const MSPCServices& services,
                                           MSPDIMemoryKeeping keeping, MSPIScenarioMapping mapScenario) {
    MSPDIMemoryFileSystem fileSystem(services.fileSystem, keeping);
    // Whatever the file is called, it is taken for a plan.
    const auto path = inMemory("Plan/" + pathByDeletingExtension(lastPathComponent(name)) + ".xml");
    fileSystem.lendFile(path, bytes);
    return importWith(fileSystem, path, services, std::move(mapScenario));
}
