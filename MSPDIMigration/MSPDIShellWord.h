#pragma once

#include <optional>
#include <string>
#include <string_view>

// A text as one word that neither GNU parallel nor any shell expands, here or on another machine: letters, digits and
// "/._-" stand for themselves, every other byte as "%" and three octal digits; an empty text as "%".
[[nodiscard]] std::string MSPDIShellWordOf(std::string_view text);
// And back again; none where it is no such word.
[[nodiscard]] std::optional<std::string> MSPDITextOfShellWord(std::string_view word);
