#pragma once

#include <compare>

#include "MSPCInstant.h"

// A time of day in seconds since its midnight: 08:30:00 is 30600. It may lie outside the day, since a working period
// can begin before its day or end behind it.
struct MSPCTimeOfDay {
    MSPCTimeInterval sinceMidnight = 0;

    friend auto operator<=>(const MSPCTimeOfDay&, const MSPCTimeOfDay&) = default;
    friend constexpr MSPCTimeOfDay operator+(MSPCTimeOfDay time, MSPCTimeInterval seconds) {
        return {time.sinceMidnight + seconds};
    }
    friend constexpr MSPCTimeOfDay operator-(MSPCTimeOfDay time, MSPCTimeInterval seconds) {
        return {time.sinceMidnight - seconds};
    }
    friend constexpr MSPCTimeInterval operator-(MSPCTimeOfDay later, MSPCTimeOfDay earlier) {
        return later.sinceMidnight - earlier.sinceMidnight;
    }
    // The instant at which so much has passed since a midnight. After a change of the clocks on that day they show
    // another time.
    friend constexpr MSPCInstant operator+(MSPCInstant midnight, MSPCTimeOfDay time) {
        return midnight + time.sinceMidnight;
    }
};

inline constexpr MSPCTimeOfDay MSPCMidnight{0};
inline constexpr MSPCTimeOfDay MSPCEndOfDay{MSPCSecondsPerDay};
