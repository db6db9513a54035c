#include "MSPEWorkingWeek.h"

#include <gtest/gtest.h>

#include "ExpectRaises.h"

namespace {

constexpr auto Sunday = MSPCWeekday::Sunday;
constexpr auto Monday = MSPCWeekday::Monday;
constexpr auto Tuesday = MSPCWeekday::Tuesday;
constexpr auto Wednesday = MSPCWeekday::Wednesday;
constexpr auto Thursday = MSPCWeekday::Thursday;
constexpr auto Friday = MSPCWeekday::Friday;
constexpr auto Saturday = MSPCWeekday::Saturday;

}  // namespace

TEST(MSPEWorkingWeek, standardWeek_worksMondayToFridayInTwoPeriods) {
    const auto& standard = MSPEWorkingWeek::standardWeek();
    for (const auto weekday : {Monday, Tuesday, Wednesday, Thursday, Friday}) {
        EXPECT_TRUE(standard.isWorkingDayWeekday(weekday)) << MSPCNumberOf(weekday);
        ASSERT_EQ(standard.timePeriodsInWeekday(weekday), 2) << MSPCNumberOf(weekday);
        EXPECT_EQ(standard.timePeriodWeekday(0, weekday), (MSPETimePeriod{8, 0, 0, 12, 0, 0}));
        EXPECT_EQ(standard.timePeriodWeekday(1, weekday), (MSPETimePeriod{13, 0, 0, 17, 0, 0}));
    }
    for (const auto weekday : {Sunday, Saturday}) {
        EXPECT_FALSE(standard.isWorkingDayWeekday(weekday)) << MSPCNumberOf(weekday);
        EXPECT_EQ(standard.timePeriodsInWeekday(weekday), 0) << MSPCNumberOf(weekday);
    }
}

TEST(MSPEWorkingWeek, newWeek_worksOnNoDay) {
    const MSPEWorkingWeek empty;
    for (const auto weekday : MSPCWeekdays) {
        EXPECT_FALSE(empty.isWorkingDayWeekday(weekday)) << MSPCNumberOf(weekday);
        EXPECT_EQ(empty.timePeriodsInWeekday(weekday), 0) << MSPCNumberOf(weekday);
    }
}

TEST(MSPEWorkingWeek, addedPeriod_makesItsWeekdayWorking) {
    MSPEWorkingWeek week;
    week.addWorkingTimePeriodWeekday({10, 0, 0, 11, 0, 0}, Saturday);
    week.addWorkingTimePeriodWeekday({6, 0, 0, 7, 0, 0}, Saturday);
    EXPECT_TRUE(week.isWorkingDayWeekday(Saturday));
    EXPECT_FALSE(week.isWorkingDayWeekday(Sunday));
    // The order of adding stays.
    EXPECT_EQ(week.startTimeForTimePeriodWeekday(0, Saturday).sinceMidnight, 36000);
    EXPECT_EQ(week.startTimeForTimePeriodWeekday(1, Saturday).sinceMidnight, 21600);
}

TEST(MSPEWorkingWeek, weekdayOutside1To7_raises) {
    MSPEWorkingWeek week;
    EXPECT_RAISES(week.addWorkingTimePeriodWeekday({}, MSPCWeekday{0}), MSPCInternalInconsistency,
                  "Incorrect value of weekdey (0). Should be from 1 to 7.");
    EXPECT_RAISES(week.addWorkingTimePeriodWeekday({}, MSPCWeekday{8}), MSPCInternalInconsistency,
                  "Incorrect value of weekdey (8). Should be from 1 to 7.");
    EXPECT_RAISES(week.workingDay(MSPCWeekday{-1}), MSPCInternalInconsistency,
                  "Incorrect value of weekdey (-1). Should be from 1 to 7.");
    EXPECT_RAISES(week.workingDayIndex(MSPCWeekday{9}), MSPCInternalInconsistency,
                  "Incorrect value of weekdey (9). Should be from 1 to 7.");
    EXPECT_RAISES(week.isWorkingDayWeekday(MSPCWeekday{8}), MSPCInternalInconsistency,
                  "Incorrect value of weekdey (8). Should be from 1 to 7.");
    EXPECT_RAISES(week.timePeriodsInWeekday(MSPCWeekday{0}), MSPCInternalInconsistency,
                  "Incorrect value of weekdey (0). Should be from 1 to 7.");
}

TEST(MSPEWorkingWeek, indexOfADay_followsThePeriodsThatAreAdded) {
    MSPEWorkingWeek week;
    week.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, Monday);
    EXPECT_EQ(week.workingDayIndex(Monday).workOfDay(), 14'400);
    const auto copy = week;
    week.addWorkingTimePeriodWeekday({13, 0, 0, 17, 0, 0}, Monday);
    EXPECT_EQ(week.workingDayIndex(Monday).workOfDay(), 28'800);
    EXPECT_EQ(copy.workingDayIndex(Monday).workOfDay(), 14'400);
}
