#pragma once

#include "MSPCFileSystem.h"

// Another file system, which is only read: whatever is written fails with "Read-only file system". A base for those
// that add something to it.
class MSPDIReadOnlyFileSystem : public MSPCFileSystem {
public:
    // The other one outlives this one.
    explicit MSPDIReadOnlyFileSystem(const MSPCFileSystem& other) : _other(other) {}

    [[nodiscard]] std::string standardizedPath(std::string_view path) const override;
    [[nodiscard]] std::string absolutePath(std::string_view path) const override;
    [[nodiscard]] bool exists(const std::string& path) const override;
    [[nodiscard]] bool leadsToAnything(const std::string& path) const override;
    [[nodiscard]] bool isDirectory(const std::string& path) const override;
    [[nodiscard]] std::optional<std::vector<std::string>> namesIn(const std::string& folder,
                                                                  std::string* failure = nullptr) const override;
    [[nodiscard]] std::string resolvedPath(const std::string& path) const override;
    [[nodiscard]] bool isSameFile(const std::string& first, const std::string& second) const override;
    [[nodiscard]] std::optional<std::string> readFile(const std::string& path,
                                                      std::string* failure = nullptr) const override;
    [[nodiscard]] std::unique_ptr<MSPCByteSource> openFile(const std::string& path) const override;
    // Never one.
    [[nodiscard]] std::unique_ptr<MSPCNewFolder> newFolder(const std::string& path, bool replacesOld) override;
    [[nodiscard]] std::optional<std::string> createFolder(const std::string& path) override;
    [[nodiscard]] std::optional<std::string> writeAtomically(
        const std::string& path, const std::function<void(MSPCByteWriter&)>& produce) override;

private:
    const MSPCFileSystem& _other;
};

// The same with a file whose content was read already, such as that of a pipe, which gives it only once.
class MSPDIFileSystemWithContent final : public MSPDIReadOnlyFileSystem {
public:
    MSPDIFileSystemWithContent(const MSPCFileSystem& other, std::string path, std::string content)
        : MSPDIReadOnlyFileSystem(other), _path(std::move(path)), _content(std::move(content)) {}

    [[nodiscard]] std::optional<std::string> readFile(const std::string& path,
                                                      std::string* failure = nullptr) const override;
    [[nodiscard]] std::unique_ptr<MSPCByteSource> openFile(const std::string& path) const override;

private:
    std::string _path;
    std::string _content;
};
