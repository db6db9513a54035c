#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

// The words to type into a shell for a run of the built program as a test had it: its folder, no environment but this,
// its arguments. Each word is quoted, whatever it holds.
[[nodiscard]] std::string commandOfRun(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                                       const std::map<std::string, std::string>& environment);

// Remembers a run of the test that is running. When that test fails, the commands of its last three runs are printed,
// so that the failure can be looked at by hand.
void rememberRun(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                 const std::map<std::string, std::string>& environment);
