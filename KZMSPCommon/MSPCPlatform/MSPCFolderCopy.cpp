#include "MSPCFolderCopy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "MSPCFileDescriptor.h"
#include "MSPCTemporaryName.h"

namespace fs = std::filesystem;

namespace {

using Failure = std::optional<std::string>;

Failure failureAt(const std::string& path, int error) {
    return error == 0 ? std::nullopt : Failure("'" + path + "': " + MSPCSystemErrorText(error));
}

int copyBytes(const MSPCFileDescriptor& source, const MSPCFileDescriptor& target) {
    std::array<char, 8 * 1024> buffer;  // the stack may be small
    for (std::size_t count = 0;;) {
        int error = source.read(buffer.data(), buffer.size(), count);
        if (error != 0 || count == 0) {
            return error;
        }
        error = target.write({buffer.data(), count});
        if (error != 0) {
            return error;
        }
    }
}

int copyFile(const std::string& from, const std::string& to, unsigned mode) {
    // What was a file when the folder was listed may be a pipe by now; opening it must not wait for a writer.
    const MSPCFileDescriptor source(::open(from.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!source.isOpen() || ::fstat(source.number(), &status) != 0) {
        return errno;
    }
    if (!S_ISREG(status.st_mode)) {
        return EINVAL;
    }
    MSPCFileDescriptor target(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode | 0600U));
    if (!target.isOpen()) {
        return errno;
    }
    const int error = copyBytes(source, target);
    return error != 0 ? error : target.close();
}

int copyLink(const std::string& from, const std::string& to) {
    std::error_code error;
    fs::copy_symlink(from, to, error);
    return error.value();
}

}  // namespace

MSPCFolderCopy::MSPCFolderCopy(std::string from, std::string to) : _from(std::move(from)), _to(std::move(to)) {
    while (_from.size() > 1 && _from.ends_with('/')) {
        _from.pop_back();
    }
}

std::optional<std::string> MSPCFolderCopy::run() {
    // Listed before anything is made: the new folder may lie inside the one that is copied.
    for (const auto step : {&MSPCFolderCopy::listItems, &MSPCFolderCopy::takeName, &MSPCFolderCopy::makeStage}) {
        if (auto failure = (this->*step)()) {
            return failure;
        }
    }
    if (auto failure = copyItems()) {
        return failure;
    }
    return giveName();
}

std::optional<std::string> MSPCFolderCopy::listItems() {
    std::error_code error;
    const auto root = fs::status(_from, error);
    if (error || !fs::is_directory(root)) {
        return failureAt(_from, error ? error.value() : ENOTDIR);
    }
    if (auto failure = addItem(_from, root)) {
        return failure;
    }
    auto entry = fs::recursive_directory_iterator(_from, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        const auto status = entry->symlink_status(error);
        if (error) {
            return failureAt(entry->path().native(), error.value());
        }
        if (auto failure = addItem(entry->path().native(), status)) {
            return failure;
        }
    }
    return failureAt(_from, error.value());
}

std::optional<std::string> MSPCFolderCopy::addItem(const std::string& path, const fs::file_status& status) {
    const auto type = status.type();
    if (type != fs::file_type::regular && type != fs::file_type::directory && type != fs::file_type::symlink) {
        return "'" + path + "' is neither a file, a folder nor a link.";
    }
    const auto mode = static_cast<unsigned>(status.permissions() & fs::perms::all);
    _items.push_back({path.substr(_from.size()), type, mode});
    return std::nullopt;
}

std::optional<std::string> MSPCFolderCopy::takeName() {
    const int error = _takenName.create(_to, [](const char* path) { return ::mkdir(path, 0777) == 0 ? 0 : errno; });
    _existedAlready = error == EEXIST;
    return failureAt(_to, error);
}

std::optional<std::string> MSPCFolderCopy::makeStage() {
    const auto mode = _items.front().mode | 0700U;
    const int error = MSPCMakeUnderTemporaryName(
        _to, _stage, [mode](const char* path) { return ::mkdir(path, mode) == 0 ? 0 : errno; });
    return failureAt(_to, error);
}

std::optional<std::string> MSPCFolderCopy::copyItems() const {
    for (std::size_t index = 1; index < _items.size(); ++index) {
        if (const int error = copyItem(_items[index]); error != 0) {
            return failureAt(_from + _items[index].name, error);
        }
    }
    return std::nullopt;
}

int MSPCFolderCopy::copyItem(const Item& item) const {
    const auto target = _stage.path() + item.name;
    switch (item.type) {
        case fs::file_type::directory:
            return ::mkdir(target.c_str(), item.mode | 0700U) == 0 ? 0 : errno;
        case fs::file_type::symlink:
            return copyLink(_from + item.name, target);
        default:
            return copyFile(_from + item.name, target, item.mode);
    }
}

std::optional<std::string> MSPCFolderCopy::giveName() {
    // Renaming onto a folder works only while that folder is empty, so nothing of anybody else's is ever replaced.
    if (std::rename(_stage.path().c_str(), _to.c_str()) != 0) {
        return failureAt(_to, errno);
    }
    _stage.finish();
    _takenName.finish();
    return std::nullopt;
}
