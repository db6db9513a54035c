#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <vector>

#include "KZDXDateTime.h"

using KZDXPageJSON = nlohmann::ordered_json;

// The values of one field of all rows, in as few bytes as its values allow. A value of null is one that is not there.
//   null                                  none is there
//   {"all": value}                        the same everywhere
//   {"values": [...], "at": [0, -1, ...]} few different ones; -1 where none is
//   {"rows": [...], "values": [...]}      most are not there
//   [value, null, ...]                    any other
[[nodiscard]] KZDXPageJSON KZDXPageColumn(const std::vector<KZDXPageJSON>& values);

// Dates of all rows: {"base": seconds, "unit": seconds, "at": column, "offset": column}; null where none is there. The
// clock on the wall shows base + at * unit seconds since 1970, and the offset is that of the clock, in seconds to the
// east of Greenwich.
[[nodiscard]] KZDXPageJSON KZDXPageDateColumn(const std::vector<std::optional<KZDXDateTime>>& dates);

// One date: [seconds on the clock on the wall since 1970, offset in seconds]; null for none.
[[nodiscard]] KZDXPageJSON KZDXPageDate(const std::optional<KZDXDateTime>& date);
