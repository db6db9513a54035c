#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <string>

#include "MSPCGregorianCalendar.h"

// The calendar of a zone of the database.
inline MSPCGregorianCalendar gregorianIn(const std::string& zone) {
    return MSPCGregorianCalendar(MSPCTimeZone::named(zone).value());
}

// The instant of "YYYY-MM-DDThh:mm:ss" on a zone's wall clocks.
inline MSPCInstant instantAt(const std::string& text, const MSPCGregorianCalendar& gregorian) {
    MSPCDateFields fields;
    const auto read = std::sscanf(text.c_str(), "%ld-%ld-%ldT%ld:%ld:%ld", &fields.year, &fields.month, &fields.day,
                                  &fields.hour, &fields.minute, &fields.second);
    EXPECT_EQ(read, 6) << text;
    return gregorian.instantFrom(fields).value();
}

// "YYYY-MM-DDThh:mm:ss" of an instant on a zone's wall clocks, a fraction of a second dropped; "none" without one.
inline std::string wallClockText(std::optional<MSPCInstant> instant, const MSPCGregorianCalendar& gregorian) {
    if (!instant) {
        return "none";
    }
    const auto fields = gregorian.fieldsOf(*instant);
    char text[128];
    std::snprintf(text, sizeof text, "%04ld-%02ld-%02ldT%02ld:%02ld:%02ld", fields.year, fields.month, fields.day,
                  fields.hour, fields.minute, fields.second);
    return text;
}
