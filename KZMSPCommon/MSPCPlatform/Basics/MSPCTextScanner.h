#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// Numbers at the start of a text, independent of the locale: leading white space and line ends are skipped, an
// optional sign and digits are read, and whatever follows is left alone. None when no digit is found. White space and
// line ends are those of Unicode, a no-break space and a line separator among them; texts are UTF-8.

// A signed integer; a value out of range becomes the nearest one that fits.
[[nodiscard]] std::optional<std::int64_t> scanInteger64(std::string_view text);
[[nodiscard]] std::optional<std::int32_t> scanInteger32(std::string_view text);
// A decimal number with an optional point and exponent. "inf", "nan" and "0x10" are no numbers ("0x10" reads as 0).
[[nodiscard]] std::optional<double> scanDouble(std::string_view text);

// The text without the white space and line ends at both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);
