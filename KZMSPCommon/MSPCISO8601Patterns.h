#pragma once

#include <optional>
#include <string_view>

#include "MSPCDateComponents.h"
#include "MSPCISO8601Scanner.h"

// The full grammar of date-time and duration texts, as POSIX extended regular expressions that are compiled once.
// Numbers of any length are read, a million digits as fast as any other text of that size.

// As `updateDateTimeComponentsFromISODateTime`, but none where that raises: for a date followed by a time without the
// "T" between them.
[[nodiscard]] std::optional<MSPCUnitFlags> matchISODateTime(MSPCDateComponents& components, std::string_view text);

// As `updateDateTimeComponentsFromISODuration`.
[[nodiscard]] MSPCUnitFlags matchISODuration(MSPCDateComponents& components, std::string_view text);

// The first "PTnHnMnS" anywhere in the text; a place without digits counts 0. None when there is no such piece.
[[nodiscard]] std::optional<MSPCHoursMinutesSeconds> matchMSPDIDuration(std::string_view text);
