#include "MSPDIAccountOfPlan.h"

#include <new>

#include "MSPCException.h"
#include "MSPCFileSystem.h"
#include "MSPDIAccountOfImport.h"

namespace {

std::optional<std::string> obstacleAt(const std::string& path, const MSPCFileSystem& fileSystem) {
    if (!fileSystem.exists(path)) {
        return "no such file";
    }
    return fileSystem.isDirectory(path) ? std::optional<std::string>("a folder, not a plan") : std::nullopt;
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
        MSPDIAccountOfImport watching(services);
        const auto import =
            MSPDIImportInMemory(planPath, services, MSPDIMemoryKeeping::Names, watching.watchedMapping());
        return watching.account(planPath, import.refusal, import.warnings, options);
    } catch (const MSPCException& exception) {
        account.obstacle = exception.reason();
    } catch (const std::bad_alloc&) {
        account.obstacle = "not enough memory";
    }
    return account;
}
