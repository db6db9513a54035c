#include <cstdlib>
#include <iostream>
#include <utility>

#include "MSPCClock.h"
#include "MSPCDesktop.h"
#include "MSPCFileSystem.h"
#include "MSPCLog.h"
#include "MSPCProcessGuard.h"
#include "MSPCRandomSource.h"
#include "MSPCServices.h"
#include "MSPCSettingsFile.h"
#include "MSPCTerminal.h"
#include "MSPDIProgram.h"

int main(int argumentCount, char** arguments) {
    MSPCProcessGuard::endAtLackOfMemory();
    static MSPCStandardErrorLog log("mspdi");  // large, and the stack may be small
    const MSPCProcessGuard guard(log);
    auto timeZone = MSPCTimeZone::ofProcess(log);
    const MSPCSystemClock clock;
    const MSPCSettingsFile settings({}, "none", log);  // it has no settings
    MSPCDiskFileSystem fileSystem;
    MSPCCryptoRandomSource randomSource;
    const MSPCServices services{clock, std::move(timeZone), log, settings, fileSystem, randomSource};
    const auto* noColor = std::getenv("NO_COLOR");
    const bool isColored = MSPCIsStandardOutputTerminal() && (noColor == nullptr || *noColor == '\0');
    return MSPDIProgram({arguments + 1, arguments + argumentCount}, services,
                        {std::cout, std::cerr, isColored, MSPCOpenOnDesktop});
}
