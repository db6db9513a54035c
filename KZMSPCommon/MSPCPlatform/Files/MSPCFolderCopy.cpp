#include "MSPCFolderCopy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "MSPCFileDescriptor.h"
#include "MSPCUnfinishedItem.h"

namespace fs = std::filesystem;

namespace {

using Failure = std::optional<std::string>;

Failure failureAt(const std::string& path, int error) {
    return error == 0 ? std::nullopt : Failure("'" + path + "': " + MSPCSystemErrorText(error));
}

int copyBytes(const MSPCFileDescriptor& source, const MSPCFileDescriptor& target, std::size_t size) {
    std::array<char, 8 * 1024> buffer;  // the stack may be small
    for (std::size_t count = 1; size > 0 && count > 0; size -= count) {
        int error = source.read(buffer.data(), std::min(buffer.size(), size), count);
        error = error != 0 ? error : target.write({buffer.data(), count});
        if (error != 0) {
            return error;
        }
    }
    return 0;
}

int copyFile(const std::string& from, int folder, const char* name, unsigned mode) {
    // What was a file when the folder was listed may be a pipe by now; opening it must not wait for a writer.
    const MSPCFileDescriptor source(::open(from.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!source.isOpen() || ::fstat(source.number(), &status) != 0) {
        return errno;
    }
    if (!S_ISREG(status.st_mode)) {
        return EINVAL;
    }
    MSPCFileDescriptor target(::openat(folder, name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode | 0600U));
    if (!target.isOpen()) {
        return errno;
    }
    const int error = copyBytes(source, target, static_cast<std::size_t>(status.st_size));
    return error != 0 ? error : target.close();
}

int copyLink(const std::string& from, int folder, const char* name) {
    std::error_code error;
    const auto target = fs::read_symlink(from, error);
    if (error) {
        return error.value();
    }
    return ::symlinkat(target.c_str(), folder, name) == 0 ? 0 : errno;
}

}  // namespace

MSPCFolderCopy::MSPCFolderCopy(std::string from) : _from(std::move(from)) {
    while (_from.size() > 1 && _from.ends_with('/')) {
        _from.pop_back();
    }
}

std::optional<std::string> MSPCFolderCopy::list() {
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
        // The new folder may lie inside the one that is copied.
        if (MSPCIsHiddenName(entry->path().filename().native())) {
            entry.disable_recursion_pending();
            continue;
        }
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

std::optional<std::string> MSPCFolderCopy::copyInto(int target) {
    for (std::size_t index = 1; index < _items.size(); ++index) {
        if (const int error = copyItem(_items[index], target); error != 0) {
            return failureAt(_from + _items[index].name, error);
        }
    }
    _above.clear();
    return std::nullopt;
}

int MSPCFolderCopy::copyItem(const Item& item, int target) {
    const auto slash = item.name.rfind('/');
    const int parent = folderOf(item.name.substr(0, slash), target);
    const auto name = item.name.substr(slash + 1);
    switch (item.type) {
        case fs::file_type::directory:
            return makeFolder(item, parent, name.c_str());
        case fs::file_type::symlink:
            return copyLink(_from + item.name, parent, name.c_str());
        default:
            return copyFile(_from + item.name, parent, name.c_str(), item.mode);
    }
}

int MSPCFolderCopy::makeFolder(const Item& item, int parent, const char* name) {
    if (::mkdirat(parent, name, item.mode | 0700U) != 0) {
        return errno;
    }
    MSPCFileDescriptor folder(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    const int error = folder.isOpen() ? 0 : errno;
    _above.push_back({item.name, std::move(folder)});
    return error;
}

int MSPCFolderCopy::folderOf(const std::string& name, int target) {
    while (!_above.empty() && _above.back().name != name) {
        _above.pop_back();
    }
    return _above.empty() ? target : _above.back().folder.number();
}
