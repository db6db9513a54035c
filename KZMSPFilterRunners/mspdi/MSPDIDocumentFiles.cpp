#include "MSPDIDocumentFiles.h"

#include <algorithm>
#include <iterator>

#include "MSPCFileSystem.h"
#include "MSPDIInWords.h"
#include "MSPDIMemoryImport.h"
#include "MSPDIRepairWarning.h"

namespace {

// The files of a plan's document, made in memory.
std::unique_ptr<KZDXFiles> importedFiles(const std::string& plan, const MSPCServices& services, std::string& failure,
                                         std::vector<std::string>& repairs) {
    auto import = MSPDIImportInMemory(plan, services);
    std::copy_if(import.warnings.begin(), import.warnings.end(), std::back_inserter(repairs), MSPDIIsRepairWarning);
    if (import.refusal) {
        failure = import.refusal->reason.empty() ? "the importer refuses the plan"
                                                 : MSPDIReasonInWords({"", import.refusal->reason, ""});
        return nullptr;
    }
    return KZDXFilesInMemory(std::move(import.bundle));
}

}  // namespace

std::unique_ptr<KZDXFiles> MSPDIFilesOfDocumentOrPlan(const std::string& name, const MSPCServices& services,
                                                      std::string& failure, std::vector<std::string>& repairs) {
    const auto path = services.fileSystem.absolutePath(name);
    if (!services.fileSystem.leadsToAnything(path)) {
        failure = "no such file";
        return nullptr;
    }
    return services.fileSystem.isDirectory(path) ? KZDXFilesInFolder(services.fileSystem, path)
                                                 : importedFiles(path, services, failure, repairs);
}
