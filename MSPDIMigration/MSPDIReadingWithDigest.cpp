#include "MSPDIReadingWithDigest.h"

#include <utility>

#include "MSPCDigest.h"

// Adds what is read to the digest, which counts at the end only.
class MSPDIReadingWithDigest::Source final : public MSPCByteSource {
public:
    Source(std::unique_ptr<MSPCByteSource> source, std::string& digest)
        : _source(std::move(source)), _digestOfAll(digest) {}

    [[nodiscard]] std::optional<std::size_t> read(char* buffer, std::size_t capacity) override {
        const auto count = _source->read(buffer, capacity);
        if (count && *count > 0) {
            _digest.add({buffer, *count});
        } else if (count && capacity > 0 && _digestOfAll.empty()) {
            _digestOfAll = _digest.inBase64();
        }
        return count;
    }
    [[nodiscard]] std::size_t expectedSize() const override { return _source->expectedSize(); }

private:
    std::unique_ptr<MSPCByteSource> _source;
    std::string& _digestOfAll;
    MSPCSHA256 _digest;
};

std::unique_ptr<MSPCByteSource> MSPDIReadingWithDigest::openFile(const std::string& path) const {
    auto source = MSPDIReadOnlyFileSystem::openFile(path);
    if (!source || path != _plan || !_digest.empty()) {
        return source;
    }
    return std::make_unique<Source>(std::move(source), _digest);
}

std::unique_ptr<MSPCNewFolder> MSPDIReadingWithDigest::newFolder(const std::string& path, bool replacesOld) {
    return _machine.newFolder(path, replacesOld);
}

std::optional<std::string> MSPDIReadingWithDigest::createFolder(const std::string& path) {
    return _machine.createFolder(path);
}

void MSPDIReadingWithDigest::removeEmptyFolder(const std::string& path) {
    _machine.removeEmptyFolder(path);
}

std::optional<std::string> MSPDIReadingWithDigest::writeAtomically(
    const std::string& path, const std::function<void(MSPCByteWriter&)>& produce) {
    return _machine.writeAtomically(path, produce);
}

std::optional<std::string> MSPDIReadingWithDigest::synchronize(const std::set<std::string>& folders) {
    return _machine.synchronize(folders);
}
