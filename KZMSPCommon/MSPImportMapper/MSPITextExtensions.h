#pragma once

#include <string>
#include <string_view>

// A text's own text, so that any value of a query, node or text, can be asked alike.
[[nodiscard]] std::string stringValue(std::string_view text);

// The text with line breaks turned into blanks. Looked for, in this order: the character references "&#x0D;", "&#x0d;",
// "&#x2028;", "&#x0A;", "&#x0a;" and "&#x2029;" (not in a text that begins with "<![CDATA["), then the characters CR,
// U+2028, LF and U+2029.
// Deliberate: each replacement starts from the unchanged text, so only the last pattern of the list that occurs is
// replaced: of "a\rb\nc" the line feed goes and the carriage return stays.
[[nodiscard]] std::string stringByReplacingOccurrencesOfNewline(std::string_view text);
