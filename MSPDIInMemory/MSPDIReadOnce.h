#pragma once

#include <string>
#include <utility>

#include "MSPCFileSystem.h"
#include "MSPCServices.h"
#include "MSPDIReadOnlyFileSystem.h"

// Calls `look` with services through which a plan can be read more than once, and gives what it gives. What gives its
// content only once, such as a pipe, is read into the memory for that time.
template <typename Look>
auto MSPDIWithPlanReadOnce(const std::string& planPath, const MSPCServices& services, const Look& look) {
    auto content = services.fileSystem.openFile(planPath) ? std::nullopt : services.fileSystem.readFile(planPath);
    if (!content) {
        return look(services);
    }
    MSPDIFileSystemWithContent fileSystem(services.fileSystem, planPath, std::move(*content));
    return look(MSPCServices{services.clock, services.timeZone, services.log, services.userDefaults, fileSystem,
                             services.randomSource, services.progress, services.seasonClock});
}
