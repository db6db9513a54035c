#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "MSPCDateComponents.h"

// Quick readers for the texts that every plan holds thousands of. They know one form each and answer none for anything
// else, which the patterns of MSPCISO8601Patterns.h then read; where both answer, they answer alike.

// Hours, minutes and seconds of a duration; each became the nearest 32-bit integer where it was out of range.
struct MSPCHoursMinutesSeconds {
    std::int32_t hours = 0;
    std::int32_t minutes = 0;
    std::int32_t seconds = 0;

    friend bool operator==(const MSPCHoursMinutesSeconds&, const MSPCHoursMinutesSeconds&) = default;
};

// "YYYY-MM-DDThh:mm:ss", alone or with "Z" or an offset "+hh:mm" or "-hh:mm" behind it. Sets the fields the text holds
// and gives their units; none, with nothing changed, for any other text.
[[nodiscard]] std::optional<MSPCUnitFlags> scanISODateTime(MSPCDateComponents& components, std::string_view text);

// "PTnHnMnS" with at least one digit in each place.
[[nodiscard]] std::optional<MSPCHoursMinutesSeconds> scanMSPDIDuration(std::string_view text);
