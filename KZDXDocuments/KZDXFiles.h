#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class MSPCFileSystem;

// Why a link in a bundle is not read.
inline constexpr std::string_view KZDXIsLink = "a link, which is not followed";

// The files of a bundle, wherever they are.
class KZDXFiles {
public:
    virtual ~KZDXFiles() = default;

    // The names of all files and folders in it, in their order as bytes; none when they cannot be listed, with the
    // reason in `failure`.
    [[nodiscard]] virtual std::optional<std::vector<std::string>> names(std::string& failure) const = 0;
    // The first bytes of a file, at most so many; empty when it cannot be read, or is no file. It can still be read.
    [[nodiscard]] virtual std::string beginning(const std::string& name, std::size_t size) const = 0;
    // The bytes of a file; none when it cannot be read, with the reason in `failure`. What was asked for once may not
    // be there again.
    [[nodiscard]] virtual std::optional<std::string> read(const std::string& name, std::string& failure) = 0;
};

// The files in a folder, which is only read. A link may lead to the folder; one in it cannot be read (`KZDXIsLink`), so
// that nothing outside of it is ever opened. The file system outlives the result.
[[nodiscard]] std::unique_ptr<KZDXFiles> KZDXFilesInFolder(const MSPCFileSystem& fileSystem, std::string folder);
// Files in memory by their names. Each can be read once, and its memory goes to who reads it.
[[nodiscard]] std::unique_ptr<KZDXFiles> KZDXFilesInMemory(std::map<std::string, std::string> files);
