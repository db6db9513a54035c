#pragma once

#include <functional>
#include <string>
#include <string_view>

class MSPCUnfinishedItem;

// The program's hidden names: ".MSPDIImport-<middle>.tmp".
[[nodiscard]] std::string MSPCHiddenName(std::string_view middle);
[[nodiscard]] bool MSPCIsHiddenName(std::string_view name);

// Makes something in an open folder under a hidden name that nothing else has: ".MSPDIImport-<process>-<number>.tmp".
// `make` gets the name and answers 0, or an error number; on EEXIST the next name is tried. What was made is `item`.
// Answers 0 or the error number of the last attempt.
[[nodiscard]] int MSPCMakeUnderTemporaryName(int folder, MSPCUnfinishedItem& item,
                                             const std::function<int(const char*)>& make);

// Whether a name is one of these, of this process or another.
[[nodiscard]] bool MSPCIsTemporaryName(std::string_view name);
