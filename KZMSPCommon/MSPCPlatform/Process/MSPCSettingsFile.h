#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "MSPCUserDefaults.h"

class MSPCLog;

// The settings of a TOML file named "<domain>.toml" in a settings folder, read once when the object is made. A missing
// file, or an empty folder text, is an empty domain. A file that does not parse is an empty domain too and gives the
// log line "WARNING: Settings file could not be read: '<path>' line <n>: <description>", without a line when it
// cannot even be opened, is no file or has more than a mebibyte; values nested deeper than 16 levels do not parse. An
// integer is true unless it is 0. A key whose value is neither a boolean nor an integer is absent and gives "WARNING:
// Setting '<key>' in '<path>' is not a boolean.".
class MSPCSettingsFile final : public MSPCUserDefaults {
public:
    MSPCSettingsFile(const std::string& settingsFolder, std::string_view domain, MSPCLog& log);
    [[nodiscard]] std::optional<bool> boolForKey(std::string_view key) const override;

private:
    std::map<std::string, bool, std::less<>> _values;
};

// The folder of the user's settings: `xdgConfigHome` when it is an absolute path, else ".config" in `home`. Either may
// be a null pointer, as environment variables are; an empty text when neither gives a folder.
[[nodiscard]] std::string MSPCSettingsFolder(const char* xdgConfigHome, const char* home);
