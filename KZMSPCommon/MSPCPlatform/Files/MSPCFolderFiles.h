#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "MSPCFileDescriptor.h"

// The regular files of one folder, which is opened once: a link may lead to the folder itself, but none in it is
// followed, and pipes and devices are not opened. So nothing outside of the folder is ever read. Names are those of
// files in the folder itself, without slashes.
class MSPCFolderFiles {
public:
    // Why a link is not read; other failures are the system's descriptions.
    static constexpr std::string_view IsLink = "a link, which is not followed";

    // Where the folder cannot be opened, none of its files can be read.
    explicit MSPCFolderFiles(const std::string& path);

    // All bytes of a file; none when it cannot be read, with the reason in `failure`.
    [[nodiscard]] std::optional<std::string> read(const std::string& name, std::string& failure) const;
    // Its first bytes, at most so many; empty when it cannot be read.
    [[nodiscard]] std::string beginning(const std::string& name, std::size_t size) const;

private:
    [[nodiscard]] std::string obstacle(const std::string& name) const;

    MSPCFileDescriptor _folder;
    int _error;
};
