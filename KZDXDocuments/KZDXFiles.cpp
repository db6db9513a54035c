#include "KZDXFiles.h"

#include <utility>

#include "MSPCFileSystem.h"
#include "MSPCFolderFiles.h"
#include "MSPCPath.h"

namespace {

static_assert(KZDXIsLink == MSPCFolderFiles::IsLink);

// The machine's own files can be swapped for links at any moment, and are reached through the open folder.
class OnDisk final : public KZDXFiles {
public:
    OnDisk(const MSPCFileSystem& fileSystem, std::string folder)
        : _fileSystem(fileSystem), _files(folder), _folder(std::move(folder)) {}

    [[nodiscard]] std::optional<std::vector<std::string>> names(std::string& failure) const override {
        return _fileSystem.namesIn(_folder, &failure);
    }
    [[nodiscard]] std::string beginning(const std::string& name, std::size_t size) const override {
        return _files.beginning(name, size);
    }
    [[nodiscard]] std::optional<std::string> read(const std::string& name, std::string& failure) override {
        return _files.read(name, failure);
    }

private:
    const MSPCFileSystem& _fileSystem;
    MSPCFolderFiles _files;
    std::string _folder;
};

// Those of a file system that stands for the machine's.
class InFolder final : public KZDXFiles {
public:
    InFolder(const MSPCFileSystem& fileSystem, std::string folder)
        : _fileSystem(fileSystem), _folder(std::move(folder)) {}

    [[nodiscard]] std::optional<std::vector<std::string>> names(std::string& failure) const override {
        return _fileSystem.namesIn(_folder, &failure);
    }
    [[nodiscard]] std::string beginning(const std::string& name, std::size_t size) const override {
        std::string failure;
        return contentOf(name, failure).value_or("").substr(0, size);
    }
    [[nodiscard]] std::optional<std::string> read(const std::string& name, std::string& failure) override {
        return contentOf(name, failure);
    }

private:
    [[nodiscard]] std::optional<std::string> contentOf(const std::string& name, std::string& failure) const {
        const auto path = pathByAppendingComponent(_fileSystem.resolvedPath(_folder), name);
        if (_fileSystem.exists(path) && _fileSystem.resolvedPath(path) != path) {
            failure = KZDXIsLink;
            return std::nullopt;
        }
        return _fileSystem.readFile(path, &failure);
    }

    const MSPCFileSystem& _fileSystem;
    std::string _folder;
};

class InMemory final : public KZDXFiles {
public:
    explicit InMemory(std::map<std::string, std::string> files) : _files(std::move(files)) {}

    [[nodiscard]] std::optional<std::vector<std::string>> names(std::string& /*failure*/) const override {
        std::vector<std::string> names;
        for (const auto& [name, content] : _files) {
            names.push_back(name);
        }
        return names;
    }
    [[nodiscard]] std::string beginning(const std::string& name, std::size_t size) const override {
        const auto file = _files.find(name);
        return file == _files.end() ? std::string() : file->second.substr(0, size);
    }
    [[nodiscard]] std::optional<std::string> read(const std::string& name, std::string& failure) override {
        auto file = _files.extract(name);
        if (file.empty()) {
            failure = "No such file or directory";
            return std::nullopt;
        }
        return std::move(file.mapped());
    }

private:
    std::map<std::string, std::string> _files;
};

}  // namespace

std::unique_ptr<KZDXFiles> KZDXFilesInFolder(const MSPCFileSystem& fileSystem, std::string folder) {
    if (dynamic_cast<const MSPCDiskFileSystem*>(&fileSystem) != nullptr) {
        return std::make_unique<OnDisk>(fileSystem, std::move(folder));
    }
    return std::make_unique<InFolder>(fileSystem, std::move(folder));
}

std::unique_ptr<KZDXFiles> KZDXFilesInMemory(std::map<std::string, std::string> files) {
    return std::make_unique<InMemory>(std::move(files));
}
