#include "MSPCStandardTimeClock.h"

#include <gtest/gtest.h>

#include "FixedClock.h"
#include "UTCInstant.h"

namespace {

// The offset of the zone at the time of the clock that was made of a present, in hours.
double offsetThen(const char* zone, MSPCInstant present) {
    const FixedClock clock(present);
    const auto timeZone = *MSPCTimeZone::named(zone);
    const auto then = MSPCStandardTimeClock(clock, timeZone).now();
    EXPECT_EQ(timeZone.daylightSavingOffset(then), 0) << zone;
    return static_cast<double>(timeZone.secondsFromGMT(then)) / 3600;
}

}  // namespace

TEST(MSPCStandardTimeClock, standsAtTheEndOfSummer) {
    const FixedClock july(utcInstant(2024, 7, 15, 12));
    const MSPCStandardTimeClock clock(july, *MSPCTimeZone::named("Europe/Berlin"));
    EXPECT_EQ(clock.now(), utcInstant(2024, 10, 27, 1));
}

TEST(MSPCStandardTimeClock, isThePresentInWinter) {
    const FixedClock january(utcInstant(2024, 1, 15, 12));
    EXPECT_EQ(MSPCStandardTimeClock(january, *MSPCTimeZone::named("Europe/Berlin")).now(), january.now());
    EXPECT_EQ(MSPCStandardTimeClock(january, MSPCTimeZone::fixed(3600)).now(), january.now());
}

TEST(MSPCStandardTimeClock, hasTheZonesStandardOffset) {
    EXPECT_EQ(offsetThen("Europe/Berlin", utcInstant(2024, 7, 15, 12)), 1);
    EXPECT_EQ(offsetThen("America/St_Johns", utcInstant(2024, 7, 15, 12)), -3.5);
    EXPECT_EQ(offsetThen("Australia/Lord_Howe", utcInstant(2024, 1, 15, 12)), 10.5);
    EXPECT_EQ(offsetThen("Europe/Dublin", utcInstant(2024, 7, 15, 12)), 0);
    // An hour behind its standard time in Ramadan.
    EXPECT_EQ(offsetThen("Africa/Casablanca", utcInstant(2024, 3, 20, 12)), 1);
    // Its last summer time went over into an offset that is there for good; the winter before counts.
    EXPECT_EQ(offsetThen("Europe/Istanbul", utcInstant(2016, 7, 15, 12)), 2);
}
