#pragma once

#include <string>

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
// Whether a path leads to an open folder, and to no other one that has taken its place.
[[nodiscard]] bool MSPCIsFolderAt(const std::string& path, const MSPCFileDescriptor& folder);
// Whether a link has that path, wherever it points.
[[nodiscard]] bool MSPCIsLink(const std::string& path);
