#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

// Takes the bytes of a file as they are made.
class MSPCByteSink {
public:
    virtual ~MSPCByteSink() = default;
    virtual void write(std::string_view bytes) = 0;
};

// Gives the bytes of an open file piece by piece.
class MSPCByteSource {
public:
    virtual ~MSPCByteSource() = default;
    // Reads up to `capacity` bytes and gives their number, 0 at the end; none when reading fails.
    [[nodiscard]] virtual std::optional<std::size_t> read(char* buffer, std::size_t capacity) = 0;
    // The size of the file in bytes, as far as it is known.
    [[nodiscard]] virtual std::size_t expectedSize() const = 0;
};

// The file operations of the importer. Paths are bytes, as the system takes them. Operations that answer with an
// optional text give none on success and the system's description of the failure otherwise.
class MSPCFileSystem {
public:
    virtual ~MSPCFileSystem() = default;

    // An absolute path with "~", "~user", "." and ".." components resolved and double or trailing slashes removed;
    // links are not followed. A relative path is taken in the current folder. "~user" of an unknown user is an ordinary
    // name; an empty path names nothing and stays empty.
    [[nodiscard]] virtual std::string standardizedPath(std::string_view path) const = 0;
    // Whether anything has that path: file, folder, or a link, even one that points nowhere.
    [[nodiscard]] virtual bool exists(const std::string& path) const = 0;
    // Whether the path leads to a folder, through links too.
    [[nodiscard]] virtual bool isDirectory(const std::string& path) const = 0;
    // The absolute path of what a path leads to, without any link in it; empty when it leads nowhere.
    [[nodiscard]] virtual std::string resolvedPath(const std::string& path) const = 0;
    // Whether two paths lead to the same file or folder; false when either leads nowhere.
    [[nodiscard]] virtual bool isSameFile(const std::string& first, const std::string& second) const = 0;

    // All bytes of a file; none when it cannot be read, is a folder or a device, or is a pipe whose writer keeps it
    // waiting for five seconds, or for fifteen altogether, or writes more than 64 MB, with the reason in `failure` if
    // that is given. A pipe without a writer is empty.
    [[nodiscard]] virtual std::optional<std::string> readFile(const std::string& path,
                                                              std::string* failure = nullptr) const = 0;

    // An open file to be read in pieces; a null pointer when it cannot be read. What does not read in pieces gives the
    // content of `readFile`.
    [[nodiscard]] virtual std::unique_ptr<MSPCByteSource> openFile(const std::string& path) const;

    // Copies a folder with all its content to a path that must not exist yet. Taking that name is one step: of several
    // runs that copy to one path at the same time exactly one succeeds, the others fail and find `existedAlready` set,
    // if that is given (it is cleared otherwise), so that they can try the next name. The content appears under the
    // name all at once, when it is complete. `from` may be a link to a folder; links inside it are copied as links.
    // What is neither file, folder nor link is refused and never opened. Every copied file and folder is made readable
    // and writable by its owner. A copy that fails halfway leaves nothing behind.
    [[nodiscard]] virtual std::optional<std::string> copyFolder(const std::string& from, const std::string& to,
                                                                bool* existedAlready = nullptr) = 0;
    // Removes a file, a link (not its target) or a folder with all its content. Fails when nothing is there.
    [[nodiscard]] virtual std::optional<std::string> remove(const std::string& path) = 0;
    // Makes a folder and the folders above it.
    [[nodiscard]] virtual std::optional<std::string> createFolder(const std::string& path) = 0;
    // Writes a file through a temporary one in the same folder that then takes its name: afterwards the file is either
    // complete or as it was before, and no temporary file stays. A link with that name is replaced, its target is not
    // written. `produce` is called once and writes the content; what it throws passes through after the clean-up.
    [[nodiscard]] virtual std::optional<std::string> writeAtomically(
        const std::string& path, const std::function<void(MSPCByteSink&)>& produce) = 0;
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
    [[nodiscard]] bool exists(const std::string& path) const override;
    [[nodiscard]] bool isDirectory(const std::string& path) const override;
    [[nodiscard]] std::string resolvedPath(const std::string& path) const override;
    [[nodiscard]] bool isSameFile(const std::string& first, const std::string& second) const override;
    [[nodiscard]] std::optional<std::string> readFile(const std::string& path,
                                                      std::string* failure = nullptr) const override;
    [[nodiscard]] std::unique_ptr<MSPCByteSource> openFile(const std::string& path) const override;
    [[nodiscard]] std::optional<std::string> copyFolder(const std::string& from, const std::string& to,
                                                        bool* existedAlready = nullptr) override;
    [[nodiscard]] std::optional<std::string> remove(const std::string& path) override;
    [[nodiscard]] std::optional<std::string> createFolder(const std::string& path) override;
    [[nodiscard]] std::optional<std::string> writeAtomically(
        const std::string& path, const std::function<void(MSPCByteSink&)>& produce) override;
    [[nodiscard]] std::optional<std::string> synchronize(const std::set<std::string>& folders) override;
};
