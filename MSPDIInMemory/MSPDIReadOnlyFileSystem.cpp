#include "MSPDIReadOnlyFileSystem.h"

#include <utility>

namespace {

constexpr const char* readOnly = "Read-only file system";

}  // namespace

std::string MSPDIReadOnlyFileSystem::standardizedPath(std::string_view path) const {
    return _other.standardizedPath(path);
}

std::string MSPDIReadOnlyFileSystem::absolutePath(std::string_view path) const {
    return _other.absolutePath(path);
}

bool MSPDIReadOnlyFileSystem::exists(const std::string& path) const {
    return _other.exists(path);
}

bool MSPDIReadOnlyFileSystem::leadsToAnything(const std::string& path) const {
    return _other.leadsToAnything(path);
}

bool MSPDIReadOnlyFileSystem::isDirectory(const std::string& path) const {
    return _other.isDirectory(path);
}

std::optional<std::vector<std::string>> MSPDIReadOnlyFileSystem::namesIn(const std::string& folder,
                                                                         std::string* failure) const {
    return _other.namesIn(folder, failure);
}

std::string MSPDIReadOnlyFileSystem::resolvedPath(const std::string& path) const {
    return _other.resolvedPath(path);
}

bool MSPDIReadOnlyFileSystem::isSameFile(const std::string& first, const std::string& second) const {
    return _other.isSameFile(first, second);
}

std::optional<std::string> MSPDIReadOnlyFileSystem::readFile(const std::string& path, std::string* failure) const {
    return _other.readFile(path, failure);
}

std::unique_ptr<MSPCByteSource> MSPDIReadOnlyFileSystem::openFile(const std::string& path) const {
    return _other.openFile(path);
}

std::unique_ptr<MSPCNewFolder> MSPDIReadOnlyFileSystem::newFolder(const std::string& /*path*/, bool /*replacesOld*/) {
    return nullptr;
}

std::optional<std::string> MSPDIReadOnlyFileSystem::createFolder(const std::string& /*path*/) {
    return readOnly;
}

std::optional<std::string> MSPDIReadOnlyFileSystem::writeAtomically(
    const std::string& /*path*/, const std::function<void(MSPCByteWriter&)>& /*produce*/) {
    return readOnly;
}

std::optional<std::string> MSPDIFileSystemWithContent::readFile(const std::string& path, std::string* failure) const {
    return path == _path ? _content : MSPDIReadOnlyFileSystem::readFile(path, failure);
}

std::unique_ptr<MSPCByteSource> MSPDIFileSystemWithContent::openFile(const std::string& path) const {
    return path == _path ? std::make_unique<MSPCContentSource>(_content) : MSPDIReadOnlyFileSystem::openFile(path);
}
