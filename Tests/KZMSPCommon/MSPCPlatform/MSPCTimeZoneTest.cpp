#include "MSPCTimeZone.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <limits>
#include <string>
#include <vector>

#include "RecordingLog.h"
#include "UTCInstant.h"

namespace {

MSPCTimeZone zoneNamed(std::string_view name) {
    return MSPCTimeZone::named(name).value();
}

struct OffsetCase {
    const char* zone;
    MSPCInstant instant;
    std::int64_t offset;
    std::int64_t daylightSaving;
};

const MSPCInstant winter = utcInstant(2012, 1, 15, 12);
const MSPCInstant summer = utcInstant(2012, 7, 15, 12);

}  // namespace

TEST(MSPCTimeZone, offsetAndDaylightSavingPartAreThoseOfTheZoneAtTheInstant) {
    const OffsetCase cases[] = {
        {"Europe/Berlin", winter, 3600, 0},
        {"Europe/Berlin", summer, 7200, 3600},
        {"UTC", summer, 0, 0},
        {"Asia/Kolkata", winter, 19'800, 0},  // no summer time
        {"Asia/Kolkata", summer, 19'800, 0},
        {"America/St_Johns", winter, -12'600, 0},
        {"America/St_Johns", summer, -9'000, 3600},
        {"Pacific/Marquesas", summer, -34'200, 0},
        {"Europe/Dublin", winter, 0, 0},
        {"Europe/Dublin", summer, 3600, 3600},
        {"Australia/Lord_Howe", winter, 39'600, 1800},  // summer there, of half an hour
        {"Australia/Lord_Howe", summer, 37'800, 0},
        {"Africa/Windhoek", utcInstant(2000, 1, 15), 7200, 3600},  // from 1994 to 2017 the winter was an hour behind
        {"Africa/Windhoek", utcInstant(2000, 7, 15), 3600, 0},
        {"Africa/Windhoek", utcInstant(2018, 7, 15), 7200, 0},
        {"Africa/Windhoek", utcInstant(1992, 7, 15), 7200, 0},
    };
    for (const auto& [zone, instant, offset, daylightSaving] : cases) {
        EXPECT_EQ(zoneNamed(zone).secondsFromGMT(instant), offset) << zone << ' ' << instant.secondsSince1970;
        EXPECT_EQ(zoneNamed(zone).daylightSavingOffset(instant), daylightSaving) << zone << ' ' << secondsOf(instant);
    }
}

TEST(MSPCTimeZone, changesTakeEffectAtTheirVerySecond) {
    const auto berlin = zoneNamed("Europe/Berlin");
    const auto spring = utcInstant(2012, 3, 25, 1);
    EXPECT_EQ(berlin.secondsFromGMT(spring - 0.001), 3600);
    EXPECT_EQ(berlin.secondsFromGMT(spring), 7200);
    const auto autumn = utcInstant(2012, 10, 28, 1);
    EXPECT_EQ(berlin.secondsFromGMT(autumn - 0.001), 7200);
    EXPECT_EQ(berlin.secondsFromGMT(autumn), 3600);
}

TEST(MSPCTimeZone, answersDoNotDependOnEarlierLookUps) {
    const auto berlin = zoneNamed("Europe/Berlin");
    for (int round = 0; round < 2; ++round) {
        for (int year = 1990; year < 2060; ++year) {
            EXPECT_EQ(berlin.secondsFromGMT(utcInstant(year, 7, 1)), 7200) << year;
            EXPECT_EQ(berlin.secondsFromGMT(utcInstant(year, 1, 1)), 3600) << year;
        }
    }
}

TEST(MSPCTimeZone, beforeTheFirstChangeTheFirstOffsetHolds) {
    const auto berlin = zoneNamed("Europe/Berlin");
    EXPECT_EQ(berlin.secondsFromGMT(utcInstant(1850, 6, 1)), 3208);  // local mean time, 0:53:28
    EXPECT_EQ(berlin.secondsFromGMT(utcInstant(-4000, 6, 1)), 3208);
    EXPECT_EQ(berlin.daylightSavingOffset(utcInstant(-4000, 6, 1)), 0);
}

TEST(MSPCTimeZone, afterTheLastKnownChangeTheYearlyRuleGoesOn) {
    const auto berlin = zoneNamed("Europe/Berlin");
    // 2100-03-28 and 4900-03-28 are the last Sundays of their March, like every 400 years.
    for (const int year : {2100, 2500, 4900, 32'500}) {
        EXPECT_EQ(berlin.secondsFromGMT(utcInstant(year, 3, 28, 0, 59, 59)), 3600) << year;
        EXPECT_EQ(berlin.secondsFromGMT(utcInstant(year, 3, 28, 1)), 7200) << year;
        EXPECT_EQ(secondsOf(berlin.instantFromWallClock(secondsOf(utcInstant(year, 7, 1, 12)))),
                  secondsOf(utcInstant(year, 7, 1, 10)))
            << year;
    }
}

TEST(MSPCTimeZone, hugeInstantsAndWallClocksHaveAnOffset) {
    const auto berlin = zoneNamed("Europe/Berlin");
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double seconds : {1e15, 1e18, 1e300, infinity, -1e15, -1e18, -1e300, -infinity}) {
        const auto offset = berlin.secondsFromGMT({seconds});
        EXPECT_TRUE(seconds < 0 ? offset == 3208 : offset == 3600 || offset == 7200) << seconds << ' ' << offset;
    }
    EXPECT_EQ(berlin.secondsFromGMT({std::numeric_limits<double>::quiet_NaN()}), 3600);
    EXPECT_GT(berlin.instantFromWallClock(std::numeric_limits<std::int64_t>::max()).secondsSince1970, 1e18);
    EXPECT_LT(berlin.instantFromWallClock(std::numeric_limits<std::int64_t>::min()).secondsSince1970, -1e18);
}

TEST(MSPCTimeZone, wallClockBecomesTheInstantAtWhichTheClockShowsIt) {
    struct Case {
        const char* zone;
        MSPCInstant wallClock;
        MSPCInstant instant;
    };
    const Case cases[] = {
        {"Europe/Berlin", utcInstant(2012, 1, 5, 8), utcInstant(2012, 1, 5, 7)},
        {"Europe/Berlin", utcInstant(2012, 7, 5, 8), utcInstant(2012, 7, 5, 6)},
        {"America/St_Johns", utcInstant(2012, 1, 5, 8), utcInstant(2012, 1, 5, 11, 30)},
        {"UTC", utcInstant(2012, 7, 5, 8), utcInstant(2012, 7, 5, 8)},
        // On either side of the clock's changes in Berlin.
        {"Europe/Berlin", utcInstant(2012, 3, 25, 1, 59, 59), utcInstant(2012, 3, 25, 0, 59, 59)},
        {"Europe/Berlin", utcInstant(2012, 3, 25, 3), utcInstant(2012, 3, 25, 1)},
        {"Europe/Berlin", utcInstant(2012, 10, 28, 1, 59, 59), utcInstant(2012, 10, 27, 23, 59, 59)},
        {"Europe/Berlin", utcInstant(2012, 10, 28, 3), utcInstant(2012, 10, 28, 2)},
    };
    for (const auto& [zone, wallClock, instant] : cases) {
        EXPECT_EQ(secondsOf(zoneNamed(zone).instantFromWallClock(secondsOf(wallClock))), secondsOf(instant))
            << zone << ' ' << secondsOf(wallClock);
    }
}

TEST(MSPCTimeZone, skippedTimeIsTakenWithTheOffsetBeforeTheChange) {
    const auto instantOf = [](const char* zone, MSPCInstant wallClock) {
        return secondsOf(zoneNamed(zone).instantFromWallClock(secondsOf(wallClock)));
    };
    EXPECT_EQ(instantOf("Europe/Berlin", utcInstant(2012, 3, 25, 2, 30)), secondsOf(utcInstant(2012, 3, 25, 1, 30)));
    EXPECT_EQ(instantOf("Europe/Berlin", utcInstant(2012, 3, 25, 2)), secondsOf(utcInstant(2012, 3, 25, 1)));
    // Half an hour is skipped on Lord Howe: 02:00 (+10:30) to 02:30 (+11:00).
    EXPECT_EQ(instantOf("Australia/Lord_Howe", utcInstant(2012, 10, 7, 2, 15)),
              secondsOf(utcInstant(2012, 10, 6, 15, 45)));
    // Samoa skipped the whole of 2011-12-30, going from -10:00 to +14:00.
    EXPECT_EQ(instantOf("Pacific/Apia", utcInstant(2011, 12, 30, 12)), secondsOf(utcInstant(2011, 12, 30, 22)));
}

TEST(MSPCTimeZone, timeThatOccursTwiceMeansTheLaterOne) {
    const auto instantOf = [](const char* zone, MSPCInstant wallClock) {
        return secondsOf(zoneNamed(zone).instantFromWallClock(secondsOf(wallClock)));
    };
    EXPECT_EQ(instantOf("Europe/Berlin", utcInstant(2012, 10, 28, 2, 30)), secondsOf(utcInstant(2012, 10, 28, 1, 30)));
    EXPECT_EQ(instantOf("Europe/Berlin", utcInstant(2012, 10, 28, 2)), secondsOf(utcInstant(2012, 10, 28, 1)));
    EXPECT_EQ(instantOf("Australia/Lord_Howe", utcInstant(2012, 4, 1, 1, 45)),
              secondsOf(utcInstant(2012, 3, 31, 15, 15)));
    EXPECT_EQ(instantOf("America/St_Johns", utcInstant(2012, 11, 4, 1, 30)), secondsOf(utcInstant(2012, 11, 4, 5)));
}

TEST(MSPCTimeZone, fixedZoneHasOneOffset) {
    const auto zone = MSPCTimeZone::fixed(-5400);
    EXPECT_EQ(zone.name(), "GMT-01:30");
    EXPECT_EQ(zone.secondsFromGMT(summer), -5400);
    EXPECT_EQ(zone.secondsFromGMT({1e17}), -5400);
    EXPECT_EQ(zone.daylightSavingOffset(summer), 0);
    EXPECT_EQ(secondsOf(zone.instantFromWallClock(0)), 5400);
    EXPECT_EQ(MSPCTimeZone::fixed(0).name(), "GMT");
    EXPECT_EQ(MSPCTimeZone::fixed(45'900).name(), "GMT+12:45");
}

TEST(MSPCTimeZone, onlyNamesOfTheDatabaseNameAZone) {
    EXPECT_EQ(zoneNamed("Europe/Berlin").name(), "Europe/Berlin");
    for (const char* name : {"", "Nowhere/Town", "GMT+5", "Etc/Unknown", "CET-1CEST", "\xFF"}) {
        EXPECT_FALSE(MSPCTimeZone::named(name)) << name;
    }
}

TEST(MSPCTimeZone, environmentNamesTheZoneWithOrWithoutColon) {
    RecordingLog log;
    EXPECT_EQ(MSPCTimeZone::fromEnvironment("America/St_Johns", log).name(), "America/St_Johns");
    EXPECT_EQ(MSPCTimeZone::fromEnvironment(":America/St_Johns", log).name(), "America/St_Johns");
}

TEST(MSPCTimeZone, environmentThatNamesNothingGivesUTCWithAWarning) {
    RecordingLog log;
    EXPECT_EQ(MSPCTimeZone::fromEnvironment("Mars/Olympus", log).secondsFromGMT(summer), 0);
    EXPECT_EQ(log.takeLines(),
              std::vector<std::string>{"WARNING: Unknown time zone in TZ: 'Mars/Olympus'. UTC is used instead."});
    EXPECT_EQ(MSPCTimeZone::fromEnvironment("", log).name(), "UTC");
    EXPECT_EQ(log.takeLines(), std::vector<std::string>{"WARNING: Unknown time zone in TZ: ''. UTC is used instead."});
}

TEST(MSPCTimeZone, missingEnvironmentGivesTheMachinesZoneSilently) {
    RecordingLog log;
    // The test programs run with TZ=Europe/Berlin, which the machine's zone detection honours.
    setenv("TZ", "Asia/Kolkata", 1);
    tzset();
    EXPECT_EQ(MSPCTimeZone::fromEnvironment(nullptr, log).secondsFromGMT(summer), 19'800);
    unsetenv("TZ");
    tzset();
    const auto local = static_cast<std::time_t>(secondsOf(summer));
    EXPECT_EQ(MSPCTimeZone::fromEnvironment(nullptr, log).secondsFromGMT(summer), std::localtime(&local)->tm_gmtoff);
}
