#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MSPCByteStreams.h"

// Reads files.
class MSPCFileReader {
public:
    virtual ~MSPCFileReader() = default;

    // All bytes of a file; none when it cannot be read, is a folder or a device, or is a pipe whose writer keeps it
    // waiting for five seconds, or for fifteen altogether, or writes more than 64 MB, with the reason in `failure` if
    // that is given. A pipe without a writer is empty.
    [[nodiscard]] virtual std::optional<std::string> readFile(const std::string& path,
                                                              std::string* failure = nullptr) const = 0;
    // An open file to be read in pieces; a null pointer when it cannot be read. What does not read in pieces gives the
    // content of `readFile`.
    [[nodiscard]] virtual std::unique_ptr<MSPCByteSource> openFile(const std::string& path) const {
        auto content = readFile(path);
        return content ? std::make_unique<MSPCContentSource>(std::move(*content)) : nullptr;
    }
};

// A folder in the making: it grows under a hidden name beside its place, and gets its own name in one step at the end,
// so nobody ever sees a part of it under that name. What was made goes with this object unless it got its name. Nothing
// that is put in the place of a file or folder meanwhile, a link say, leads anything astray. Operations that answer
// with an optional text give none on success. Paths of files are those that they will have.
class MSPCNewFolder : public MSPCFileReader {
public:
    // Fills the new folder, which is empty, with a copy of all content of another one. `from` may be a link to a
    // folder; links inside it are copied as links. What is neither file, folder nor link is refused and never opened.
    // Every copied file and folder is made readable and writable by its owner. Answers "'<path>': <the system's
    // description>".
    [[nodiscard]] virtual std::optional<std::string> copyContent(const std::string& from) = 0;
    // As `MSPCFileSystem::writeAtomically`.
    [[nodiscard]] virtual std::optional<std::string> writeAtomically(
        const std::string& path, const std::function<void(MSPCByteWriter&)>& produce) = 0;
    // Gives the folder its name. Where something has that name by now and is not to be replaced, or cannot be replaced,
    // fails with `isTaken` set (it is cleared otherwise), and may be tried again with another path.
    [[nodiscard]] virtual std::optional<std::string> appear(bool& isTaken) = 0;
    // Gives it another path in the same folder, before it appears. Whatever is there is not to be replaced.
    virtual void setPath(const std::string& path) = 0;
    // Where a part of what was replaced is still to be found under a hidden name, because it could not be removed;
    // empty when nothing is left.
    [[nodiscard]] virtual std::string remainsOfReplaced() const = 0;
};

// The file operations of the importer. Paths are bytes, as the system takes them. Operations that answer with an
// optional text give none on success and the system's description of the failure otherwise.
class MSPCFileSystem : public MSPCFileReader {
public:
    // A path with "~", "~user", "." and ".." components resolved and double or trailing slashes removed; links are not
    // followed. A relative path stays relative: "./a/../b" is "b", "../b" stays, and what leads to the current folder
    // is ".". "~user" of an unknown user is an ordinary name; an empty path names nothing and stays empty.
    [[nodiscard]] virtual std::string standardizedPath(std::string_view path) const = 0;
    // The same, with a relative path taken in the current folder.
    [[nodiscard]] virtual std::string absolutePath(std::string_view path) const = 0;
    // Whether anything has that path: file, folder, or a link, even one that points nowhere.
    [[nodiscard]] virtual bool exists(const std::string& path) const = 0;
    // Whether the path leads to anything, through links too.
    [[nodiscard]] virtual bool leadsToAnything(const std::string& path) const = 0;
    // Whether the path leads to a folder, through links too.
    [[nodiscard]] virtual bool isDirectory(const std::string& path) const = 0;
    // The names of what a folder holds, in their order as bytes; none when it cannot be listed, with the reason in
    // `failure` if that is given.
    [[nodiscard]] virtual std::optional<std::vector<std::string>> namesIn(const std::string& folder,
                                                                          std::string* failure = nullptr) const = 0;
    // The absolute path of what a path leads to, without any link in it; empty when it leads nowhere.
    [[nodiscard]] virtual std::string resolvedPath(const std::string& path) const = 0;
    // Whether two paths lead to the same file or folder; false when either leads nowhere.
    [[nodiscard]] virtual bool isSameFile(const std::string& first, const std::string& second) const = 0;

    // Begins a new folder with that path, which nothing may have: a null pointer when anything (file, folder, or a
    // link, even one that points nowhere) is there, or another process keeps the path for a folder of its own. With
    // `replacesOld` what is there is replaced when the new folder appears, and stands until then; a null pointer when
    // it could not be removed. Any other failure is told by the first operation on the new folder. What processes that
    // were killed left hidden beside it goes with the first new folder there.
    [[nodiscard]] virtual std::unique_ptr<MSPCNewFolder> newFolder(const std::string& path, bool replacesOld) = 0;
    // Makes a folder and the folders above it.
    [[nodiscard]] virtual std::optional<std::string> createFolder(const std::string& path) = 0;
    // Takes a folder away that holds nothing; any other stays, and so does one that cannot be removed.
    virtual void removeEmptyFolder(const std::string& path) { static_cast<void>(path); }
    // Writes a file through a temporary one in its folder that then takes its name: afterwards it is either complete or
    // as it was before, and no temporary file stays. A link is replaced, its target not written; what is or leads to a
    // device, pipe or socket is a failure. `produce` is called once and writes the content; what it throws passes
    // through after the clean-up.
    [[nodiscard]] virtual std::optional<std::string> writeAtomically(
        const std::string& path, const std::function<void(MSPCByteWriter&)>& produce) = 0;
    // Brings everything to the disk that was written below these folders, so that it outlives a power failure; before
    // that it outlives the end of the process only. What writes to no disk has nothing to do.
    [[nodiscard]] virtual std::optional<std::string> synchronize(const std::set<std::string>& folders) {
        static_cast<void>(folders);
        return std::nullopt;
    }
};

// The machine's own files.
class MSPCDiskFileSystem final : public MSPCFileSystem {
public:
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
    void removeEmptyFolder(const std::string& path) override;
    [[nodiscard]] std::optional<std::string> writeAtomically(
        const std::string& path, const std::function<void(MSPCByteWriter&)>& produce) override;
    [[nodiscard]] std::optional<std::string> synchronize(const std::set<std::string>& folders) override;

private:
    void removeLeftoversBeside(const std::string& path);
    std::set<std::string> _clearedFolders;
};
