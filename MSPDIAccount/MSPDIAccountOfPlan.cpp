#include "MSPDIAccountOfPlan.h"

#include <new>

#include "MSPCException.h"
#include "MSPCFileSystem.h"
#include "MSPDIAccountOfImport.h"
#include "MSPDIReadOnlyFileSystem.h"

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
    return watching.account(planPath, import.refusal, import.warnings, options);
}

// The plan is read more than once. What gives its content only once, such as a pipe, is read into the memory.
MSPDIAccount lookAtOnce(const std::string& planPath, const MSPCServices& services, const MSPDIAccountOptions& options) {
    auto content = services.fileSystem.openFile(planPath) ? std::nullopt : services.fileSystem.readFile(planPath);
    if (!content) {
        return lookAt(planPath, services, options);
    }
    MSPDIFileSystemWithContent fileSystem(services.fileSystem, planPath, std::move(*content));
    return lookAt(planPath,
                  {services.clock, services.timeZone, services.log, services.userDefaults, fileSystem,
                   services.randomSource, services.progress, services.seasonClock},
                  options);
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
        return lookAtOnce(planPath, services, options);
    } catch (const MSPCException& exception) {
        account.obstacle = exception.reason();
    } catch (const std::bad_alloc&) {
        account.obstacle = "not enough memory";
    }
    return account;
}
