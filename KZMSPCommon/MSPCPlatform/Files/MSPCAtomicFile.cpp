#include "MSPCAtomicFile.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdio>
#include <utility>

namespace {

constexpr std::size_t blockSize = 64 * 1024;

}  // namespace

MSPCAtomicFile::MSPCAtomicFile(int folder, std::string name) : _folder(folder), _name(std::move(name)) {
    _collected.reserve(blockSize);
    _error = _temporary.createUnderTemporaryName(_folder, [this](const char* temporary) {
        _file = MSPCFileDescriptor(::openat(_folder, temporary, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        return _file.isOpen() ? 0 : errno;
    });
}

void MSPCAtomicFile::write(std::string_view bytes) {
    if (_collected.size() + bytes.size() <= blockSize) {
        _collected.append(bytes);
        return;
    }
    writeOut(_collected);
    _collected.assign(bytes.size() < blockSize ? bytes : std::string_view());
    if (_collected.empty()) {
        writeOut(bytes);
    }
}

void MSPCAtomicFile::writeOut(std::string_view bytes) {
    if (_error == 0) {
        _error = _file.write(bytes);
    }
}

std::optional<std::string> MSPCAtomicFile::commit() {
    return finishedBy(
        [this] { return ::renameat(_folder, _temporary.path().c_str(), _folder, _name.c_str()) == 0 ? 0 : errno; });
}

std::optional<std::string> MSPCAtomicFile::commitNew(bool& isTaken) {
    int error = 0;
    auto failure = finishedBy([&] { return error = takeFreeName(); });
    isTaken = error == EEXIST;
    return failure;
}

std::optional<std::string> MSPCAtomicFile::finishedBy(const std::function<int()>& takeName) {
    writeOut(_collected);
    _collected.clear();
    // Deliberate: the content need not be on the disk before it gets its name. Waiting for the disk takes several times
    // as long as all the rest of a small import, so what was written is brought there once, when the run ends.
    if (const int error = _file.close(); _error == 0) {
        _error = error;
    }
    if (_error == 0) {
        _error = takeName();
    }
    if (_error != 0) {
        return MSPCSystemErrorText(_error);
    }
    _temporary.finish();
    return std::nullopt;
}

// Where the file system knows no renaming to a free name, making an empty file decides who has it.
int MSPCAtomicFile::takeFreeName() const {
    const auto* temporary = _temporary.path().c_str();
    if (::renameat2(_folder, temporary, _folder, _name.c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) {
        return errno;
    }
    const MSPCFileDescriptor taken(::openat(_folder, _name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    return taken.isOpen() && ::renameat(_folder, temporary, _folder, _name.c_str()) == 0 ? 0 : errno;
}
