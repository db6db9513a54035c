#include "MSPCGregorianCalendar.h"

#include <gtest/gtest.h>

#include <limits>

#include "UTCInstant.h"

namespace {

MSPCGregorianCalendar calendarIn(std::string_view zone) {
    return MSPCGregorianCalendar(MSPCTimeZone::named(zone).value());
}

MSPCDateFields fieldsWith(std::int64_t year, std::int64_t month, std::int64_t day) {
    MSPCDateFields fields;
    fields.year = year;
    fields.month = month;
    fields.day = day;
    return fields;
}

MSPCDateFields fieldsWith(std::int64_t year, std::int64_t month, std::int64_t day, std::int64_t hour,
                          std::int64_t minute, std::int64_t second) {
    auto fields = fieldsWith(year, month, day);
    fields.hour = hour;
    fields.minute = minute;
    fields.second = second;
    return fields;
}

constexpr std::int64_t Largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t Smallest = std::numeric_limits<std::int64_t>::min();

}  // namespace

TEST(MSPCGregorianCalendar, fieldsAreThoseOfTheZonesWallClock) {
    auto expected = fieldsWith(2012, 1, 5, 8, 30, 15);
    expected.weekday = 5;  // a Thursday
    EXPECT_EQ(calendarIn("Europe/Berlin").fieldsOf(utcInstant(2012, 1, 5, 7, 30, 15)), expected);
    EXPECT_EQ(calendarIn("America/St_Johns").fieldsOf(utcInstant(2012, 1, 5, 12, 0, 15)), expected);

    expected = fieldsWith(2011, 12, 31, 23, 59, 59);
    expected.weekday = 7;
    EXPECT_EQ(calendarIn("UTC").fieldsOf(utcInstant(2012, 1, 1) - 1), expected);
}

TEST(MSPCGregorianCalendar, fractionsOfASecondAreDroppedTowardsThePast) {
    const auto utc = calendarIn("UTC");
    EXPECT_EQ(utc.fieldsOf({59.9}).second, 59);
    EXPECT_EQ(utc.fieldsOf({-0.1}).second, 59);
    EXPECT_EQ(utc.fieldsOf({-0.1}).year, 1969);
}

TEST(MSPCGregorianCalendar, fieldsOutsideTheirRangeCarryOver) {
    const auto utc = calendarIn("UTC");
    struct Case {
        MSPCDateFields fields;
        MSPCInstant expected;
    };
    const Case cases[] = {
        {fieldsWith(2012, 1, 5, 24, 0, 0), utcInstant(2012, 1, 6)},
        {fieldsWith(2012, 13, 1), utcInstant(2013, 1, 1)},
        {fieldsWith(2012, 0, 1), utcInstant(2011, 12, 1)},
        {fieldsWith(2012, -12, 1), utcInstant(2010, 12, 1)},
        {fieldsWith(2012, 2, 30), utcInstant(2012, 3, 1)},
        {fieldsWith(2012, 3, 0), utcInstant(2012, 2, 29)},
        {fieldsWith(2012, 1, 1, 0, 0, -1), utcInstant(2011, 12, 31, 23, 59, 59)},
        {fieldsWith(2012, 1, 1, 0, 1440, 0), utcInstant(2012, 1, 2)},
    };
    for (const auto& [fields, expected] : cases) {
        EXPECT_EQ(utc.instantFrom(fields), expected) << secondsOf(expected);
    }
}

TEST(MSPCGregorianCalendar, undefinedTimeCountsAsMidnightAndAnUndefinedDateGivesNone) {
    const auto utc = calendarIn("UTC");
    EXPECT_EQ(utc.instantFrom(fieldsWith(2012, 1, 5)), utcInstant(2012, 1, 5));
    constexpr auto undefined = MSPCDateFields::Undefined;
    EXPECT_EQ(utc.instantFrom(fieldsWith(undefined, 1, 5)), std::nullopt);
    EXPECT_EQ(utc.instantFrom(fieldsWith(2012, undefined, 5)), std::nullopt);
    EXPECT_EQ(utc.instantFrom(fieldsWith(2012, 1, undefined)), std::nullopt);
}

