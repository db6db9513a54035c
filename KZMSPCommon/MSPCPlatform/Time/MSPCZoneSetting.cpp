#include "MSPCZoneSetting.h"

#include <filesystem>
#include <system_error>

#include "MSPCLocalTimes.h"
#include "MSPCRegex.h"

namespace {

constexpr const char* UTC = "UTC0";
// Files of zones have some thousand bytes; the numbers in a damaged one may ask for thousands of millions.
constexpr std::uintmax_t LargestFile = 1'048'576;
// A file's header has as much. What the system shows as a file of no size (/proc/kmsg) may keep its reader waiting.
constexpr std::uintmax_t SmallestFile = 44;
constexpr std::size_t LongestRule = 200;

// A rule as POSIX defines it: standard time and its offset west of Greenwich, summer time, and from when to when. None
// when the text is no rule. Where it does not say when, what the C library answers depends on the zones that it has
// read before, so its documented default is named: from the second Sunday of March to the first of November.
std::optional<std::string> settingOfRule(std::string_view text) {
    constexpr std::size_t summer = 4;
    constexpr std::size_t changes = 9;
    static const MSPCRegex rule([] {
        const std::string name = "([[:alpha:]]{3,}|<[[:alnum:]+-]{3,}>)";
        const std::string minutes = "(:[0-9]{1,2}(:[0-9]{1,2})?)?";
        const auto offset = "[+-]?[0-9]{1,2}" + minutes;
        const std::string day = "(J[0-9]{1,3}|[0-9]{1,3}|M(0?[1-9]|1[0-2])\\.[1-5]\\.[0-6])";
        const auto change = "," + day + "(/[+-]?[0-9]{1,3}" + minutes + ")?";
        return "^" + name + offset + "(" + name + "(" + offset + ")?(" + change + change + ")?)?$";
    }());
    const auto found = text.size() <= LongestRule ? rule.firstMatch(text, changes + 1) : std::nullopt;
    if (!found) {
        return std::nullopt;
    }
    return std::string(text) + ((*found)[summer] && !(*found)[changes] ? ",M3.2.0,M11.1.0" : "");
}

// The zone in a file, when the C library takes it for one.
std::optional<std::string> settingOfFile(const std::string& path) {
    std::error_code error;
    const auto size = std::filesystem::is_regular_file(path, error) ? std::filesystem::file_size(path, error) : 0;
    if (error || size < SmallestFile || size > LargestFile) {
        return std::nullopt;
    }
    auto setting = ":" + path;
    return MSPCLocalTimes(setting).areKnown() ? std::optional(std::move(setting)) : std::nullopt;
}

std::string pathOfName(std::string_view name, const MSPCZoneFiles& files) {
    return name.starts_with('/') ? std::string(name) : files.database + "/" + std::string(name);
}

}  // namespace

MSPCZoneFiles MSPCZoneFiles::fromEnvironment(const char* tzdir) {
    MSPCZoneFiles files;
    if (tzdir != nullptr && *tzdir != '\0') {
        // The C library would look for a relative path in the database once more.
        std::error_code error;
        const auto database = std::filesystem::absolute(tzdir, error);
        files.database = error ? std::string(tzdir) : database.string();
    }
    return files;
}

std::optional<std::string> MSPCZoneSettingNamed(std::string_view name, const MSPCZoneFiles& files) {
    return name.empty() || name.find('\0') != std::string_view::npos ? std::nullopt
                                                                     : settingOfFile(pathOfName(name, files));
}

std::optional<std::string> MSPCZoneSettingOf(const char* tz, const MSPCZoneFiles& files) {
    if (tz == nullptr) {
        return settingOfFile(files.machineZone);
    }
    std::string_view value = tz;
    value.remove_prefix(value.starts_with(':') ? 1 : 0);
    if (value.empty()) {
        return UTC;
    }
    // A file goes before a rule. One that cannot be read is never left to the C library, whatever its name looks like.
    std::error_code error;
    if (std::filesystem::exists(pathOfName(value, files), error)) {
        return MSPCZoneSettingNamed(value, files);
    }
    if (auto rule = settingOfRule(value)) {
        return rule;
    }
    return value == "UTC" ? std::optional<std::string>(UTC) : std::nullopt;
}
