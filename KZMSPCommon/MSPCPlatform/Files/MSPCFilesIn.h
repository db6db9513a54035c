#pragma once

#include <optional>
#include <string>

// What `MSPCFileSystem::readFile` does, with a path that counts from an open folder.
[[nodiscard]] std::optional<std::string> MSPCReadFileIn(int folder, const std::string& path, std::string* failure);

// The folder in which a path lies, to be reached through from now on whatever becomes of the path, even where it may
// not be listed. The caller closes it; -1 with errno set when it cannot be opened.
[[nodiscard]] int MSPCOpenFolderOf(const std::string& path);
