#pragma once

#include <cstdint>
#include <string>
#include <vector>

// A stretch of time without a change of a zone's clocks, in seconds since 1970-01-01T00:00:00Z: from `start` on, before
// `end`.
struct MSPCZoneStretch {
    std::int64_t start = 0;
    std::int64_t end = 0;
    std::int64_t offset = 0;          // seconds east of Greenwich, daylight saving included
    std::int64_t daylightSaving = 0;  // the part of it that is daylight saving

    [[nodiscard]] bool contains(std::int64_t second) const { return start <= second && second < end; }
};

// The stretches, one behind the other, that cover the time from one second until before another. The first begins and
// the last ends where the zone changes, or two years outside that time when it does not change so long. In a zone whose
// file or rule is not understood (`MSPCZoneChanges.h`) two changes within three days are not seen. `setting` is a value
// for TZ, see `MSPCZoneSetting.h`.
//
// A POSIX rule tells how much of the offset is daylight saving: what the clocks are ahead of its standard time, however
// much that is, but for summers such as Ireland's, below. The zone database tells of each stretch whether it is
// daylight-saving time, not how much of the offset that makes:
// - where the clocks are ahead of standard time then, by how much they are (Europe/Berlin and most others);
// - where they are behind it each winter, as in Europe/Dublin, the winter counts as standard time and the summer as
//   daylight-saving time, by the same difference;
// - where they are behind it for a shorter part of the year than three months, as during Ramadan in Africa/Casablanca,
//   what daylight saving there is stays the database's own, a negative one: -3600 then, 0 for the rest of the year.
[[nodiscard]] std::vector<MSPCZoneStretch> MSPCZoneStretchesBetween(const std::string& setting, std::int64_t from,
                                                                    std::int64_t before);
