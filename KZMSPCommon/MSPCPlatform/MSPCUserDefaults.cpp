#include "MSPCUserDefaults.h"

#include <fmt/format.h>
#include <toml++/toml.h>

#include "MSPCFileSystem.h"
#include "MSPCLog.h"
#include "MSPCPath.h"

namespace {

void logUnreadable(MSPCLog& log, const std::string& path, std::size_t line, std::string_view description) {
    log.log(fmt::format("WARNING: Settings file could not be read: '{}' line {}: {}", path, line, description));
}

toml::table parsedTable(const std::string& path, MSPCLog& log) {
    const MSPCDiskFileSystem fileSystem;
    if (!fileSystem.exists(path)) {
        return {};
    }
    std::string failure;
    const auto text = fileSystem.readFile(path, &failure);
    if (!text) {
        logUnreadable(log, path, 0, failure);
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
    for (const auto& [key, node] : parsedTable(path, log)) {
        if (const auto value = booleanValue(node)) {
            _values.emplace(key.str(), *value);
        } else {
            log.log(fmt::format("WARNING: Setting '{}' in '{}' is not a boolean.", key.str(), path));
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
