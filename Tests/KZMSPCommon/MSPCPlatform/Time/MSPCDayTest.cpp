#include "MSPCDay.h"

#include <gtest/gtest.h>

#include <array>

// Days and dates, against a calendar that only knows how long the months are and counts.

namespace {

std::int64_t daysOfMonth(std::int64_t year, std::int64_t month) {
    constexpr std::array<std::int64_t, 12> days{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool isLeap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return month == 2 && isLeap ? 29 : days[static_cast<std::size_t>(month - 1)];
}

void stepForward(MSPCCivilDate& date) {
    if (++date.day <= daysOfMonth(date.year, date.month)) {
        return;
    }
    date.day = 1;
    if (++date.month > 12) {
        date.month = 1;
        ++date.year;
    }
}

void stepBackward(MSPCCivilDate& date) {
    if (--date.day >= 1) {
        return;
    }
    if (--date.month < 1) {
        date.month = 12;
        --date.year;
    }
    date.day = daysOfMonth(date.year, date.month);
}

bool agree(MSPCDay day, const MSPCCivilDate& date, std::int64_t weekday) {
    return MSPCDateOf(day) == date && MSPCDayOf(date) == day && MSPCNumberOf(MSPCWeekdayOf(day)) == weekday;
}

// To the years 37562 and -33624, beyond those that the standard library's calendar has.
constexpr std::int64_t ManyDays = 13'000'000;
constexpr std::int64_t Thursday = 5;

}  // namespace

TEST(MSPCDay, agreesWithPlainCountingOnManyDaysForward) {
    MSPCCivilDate date{1970, 1, 1};
    auto weekday = Thursday;
    for (MSPCDay day; day.since1970 < ManyDays; day = day + 1, stepForward(date)) {
        if (!agree(day, date, weekday)) {
            FAIL() << day.since1970 << ": " << date.year << '-' << date.month << '-' << date.day;
        }
        weekday = weekday == 7 ? 1 : weekday + 1;
    }
    EXPECT_GT(date.year, 32'767);
}

TEST(MSPCDay, agreesWithPlainCountingOnManyDaysBackward) {
    MSPCCivilDate date{1970, 1, 1};
    auto weekday = Thursday;
    for (MSPCDay day; day.since1970 > -ManyDays; day = day - 1, stepBackward(date)) {
        if (!agree(day, date, weekday)) {
            FAIL() << day.since1970 << ": " << date.year << '-' << date.month << '-' << date.day;
        }
        weekday = weekday == 1 ? 7 : weekday - 1;
    }
    EXPECT_LT(date.year, -32'768);
}

TEST(MSPCDay, ofKnownDates) {
    EXPECT_EQ(MSPCDayOf({2000, 3, 1}).since1970, 11'017);
    EXPECT_EQ(MSPCDayOf({1969, 12, 31}).since1970, -1);
    EXPECT_EQ(MSPCDateOf({-719'528}), (MSPCCivilDate{0, 1, 1}));
    EXPECT_EQ(MSPCWeekdayOf(MSPCDayOf({2012, 3, 5})), MSPCWeekday::Monday);
}

TEST(MSPCDay, ofYearsFarBeyond32Bits_comesBack) {
    for (const std::int64_t year : {std::int64_t{1} << 34, -(std::int64_t{1} << 34), std::int64_t{2'147'483'648}}) {
        for (const MSPCCivilDate date : {MSPCCivilDate{year, 2, 29}, MSPCCivilDate{year, 12, 31}}) {
            const auto isLeap = daysOfMonth(year, 2) == 29;
            EXPECT_EQ(MSPCDateOf(MSPCDayOf(date)), date.month == 2 && !isLeap ? (MSPCCivilDate{year, 3, 1}) : date);
        }
        EXPECT_EQ(MSPCDayOf({year + 400, 1, 1}).since1970 - MSPCDayOf({year, 1, 1}).since1970, MSPCDaysPerCycle);
    }
}

TEST(MSPCWeekday, daysLater_staysWithinTheWeek) {
    EXPECT_EQ(MSPCWeekday::Saturday + 1, MSPCWeekday::Sunday);
    EXPECT_EQ(MSPCWeekday::Sunday + -1, MSPCWeekday::Saturday);
    for (const auto weekday : MSPCWeekdays) {
        for (std::int64_t days = 0; days <= MSPCDaysOfWeek; ++days) {
            const auto later = weekday + days;
            EXPECT_TRUE(MSPCIsWeekday(later));
            EXPECT_EQ(later + -days, weekday);
            EXPECT_EQ((MSPCNumberOf(later) - MSPCNumberOf(weekday) - days) % 7, 0);
        }
    }
}

TEST(MSPCWeekday, areTheNumbers1To7) {
    EXPECT_FALSE(MSPCIsWeekday(MSPCWeekday{0}));
    EXPECT_TRUE(MSPCIsWeekday(MSPCWeekday{1}));
    EXPECT_TRUE(MSPCIsWeekday(MSPCWeekday{7}));
    EXPECT_FALSE(MSPCIsWeekday(MSPCWeekday{8}));
    EXPECT_EQ(MSPCNumberOf(MSPCWeekday::Sunday), 1);
}
