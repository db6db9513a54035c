#pragma once

#include <functional>
#include <string>

class MSPCUnfinishedItem;

// Makes something under a hidden name that nothing else has, in the folder where it will get its final name.
// `make` gets a path and answers 0, or an error number; on EEXIST the next name is tried. What was made is `item`.
// Answers 0 or the error number of the last attempt.
[[nodiscard]] int MSPCMakeUnderTemporaryName(const std::string& finalPath, MSPCUnfinishedItem& item,
                                             const std::function<int(const char*)>& make);
