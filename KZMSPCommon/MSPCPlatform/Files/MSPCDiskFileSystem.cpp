#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "MSPCAtomicFile.h"
#include "MSPCFileDescriptor.h"
#include "MSPCFileSystem.h"
#include "MSPCFilesIn.h"
#include "MSPCLeftovers.h"
#include "MSPCNewDiskFolder.h"
#include "MSPCPath.h"

namespace fs = std::filesystem;

namespace {

// A path with a zero byte would reach the system cut off there and name something else.
bool isCutOff(const std::string& path) {
    return path.find('\0') != std::string::npos;
}

std::optional<struct stat> statusOf(const std::string& path) {
    struct stat status {};
    const bool found = !isCutOff(path) && ::stat(path.c_str(), &status) == 0;
    return found ? std::optional(status) : std::nullopt;
}

// The system would let a file take the place of "/dev/null", for everybody.
bool leadsToDevice(const std::string& path) {
    const auto status = statusOf(path);
    return status && !S_ISREG(status->st_mode) && !S_ISDIR(status->st_mode);
}

int readAll(const MSPCFileDescriptor& file, std::string& bytes) {
    struct stat status {};
    if (::fstat(file.number(), &status) != 0) {
        return errno;
    }
    if (S_ISDIR(status.st_mode)) {
        return EISDIR;
    }
    // A device may never end (/dev/zero) or do things when it is read.
    if (!S_ISREG(status.st_mode) && !S_ISFIFO(status.st_mode)) {
        return ENOTSUP;
    }
    // A pipe may never end either.
    constexpr std::size_t mostOfPipe = 64 * 1024 * 1024;
    // One byte more than a file's size, so that its end shows without growing. Pipes tell no size.
    constexpr std::size_t smallest = 64 * 1024;
    bytes.resize(std::max(smallest, static_cast<std::size_t>(status.st_size) + 1));
    std::size_t used = 0;
    for (std::size_t count = 1; count != 0; used += count) {
        if (S_ISFIFO(status.st_mode) && used > mostOfPipe) {
            return EFBIG;
        }
        if (used == bytes.size()) {
            bytes.resize(2 * bytes.size());
        }
        if (const int error = file.read(bytes.data() + used, bytes.size() - used, count); error != 0) {
            return error;
        }
    }
    bytes.resize(used);
    return 0;
}

int readWhole(int folder, const std::string& path, MSPCLinks links, std::string& bytes) {
    if (isCutOff(path)) {
        return ENOENT;
    }
    // Opening a pipe must not wait for somebody to write to it.
    const int flags = O_RDONLY | O_NONBLOCK | O_CLOEXEC | (links == MSPCLinks::AreFollowed ? 0 : O_NOFOLLOW);
    const MSPCFileDescriptor file(::openat(folder, path.c_str(), flags));
    return file.isOpen() ? readAll(file, bytes) : errno;
}

std::optional<std::string> failureText(const std::error_code& error) {
    return error ? std::optional(error.message()) : std::nullopt;
}

// A user's home folder; empty when it is not known. An empty name is the user who runs the program.
std::string homeFolder(const std::string& user) {
    if (user.empty()) {
        const char* home = std::getenv("HOME");
        if (home && *home) {
            return home;
        }
    }
    const auto* entry = user.empty() ? ::getpwuid(::getuid()) : ::getpwnam(user.c_str());
    return entry && entry->pw_dir ? entry->pw_dir : "";
}

std::string withHomeFolder(std::string_view path) {
    if (!path.starts_with('~')) {
        return std::string(path);
    }
    const auto end = std::min(path.find('/'), path.size());
    auto home = homeFolder(std::string(path.substr(1, end - 1)));
    return home.empty() ? std::string(path) : home.append(path.substr(end));
}

std::string inCurrentFolder(const std::string& path) {
    std::error_code error;
    const auto current = fs::current_path(error);
    return current.native() + "/" + path;
}

// At the front of a relative path ".." components stay: what they lead to is not known.
std::vector<std::string_view> resolvedComponents(std::string_view path, bool isAbsolute) {
    std::vector<std::string_view> components;
    while (!path.empty()) {
        const auto end = std::min(path.find('/'), path.size());
        const auto component = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (component.empty() || component == ".") {
            continue;
        }
        const bool leadsUp = component == "..";
        if (leadsUp && !components.empty() && components.back() != "..") {
            components.pop_back();
        } else if (!leadsUp || !isAbsolute) {
            components.push_back(component);
        }
    }
    return components;
}

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

bool MSPCDiskFileSystem::exists(const std::string& path) const {
    struct stat status {};
    return !isCutOff(path) && ::lstat(path.c_str(), &status) == 0;
}

bool MSPCDiskFileSystem::leadsToAnything(const std::string& path) const {
    return statusOf(path).has_value();
}

bool MSPCDiskFileSystem::isDirectory(const std::string& path) const {
    const auto status = statusOf(path);
    return status && S_ISDIR(status->st_mode);
}

std::optional<std::vector<std::string>> MSPCDiskFileSystem::namesIn(const std::string& folder,
                                                                    std::string* failure) const {
    std::error_code error =
        isCutOff(folder) ? std::make_error_code(std::errc::no_such_file_or_directory) : std::error_code();
    std::vector<std::string> names;
    auto entry = error ? fs::directory_iterator() : fs::directory_iterator(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        names.push_back(entry->path().filename().native());
    }
    if (error) {
        if (failure != nullptr) {
            *failure = error.message();
        }
        return std::nullopt;
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string MSPCDiskFileSystem::resolvedPath(const std::string& path) const {
    if (isCutOff(path)) {
        return {};
    }
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr), &std::free);
    return resolved ? std::string(resolved.get()) : std::string();
}

bool MSPCDiskFileSystem::isSameFile(const std::string& first, const std::string& second) const {
    const auto one = statusOf(first);
    const auto other = statusOf(second);
    return one && other && one->st_dev == other->st_dev && one->st_ino == other->st_ino;
}

std::optional<std::string> MSPCDiskFileSystem::readFile(const std::string& path, std::string* failure) const {
    return MSPCReadFileIn(AT_FDCWD, path, failure);
}

std::optional<std::string> MSPCReadFileIn(int folder, const std::string& path, std::string* failure, MSPCLinks links) {
    std::string bytes;
    int error = 0;
    try {
        error = readWhole(folder, path, links, bytes);
    } catch (const std::bad_alloc&) {
        error = ENOMEM;  // a file too large for the memory is one more file that cannot be read
    } catch (const std::length_error&) {
        error = EFBIG;
    }
    if (error == 0) {
        return bytes;
    }
    if (failure) {
        *failure = MSPCSystemErrorText(error);
    }
    return std::nullopt;
}

// Once for each folder: its list may be as long as that of the plans to come.
void MSPCDiskFileSystem::removeLeftoversBeside(const std::string& path) {
    if (isCutOff(path) || !_clearedFolders.insert(pathByDeletingLastComponent(path)).second) {
        return;
    }
    if (const MSPCFileDescriptor folder(MSPCOpenFolderOf(path)); folder.isOpen()) {
        MSPCRemoveLeftovers(folder.number());
    }
}

std::unique_ptr<MSPCNewFolder> MSPCDiskFileSystem::newFolder(const std::string& path, bool replacesOld) {
    removeLeftoversBeside(path);
    auto folder = std::make_unique<MSPCNewDiskFolder>(path, replacesOld);
    return folder->isNameTaken() ? nullptr : std::move(folder);
}

int MSPCOpenFolderOf(const std::string& path) {
    const auto folder = pathByDeletingLastComponent(path);
    return ::open(folder.empty() ? "." : folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
}

std::optional<std::string> MSPCDiskFileSystem::createFolder(const std::string& path) {
    if (isCutOff(path)) {
        return MSPCSystemErrorText(ENOENT);
    }
    std::error_code error;
    fs::create_directories(path, error);
    return failureText(error);
}

void MSPCDiskFileSystem::removeEmptyFolder(const std::string& path) {
    if (!isCutOff(path)) {
        static_cast<void>(::rmdir(path.c_str()));
    }
}

std::optional<std::string> MSPCDiskFileSystem::writeAtomically(const std::string& path,
                                                               const std::function<void(MSPCByteWriter&)>& produce) {
    if (isCutOff(path)) {
        return MSPCSystemErrorText(ENOENT);
    }
    const MSPCFileDescriptor folder(MSPCOpenFolderOf(path));
    if (!folder.isOpen()) {
        return MSPCSystemErrorText(errno);
    }
    if (leadsToDevice(path)) {
        return "It is a device, a pipe or a socket, which no file replaces";
    }
    MSPCAtomicFile file(folder.number(), lastPathComponent(path));
    produce(file);
    return file.commit();
}

std::optional<std::string> MSPCDiskFileSystem::synchronize(const std::set<std::string>& folders) {
    // A thousand bundles mostly lie on one file system, which is done with in one go.
    std::set<dev_t> done;
    std::optional<std::string> failure;
    for (const auto& path : folders) {
        const MSPCFileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        struct stat status {};
        int error = folder.isOpen() && ::fstat(folder.number(), &status) == 0 ? 0 : errno;
        if (error == 0 && done.insert(status.st_dev).second) {
            error = folder.syncFileSystem();
        }
        if (error != 0 && !failure) {
            failure = "'" + path + "': " + MSPCSystemErrorText(error);
        }
    }
    return failure;
}

std::string MSPCDiskFileSystem::standardizedPath(std::string_view path) const {
    if (path.empty()) {
        return {};
    }
    const auto whole = withHomeFolder(path);
    const bool isAbsolute = whole.starts_with('/');
    std::string result;
    for (const auto component : resolvedComponents(whole, isAbsolute)) {
        result.append(isAbsolute || !result.empty() ? "/" : "").append(component);
    }
    if (result.empty()) {
        return isAbsolute ? "/" : ".";
    }
    return result;
}

std::string MSPCDiskFileSystem::absolutePath(std::string_view path) const {
    const auto standardized = standardizedPath(path);
    const bool isRelative = !standardized.empty() && !standardized.starts_with('/');
    return isRelative ? standardizedPath(inCurrentFolder(standardized)) : standardized;
}

std::unique_ptr<MSPCByteSource> MSPCDiskFileSystem::openFile(const std::string& path) const {
    // Only a regular file can be read a second time, should that be needed. Anything else is not even opened: the
    // writer of a pipe would take that for its reader.
    const auto found = statusOf(path);
    if (!found || !S_ISREG(found->st_mode)) {
        return nullptr;
    }
    // Should a pipe have taken the file's place, opening it must not wait for somebody to write to it.
    MSPCFileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return nullptr;
    }
    return std::make_unique<DiskSource>(std::move(file), static_cast<std::size_t>(status.st_size));
}
