#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "MSPCGregorianCalendar.h"

class MSPCClock;

// Which fields of a date-time or duration are there: a set of bits.
using MSPCUnitFlags = std::int64_t;

namespace MSPCUnit {
inline constexpr MSPCUnitFlags Year = 4;
inline constexpr MSPCUnitFlags Month = 8;
inline constexpr MSPCUnitFlags Day = 16;
inline constexpr MSPCUnitFlags Hour = 32;
inline constexpr MSPCUnitFlags Minute = 64;
inline constexpr MSPCUnitFlags Second = 128;
inline constexpr MSPCUnitFlags ZoneHour = 0x200000;
inline constexpr MSPCUnitFlags ZoneMinute = 0x400000;
inline constexpr MSPCUnitFlags ZoneIsZ = 0x800000;
inline constexpr MSPCUnitFlags Date = Year | Month | Day;
inline constexpr MSPCUnitFlags Time = Hour | Minute | Second;
inline constexpr MSPCUnitFlags Zone = ZoneHour | ZoneMinute | ZoneIsZ;
inline constexpr MSPCUnitFlags All = Date | Time | Zone;  // 0xe000fc
inline constexpr MSPCUnitFlags NotFound = std::numeric_limits<MSPCUnitFlags>::max();
}  // namespace MSPCUnit

// Gregorian fields together with the offset from Greenwich that a text named.
struct MSPCDateComponents : MSPCDateFields {
    bool isUTC = true;
    std::int64_t timeZoneHour = 0;    // carries the sign of the offset
    std::int64_t timeZoneMinute = 0;  // never negative when read from a text

    MSPCDateComponents() = default;
    // Copies the fields; the zone is UTC.
    explicit MSPCDateComponents(const MSPCDateFields& fields) : MSPCDateFields(fields) {}

    // `isUTC` becomes true exactly when zone hour and zone minute are both 0.
    void fixUTC();

    // Gives the components the offset of a zone without moving the clock fields. Deliberate: the offset is the
    // zone's whole offset now plus its daylight-saving part at `date`, so summer dates get the summer offset
    // twice when the import runs in summer. Without a date the clock fields give it, read in that zone; where they give
    // none, no daylight saving is added. An offset of -9,000 seconds becomes hour -2 and minute -30. Answers all units.
    // What daylight saving is, `MSPCTimeZone::daylightSavingOffset` tells; working time has a rule of its own for days
    // on which the clocks change, in `MSPEScheduleCalendar`.
    MSPCUnitFlags forceSystemTimezoneforDate(std::optional<MSPCInstant> date, const MSPCTimeZone& zone,
                                             const MSPCClock& clock);
    // Moves the clock fields to Greenwich; all units, or not found when no instant can be made.
    MSPCUnitFlags convertToUTC();
    // Moves the clock fields to the offset a zone has at the instant that the clock fields mean in that zone (the
    // components' own offset is not used to find it).
    MSPCUnitFlags convertToSystemTimezone(const MSPCTimeZone& zone);
    // Moves the clock fields to a fixed offset in seconds. The present offset is timeZoneHour * 3600 + timeZoneMinute *
    // 60 whatever the hour's sign. Not found, with nothing changed, when no instant can be made.
    MSPCUnitFlags convertToTimeZoneForSecondsFromGMT(std::int64_t seconds);

    // "\n  isUTC=1\n  timeZoneHour=0\n  timeZoneMinute=0"
    [[nodiscard]] std::string componentsDescription() const;
    // "MSPCDateComponents:" with the fields' and its own description.
    [[nodiscard]] std::string description() const;

    friend bool operator==(const MSPCDateComponents&, const MSPCDateComponents&) = default;
};

// "\n  era=…\n  year=…" and so on for all fields; undefined fields print as the largest integer.
[[nodiscard]] std::string componentsDescription(const MSPCDateFields& fields);
// "NSDateComponents:" with it.
[[nodiscard]] std::string description(const MSPCDateFields& fields);
