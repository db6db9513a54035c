#include "MSPDIMemoryFileSystem.h"

#include <utility>

#include "MSPCStringSink.h"

namespace {

constexpr std::string_view nothingThere = "No such file or directory";
constexpr std::string_view readOnlyPlace = "Read-only file system";

bool isBelow(std::string_view path, std::string_view folder) {
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

bool isInMemory(std::string_view path) {
    return path == MSPDIMemoryFileSystem::Folder || isBelow(path, MSPDIMemoryFileSystem::Folder);
}

}  // namespace

void MSPDIMemoryFileSystem::addFile(const std::string& path, std::string content) {
    _files[path] = std::move(content);
}

std::map<std::string, std::string> MSPDIMemoryFileSystem::takeFilesBelow(const std::string& folder) {
    std::map<std::string, std::string> taken;
    for (auto file = _files.begin(); file != _files.end();) {
        if (isBelow(file->first, folder)) {
            taken[file->first.substr(folder.size() + 1)] = std::move(file->second);
            file = _files.erase(file);
        } else {
            ++file;
        }
    }
    return taken;
}

std::string MSPDIMemoryFileSystem::standardizedPath(std::string_view path) const {
    return isInMemory(path) ? std::string(path) : _readOnly.standardizedPath(path);
}

bool MSPDIMemoryFileSystem::exists(const std::string& path) const {
    return isInMemory(path) ? _files.contains(path) || isDirectory(path) : _readOnly.exists(path);
}

bool MSPDIMemoryFileSystem::isDirectory(const std::string& path) const {
    if (!isInMemory(path)) {
        return _readOnly.isDirectory(path);
    }
    const auto below = _files.lower_bound(path + "/");
    return path == Folder || (below != _files.end() && isBelow(below->first, path));
}

std::string MSPDIMemoryFileSystem::resolvedPath(const std::string& path) const {
    if (!isInMemory(path)) {
        return _readOnly.resolvedPath(path);
    }
    return exists(path) ? path : std::string();
}

bool MSPDIMemoryFileSystem::isSameFile(const std::string& first, const std::string& second) const {
    if (!isInMemory(first) && !isInMemory(second)) {
        return _readOnly.isSameFile(first, second);
    }
    return first == second && exists(first);
}

std::optional<std::string> MSPDIMemoryFileSystem::readFile(const std::string& path, std::string* failure) const {
    if (!isInMemory(path)) {
        return _readOnly.readFile(path, failure);
    }
    const auto file = _files.find(path);
    if (file == _files.end() && failure != nullptr) {
        *failure = nothingThere;
    }
    return file == _files.end() ? std::nullopt : std::optional(file->second);
}

std::unique_ptr<MSPCByteSource> MSPDIMemoryFileSystem::openFile(const std::string& path) const {
    return isInMemory(path) ? MSPCFileSystem::openFile(path) : _readOnly.openFile(path);
}

std::optional<std::string> MSPDIMemoryFileSystem::copyFolder(const std::string& from, const std::string& to,
                                                             bool* existedAlready) {
    const bool isTaken = exists(to);
    if (existedAlready != nullptr) {
        *existedAlready = isTaken;
    }
    if (isTaken) {
        return "File exists";
    }
    if (!isInMemory(from) || !isInMemory(to)) {
        return std::string(readOnlyPlace);
    }
    if (!isDirectory(from)) {
        return std::string(nothingThere);
    }
    std::map<std::string, std::string> copies;
    for (const auto& [path, content] : _files) {
        if (isBelow(path, from)) {
            copies[to + path.substr(from.size())] = content;
        }
    }
    _files.merge(copies);
    return std::nullopt;
}

std::optional<std::string> MSPDIMemoryFileSystem::remove(const std::string& path) {
    if (!isInMemory(path)) {
        return std::string(readOnlyPlace);
    }
    const auto count =
        std::erase_if(_files, [&path](const auto& file) { return file.first == path || isBelow(file.first, path); });
    return count > 0 ? std::nullopt : std::optional(std::string(nothingThere));
}

// An empty folder is not remembered: whatever is written later makes it.
std::optional<std::string> MSPDIMemoryFileSystem::createFolder(const std::string& path) {
    return isInMemory(path) ? std::nullopt : std::optional(std::string(readOnlyPlace));
}

std::optional<std::string> MSPDIMemoryFileSystem::writeAtomically(const std::string& path,
                                                                  const std::function<void(MSPCByteSink&)>& produce) {
    if (!isInMemory(path)) {
        return std::string(readOnlyPlace);
    }
    if (_keeping == MSPDIMemoryKeeping::Names) {
        _files[path].clear();
        return std::nullopt;
    }
    MSPCStringSink sink;
    produce(sink);
    _files[path] = sink.take();
    return std::nullopt;
}
