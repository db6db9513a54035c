#pragma once

#include <string>
#include <utility>

#include "MSPCException.h"
#include "MSPCFileSystem.h"
#include "MSPCServices.h"
#include "MSPDIReadOnlyFileSystem.h"

// Calls `look` with services through which a plan can be read more than once, and gives what it gives. What gives its
// content only once, such as a pipe, is read into the memory for that time; an MSPCException with the system's reason
// where that fails. What is not there, or is a folder, is left to `look`.
template <typename Look>
auto MSPDIWithPlanReadOnce(const std::string& planPath, const MSPCServices& services, const Look& look) {
    const auto& files = services.fileSystem;
    if (files.openFile(planPath) || !files.leadsToAnything(planPath) || files.isDirectory(planPath)) {
        return look(services);
    }
    std::string failure;
    auto content = files.readFile(planPath, &failure);
    if (!content) {
        throw MSPCException("MSPDIWithPlanReadOnce", failure);
    }
    MSPDIFileSystemWithContent fileSystem(services.fileSystem, planPath, std::move(*content));
    return look(MSPCServices{services.clock, services.timeZone, services.log, services.userDefaults, fileSystem,
                             services.randomSource, services.progress, services.seasonClock});
}
