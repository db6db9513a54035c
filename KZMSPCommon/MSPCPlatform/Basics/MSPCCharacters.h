#pragma once

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

// Whether a character is a letter of any script.
[[nodiscard]] bool MSPCIsLetter(char32_t character) noexcept;
// Whether a character is a letter or a decimal digit of any script.
[[nodiscard]] bool MSPCIsLetterOrDigit(char32_t character) noexcept;
