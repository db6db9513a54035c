#include "MSPDIAccountOfPlan.h"

#include <algorithm>
#include <new>

#include "MSPCException.h"
#include "MSPCFileSystem.h"
#include "MSPDIAccountOfImport.h"
#include "MSPDICutOff.h"
#include "MSPDIReadOnce.h"
#include "MSPDIRepairWarning.h"

namespace {

std::optional<std::string> obstacleAt(const std::string& path, const MSPCFileSystem& fileSystem) {
    if (!fileSystem.exists(path)) {
        return "no such file";
    }
    return fileSystem.isDirectory(path) ? std::optional<std::string>("a folder, not a plan") : std::nullopt;
}

MSPDIAccount lookAt(const std::string& planPath, const MSPCServices& services, const MSPDIAccountOptions& options) {
    MSPDIAccountOfImport watching(services);
    const auto import = MSPDIImportInMemory(planPath, services, MSPDIMemoryKeeping::Names, watching.watchedMapping());
    auto account = watching.account(planPath, import.refusal, import.warnings, options);
    const bool isMended = std::any_of(import.warnings.begin(), import.warnings.end(), MSPDIIsRepairWarning);
    account.isCutOff = isMended && MSPDIIsPlanCutOff(planPath, services.fileSystem);
    return account;
}

}  // namespace

MSPDIAccount MSPDIAccountOfPlan(const std::string& planPath, const MSPCServices& services,
                                const MSPDIAccountOptions& options) {
    MSPDIAccount account;
    account.obstacle = obstacleAt(planPath, services.fileSystem);
    if (account.obstacle) {
        return account;
    }
    try {
        return MSPDIWithPlanReadOnce(planPath, services,
                                     [&](const MSPCServices& readable) { return lookAt(planPath, readable, options); });
    } catch (const MSPCException& exception) {
        account.obstacle = exception.reason();
    } catch (const std::bad_alloc&) {
        account.obstacle = "not enough memory";
    }
    return account;
}
