#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "MSPCFileDescriptor.h"

// A file that only grows, by one line after another. Each is written in one go, so that whoever reads it later finds
// whole lines; a line that a kill or a full disk cut off is ended before the next one, and is none. Its lines are read
// one by one, so that a journal of any length takes no memory.
class MSPCJournal {
public:
    using Place = std::uint64_t;  // where a line begins, in bytes from the start of the file

    // Opens the file, which is made where there is none. Its name counts from an open folder; a link with that name is
    // a failure. A null pointer when that fails, with the system's description in `failure`.
    [[nodiscard]] static std::unique_ptr<MSPCJournal> open(int folder, const std::string& name, std::string& failure);
    // The same only to be read: no file is made, and no line ended.
    [[nodiscard]] static std::unique_ptr<MSPCJournal> openToRead(const std::string& path, std::string& failure);
    explicit MSPCJournal(MSPCFileDescriptor file);

    // None, or the system's description of the failure. `line` holds no line feed.
    [[nodiscard]] std::optional<std::string> append(std::string_view line);
    // Where the next line will begin.
    [[nodiscard]] Place end() const { return _end; }
    // The line at a place without its line feed; empty where nothing can be read.
    [[nodiscard]] std::string lineAt(Place place) const;
    // Tells all lines that are there now, in their order. None, or the system's description of the failure.
    [[nodiscard]] std::optional<std::string> forEachLine(
        const std::function<void(Place, std::string_view)>& take) const;

private:
    MSPCFileDescriptor _file;
    Place _end;
};
