#pragma once

#include <cstddef>
#include <string_view>

// Where a line ends: its terminator stands at [start, end) of the text. Both are the text's size for a last line
// without one.
struct MSPCLineBreak {
    std::size_t start = 0;
    std::size_t end = 0;
};

// The first line terminator at or after a position of a UTF-8 text: line feed, carriage return, the two as one, next
// line (U+0085), line separator (U+2028) or paragraph separator (U+2029).
[[nodiscard]] MSPCLineBreak nextLineBreak(std::string_view text, std::size_t from);