TEST(MSPCGregorianCalendar, wallClockInGapAndOverlapFollowsTheZonesRule) {
    const auto berlin = calendarIn("Europe/Berlin");
    EXPECT_EQ(berlin.instantFrom(fieldsWith(2012, 3, 25, 2, 30, 0)), utcInstant(2012, 3, 25, 1, 30));
    EXPECT_EQ(berlin.instantFrom(fieldsWith(2012, 10, 28, 2, 30, 0)), utcInstant(2012, 10, 28, 1, 30));
}

TEST(MSPCGregorianCalendar, everyDayOfManyYearsComesBackAsItWas) {
    const auto utc = calendarIn("UTC");
    auto weekday = MSPCNumberOf(utc.weekdayOf(utcInstant(-900, 1, 1)));
    for (auto instant = utcInstant(-900, 1, 1); instant < utcInstant(2900, 1, 1); instant = instant + 86'400) {
        const auto fields = utc.fieldsOf(instant);
        ASSERT_EQ(utc.instantFrom(fields), instant);
        ASSERT_EQ(fields.weekday, weekday);
        weekday = weekday % 7 + 1;
        const std::chrono::year_month_day date{
            std::chrono::sys_days(std::chrono::days(static_cast<int>(instant.secondsSince1970 / 86'400)))};
        ASSERT_EQ(fields.year, static_cast<int>(date.year()));
        ASSERT_EQ(fields.month, static_cast<unsigned>(date.month()));
        ASSERT_EQ(fields.day, static_cast<unsigned>(date.day()));
    }
}

TEST(MSPCGregorianCalendar, yearsOf32BitsComeBackToTheDay) {
    const auto utc = calendarIn("UTC");
    for (const std::int64_t year : {2'147'483'647LL, -2'147'483'648LL, 100'000'000LL, -1LL, 0LL}) {
        const auto fields = utc.fieldsOf(utc.instantFrom(fieldsWith(year, 7, 16, 12, 0, 0)).value());
        EXPECT_EQ(fields.year, year);
        EXPECT_EQ(fields.month, 7);
        EXPECT_EQ(fields.day, 16);
        EXPECT_EQ(fields.hour, 12);
    }
}

TEST(MSPCGregorianCalendar, fieldsBeyondAllReachCountAsTheFarthest) {
    const auto berlin = calendarIn("Europe/Berlin");
    for (const auto value : {Largest - 1, Smallest}) {
        for (const auto& fields : {fieldsWith(value, 1, 1), fieldsWith(2012, value, 1), fieldsWith(2012, 1, value),
                                   fieldsWith(2012, 1, 1, value, value, value), fieldsWith(value, value, value)}) {
            const auto instant = berlin.instantFrom(fields).value();
            EXPECT_EQ(instant > utcInstant(2012, 1, 1), value > 0);
            EXPECT_EQ(berlin.fieldsOf(instant).year > 2012, value > 0);
        }
    }
}

TEST(MSPCGregorianCalendar, instantsBeyondAllReachHaveFields) {
    const auto berlin = calendarIn("Europe/Berlin");
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_GT(berlin.fieldsOf({infinity}).year, 2'147'483'647);
    EXPECT_LT(berlin.fieldsOf({-infinity}).year, -2'147'483'648);
    EXPECT_EQ(berlin.fieldsOf({std::numeric_limits<double>::quiet_NaN()}).year, 1970);
    EXPECT_EQ(berlin.instantByAddingDays({0}, Largest) > utcInstant(2012, 1, 1), true);
    EXPECT_EQ(berlin.instantByAddingWallClock({0}, Smallest, Smallest, Smallest) < utcInstant(1900, 1, 1), true);
    EXPECT_GT(berlin.wholeDaysBetween({-infinity}, {1e300}), 0);
}

TEST(MSPCGregorianCalendar, midnightTimeOfDayAndWeekdayAreLocal) {
    const auto berlin = calendarIn("Europe/Berlin");
    const auto lateEvening = utcInstant(2012, 7, 5, 22, 30, 15);  // Friday 00:30:15 in Berlin
    EXPECT_EQ(berlin.midnightOf(lateEvening), utcInstant(2012, 7, 5, 22));
    EXPECT_EQ(berlin.timeOfDayOf(lateEvening).sinceMidnight, 1815);
    EXPECT_EQ(berlin.weekdayOf(lateEvening), MSPCWeekday::Friday);
    EXPECT_EQ(calendarIn("UTC").weekdayOf(lateEvening), MSPCWeekday::Thursday);
}

TEST(MSPCGregorianCalendar, timeOfDayIsWhatTheClockShowsOnDaysOfChange) {
    const auto berlin = calendarIn("Europe/Berlin");
    EXPECT_EQ(berlin.timeOfDayOf(utcInstant(2012, 3, 25, 10)).sinceMidnight, 12 * 3600);
    EXPECT_EQ(berlin.midnightOf(utcInstant(2012, 3, 25, 10)), utcInstant(2012, 3, 24, 23));
    EXPECT_EQ(berlin.timeOfDayOf(utcInstant(2012, 10, 28, 11)).sinceMidnight, 12 * 3600);
    EXPECT_EQ(berlin.midnightOf(utcInstant(2012, 10, 28, 11)), utcInstant(2012, 10, 27, 22));
}

TEST(MSPCGregorianCalendar, wholeDaysAreTruncatedTowardsZero) {
    const auto berlin = calendarIn("Europe/Berlin");
    const auto monday = utcInstant(2012, 1, 9, 9);  // 10:00
    EXPECT_EQ(berlin.wholeDaysBetween(monday, utcInstant(2012, 1, 10, 8)), 0);
    EXPECT_EQ(berlin.wholeDaysBetween(monday, utcInstant(2012, 1, 10, 9)), 1);
    EXPECT_EQ(berlin.wholeDaysBetween(utcInstant(2012, 1, 10, 8), monday), 0);
    EXPECT_EQ(berlin.wholeDaysBetween(utcInstant(2012, 1, 10, 9), monday), -1);
    // From midnight to midnight over the change of the clock there are 23 hours, and a day.
    EXPECT_EQ(berlin.wholeDaysBetween(utcInstant(2012, 3, 24, 23), utcInstant(2012, 3, 25, 22)), 1);
}

TEST(MSPCGregorianCalendar, addedDaysKeepTheWallClockTimeOverAChange) {
    const auto berlin = calendarIn("Europe/Berlin");
    EXPECT_EQ(berlin.instantByAddingDays(utcInstant(2012, 3, 24, 9), 1), utcInstant(2012, 3, 25, 8));
    EXPECT_EQ(berlin.instantByAddingDays(utcInstant(2012, 3, 25, 8), -1), utcInstant(2012, 3, 24, 9));
    EXPECT_EQ(berlin.instantByAddingDays(utcInstant(2012, 2, 28, 9) + 0.25, 2), utcInstant(2012, 3, 1, 9) + 0.25);
}

TEST(MSPCGregorianCalendar, addingNothingKeepsTheEarlierOfTwoEqualTimes) {
    const auto berlin = calendarIn("Europe/Berlin");
    const auto earlierHalfPastTwo = utcInstant(2012, 10, 28, 0, 30);
    EXPECT_EQ(berlin.instantByAddingDays(earlierHalfPastTwo, 0), earlierHalfPastTwo);
    EXPECT_EQ(berlin.instantByAddingWallClock(earlierHalfPastTwo, 0, 0, 0), earlierHalfPastTwo);
}

TEST(MSPCGregorianCalendar, addedWallClockTimeIsWhatTheClockShowsThen) {
    const auto berlin = calendarIn("Europe/Berlin");
    const auto springMidnight = utcInstant(2012, 3, 24, 23);
    EXPECT_EQ(berlin.instantByAddingWallClock(springMidnight, 23, 59, 59), utcInstant(2012, 3, 25, 21, 59, 59));
    EXPECT_EQ(berlin.instantByAddingWallClock(springMidnight, 1, -60, 0), springMidnight);
    EXPECT_EQ(berlin.instantByAddingWallClock(utcInstant(2012, 10, 27, 22), 8, 0, 0), utcInstant(2012, 10, 28, 7));
}

TEST(MSPCGregorianCalendar, displayTextShowsTheZonesClocksAndTheirOffset) {
    const auto instant = utcInstant(2011, 5, 4, 13, 22, 10);
    EXPECT_EQ(MSPCGregorianCalendar::utc().displayText(instant), "2011-05-04 13:22:10 +0000");
    EXPECT_EQ(calendarIn("Europe/Berlin").displayText(instant), "2011-05-04 15:22:10 +0200");
    EXPECT_EQ(calendarIn("America/St_Johns").displayText(utcInstant(2011, 1, 4, 13, 22, 10)),
              "2011-01-04 09:52:10 -0330");
    EXPECT_EQ(calendarIn("UTC").displayText(utcInstant(999, 1, 4)), "0999-01-04 00:00:00 +0000");
}
