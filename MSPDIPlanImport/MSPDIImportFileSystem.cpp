#include "MSPDIImportFileSystem.h"

#include <utility>

#include "MSPCPath.h"
#include "MSPCProgress.h"

// Tells how far a file is read.
class MSPDIImportFileSystem::WatchedSource final : public MSPCByteSource {
public:
    WatchedSource(std::unique_ptr<MSPCByteSource> source, const MSPDIImportFileSystem& fileSystem)
        : _source(std::move(source)), _doing(fileSystem._doing), _progress(fileSystem._progress) {}

    [[nodiscard]] std::optional<std::size_t> read(char* buffer, std::size_t capacity) override {
        const auto count = _source->read(buffer, capacity);
        _done += count.value_or(0);
        _progress.bytesRead(_doing, _done, _source->expectedSize());
        return count;
    }
    [[nodiscard]] std::size_t expectedSize() const override { return _source->expectedSize(); }

private:
    std::unique_ptr<MSPCByteSource> _source;
    std::string _doing;
    MSPCProgress& _progress;
    std::size_t _done = 0;
};

// A new folder of the machine, filled from memory where its content lies there.
class MSPDIImportFileSystem::NewFolder final : public MSPCNewFolder {
public:
    NewFolder(std::unique_ptr<MSPCNewFolder> folder, std::string path, MSPDIImportFileSystem& fileSystem)
        : _folder(std::move(folder)), _path(std::move(path)), _fileSystem(fileSystem) {}

    // A folder in memory has no folders in it.
    [[nodiscard]] std::optional<std::string> copyContent(const std::string& from) override {
        if (!from.starts_with(MSPDIMemoryFileSystem::Folder)) {
            return _folder->copyContent(from);
        }
        std::string failure;
        const auto names = _fileSystem.namesIn(from, &failure);
        for (const auto& name : names.value_or(std::vector<std::string>())) {
            const auto content = _fileSystem._memory.readFile(pathByAppendingComponent(from, name));
            const auto path = pathByAppendingComponent(_path, name);
            if (auto reason =
                    writeAtomically(path, [&](MSPCByteWriter& writer) { writer.write(content.value_or("")); })) {
                return "'" + path + "': " + *reason;
            }
        }
        return names ? std::nullopt : std::optional(failure);
    }
    [[nodiscard]] std::optional<std::string> readFile(const std::string& path,
                                                      std::string* failure = nullptr) const override {
        _fileSystem._hasReadTemplate = true;
        return _folder->readFile(path, failure);
    }
    [[nodiscard]] std::unique_ptr<MSPCByteSource> openFile(const std::string& path) const override {
        _fileSystem._hasReadTemplate = true;
        return _folder->openFile(path);
    }
    [[nodiscard]] std::optional<std::string> writeAtomically(
        const std::string& path, const std::function<void(MSPCByteWriter&)>& produce) override {
        return _folder->writeAtomically(path, produce);
    }
    [[nodiscard]] std::optional<std::string> appear(bool& isTaken) override {
        auto failure = _folder->appear(isTaken);
        if (!failure) {
            _fileSystem._newDocument = _path;
        }
        return failure;
    }
    void setPath(const std::string& path) override {
        _path = path;
        _folder->setPath(path);
    }
    [[nodiscard]] std::string remainsOfReplaced() const override { return _folder->remainsOfReplaced(); }

private:
    std::unique_ptr<MSPCNewFolder> _folder;
    std::string _path;
    MSPDIImportFileSystem& _fileSystem;
};

std::unique_ptr<MSPCByteSource> MSPDIImportFileSystem::openFile(const std::string& path) const {
    auto source = _memory.openFile(path);
    return source ? std::make_unique<WatchedSource>(std::move(source), *this) : nullptr;
}

std::unique_ptr<MSPCNewFolder> MSPDIImportFileSystem::newFolder(const std::string& path, bool replacesOld) {
    auto folder = _machine.newFolder(path, replacesOld);
    return folder ? std::make_unique<NewFolder>(std::move(folder), path, *this) : nullptr;
}

std::optional<std::string> MSPDIImportFileSystem::createFolder(const std::string& path) {
    return _machine.createFolder(path);
}

std::optional<std::string> MSPDIImportFileSystem::writeAtomically(const std::string& path,
                                                                  const std::function<void(MSPCByteWriter&)>& produce) {
    return _machine.writeAtomically(path, produce);
}
