#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The seconds since 1970-01-01T00:00:00Z, from one on and before another, at which the clocks of a zone may change: all
// changes are among them, in order, and others may be. None when the zone's file or rule is not understood. `setting`
// is a value for TZ, see `MSPCZoneSetting.h`.
//
// The C library tells what the clocks of a zone show at a second, and not when they change. These are the seconds to
// ask it for: those that the zone's file (TZif) lists, and those of the POSIX rule that stands in its last line. What
// the clocks show is never taken from here.
[[nodiscard]] std::optional<std::vector<std::int64_t>> MSPCZoneChangesBetween(const std::string& setting,
                                                                              std::int64_t from, std::int64_t before);
