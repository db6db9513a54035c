#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "MSPCInstant.h"
#include "MSPCTimeOfDay.h"
#include "MSPCTimeZone.h"
#include "MSPCWeekday.h"

// Fields of a date in the Gregorian calendar, each undefined until set.
struct MSPCDateFields {
    static constexpr std::int64_t Undefined = std::numeric_limits<std::int64_t>::max();

    std::int64_t era = Undefined;
    std::int64_t year = Undefined;
    std::int64_t month = Undefined;  // 1 to 12
    std::int64_t day = Undefined;    // 1 to 31
    std::int64_t hour = Undefined;
    std::int64_t minute = Undefined;
    std::int64_t second = Undefined;
    std::int64_t week = Undefined;
    std::int64_t weekday = Undefined;  // 1 = Sunday ... 7 = Saturday
    std::int64_t weekdayOrdinal = Undefined;
    std::int64_t quarter = Undefined;

    friend bool operator==(const MSPCDateFields&, const MSPCDateFields&) = default;
};

// The value of a field, 0 where it is undefined.
[[nodiscard]] constexpr std::int64_t MSPCDefinedOrZero(std::int64_t field) noexcept {
    return field == MSPCDateFields::Undefined ? 0 : field;
}

// Calendar arithmetic in the proleptic Gregorian calendar of one time zone (the year 0 is leap, before it stands -1).
// No value overflows: fields and instants far outside 32-bit years count as the farthest that can be held.
class MSPCGregorianCalendar {
public:
    explicit MSPCGregorianCalendar(MSPCTimeZone zone);
    // The calendar without changes of the clocks: of Greenwich, or of dates and times as they are written.
    [[nodiscard]] static const MSPCGregorianCalendar& utc();

    [[nodiscard]] const MSPCTimeZone& timeZone() const { return _zone; }

    // Year to second and weekday of an instant as the zone's wall clocks show it; a fraction of a second is dropped
    // (rounded towards the past). The other fields stay undefined.
    [[nodiscard]] MSPCDateFields fieldsOf(MSPCInstant instant) const;

    // The instant of year, month, day, hour, minute and second on the zone's wall clocks; the other fields are not
    // read. Undefined hour, minute and second count as 0; none when year, month or day is undefined. Values outside
    // their range carry over (hour 24 is 00:00 of the next day, month 13 is January of the next year).
    [[nodiscard]] std::optional<MSPCInstant> instantFrom(const MSPCDateFields& fields) const;

    // The weekday that the zone's wall clocks have at an instant.
    [[nodiscard]] MSPCWeekday weekdayOf(MSPCInstant instant) const;
    // 00:00:00 of the instant's day on the zone's wall clocks.
    [[nodiscard]] MSPCInstant midnightOf(MSPCInstant instant) const;
    // What the zone's wall clocks show, in whole seconds: hour * 3600 + minute * 60 + second.
    [[nodiscard]] MSPCTimeOfDay timeOfDayOf(MSPCInstant instant) const;
    // Days from one instant to another on the zone's wall clocks, truncated towards zero: from Monday 10:00 to
    // Tuesday 09:00 there are 0.
    [[nodiscard]] std::int64_t wholeDaysBetween(MSPCInstant from, MSPCInstant to) const;
    // The same wall-clock time a number of calendar days later (earlier when negative), fraction of a second included.
    [[nodiscard]] MSPCInstant instantByAddingDays(MSPCInstant instant, std::int64_t days) const;
    // Adds hours, minutes and seconds to the wall-clock time: 00:00:00 plus 23:59:59 is 23:59:59 of that day, also on
    // a day on which the clocks change.
    [[nodiscard]] MSPCInstant instantByAddingWallClock(MSPCInstant instant, std::int64_t hours, std::int64_t minutes,
                                                       std::int64_t seconds) const;

    // An instant for the eye, as the zone's wall clocks show it, with the whole hours and minutes of its offset:
    // "2011-05-04 15:22:10 +0200", "2011-05-04 09:52:10 -0330".
    [[nodiscard]] std::string displayText(MSPCInstant instant) const;

private:
    MSPCTimeZone _zone;
};
