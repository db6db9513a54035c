#pragma once

#include <string>
#include <string_view>

#include "MSPCFileDescriptor.h"

// Files and folders that a program keeps for itself where others may write, too. A link in their place is never
// followed: whatever is at its other end is somebody else's. Names count from an open folder; the answer is 0,
// or the system's error number: ELOOP or ENOTDIR for a link.

// Opens a folder, which is made where there is none.
[[nodiscard]] int MSPCOpenOwnFolder(int parent, const std::string& name, MSPCFileDescriptor& folder);
[[nodiscard]] int MSPCOpenOwnFolder(const std::string& path, MSPCFileDescriptor& folder);
// Opens a file with these flags of `open`, which may make it. What is no regular file is EINVAL, and nothing waits for
// it.
[[nodiscard]] int MSPCOpenOwnFile(int parent, const std::string& name, int flags, MSPCFileDescriptor& file);
// Writes a file anew at a path. What has the path, whatever it is, is removed first, and a part of the new one is
// there until it is whole: that is for files whose parts harm nobody. Where a new file takes the place of an old one in
// one step, the file system may write to the disk at once, which takes as long as a tenth of a small import.
[[nodiscard]] int MSPCWriteOwnFile(const std::string& path, std::string_view bytes);
// Whether a path leads to an open folder, and to no other one that has taken its place.
[[nodiscard]] bool MSPCIsFolderAt(const std::string& path, const MSPCFileDescriptor& folder);
// Whether a link has that path, wherever it points.
[[nodiscard]] bool MSPCIsLink(const std::string& path);
