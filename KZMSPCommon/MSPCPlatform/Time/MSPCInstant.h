#pragma once

#include <compare>

// A span of time in seconds; fractions are kept.
using MSPCTimeInterval = double;

// An absolute point in time, independent of any zone.
struct MSPCInstant {
    double secondsSince1970 = 0;  // since 1970-01-01T00:00:00Z, leap seconds not counted

    friend auto operator<=>(const MSPCInstant&, const MSPCInstant&) = default;
    friend MSPCInstant operator+(MSPCInstant instant, MSPCTimeInterval seconds) {
        return {instant.secondsSince1970 + seconds};
    }
    friend MSPCInstant operator-(MSPCInstant instant, MSPCTimeInterval seconds) {
        return {instant.secondsSince1970 - seconds};
    }
    friend MSPCTimeInterval operator-(MSPCInstant later, MSPCInstant earlier) {
        return later.secondsSince1970 - earlier.secondsSince1970;
    }
};
