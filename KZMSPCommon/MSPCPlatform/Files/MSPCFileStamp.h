#pragma once

#include <cstdint>
#include <optional>
#include <string>

// What tells that a file is no longer the same without reading it.
struct MSPCFileStamp {
    std::uint64_t size = 0;        // in bytes
    std::int64_t nanoseconds = 0;  // of its last change, since 1970; whoever writes a file can set it
    // Of the last change of the file, its rights, its name or that time; nobody sets it but the system.
    std::int64_t systemNanoseconds = 0;

    bool operator==(const MSPCFileStamp&) const = default;
};

// The stamp of what a path leads to; none when it leads nowhere.
[[nodiscard]] std::optional<MSPCFileStamp> MSPCStampOf(const std::string& path);
