#include "MSPDIMemoryFileSystem.h"

#include <set>
#include <utility>

#include "MSPCBytesSource.h"

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
    _lent.erase(path);
}

void MSPDIMemoryFileSystem::lendFile(const std::string& path, std::string_view content) {
    _files[path].clear();
    _lent[path] = content;
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
    return isInMemory(path) ? std::string(path) : MSPDIReadOnlyFileSystem::standardizedPath(path);
}

std::string MSPDIMemoryFileSystem::absolutePath(std::string_view path) const {
    return isInMemory(path) ? std::string(path) : MSPDIReadOnlyFileSystem::absolutePath(path);
}

bool MSPDIMemoryFileSystem::exists(const std::string& path) const {
    return isInMemory(path) ? _files.contains(path) || isDirectory(path) : MSPDIReadOnlyFileSystem::exists(path);
}

bool MSPDIMemoryFileSystem::leadsToAnything(const std::string& path) const {
    return isInMemory(path) ? exists(path) : MSPDIReadOnlyFileSystem::leadsToAnything(path);
}

bool MSPDIMemoryFileSystem::isDirectory(const std::string& path) const {
    if (!isInMemory(path)) {
        return MSPDIReadOnlyFileSystem::isDirectory(path);
    }
    const auto below = _files.lower_bound(path + "/");
    return path == Folder || (below != _files.end() && isBelow(below->first, path));
}

std::optional<std::vector<std::string>> MSPDIMemoryFileSystem::namesIn(const std::string& folder,
                                                                       std::string* failure) const {
    if (!isInMemory(folder)) {
        return MSPDIReadOnlyFileSystem::namesIn(folder, failure);
    }
    if (!isDirectory(folder)) {
        if (failure != nullptr) {
            *failure = nothingThere;
        }
        return std::nullopt;
    }
    std::set<std::string> names;  // the same folder leads to many files
    for (auto file = _files.lower_bound(folder + "/"); file != _files.end() && isBelow(file->first, folder); ++file) {
        const auto rest = std::string_view(file->first).substr(folder.size() + 1);
        names.emplace(rest.substr(0, rest.find('/')));
    }
    return std::vector<std::string>(names.begin(), names.end());
}

std::string MSPDIMemoryFileSystem::resolvedPath(const std::string& path) const {
    if (!isInMemory(path)) {
        return MSPDIReadOnlyFileSystem::resolvedPath(path);
    }
    return exists(path) ? path : std::string();
}

bool MSPDIMemoryFileSystem::isSameFile(const std::string& first, const std::string& second) const {
    if (!isInMemory(first) && !isInMemory(second)) {
        return MSPDIReadOnlyFileSystem::isSameFile(first, second);
    }
    return first == second && exists(first);
}

std::optional<std::string> MSPDIMemoryFileSystem::readFile(const std::string& path, std::string* failure) const {
    if (!isInMemory(path)) {
        return MSPDIReadOnlyFileSystem::readFile(path, failure);
    }
    const auto content = viewOf(path);
    if (!content && failure != nullptr) {
        *failure = nothingThere;
    }
    return content ? std::optional<std::string>(*content) : std::nullopt;
}

std::optional<std::string_view> MSPDIMemoryFileSystem::viewOf(const std::string& path) const {
    if (const auto lent = _lent.find(path); lent != _lent.end()) {
        return lent->second;
    }
    const auto file = _files.find(path);
    return file == _files.end() ? std::nullopt : std::optional<std::string_view>(file->second);
}

std::optional<std::string> MSPDIMemoryFileSystem::contentOf(const Files& files, const std::string& path,
                                                            std::string* failure) {
    const auto file = files.find(path);
    if (file == files.end() && failure != nullptr) {
        *failure = nothingThere;
    }
    return file == files.end() ? std::nullopt : std::optional(file->second);
}

std::unique_ptr<MSPCByteSource> MSPDIMemoryFileSystem::openFile(const std::string& path) const {
    if (!isInMemory(path)) {
        return MSPDIReadOnlyFileSystem::openFile(path);
    }
    const auto content = viewOf(path);
    return content ? std::make_unique<MSPCBytesSource>(*content) : nullptr;
}

// A new folder keeps its files to itself until it appears.
class MSPDIMemoryFileSystem::NewFolder final : public MSPCNewFolder {
public:
    NewFolder(MSPDIMemoryFileSystem& files, std::string path, bool replacesOld)
        : _fileSystem(files), _path(std::move(path)), _replacesOld(replacesOld) {}

    [[nodiscard]] std::optional<std::string> copyContent(const std::string& from) override {
        if (!isInMemory(from) || !isInMemory(_path)) {
            return std::string(readOnlyPlace);
        }
        if (!_fileSystem.isDirectory(from)) {
            return std::string(nothingThere);
        }
        for (const auto& [path, content] : _fileSystem._files) {
            if (isBelow(path, from)) {
                _files[_path + path.substr(from.size())] = content;
            }
        }
        return std::nullopt;
    }
    [[nodiscard]] std::optional<std::string> readFile(const std::string& path,
                                                      std::string* failure = nullptr) const override {
        return contentOf(_files, path, failure);
    }
    [[nodiscard]] std::optional<std::string> writeAtomically(
        const std::string& path, const std::function<void(MSPCByteWriter&)>& produce) override {
        _fileSystem.keep(_files, path, produce);
        return std::nullopt;
    }
    [[nodiscard]] std::optional<std::string> appear(bool& isTaken) override {
        isTaken = !_replacesOld && _fileSystem.exists(_path);
        if (isTaken) {
            return "File exists";
        }
        static_cast<void>(_fileSystem.takeFilesBelow(_path));
        _fileSystem._files.merge(_files);
        return std::nullopt;
    }
    void setPath(const std::string& path) override {
        Files moved;
        for (auto& [old, content] : _files) {
            moved[path + old.substr(_path.size())] = std::move(content);
        }
        _files = std::move(moved);
        _path = path;
        _replacesOld = false;
    }
    [[nodiscard]] std::string remainsOfReplaced() const override { return {}; }

private:
    MSPDIMemoryFileSystem& _fileSystem;
    std::string _path;
    bool _replacesOld;
    Files _files;
};

std::unique_ptr<MSPCNewFolder> MSPDIMemoryFileSystem::newFolder(const std::string& path, bool replacesOld) {
    return exists(path) && !replacesOld ? nullptr : std::make_unique<NewFolder>(*this, path, replacesOld);
}

// An empty folder is not remembered: whatever is written later makes it.
std::optional<std::string> MSPDIMemoryFileSystem::createFolder(const std::string& path) {
    return isInMemory(path) ? std::nullopt : MSPDIReadOnlyFileSystem::createFolder(path);
}

std::optional<std::string> MSPDIMemoryFileSystem::writeAtomically(const std::string& path,
                                                                  const std::function<void(MSPCByteWriter&)>& produce) {
    if (!isInMemory(path)) {
        return MSPDIReadOnlyFileSystem::writeAtomically(path, produce);
    }
    keep(_files, path, produce);
    return std::nullopt;
}

void MSPDIMemoryFileSystem::keep(Files& files, const std::string& path,
                                 const std::function<void(MSPCByteWriter&)>& produce) const {
    MSPCStringWriter writer;
    if (_keeping == MSPDIMemoryKeeping::Content) {
        produce(writer);
    }
    files[path] = writer.take();
}
