#include <cstdlib>
#include <utility>

#include "MSPCClock.h"
#include "MSPCFileSystem.h"
#include "MSPCLog.h"
#include "MSPCProcessGuard.h"
#include "MSPCProgressLine.h"
#include "MSPCRandomSource.h"
#include "MSPCUserDefaults.h"
#include "MSPDIImportRunner.h"

int main(int argumentCount, char** arguments) {
    MSPCStandardErrorLog log("MSPDIImport");
    const MSPCProcessGuard guard(log);
    const MSPCSystemClock clock;
    const auto settingsFolder = MSPCSettingsFolder(std::getenv("XDG_CONFIG_HOME"), std::getenv("HOME"));
    const MSPCSettingsFile settings(settingsFolder, "org.kadenza.Kadenza2.MSPImportMSPDI", log);
    MSPCDiskFileSystem fileSystem;
    MSPCCryptoRandomSource randomSource;
    auto timeZone = MSPCTimeZone::fromEnvironment(std::getenv("TZ"), log);
    MSPCProgressLine progress(log, std::getenv("TERM"));
    const MSPCServices services{clock, std::move(timeZone), log, settings, fileSystem, randomSource, progress};
    return MSPDIImportRunner(services).run({arguments, arguments + argumentCount});
}
