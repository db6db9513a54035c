#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCXMLNode.h"

// A stretch of days, both ends included.
struct MSPDIDays {
    std::chrono::sys_days first;
    std::chrono::sys_days last;
};

// The day of an MSPDI date, "2012-01-05T08:00:00"; none where there is none.
[[nodiscard]] std::optional<std::chrono::sys_days> MSPDIDayOf(std::string_view date);
// "2012-01-05".
[[nodiscard]] std::string MSPDITextOfDay(std::chrono::sys_days day);
// The stretch that an exception's, or a work week's, `TimePeriod` names; none without both ends.
[[nodiscard]] std::optional<MSPDIDays> MSPDIPeriodOf(const MSPCXMLNode& owner);

// The dates within a stretch on which an exception of a calendar recurs, by its MSPDI Type: yearly (2, 3), monthly (4,
// 5), weekly (6; weeks begin on the project's `WeekStartDay`, 0 for Sunday), every so many days (7) or weekdays (8).
// None for an exception of another type, without a time period, or one of more than a hundred years.
[[nodiscard]] std::optional<std::vector<std::chrono::sys_days>> MSPDIDatesOfException(const MSPCXMLNode& exception,
                                                                                      const MSPDIDays& within,
                                                                                      unsigned weekStart);
