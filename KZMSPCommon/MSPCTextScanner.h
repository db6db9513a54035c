#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// Numbers at the start of a text, independent of the locale: leading white space and line ends are skipped, an
// optional sign and digits are read, and whatever follows is left alone. None when no digit is found.

// A signed integer; a value out of range becomes the nearest one that fits.
[[nodiscard]] std::optional<std::int64_t> scanInteger64(std::string_view text);
[[nodiscard]] std::optional<std::int32_t> scanInteger32(std::string_view text);
// A decimal number with an optional point and exponent. "inf", "nan" and "0x10" are no numbers ("0x10" reads as 0).
[[nodiscard]] std::optional<double> scanDouble(std::string_view text);

// Whether a character counts as white space or line end at the ends of a value: blank, tab, LF, VT, FF, CR.
[[nodiscard]] constexpr bool isBlank(char character) noexcept {
    return character == ' ' || (character >= '\t' && character <= '\r');
}
[[nodiscard]] std::string_view trimmed(std::string_view text);
