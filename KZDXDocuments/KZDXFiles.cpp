#include "KZDXFiles.h"

#include <system_error>
#include <utility>

#include "MSPCByteStreams.h"
#include "MSPCFileSystem.h"
#include "MSPCPath.h"

namespace {

// A device is not read at all, and a pipe gives its content once: a document is made of files.
std::string failureOfDevices() {
    return std::generic_category().message(static_cast<int>(std::errc::operation_not_supported));
}

class InFolder final : public KZDXFiles {
public:
    InFolder(const MSPCFileSystem& fileSystem, std::string folder)
        : _fileSystem(fileSystem), _folder(std::move(folder)) {}

    [[nodiscard]] std::optional<std::vector<std::string>> names(std::string& failure) const override {
        return _fileSystem.namesIn(_folder, &failure);
    }
    [[nodiscard]] std::string beginning(const std::string& name, std::size_t size) const override {
        const auto source = _fileSystem.openFile(pathByAppendingComponent(_folder, name));
        std::string bytes(size, '\0');
        std::size_t count = 0;
        while (source && count < size) {
            const auto more = source->read(bytes.data() + count, size - count);
            if (more.value_or(0) == 0) {
                break;
            }
            count += *more;
        }
        bytes.resize(count);
        return bytes;
    }
    [[nodiscard]] std::optional<std::string> read(const std::string& name, std::string& failure) override {
        const auto path = pathByAppendingComponent(_folder, name);
        auto content = _fileSystem.readFile(path, &failure);
        if (content ? !_fileSystem.openFile(path) : failure == failureOfDevices()) {
            failure = "no regular file";
            content.reset();
        }
        return content;
    }

private:
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
    return std::make_unique<InFolder>(fileSystem, std::move(folder));
}

std::unique_ptr<KZDXFiles> KZDXFilesInMemory(std::map<std::string, std::string> files) {
    return std::make_unique<InMemory>(std::move(files));
}
