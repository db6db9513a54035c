// A settings file: whatever it holds, the settings are read or absent.

#include "FuzzWorld.h"
#include "MSPCSettingsFile.h"
#include "ScopedTempFolder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const ScopedTempFolder folder;
    folder.addFile("settings.toml", std::string(textOf(bytes, size)));
    SilentLog log;
    const MSPCSettingsFile settings(folder.path(), "settings", log);
    static_cast<void>(settings.boolForKey("IncludeInputExtension"));
    static_cast<void>(settings.boolForKey("OverwriteFilterTarget"));
    return 0;
}
