#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

// When the clocks of a zone change by a rule as POSIX defines it for TZ, "CET-1CEST,M3.5.0,M10.5.0/3".
class MSPCZoneRule {
public:
    // None when the text is no rule, or changes something on a day that not every year has. A rule without summer time
    // is one without changes.
    [[nodiscard]] static std::optional<MSPCZoneRule> parsed(std::string_view text);

    // Adds the seconds since 1970-01-01T00:00:00Z at which the clocks may change, of all years that have a part between
    // the bounds: the beginning of each year of Greenwich too, since the C library takes the two changes of a year for
    // that year alone.
    void addChangesBetween(std::int64_t from, std::int64_t before, std::vector<std::int64_t>& seconds) const;

private:
    // A day of the year, and a time on it.
    struct Change {
        enum class Kind { DayOfYear, DayOfCommonYear, WeekdayOfMonth };
        Kind kind = Kind::DayOfYear;
        int month = 0;
        int week = 0;  // of the month, 5 for the last one
        int day = 0;   // since January 1 (0, or 1 where February 29 does not count), or the weekday since Sunday
        std::int64_t time = 0;        // seconds since midnight by the clocks before the change
        std::int64_t westBefore = 0;  // how far those are behind Greenwich

        [[nodiscard]] std::int64_t secondIn(int year) const;
    };
    class Parser;

    std::optional<std::array<Change, 2>> _changes;
};
