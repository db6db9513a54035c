#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "MSPCDateComponents.h"

// Reads date-time and duration texts of ISO 8601. Each text is first given to a quick reader, which knows the one form
// that every plan holds thousands of, and what that does not know to the full grammar: POSIX extended regular
// expressions that are compiled once, and that read a million digits as fast as any other text of that size.

// Hours, minutes and seconds of a duration; each became the nearest 32-bit integer where it was out of range.
struct MSPCHoursMinutesSeconds {
    std::int32_t hours = 0;
    std::int32_t minutes = 0;
    std::int32_t seconds = 0;

    friend bool operator==(const MSPCHoursMinutesSeconds&, const MSPCHoursMinutesSeconds&) = default;
};

// As `updateDateTimeComponentsFromISODateTime`, but none where that raises: for a date followed by a time without the
// "T" between them.
[[nodiscard]] std::optional<MSPCUnitFlags> readISODateTime(MSPCDateComponents& components, std::string_view text);

// As `updateDateTimeComponentsFromISODuration`.
[[nodiscard]] MSPCUnitFlags readISODuration(MSPCDateComponents& components, std::string_view text);

// The first "PTnHnMnS" anywhere in the text; a place without digits counts 0. None when there is no such piece.
[[nodiscard]] std::optional<MSPCHoursMinutesSeconds> readMSPDIDuration(std::string_view text);

// The quick readers alone. They answer none, with nothing changed, for any other text; where they answer, they answer
// as the full grammar does.

// "YYYY-MM-DDThh:mm:ss", alone or with "Z" or an offset "+hh:mm" or "-hh:mm" behind it.
[[nodiscard]] std::optional<MSPCUnitFlags> scanISODateTime(MSPCDateComponents& components, std::string_view text);
// "PTnHnMnS" with at least one digit in each place.
[[nodiscard]] std::optional<MSPCHoursMinutesSeconds> scanMSPDIDuration(std::string_view text);

// The full grammar alone.
[[nodiscard]] std::optional<MSPCUnitFlags> matchISODateTime(MSPCDateComponents& components, std::string_view text);
[[nodiscard]] MSPCUnitFlags matchISODuration(MSPCDateComponents& components, std::string_view text);
[[nodiscard]] std::optional<MSPCHoursMinutesSeconds> matchMSPDIDuration(std::string_view text);
