#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "MSPCFileDescriptor.h"

// A file that only grows, by one line after another. Each is written in one go, so that whoever reads it later finds
// whole lines; a line that a kill or a full disk cut off is ended before the next one, and is none.
class MSPCJournal {
public:
    // Opens the file, which is made where there is none. Its name counts from an open folder; a link with that name is
    // a failure. A null pointer when that fails, with the system's description in `failure`.
    [[nodiscard]] static std::unique_ptr<MSPCJournal> open(int folder, const std::string& name, std::string& failure);
    explicit MSPCJournal(MSPCFileDescriptor file) : _file(std::move(file)) {}

    // None, or the system's description of the failure. `line` holds no line feed.
    [[nodiscard]] std::optional<std::string> append(std::string_view line);

private:
    MSPCFileDescriptor _file;
};
