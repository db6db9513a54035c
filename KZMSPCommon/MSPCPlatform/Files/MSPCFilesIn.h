#pragma once

#include <cstdint>
#include <optional>
#include <string>

enum class MSPCLinks : std::uint8_t { AreFollowed, AreNotFollowed };

// What `MSPCFileSystem::readFile` does, with a path that counts from an open folder. Where links are not followed, a
// path that ends in one is a failure.
[[nodiscard]] std::optional<std::string> MSPCReadFileIn(int folder, const std::string& path, std::string* failure,
                                                        MSPCLinks links = MSPCLinks::AreFollowed);

// The folder in which a path lies, to be reached through from now on whatever becomes of the path, even where it may
// not be listed. The caller closes it; -1 with errno set when it cannot be opened.
[[nodiscard]] int MSPCOpenFolderOf(const std::string& path);
