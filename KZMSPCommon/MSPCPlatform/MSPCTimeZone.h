#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "MSPCInstant.h"

class MSPCLog;

// A stretch of time: from `start` on, before `end`. Infinite where it has no bound.
struct MSPCTimeSpan {
    MSPCInstant start;
    MSPCInstant end;
};

// A time zone: a value that maps instants to offsets from Greenwich and wall-clock times to instants. Copies share
// the zone's data, which remembers what it looked up and is therefore not for several threads at once. Offsets are in
// seconds, positive east of Greenwich. Before a zone's first known change its first offset holds, after the last one
// its final yearly rule. Times beyond reach of 64-bit seconds count as the farthest one.
class MSPCTimeZone {
public:
    // The zone of that name in the zone database ("Europe/Berlin", "UTC"); none when there is no such zone.
    [[nodiscard]] static std::optional<MSPCTimeZone> named(std::string_view name);
    // A zone whose offset never changes.
    [[nodiscard]] static MSPCTimeZone fixed(std::int64_t secondsFromGMT);
    // The zone that `tz` names, the value of the environment variable TZ as the C library reads it: a zone name with
    // or without a leading colon. A null pointer gives the machine's own zone; a value that names nothing gives UTC
    // and the log line "WARNING: Unknown time zone in TZ: '<value>'. UTC is used instead.".
    [[nodiscard]] static MSPCTimeZone fromEnvironment(const char* tz, MSPCLog& log);

    [[nodiscard]] const std::string& name() const;

    // The whole offset in force at an instant, daylight saving included.
    [[nodiscard]] std::int64_t secondsFromGMT(MSPCInstant instant) const;
    // The daylight-saving part of that offset, 0 outside daylight-saving time: 3600 in the Irish summer, which some call
    // the standard time there, and 1800 in the summer of Lord Howe.
    [[nodiscard]] std::int64_t daylightSavingOffset(MSPCInstant instant) const;

    // A stretch around an instant in which the whole offset stays the same; not always the longest one.
    [[nodiscard]] MSPCTimeSpan steadySpanAt(MSPCInstant instant) const;
    // 400 years, after which the dates and weekdays of the Gregorian calendar repeat, and the instant from which on all
    // offsets repeat with them, in every zone.
    static constexpr MSPCTimeInterval GregorianCycle = 146'097.0 * 86'400;
    [[nodiscard]] static MSPCInstant startOfCycles();

    // The instant at which the zone's wall clocks show `wallClockSeconds`, counted since 1970-01-01T00:00:00 as if
    // the wall clock were UTC. A time that a change skips is taken with the offset before the change; one that occurs
    // twice means the later one. In Europe/Berlin 2012-03-25T02:30:00 gives 01:30:00Z, 2012-10-28T02:30:00 gives
    // 01:30:00Z.
    [[nodiscard]] MSPCInstant instantFromWallClock(std::int64_t wallClockSeconds) const;

private:
    class Rules;
    explicit MSPCTimeZone(std::shared_ptr<const Rules> rules);
    std::shared_ptr<const Rules> _rules;
};
