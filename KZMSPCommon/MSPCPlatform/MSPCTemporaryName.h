#pragma once

#include <functional>
#include <string>

// Makes something under a hidden name that nothing else has, in the folder where it will get its final name.
// `make` gets a path and answers 0, or an error number; on EEXIST the next name is tried. Sets `path` to the name that
// was taken; answers 0 or the error number of the last attempt.
[[nodiscard]] int MSPCMakeUnderTemporaryName(const std::string& finalPath, std::string& path,
                                             const std::function<int(const std::string&)>& make);
