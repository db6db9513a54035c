#pragma once

#include <optional>
#include <string>
#include <string_view>

class MSPCFileSystem;

// A document type can name texts that stand in other files. They are never read, and nothing is left of them in a
// document that was read: where they were is to be seen only where each of them is replaced by a mark before.

// The content of a file with a mark for each of these texts; none where it names none, as nearly all do.
[[nodiscard]] std::optional<std::string> MSPDIWithMarkedExternalTexts(const std::string& path,
                                                                      const MSPCFileSystem& fileSystem);
// Whether a text holds a mark, and the text without.
[[nodiscard]] bool MSPDIHoldsExternalText(std::string_view text);
void MSPDIRemoveExternalTexts(std::string& text);
