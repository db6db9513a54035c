#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

// Looks through a TOML text for values nested too deep, in one pass and without nesting of its own: the library that
// reads settings goes down once more for every level, until the stack is used up. Levels are arrays, inline tables, and
// the parts of a header and of a dotted key behind the first; what stands in texts and comments is none. A text that is
// no TOML is looked through up to its first error at least.
//
// The number of the line, from 1, in which there are more than `limit` levels; none when there is no such line.
[[nodiscard]] std::optional<std::size_t> MSPCLineNestedDeeperThan(std::size_t limit, std::string_view toml);
