// The two ways of reading a file in pieces: from the disk, and from content that is there as a whole.
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "MSPCFileDescriptor.h"
#include "MSPCFileSystem.h"

namespace {

class ContentSource final : public MSPCByteSource {
public:
    explicit ContentSource(std::string content) : _content(std::move(content)) {}

    [[nodiscard]] std::optional<std::size_t> read(char* buffer, std::size_t capacity) override {
        const auto count = std::min(capacity, _content.size() - _at);
        std::memcpy(buffer, _content.data() + _at, count);
        _at += count;
        return count;
    }
    [[nodiscard]] std::size_t expectedSize() const override { return _content.size(); }

private:
    std::string _content;
    std::size_t _at = 0;
};

class DiskSource final : public MSPCByteSource {
public:
    DiskSource(MSPCFileDescriptor file, std::size_t size) : _file(std::move(file)), _size(size) {}

    [[nodiscard]] std::optional<std::size_t> read(char* buffer, std::size_t capacity) override {
        std::size_t count = 0;
        return _file.read(buffer, capacity, count) == 0 ? std::optional(count) : std::nullopt;
    }
    [[nodiscard]] std::size_t expectedSize() const override { return _size; }

private:
    MSPCFileDescriptor _file;
    std::size_t _size;
};

}  // namespace

std::unique_ptr<MSPCByteSource> MSPCFileReader::openFile(const std::string& path) const {
    auto content = readFile(path);
    return content ? std::make_unique<ContentSource>(std::move(*content)) : nullptr;
}

std::unique_ptr<MSPCByteSource> MSPCDiskFileSystem::openFile(const std::string& path) const {
    if (path.find('\0') != std::string::npos) {
        return nullptr;
    }
    // Opening a pipe must not wait for somebody to write to it.
    // Only a regular file can be read a second time, should that be needed. Anything else is not even opened: the
    // writer of a pipe would take that for its reader.
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return nullptr;
    }
    MSPCFileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return nullptr;
    }
    return std::make_unique<DiskSource>(std::move(file), static_cast<std::size_t>(status.st_size));
}
