#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "MSPCDay.h"
#include "MSPCInstant.h"
#include "MSPCZoneSetting.h"

class MSPCLog;

// A stretch of time: from `start` on, before `end`. Infinite where it has no bound.
struct MSPCTimeSpan {
    MSPCInstant start;
    MSPCInstant end;
};

// A time zone: a value that maps instants to offsets from Greenwich and wall-clock times to instants. Zones and their
// offsets are those of the machine's zone database, as the C library reads it. Copies share the zone's data, which
// remembers what it looked up and is therefore not for several threads at once. Offsets are in seconds, positive east
// of Greenwich. Before a zone's first known change its first offset holds, after the last one its final yearly rule.
// Times beyond reach of 64-bit seconds count as the farthest one.
class MSPCTimeZone {
public:
    // The zone of that name in the zone database ("Europe/Berlin", "UTC"); none when there is no such zone.
    [[nodiscard]] static std::optional<MSPCTimeZone> named(std::string_view name, const MSPCZoneFiles& files = {});
    // A zone whose offset never changes.
    [[nodiscard]] static MSPCTimeZone fixed(std::int64_t secondsFromGMT);
    // The zone that `tz`, the value of the environment variable TZ, means to the C library: a name or a path in the
    // zone database, an absolute path, or a POSIX rule, each with or without a leading colon. A null pointer gives the
    // machine's own zone, an empty value UTC. What cannot be had gives UTC and the log line "WARNING: Unknown time zone
    // in TZ: '<value>'. UTC is used instead." or "WARNING: No time zone in '<file>'. UTC is used instead.".
    [[nodiscard]] static MSPCTimeZone fromEnvironment(const char* tz, MSPCLog& log, const MSPCZoneFiles& files = {});
    // The zone that TZ and TZDIR in the environment mean, with the same warnings. For `main` alone, before anything is
    // logged: sets TZ to what was understood, so that all who ask the C library mean the same zone.
    [[nodiscard]] static MSPCTimeZone ofProcess(MSPCLog& log);

    [[nodiscard]] const std::string& name() const;

    // The whole offset in force at an instant, daylight saving included.
    [[nodiscard]] std::int64_t secondsFromGMT(MSPCInstant instant) const;
    // The daylight-saving part of that offset: what the zone's clocks are ahead of standard time, 0 outside
    // daylight-saving time. 3600 in most summers, 1800 in that of Lord Howe. Where the zone database has the winter
    // behind standard time instead (Europe/Dublin), the summer counts as daylight-saving time, 3600, and the winter has
    // 0. Where that would make daylight-saving time of most of the year (Africa/Casablanca, Africa/El_Aaiun, behind
    // standard time during Ramadan only), the database's own part counts: -3600 during Ramadan, otherwise 0.
    //
    // Two more rules make use of clocks that change: `MSPCDateComponents::forceSystemTimezoneforDate` adds this part to
    // the offset in force now, and `MSPEScheduleCalendar` steps days of 86,400 seconds across a change.
    [[nodiscard]] std::int64_t daylightSavingOffset(MSPCInstant instant) const;

    // A stretch around an instant in which the whole offset stays the same; not always the longest one.
    [[nodiscard]] MSPCTimeSpan steadySpanAt(MSPCInstant instant) const;
    // 400 years, after which the dates and weekdays of the Gregorian calendar repeat, and the instant from which on all
    // offsets repeat with them, in every zone.
    static constexpr MSPCTimeInterval GregorianCycle = MSPCDaysPerCycle * MSPCSecondsPerDay;
    [[nodiscard]] static MSPCInstant startOfCycles();

    // The instant at which the zone's wall clocks show `wallClockSeconds`, counted since 1970-01-01T00:00:00 as if
    // the wall clock were UTC. A time that a change skips is taken with the offset before the change; one that occurs
    // twice means the later one. In Europe/Berlin 2012-03-25T02:30:00 gives 01:30:00Z, 2012-10-28T02:30:00 gives
    // 01:30:00Z.
    [[nodiscard]] MSPCInstant instantFromWallClock(std::int64_t wallClockSeconds) const;

private:
    class Rules;
    explicit MSPCTimeZone(std::shared_ptr<const Rules> rules);
    static MSPCTimeZone ofSetting(std::optional<std::string> setting, const char* tz, MSPCLog& log,
                                  const MSPCZoneFiles& files);
    std::shared_ptr<const Rules> _rules;
};
