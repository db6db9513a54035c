#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// The characters of a UTF-8 text; none when its bytes are no UTF-8.
[[nodiscard]] std::optional<std::u32string> MSPCCharactersOf(std::string_view utf8);

// The length in bytes of the character that a UTF-8 text begins with; 0 when no character begins so, or the text is
// empty.
[[nodiscard]] std::size_t MSPCLengthOfCharacter(std::string_view utf8) noexcept;
// The character that a UTF-8 text begins with, of that length.
[[nodiscard]] char32_t MSPCCharacterOfLength(std::string_view utf8, std::size_t length) noexcept;

// Whether a text is UTF-8 from its first byte to its last; an empty one is.
[[nodiscard]] bool MSPCIsUTF8(std::string_view text) noexcept;

// Whether a character is a letter of any script.
[[nodiscard]] bool MSPCIsLetter(char32_t character) noexcept;
// Whether a character is a letter or a decimal digit of any script.
[[nodiscard]] bool MSPCIsLetterOrDigit(char32_t character) noexcept;

// Where a line ends: its terminator stands at [start, end) of the text. Both are the text's size for a last line
// without one.
struct MSPCLineBreak {
    std::size_t start = 0;
    std::size_t end = 0;
};

// The first line terminator at or after a position of a UTF-8 text: line feed, carriage return, the two as one, next
// line (U+0085), line separator (U+2028) or paragraph separator (U+2029).
[[nodiscard]] MSPCLineBreak nextLineBreak(std::string_view text, std::size_t from);
