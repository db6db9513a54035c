#pragma once

#include <optional>
#include <string>
#include <string_view>

// Where the machine keeps its time zones.
struct MSPCZoneFiles {
    std::string database = "/usr/share/zoneinfo";  // the zones by name
    std::string machineZone = "/etc/localtime";    // this machine's own: a link into the database, or a copy

    // As the C library finds them: the value of TZDIR, unless null or empty, names another database; a relative path
    // counts from the current folder.
    [[nodiscard]] static MSPCZoneFiles fromEnvironment(const char* tzdir);
};

// What TZ is set to for a time zone: the path of the zone's file behind a colon, or a POSIX rule. None of these
// operations opens what is no regular file of a sensible size: a device or a pipe would keep the C library waiting.

// The zone of that name in the database, "Europe/Berlin" or "posix/Europe/Berlin"; none when there is no such zone.
[[nodiscard]] std::optional<std::string> MSPCZoneSettingNamed(std::string_view name, const MSPCZoneFiles& files);
// The zone that a value of TZ means to the C library, with or without a leading colon: a name, a path, or a POSIX rule
// such as "CET-1CEST,M3.5.0,M10.5.0/3" (from the second Sunday of March to the first of November when it does not say).
// A null pointer means the machine's own zone, an empty value UTC, which is also
// known by the name "UTC" where there is no database. None when the value means nothing, or a file that is no zone.
[[nodiscard]] std::optional<std::string> MSPCZoneSettingOf(const char* tz, const MSPCZoneFiles& files);
