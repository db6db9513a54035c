#include "MSPCDateComponents.h"

#include <gtest/gtest.h>

#include "FixedClock.h"
#include "UTCInstant.h"

namespace {

MSPCTimeZone zoneNamed(std::string_view name) {
    return MSPCTimeZone::named(name).value();
}

MSPCDateComponents componentsOf(std::int64_t year, std::int64_t month, std::int64_t day, std::int64_t hour,
                                std::int64_t minute = 0, std::int64_t second = 0) {
    MSPCDateComponents components;
    components.year = year;
    components.month = month;
    components.day = day;
    components.hour = hour;
    components.minute = minute;
    components.second = second;
    return components;
}

MSPCDateComponents atOffset(MSPCDateComponents components, std::int64_t hour, std::int64_t minute) {
    components.timeZoneHour = hour;
    components.timeZoneMinute = minute;
    components.isUTC = false;
    return components;
}

const FixedClock winterClock(utcInstant(2012, 1, 10, 11));
const FixedClock summerClock(utcInstant(2012, 7, 10, 11));

}  // namespace

TEST(MSPCDateComponents, areEmptyAndInUTCAtFirst) {
    const MSPCDateComponents components;
    EXPECT_EQ(static_cast<const MSPCDateFields&>(components), MSPCDateFields());
    EXPECT_EQ(components.year, 9'223'372'036'854'775'807);
    EXPECT_TRUE(components.isUTC);
    EXPECT_EQ(components.timeZoneHour, 0);
    EXPECT_EQ(components.timeZoneMinute, 0);
}

TEST(MSPCDateComponents, fieldsAreCopiedAndTheZoneIsUTC) {
    MSPCDateFields fields;
    fields.era = 1;
    fields.year = 2012;
    fields.week = 3;
    fields.weekday = 4;
    fields.weekdayOrdinal = 5;
    fields.quarter = 6;
    const MSPCDateComponents components(fields);
    EXPECT_EQ(static_cast<const MSPCDateFields&>(components), fields);
    EXPECT_TRUE(components.isUTC);
}

TEST(MSPCDateComponents, unitFlagsHaveTheirValues) {
    EXPECT_EQ(MSPCUnit::Date, 28);
    EXPECT_EQ(MSPCUnit::Date | MSPCUnit::Time, 252);
    EXPECT_EQ(MSPCUnit::All, 0xe000fc);
    EXPECT_EQ(MSPCUnit::NotFound, 9'223'372'036'854'775'807);
}

TEST(MSPCDateComponents, fixUTCLooksAtHourAndMinute) {
    MSPCDateComponents components;
    components.timeZoneMinute = 30;
    components.fixUTC();
    EXPECT_FALSE(components.isUTC);
    components.timeZoneMinute = 0;
    components.fixUTC();
    EXPECT_TRUE(components.isUTC);
    components.timeZoneHour = -1;
    components.fixUTC();
    EXPECT_FALSE(components.isUTC);
}

TEST(MSPCDateComponents, forcedZoneIsTheOffsetNowPlusTheDaylightSavingPartAtTheDate) {
    struct Case {
        const char* zone;
        const FixedClock* clock;
        std::int64_t month;
        std::int64_t hour;
        std::int64_t minute;
    };
    const Case cases[] = {
        {"Europe/Berlin", &winterClock, 1, 1, 0},
        {"Europe/Berlin", &winterClock, 7, 2, 0},
        {"Europe/Berlin", &summerClock, 1, 2, 0},
        {"Europe/Berlin", &summerClock, 7, 3, 0},
        {"Europe/Dublin", &winterClock, 1, 0, 0},
        {"Europe/Dublin", &winterClock, 7, 1, 0},
        {"Europe/Dublin", &summerClock, 7, 2, 0},
        {"UTC", &summerClock, 7, 0, 0},
        {"Asia/Kolkata", &summerClock, 7, 5, 30},
        {"America/St_Johns", &winterClock, 1, -3, -30},
        {"America/St_Johns", &winterClock, 7, -2, -30},
        {"America/St_Johns", &summerClock, 7, -1, -30},
        {"Pacific/Marquesas", &winterClock, 7, -9, -30},
        // January is summer on Lord Howe.
        {"Australia/Lord_Howe", &winterClock, 1, 11, 30},
        {"Australia/Lord_Howe", &winterClock, 7, 11, 0},
        {"Australia/Lord_Howe", &summerClock, 1, 11, 0},
        {"Australia/Lord_Howe", &summerClock, 7, 10, 30},
    };
    for (const auto& [zone, clock, month, hour, minute] : cases) {
        auto components = componentsOf(2012, month, 5, 8, 30, 15);
        EXPECT_EQ(components.forceSystemTimezoneforDate(std::nullopt, zoneNamed(zone), *clock), MSPCUnit::All);
        auto expected = componentsOf(2012, month, 5, 8, 30, 15);
        expected.timeZoneHour = hour;
        expected.timeZoneMinute = minute;
        expected.isUTC = hour == 0 && minute == 0;
        EXPECT_EQ(components, expected) << zone << ' ' << month << components.componentsDescription();
    }
}

