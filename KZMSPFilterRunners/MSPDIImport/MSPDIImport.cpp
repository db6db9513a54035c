#include <cstdlib>
#include <utility>

#include "MSPCClock.h"
#include "MSPCFileSystem.h"
#include "MSPCLog.h"
#include "MSPCProcessGuard.h"
#include "MSPCProgressLine.h"
#include "MSPCRandomSource.h"
#include "MSPCSettingsFile.h"
#include "MSPDIImportRunner.h"

// The command line has no word that asks for the version; `strings MSPDIImport | grep '@(#)'` shows it.
[[gnu::used]] static const char identification[] = "@(#)MSPDIImport " KZMSP_VERSION;

int main(int argumentCount, char** arguments) {
    MSPCProcessGuard::endAtLackOfMemory();
    static MSPCStandardErrorLog log("MSPDIImport");  // large, and the stack may be small
    const MSPCProcessGuard guard(log);
    auto timeZone = MSPCTimeZone::ofProcess(log);
    const MSPCSystemClock clock;
    const auto settingsFolder = MSPCSettingsFolder(std::getenv("XDG_CONFIG_HOME"), std::getenv("HOME"));
    const MSPCSettingsFile settings(settingsFolder, "org.kadenza.Kadenza2.MSPImportMSPDI", log);
    MSPCDiskFileSystem fileSystem;
    MSPCCryptoRandomSource randomSource;
    MSPCProgressLine progress(log, std::getenv("TERM"));
    const MSPCServices services{clock, std::move(timeZone), log, settings, fileSystem, randomSource, progress};
    return MSPDIImportRunner(services).run({arguments, arguments + argumentCount});
}
