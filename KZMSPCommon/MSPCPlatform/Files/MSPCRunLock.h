#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "MSPCFileDescriptor.h"

// A file that one run keeps locked, with all child processes that it starts: it is free when the last of them has
// ended, however they end. It says who has it.
class MSPCRunLock {
public:
    // The file is made where there is none. Its name counts from an open folder; a link with that name is a failure.
    MSPCRunLock(int folder, const std::string& name);

    // None when the file is open; the system's description otherwise.
    [[nodiscard]] const std::optional<std::string>& failure() const { return _failure; }
    // Takes the lock if nobody has it.
    [[nodiscard]] bool tryToTake();
    // Waits until it is free, and takes it; false when it cannot be had at all.
    [[nodiscard]] bool waitAndTake();
    // What whoever has the lock says of itself.
    [[nodiscard]] std::string holder() const;
    // Says who has it from now on: process and machine.
    void sign();
    // The open file, for a program that is to keep the lock too.
    [[nodiscard]] int number() const { return _file.number(); }

private:
    MSPCFileDescriptor _file;
    std::optional<std::string> _failure;
};
