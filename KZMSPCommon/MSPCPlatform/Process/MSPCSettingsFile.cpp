#include "MSPCSettingsFile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <toml++/toml.h>

#include <cerrno>

#include "MSPCFileDescriptor.h"
#include "MSPCFileSystem.h"
#include "MSPCLog.h"
#include "MSPCPath.h"
#include "MSPCSettingsNesting.h"

namespace {

// Two settings take two lines; what is larger or deeper than this is something else.
constexpr std::size_t largestSize = 1024 * 1024;
constexpr std::size_t deepestLevel = 16;
constexpr int mostWarnings = 10;  // of a file that is about something else

void logUnreadable(MSPCLog& log, const std::string& path, std::size_t line, std::string_view description) {
    log.log("WARNING: Settings file could not be read: '{}' line {}: {}", path, line, description);
}

// What is no file has no line either.
void logUnreadable(MSPCLog& log, const std::string& path, std::string_view description) {
    log.log("WARNING: Settings file could not be read: '{}': {}", path, description);
}

// 0 for a file, else the system's error number. What is not a file could keep the program waiting, or never end.
int errorOfKind(const MSPCFileDescriptor& file) {
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0) {
        return errno;
    }
    if (S_ISDIR(status.st_mode)) {
        return EISDIR;
    }
    return S_ISREG(status.st_mode) ? 0 : ENOTSUP;
}

// The text of a file, and one byte more than the largest size of one that is larger.
std::optional<std::string> boundedText(const std::string& path, std::string& failure) {
    const MSPCFileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    int error = errorOfKind(file);
    std::string text(largestSize + 1, '\0');
    std::size_t used = 0;
    for (std::size_t count = 1; error == 0 && count != 0 && used < text.size(); used += count) {
        count = 0;
        error = file.read(text.data() + used, text.size() - used, count);
    }
    if (error != 0) {
        failure = error == ENOTSUP ? "Not a regular file" : MSPCSystemErrorText(error);
        return std::nullopt;
    }
    text.resize(used);
    return text;
}

toml::table parsedTable(const std::string& path, MSPCLog& log) {
    const MSPCDiskFileSystem fileSystem;
    if (!fileSystem.exists(path)) {
        return {};
    }
    std::string failure;
    const auto text = boundedText(path, failure);
    if (!text) {
        logUnreadable(log, path, failure);
        return {};
    }
    if (text->size() > largestSize) {
        logUnreadable(log, path, fmt::format("more than {} bytes", largestSize));
        return {};
    }
    if (const auto line = MSPCLineNestedDeeperThan(deepestLevel, *text)) {
        logUnreadable(log, path, *line, fmt::format("more than {} levels of nesting", deepestLevel));
        return {};
    }
    try {
        return toml::parse(*text, path);
    } catch (const toml::parse_error& error) {
        logUnreadable(log, path, error.source().begin.line, error.description());
        return {};
    }
}

std::optional<bool> booleanValue(const toml::node& node) {
    if (const auto* boolean = node.as_boolean()) {
        return boolean->get();
    }
    if (const auto* integer = node.as_integer()) {
        return integer->get() != 0;
    }
    return std::nullopt;
}

}  // namespace

MSPCSettingsFile::MSPCSettingsFile(const std::string& settingsFolder, std::string_view domain, MSPCLog& log) {
    if (settingsFolder.empty()) {
        return;
    }
    const auto path = pathByAppendingComponent(settingsFolder, pathByAppendingExtension(domain, "toml"));
    int warnings = 0;
    for (const auto& [key, node] : parsedTable(path, log)) {
        if (const auto value = booleanValue(node)) {
            _values.emplace(key.str(), *value);
        } else if (++warnings <= mostWarnings) {
            log.log("WARNING: Setting '{}' in '{}' is not a boolean.", key.str(), path);
        }
    }
}

std::optional<bool> MSPCSettingsFile::boolForKey(std::string_view key) const {
    const auto found = _values.find(key);
    return found == _values.end() ? std::nullopt : std::optional(found->second);
}

std::string MSPCSettingsFolder(const char* xdgConfigHome, const char* home) {
    if (xdgConfigHome && *xdgConfigHome == '/') {
        return xdgConfigHome;
    }
    return home && *home ? pathByAppendingComponent(home, ".config") : std::string();
}
