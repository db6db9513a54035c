#include <cstdlib>
#include <functional>
#include <iostream>
#include <string_view>
#include <utility>

#include "MSPCClock.h"
#include "MSPCFileSystem.h"
#include "MSPCLog.h"
#include "MSPCPath.h"
#include "MSPCProcessGuard.h"
#include "MSPCProgressLine.h"
#include "MSPCRandomSource.h"
#include "MSPCServices.h"
#include "MSPCSettingsFile.h"
#include "MSPCStandardOutput.h"
#include "MSPCTerminal.h"
#include "MSPDIProgram.h"
#include "MSPDIRun.h"

namespace {

// Beside the program, below the prefix that it is installed in; in the source tree likewise.
std::string installedTemplate(const MSPCFileSystem& fileSystem) {
    const auto program = fileSystem.resolvedPath("/proc/self/exe");
    return fileSystem.standardizedPath(pathByDeletingLastComponent(program) + "/../share/kadenza2/Empty.kdzx");
}

std::string_view environment(const char* name) {
    const auto* value = std::getenv(name);
    return value != nullptr ? value : "";
}

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): one that nobody catches ends the program as the guard has it
int main(int argumentCount, char** arguments) {
    MSPCProcessGuard::endAtLackOfMemory("mspdi: not enough memory\n", static_cast<int>(MSPDIStatus::CouldNotLook));
    MSPCMakeClosedStandardOutputFail();
    static MSPCStandardErrorLog log("mspdi");  // large, and the stack may be small
    const MSPCProcessGuard guard(log);
    auto timeZone = MSPCTimeZone::ofProcess(log);
    const MSPCSystemClock clock;
    const MSPCSettingsFile settings({}, "none", log);  // it has no settings
    MSPCDiskFileSystem fileSystem;
    MSPCCryptoRandomSource randomSource;
    MSPCProgressLine progress(log, std::getenv("TERM"));
    const MSPCServices services{clock, std::move(timeZone), log, settings, fileSystem, randomSource, progress};
    const bool isColored =
        MSPCIsStandardOutputTerminal() && environment("NO_COLOR").empty() && environment("TERM") != "dumb";
    const auto type = environment("TERM");
    std::function<void(std::string_view)> showStatus;
    if (log.isOnTerminal() && !type.empty() && type != "dumb") {
        showStatus = [](std::string_view text) { log.showStatus(text); };
    }
    return MSPDIProgram(
        {arguments + 1, arguments + argumentCount}, services,
        {std::cout, std::cerr, isColored, MSPCIsReaderOfStandardOutputGone, installedTemplate(fileSystem), showStatus});
}
