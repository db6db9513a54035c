#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

// How a run of the built program ended.
struct ProgramResult {
    int status = -1;  // the exit status; -1 when a signal ended the program
    int signal = 0;   // the signal that did
    std::string standardOutput;
    std::string standardError;
    double processorSeconds = 0;
    long peakKilobytes = 0;  // of resident memory
};

// Runs the built program in a folder, with these arguments and no environment but this, and waits for its end.
[[nodiscard]] ProgramResult runProgram(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                                       const std::map<std::string, std::string>& environment);

// All bytes of a file; fails the test when it cannot be read.
[[nodiscard]] std::string bytesOf(const std::filesystem::path& file);

// A file's or folder's name as gtest takes names: letters, digits and "_".
[[nodiscard]] std::string testNameOf(std::string name);