TEST(MSPCDateComponents, forcedZoneInWindhoekFollowsTheDatesYear) {
    const auto windhoek = zoneNamed("Africa/Windhoek");
    const FixedClock clock(utcInstant(2020, 1, 10));  // +02:00 the whole year, since 2017
    auto inSummer = componentsOf(2000, 1, 5, 8);
    inSummer.forceSystemTimezoneforDate(std::nullopt, windhoek, clock);
    EXPECT_EQ(inSummer.timeZoneHour, 3);
    auto inWinter = componentsOf(2000, 7, 5, 8);
    inWinter.forceSystemTimezoneforDate(std::nullopt, windhoek, clock);
    EXPECT_EQ(inWinter.timeZoneHour, 2);
}

TEST(MSPCDateComponents, forcedZoneUsesTheGivenDateInsteadOfTheFields) {
    auto components = componentsOf(2012, 1, 5, 8);
    components.forceSystemTimezoneforDate(utcInstant(2012, 7, 5), zoneNamed("Europe/Berlin"), winterClock);
    EXPECT_EQ(components, atOffset(componentsOf(2012, 1, 5, 8), 2, 0));
}

TEST(MSPCDateComponents, forcedZoneWithoutAnyDateIsTheOffsetNow) {
    MSPCDateComponents components;
    components.hour = 8;
    components.forceSystemTimezoneforDate(std::nullopt, zoneNamed("Europe/Berlin"), summerClock);
    EXPECT_EQ(components.timeZoneHour, 2);
}

TEST(MSPCDateComponents, forcedZoneReplacesAnEarlierOne) {
    auto components = atOffset(componentsOf(2012, 7, 5, 8), 5, 30);
    components.forceSystemTimezoneforDate(std::nullopt, zoneNamed("UTC"), summerClock);
    EXPECT_EQ(components, componentsOf(2012, 7, 5, 8));
}

