#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "MSPCFileSystem.h"

namespace {

// A user's home folder; empty when it is not known. An empty name is the user who runs the program.
std::string homeFolder(const std::string& user) {
    if (user.empty()) {
        const char* home = std::getenv("HOME");
        if (home && *home) {
            return home;
        }
    }
    const auto* entry = user.empty() ? ::getpwuid(::getuid()) : ::getpwnam(user.c_str());
    return entry && entry->pw_dir ? entry->pw_dir : "";
}

std::string withHomeFolder(std::string_view path) {
    if (!path.starts_with('~')) {
        return std::string(path);
    }
    const auto end = std::min(path.find('/'), path.size());
    auto home = homeFolder(std::string(path.substr(1, end - 1)));
    return home.empty() ? std::string(path) : home.append(path.substr(end));
}

std::string inCurrentFolder(const std::string& path) {
    std::error_code error;
    const auto current = std::filesystem::current_path(error);
    return current.native() + "/" + path;
}

// At the front of a relative path ".." components stay: what they lead to is not known.
std::vector<std::string_view> resolvedComponents(std::string_view path, bool isAbsolute) {
    std::vector<std::string_view> components;
    while (!path.empty()) {
        const auto end = std::min(path.find('/'), path.size());
        const auto component = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (component.empty() || component == ".") {
            continue;
        }
        if (component != "..") {
            components.push_back(component);
        } else if (!components.empty() && components.back() != "..") {
            components.pop_back();
        } else if (!isAbsolute) {
            components.push_back(component);
        }
    }
    return components;
}

}  // namespace

std::string MSPCDiskFileSystem::standardizedPath(std::string_view path) const {
    if (path.empty()) {
        return {};
    }
    const auto whole = withHomeFolder(path);
    const bool isAbsolute = whole.starts_with('/');
    std::string result;
    for (const auto component : resolvedComponents(whole, isAbsolute)) {
        result.append(isAbsolute || !result.empty() ? "/" : "").append(component);
    }
    if (result.empty()) {
        return isAbsolute ? "/" : ".";
    }
    return result;
}

std::string MSPCDiskFileSystem::absolutePath(std::string_view path) const {
    const auto standardized = standardizedPath(path);
    const bool isRelative = !standardized.empty() && !standardized.starts_with('/');
    return isRelative ? standardizedPath(inCurrentFolder(standardized)) : standardized;
}
