// A settings file: whatever it holds, the settings are read or absent.

#include "CountedSteps.h"
#include "FuzzWorld.h"
#include "MSPCSettingsFile.h"
#include "ScopedTempFolder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const CountedSteps steps;
    static const ScopedTempFolder folder;
    folder.addFile("settings.toml", std::string(textOf(bytes, size)));
    SilentLog log;
    const MSPCSettingsFile settings(folder.path(), "settings", log);
    static_cast<void>(settings.boolForKey("IncludeInputExtension"));
    static_cast<void>(settings.boolForKey("OverwriteFilterTarget"));
    requireStepsThatGrowWith(size, steps.count(), {50'000, 500});
    return 0;
}