TEST(MSPCDateComponents, convertingMovesTheClockFieldsToTheOffset) {
    auto components = atOffset(componentsOf(2012, 1, 1, 0, 30), 1, 0);
    EXPECT_EQ(components.convertToUTC(), MSPCUnit::All);
    EXPECT_EQ(components, componentsOf(2011, 12, 31, 23, 30));

    EXPECT_EQ(components.convertToTimeZoneForSecondsFromGMT(20'700), MSPCUnit::All);
    EXPECT_EQ(components, atOffset(componentsOf(2012, 1, 1, 5, 15), 5, 45));

    EXPECT_EQ(components.convertToTimeZoneForSecondsFromGMT(-12'600), MSPCUnit::All);
    EXPECT_EQ(components, atOffset(componentsOf(2011, 12, 31, 20), -3, -30));
}

TEST(MSPCDateComponents, convertingCountsTheMinuteEastwardsWhateverTheHoursSign) {
    auto components = atOffset(componentsOf(2012, 1, 5, 8), -5, 30);  // read from "-05:30"
    EXPECT_EQ(components.convertToUTC(), MSPCUnit::All);
    EXPECT_EQ(components, componentsOf(2012, 1, 5, 12, 30));
}

TEST(MSPCDateComponents, convertingToUTCLeavesUTCAlone) {
    MSPCDateComponents withoutDate;
    EXPECT_EQ(withoutDate.convertToUTC(), MSPCUnit::All);
    EXPECT_EQ(withoutDate, MSPCDateComponents());
    auto outOfRange = componentsOf(2012, 1, 5, 24);
    EXPECT_EQ(outOfRange.convertToUTC(), MSPCUnit::All);
    EXPECT_EQ(outOfRange.hour, 24);
}

TEST(MSPCDateComponents, convertingWithoutDateIsNotFoundAndChangesNothing) {
    MSPCDateComponents components;
    components.hour = 8;
    components = atOffset(components, 1, 0);
    const auto before = components;
    EXPECT_EQ(components.convertToTimeZoneForSecondsFromGMT(7200), MSPCUnit::NotFound);
    EXPECT_EQ(components.convertToUTC(), MSPCUnit::NotFound);
    EXPECT_EQ(components.convertToSystemTimezone(zoneNamed("Europe/Berlin")), MSPCUnit::NotFound);
    EXPECT_EQ(components, before);
}

TEST(MSPCDateComponents, convertingToTheSystemZoneTakesTheOffsetAtTheWallClockTime) {
    auto winter = componentsOf(2012, 3, 5, 7);
    EXPECT_EQ(winter.convertToSystemTimezone(zoneNamed("Europe/Berlin")), MSPCUnit::All);
    EXPECT_EQ(winter, atOffset(componentsOf(2012, 3, 5, 8), 1, 0));

    auto summer = componentsOf(2012, 7, 5, 7);
    EXPECT_EQ(summer.convertToSystemTimezone(zoneNamed("Europe/Berlin")), MSPCUnit::All);
    EXPECT_EQ(summer, atOffset(componentsOf(2012, 7, 5, 9), 2, 0));

    // 02:30Z on the day of the change is
    // looked up as 02:30 on Berlin's clocks, which the change skips and which counts as 03:30+02:00.
    auto atTheChange = componentsOf(2012, 3, 25, 2, 30);
    EXPECT_EQ(atTheChange.convertToSystemTimezone(zoneNamed("Europe/Berlin")), MSPCUnit::All);
    EXPECT_EQ(atTheChange, atOffset(componentsOf(2012, 3, 25, 4, 30), 2, 0));
}

TEST(MSPCDateComponents, convertingToTheSystemZoneNearAChangeCanTakeTheOtherSidesOffset) {
    // 01:30Z is 03:30+02:00 in Berlin; read as Berlin's 01:30 it lies before the change, so +01:00 is taken.
    auto components = componentsOf(2012, 3, 25, 1, 30);
    EXPECT_EQ(components.convertToSystemTimezone(zoneNamed("Europe/Berlin")), MSPCUnit::All);
    EXPECT_EQ(components, atOffset(componentsOf(2012, 3, 25, 2, 30), 1, 0));
}

TEST(MSPCDateComponents, descriptionsListAllFields) {
    auto components = atOffset(componentsOf(2012, 1, 5, 8, 30, 15), -3, -30);
    components.era = 1;
    components.week = 2;
    components.weekday = 5;
    components.weekdayOrdinal = 4;
    components.quarter = 3;
    EXPECT_EQ(components.componentsDescription(), "\n  isUTC=0\n  timeZoneHour=-3\n  timeZoneMinute=-30");
    EXPECT_EQ(
        componentsDescription(components),
        "\n  era=1\n  year=2012\n  month=1\n  day=5\n  hour=8\n  minute=30\n  second=15\n  week=2\n  weekday=5\n  "
        "weekdayOrdinal=4\n  quarter=3");
    EXPECT_EQ(description(components),
              "NSDateComponents:\n  era=1\n  year=2012\n  month=1\n  day=5\n  hour=8\n  minute=30\n  second=15\n  "
              "week=2\n  weekday=5\n  weekdayOrdinal=4\n  quarter=3");
    EXPECT_EQ(components.description(),
              "MSPCDateComponents:\n  era=1\n  year=2012\n  month=1\n  day=5\n  hour=8\n  minute=30\n  second=15\n  "
              "week=2\n  weekday=5\n  weekdayOrdinal=4\n  quarter=3\n  isUTC=0\n  timeZoneHour=-3\n  "
              "timeZoneMinute=-30");
}

TEST(MSPCDateComponents, undefinedFieldsPrintAsTheLargestInteger) {
    EXPECT_EQ(MSPCDateComponents().componentsDescription(), "\n  isUTC=1\n  timeZoneHour=0\n  timeZoneMinute=0");
    EXPECT_NE(componentsDescription(MSPCDateFields()).find("\n  year=9223372036854775807\n"), std::string::npos);
}
