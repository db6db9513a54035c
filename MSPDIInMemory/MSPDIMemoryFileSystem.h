#pragma once

#include <map>
#include <string>
#include <string_view>

#include "MSPDIReadOnlyFileSystem.h"

// What becomes of the content that is written into a file system in memory.
enum class MSPDIMemoryKeeping {
    Content,  // it is kept
    Names,    // only that there is such a file; the content is not even made
};

// Another file system, usually the machine's, that is only read, with a folder of its own in memory that can be written
// to as well. What is written below that folder never reaches the other one; nothing can be written anywhere else.
class MSPDIMemoryFileSystem final : public MSPDIReadOnlyFileSystem {
public:
    // The path of the folder in memory. It hides what the other file system has there.
    static constexpr std::string_view Folder = "/(in memory)";

    explicit MSPDIMemoryFileSystem(const MSPCFileSystem& readOnly, MSPDIMemoryKeeping keeping)
        : MSPDIReadOnlyFileSystem(readOnly), _keeping(keeping) {}

    // Puts a file with all its folders below `Folder`.
    void addFile(const std::string& path, std::string content);
    // The same with content that outlives this object and is not copied.
    void lendFile(const std::string& path, std::string_view content);
    // The files below a folder in memory with their contents, by their paths from there; the folder keeps none of them.
    [[nodiscard]] std::map<std::string, std::string> takeFilesBelow(const std::string& folder);

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
    [[nodiscard]] std::unique_ptr<MSPCNewFolder> newFolder(const std::string& path, bool replacesOld) override;
    [[nodiscard]] std::optional<std::string> createFolder(const std::string& path) override;
    [[nodiscard]] std::optional<std::string> writeAtomically(
        const std::string& path, const std::function<void(MSPCByteWriter&)>& produce) override;

private:
    using Files = std::map<std::string, std::string>;  // by their paths; folders are there as far as files are in them
    class NewFolder;

    [[nodiscard]] static std::optional<std::string> contentOf(const Files& files, const std::string& path,
                                                              std::string* failure);
    // None where there is no such file in memory.
    [[nodiscard]] std::optional<std::string_view> viewOf(const std::string& path) const;
    void keep(Files& files, const std::string& path, const std::function<void(MSPCByteWriter&)>& produce) const;

    MSPDIMemoryKeeping _keeping;
    Files _files;
    std::map<std::string, std::string_view> _lent;  // contents of those that stand empty among the files
};
