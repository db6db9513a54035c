#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "MSPCXMLNode.h"

// The number that XPath 1.0 reads in a text: blanks around it, a "-", digits with a point among them (" 12 " and "012"
// are 12; "12h", "+12" and "1e3" are no numbers). None for "not a number" and for numbers too large for a double; those
// too small for one are 0.
[[nodiscard]] std::optional<double> xpathNumber(std::string_view text);

// Whether an element has a child of that name with that number, as the predicate `[name=number]` asks.
[[nodiscard]] bool hasChildWithNumber(const MSPCXMLNode& element, std::string_view name, std::int64_t number);
