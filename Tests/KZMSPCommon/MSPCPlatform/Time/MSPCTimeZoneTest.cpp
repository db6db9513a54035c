#include "MSPCTimeZone.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "RecordingLog.h"
#include "ScopedEnvironment.h"
#include "ScopedTempFolder.h"
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

void checkOffsets(std::span<const OffsetCase> cases) {
    for (const auto& [zone, instant, offset, daylightSaving] : cases) {
        EXPECT_EQ(zoneNamed(zone).secondsFromGMT(instant), offset) << zone << ' ' << secondsOf(instant);
        EXPECT_EQ(zoneNamed(zone).daylightSavingOffset(instant), daylightSaving) << zone << ' ' << secondsOf(instant);
    }
}

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
        {"Australia/Lord_Howe", winter, 39'600, 1800},  // summer there, of half an hour
        {"Australia/Lord_Howe", summer, 37'800, 0},
    };
    checkOffsets(cases);
}

TEST(MSPCTimeZone, daylightSavingIsWhatClocksAreAheadOfStandardTime) {
    const OffsetCase cases[] = {
        {"Antarctica/Troll", winter, 0, 0},
        {"Antarctica/Troll", summer, 7200, 7200},
        {"Europe/London", utcInstant(1941, 6, 1), 7200, 7200},  // double summer time of the war
        {"Europe/Berlin", utcInstant(1945, 6, 1), 10'800, 7200},
        {"America/New_York", utcInstant(1943, 1, 1), -14'400, 3600},  // war time, all the year
        // Standard time changed when daylight saving began or ended.
        {"Europe/Istanbul", utcInstant(2016, 8, 1), 10'800, 3600},
        {"Europe/Istanbul", utcInstant(2016, 12, 1), 10'800, 0},
        {"Pacific/Apia", utcInstant(2011, 12, 29), -36'000, 3600},
        {"Pacific/Apia", utcInstant(2011, 12, 31), 50'400, 3600},
        {"America/Grand_Turk", utcInstant(2018, 1, 1), -14'400, 0},
        {"America/Grand_Turk", utcInstant(2018, 7, 1), -14'400, 3600},
        {"America/Scoresbysund", utcInstant(2024, 7, 1), -3600, 3600},
        {"America/Argentina/Buenos_Aires", utcInstant(1999, 12, 1), -10'800, 3600},
    };
    checkOffsets(cases);
}

TEST(MSPCTimeZone, winterBehindStandardTimeMakesTheSummerDaylightSaving) {
    const OffsetCase cases[] = {
        {"Europe/Dublin", winter, 0, 0},
        {"Europe/Dublin", summer, 3600, 3600},
        {"Europe/Dublin", utcInstant(2100, 1, 15), 0, 0},
        {"Europe/Dublin", utcInstant(2100, 7, 15), 3600, 3600},
        {"Europe/Dublin", utcInstant(1970, 1, 15), 3600, 0},  // standard time all the year from 1968 to 1971
        {"Europe/Dublin", utcInstant(1972, 1, 15), 0, 0},
        {"Europe/Dublin", utcInstant(1967, 7, 15), 3600, 3600},    // then summer time as elsewhere
        {"Africa/Windhoek", utcInstant(2000, 1, 15), 7200, 3600},  // from 1994 to 2017 the winter was an hour behind
        {"Africa/Windhoek", utcInstant(2000, 7, 15), 3600, 0},
        {"Africa/Windhoek", utcInstant(2018, 7, 15), 7200, 0},
        {"Africa/Windhoek", utcInstant(1992, 7, 15), 7200, 0},
    };
    checkOffsets(cases);
}

// Morocco is behind its standard time during Ramadan, in 2026 from 15 February to 22 March.
// A rule says how far its summer is ahead, however much that is and however short it lasts.
TEST(MSPCTimeZone, daylightSavingOfARuleIsWhatTheRuleSays) {
    RecordingLog log;
    const struct {
        const char* rule;
        MSPCInstant instant;
        std::int64_t offset;
        std::int64_t daylightSaving;
    } cases[] = {
        {"AAA-1BBB-4,M3.5.0,M10.5.0/3", utcInstant(2026, 7, 1), 14'400, 10'800},
        {"AAA-1BBB-4,M3.5.0,M10.5.0/3", utcInstant(2026, 1, 1), 3'600, 0},
        {"AAA-1BBB-4,M3.5.0,M10.5.0/3", utcInstant(2426, 7, 1), 14'400, 10'800},
        {"AAA12BBB-12,M3.5.0,M10.5.0", utcInstant(2026, 7, 1), 43'200, 86'400},
        // From Friday 2026-04-10 at 10:00 to 13:00 by the summer's clocks: two hours.
        {"AAA-1BBB,J100/10,J100/13", utcInstant(2026, 4, 10, 8, 59, 59), 3'600, 0},
        {"AAA-1BBB,J100/10,J100/13", utcInstant(2026, 4, 10, 9), 7'200, 3'600},
        {"AAA-1BBB,J100/10,J100/13", utcInstant(2026, 4, 10, 10, 59, 59), 7'200, 3'600},
        {"AAA-1BBB,J100/10,J100/13", utcInstant(2026, 4, 10, 11), 3'600, 0},
        {"AAA-1BBB-1:20,J100/0,J103/0", utcInstant(2026, 4, 11), 4'800, 1'200},
        // Nearly all the year.
        {"AAA3BBB0,0/0,J365/27", utcInstant(2026, 1, 1, 12), 0, 10'800},
        {"AAA3BBB0,0/0,J365/27", utcInstant(2026, 7, 1), 0, 10'800},
    };
    for (const auto& [rule, instant, offset, daylightSaving] : cases) {
        const auto zone = MSPCTimeZone::fromEnvironment(rule, log);
        EXPECT_EQ(zone.secondsFromGMT(instant), offset) << rule << ' ' << secondsOf(instant);
        EXPECT_EQ(zone.daylightSavingOffset(instant), daylightSaving) << rule << ' ' << secondsOf(instant);
    }
}

TEST(MSPCTimeZone, daylightSavingForMostOfTheYearIsNone) {
    for (const char* zone : {"Africa/Casablanca", "Africa/El_Aaiun"}) {
        const OffsetCase cases[] = {
            {zone, utcInstant(2026, 1, 15), 3600, 0},   {zone, utcInstant(2026, 3, 1), 0, -3600},
            {zone, utcInstant(2026, 7, 15), 3600, 0},   {zone, utcInstant(2018, 12, 1), 3600, 0},
            {zone, utcInstant(2018, 8, 1), 3600, 3600},  // summer time until then
            {zone, utcInstant(2018, 2, 1), 0, 0},       {zone, utcInstant(2090, 7, 15), 3600, 0},
        };
        checkOffsets(cases);
    }
    const OffsetCase once[] = {{"Europe/Prague", utcInstant(1947, 1, 15), 0, -3600},  // in one winter alone
                               {"Europe/Prague", utcInstant(1946, 11, 1), 3600, 0},
                               {"Europe/Prague", utcInstant(1947, 7, 1), 7200, 3600}};
    checkOffsets(once);
}

// What has changed in the world since the end of 2022, and zones that are younger.
TEST(MSPCTimeZone, offsetsAreThoseOfTheMachinesDatabase) {
    const auto june = utcInstant(2026, 6, 5, 8);
    const auto january = utcInstant(2026, 1, 15);
    const OffsetCase cases[] = {
        {"America/Mexico_City", june, -21'600, 0}, {"Mexico/General", june, -21'600, 0},
        {"Africa/Cairo", june, 10'800, 3600},      {"Asia/Almaty", june, 18'000, 0},
        {"America/Asuncion", june, -10'800, 0},    {"America/Nuuk", january, -7200, 0},
        {"America/Nuuk", june, -3600, 3600},       {"America/Scoresbysund", january, -7200, 0},
        {"Pacific/Fiji", january, 43'200, 0},      {"Asia/Gaza", june, 10'800, 3600},
        {"Asia/Hebron", january, 7200, 0},         {"Antarctica/Casey", june, 28'800, 0},
        {"Antarctica/Vostok", june, 18'000, 0},    {"America/Ciudad_Juarez", june, -21'600, 3600},
        {"America/Coyhaique", june, -10'800, 0},   {"America/Coyhaique", january, -10'800, 0},
    };
    checkOffsets(cases);
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
    for (const char* name : {"", "Nowhere/Town", "GMT+5", "Etc/Unknown", "CET-1CEST", "\xFF", "Europe", "zone.tab"}) {
        EXPECT_FALSE(MSPCTimeZone::named(name)) << name;
    }
    EXPECT_FALSE(MSPCTimeZone::named(std::string_view("UTC\0x", 5)));
}

TEST(MSPCTimeZone, environmentNamesTheZoneWithOrWithoutColon) {
    RecordingLog log;
    EXPECT_EQ(MSPCTimeZone::fromEnvironment("America/St_Johns", log).name(), "America/St_Johns");
    EXPECT_EQ(MSPCTimeZone::fromEnvironment(":America/St_Johns", log).name(), "America/St_Johns");
    EXPECT_EQ(MSPCTimeZone::fromEnvironment(":America/St_Johns", log).secondsFromGMT(summer), -9'000);
}

TEST(MSPCTimeZone, emptyEnvironmentIsUTCSilently) {
    RecordingLog log;
    for (const char* tz : {"", ":"}) {
        EXPECT_EQ(MSPCTimeZone::fromEnvironment(tz, log).name(), "UTC");
        EXPECT_EQ(MSPCTimeZone::fromEnvironment(tz, log).secondsFromGMT(summer), 0);
    }
}

TEST(MSPCTimeZone, environmentThatNamesNothingGivesUTCWithAWarning) {
    RecordingLog log;
    const auto zone = MSPCTimeZone::fromEnvironment("Mars/Olympus", log);
    EXPECT_EQ(log.takeLines(),
              std::vector<std::string>{"WARNING: Unknown time zone in TZ: 'Mars/Olympus'. UTC is used instead."});
    EXPECT_EQ(zone.name(), "UTC");
    EXPECT_EQ(zone.secondsFromGMT(summer), 0);
}

TEST(MSPCTimeZone, missingEnvironmentGivesTheMachinesZoneSilently) {
    RecordingLog log;
    const ScopedTempFolder folder;
    const auto zone = folder / "localtime";
    std::filesystem::create_symlink("/usr/share/zoneinfo/Asia/Kolkata", zone);
    const MSPCZoneFiles files{"/usr/share/zoneinfo", zone};
    EXPECT_EQ(MSPCTimeZone::fromEnvironment(nullptr, log, files).secondsFromGMT(summer), 19'800);
    EXPECT_EQ(MSPCTimeZone::fromEnvironment(nullptr, log, files).name(), zone);
    // A copy instead of a link.
    std::filesystem::remove(zone);
    std::filesystem::copy_file("/usr/share/zoneinfo/America/Coyhaique", zone);
    EXPECT_EQ(MSPCTimeZone::fromEnvironment(nullptr, log, files).secondsFromGMT(utcInstant(2026, 6, 5)), -10'800);
}

TEST(MSPCTimeZone, machineWithoutAZoneIsAtUTCWithAWarning) {
    const ScopedTempFolder folder;
    const auto damaged = folder.addFile("damaged", "TZif2");
    const auto dangling = folder / "dangling";
    std::filesystem::create_symlink(folder / "nowhere", dangling);
    for (const auto& file : {damaged, dangling, folder / "missing", folder.path(), std::string("/dev/zero")}) {
        RecordingLog log;
        const auto zone = MSPCTimeZone::fromEnvironment(nullptr, log, {"/usr/share/zoneinfo", file});
        EXPECT_EQ(zone.secondsFromGMT(summer), 0);
        EXPECT_EQ(log.takeLines(),
                  std::vector<std::string>{"WARNING: No time zone in '" + file + "'. UTC is used instead."});
    }
}

// What the C library knows for others in the process is what it was.
TEST(MSPCTimeZone, lookUpsLeaveTheProcessItsZone) {
    const auto localHour = [] {
        const auto noon = static_cast<std::time_t>(secondsOf(summer));
        std::tm local{};
        ::localtime_r(&noon, &local);
        return local.tm_hour;
    };
    for (const char* tz : {"XYZ-7", static_cast<const char*>(nullptr)}) {
        const ScopedEnvironment zone("TZ", tz);
        ::tzset();
        const auto hour = localHour();
        EXPECT_EQ(zoneNamed("America/St_Johns").secondsFromGMT(summer), -9'000);
        EXPECT_STREQ(std::getenv("TZ"), tz);
        EXPECT_EQ(localHour(), hour);
    }
    ::tzset();
}
