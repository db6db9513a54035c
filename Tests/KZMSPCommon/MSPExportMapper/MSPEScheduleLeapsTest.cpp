#include "MSPEScheduleLeaps.h"

#include <gtest/gtest.h>

#include <cmath>

#include "MSPEScheduleCalendar.h"
#include "PlainWorkingTime.h"
#include "WallClock.h"

// How far an advance may leap; that it then comes to the same dates is shown by its own tests. 2012-03-05 is a Monday.

namespace {

constexpr auto Forward = MSPEDirection::Forward;
constexpr auto Backward = MSPEDirection::Backward;
constexpr auto Monday = MSPCWeekday::Monday;
constexpr auto Tuesday = MSPCWeekday::Tuesday;
constexpr MSPCTimeInterval Week = 144'000;  // of the standard calendar

// A zone of one offset, in which no change of the clocks ends a leap.
MSPCGregorianCalendar greenwich() {
    return MSPCGregorianCalendar(MSPCTimeZone::fixed(0));
}

MSPEDayWalk walkFrom(const MSPEScheduleCalendar& calendar, const std::string& date, MSPEDirection direction = Forward) {
    return {calendar.gregorian(), instantAt(date, calendar.gregorian()), direction};
}

}  // namespace

TEST(MSPEScheduleLeaps, areWholeWeeksThatLeaveMoreThanAWeeksWork) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(greenwich());
    MSPEScheduleLeaps leaps(calendar, Forward);
    const auto walk = walkFrom(calendar, "2012-03-05T00:00:00");
    const auto leap = leaps.leapFrom(walk, 3.5 * Week);
    EXPECT_EQ(leap.days, 14);
    EXPECT_EQ(leap.work, 2 * Week);
    EXPECT_EQ(leaps.leapFrom(walk, 2 * Week).days, 0);
    EXPECT_EQ(leaps.leapFrom(walk, Week).days, 0);
}

TEST(MSPEScheduleLeaps, endBeforeTheClocksChange) {
    const auto berlin = MSPEScheduleCalendar::standardCalendar(gregorianIn("Europe/Berlin"));
    // 27 days and two hours from Monday to the change on Sunday 25 March 02:00.
    EXPECT_EQ(MSPEScheduleLeaps(berlin, Forward).leapFrom(walkFrom(berlin, "2012-02-27T00:00:00"), 1e9).days, 21);
    // Backward from Monday 16 April, 21 days and 21 hours after it.
    EXPECT_EQ(MSPEScheduleLeaps(berlin, Backward).leapFrom(walkFrom(berlin, "2012-04-16T00:00:00", Backward), 1e9).days,
              21);
    // Three weeks to the second: the third ends on the change.
    MSPEScheduleCalendar sundays(gregorianIn("Asia/Beirut"));
    sundays.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, MSPCWeekday::Sunday);
    EXPECT_EQ(MSPEScheduleLeaps(sundays, Forward).leapFrom(walkFrom(sundays, "2026-10-04T00:00:00"), 1e9).days, 14);
}

TEST(MSPEScheduleLeaps, tellThatWeeksWhichNeverWorkOffMoreAreEndless) {
    MSPEScheduleCalendar calendar(greenwich());
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, Monday);
    calendar.addWorkingTimePeriodWeekday({12, 0, 0, 8, 0, 0}, Tuesday);
    MSPEScheduleLeaps leaps(calendar, Forward);
    EXPECT_TRUE(std::isinf(leaps.leapFrom(walkFrom(calendar, "2012-03-05T00:00:00"), 14'401).days));
    // Four hours are worked off before Tuesday takes them back.
    EXPECT_EQ(leaps.leapFrom(walkFrom(calendar, "2012-03-05T00:00:00"), 14'400).days, 0);
}

TEST(MSPEScheduleLeaps, overWeeksThatLeaveEverythingAsItWas_waitForASecondOne) {
    MSPEScheduleCalendar calendar(gregorianIn("Europe/Berlin"));
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, Monday);
    MSPEScheduleLeaps leaps(calendar, Forward);
    auto walk = walkFrom(calendar, "2012-04-02T00:00:00");
    EXPECT_EQ(leaps.leapFrom(walk, 14'400).days, 0);
    leaps.resultWasGivenUp();
    walk.leap(7);
    // To Sunday 28 October 02:00 there are 28 weeks and 6 days.
    const auto leap = leaps.leapFrom(walk, 14'400);
    EXPECT_EQ(leap.days, 28 * 7);
    EXPECT_EQ(leap.work, 0);
}

TEST(MSPEScheduleLeaps, comeByTheEndOfTheCycleBeingMeasured) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(greenwich());
    MSPEScheduleLeaps leaps(calendar, Forward);
    auto walk = walkFrom(calendar, "2150-01-05T00:00:00");
    constexpr auto workOfCycle = MSPEDayWalk::DaysOfCycle / 7 * Week;
    const auto duration = 3.5 * workOfCycle;
    const auto cycle = leaps.leapFrom(walk, duration);
    EXPECT_EQ(cycle.days, MSPEDayWalk::DaysOfCycle);
    EXPECT_EQ(cycle.work, workOfCycle);
    walk.leap(cycle.days);
    // One and a half more are left behind the next, whose work must remain.
    const auto cycles = leaps.leapFrom(walk, duration - workOfCycle);
    EXPECT_EQ(cycles.days, MSPEDayWalk::DaysOfCycle);
    EXPECT_EQ(cycles.work, workOfCycle);
}

TEST(MSPEScheduleLeaps, areNotMadeWhereSumsAreRoundedOrADayHasTooFewPeriods) {
    MSPEScheduleCalendar farAway(greenwich());
    farAway.addWorkingTimePeriodWeekday({8, 0, 0, 1'000'000'000'000, 0, 0}, Monday);
    MSPEScheduleLeaps rounded(farAway, Forward);
    EXPECT_FALSE(rounded.isExact());
    EXPECT_FALSE(rounded.passesDay(Monday, 1e300));
    EXPECT_EQ(rounded.leapFrom(walkFrom(farAway, "2012-03-05T00:00:00"), 1e300).days, 0);

    MSPEScheduleCalendar uneven(greenwich());
    uneven.addWorkingTimePeriodWeekday({8, 0, 0, 9, 0, 0}, Monday);
    uneven.addWorkingTimePeriodWeekday({8, 0, 0, 9, 0, 0}, Tuesday);
    uneven.addWorkingTimePeriodWeekday({10, 0, 0, 11, 0, 0}, Tuesday);
    uneven.addWorkingTimePeriodWeekday({12, 0, 0, 13, 0, 0}, Tuesday);
    EXPECT_GT(MSPEScheduleLeaps(uneven, Forward).leapFrom(walkFrom(uneven, "2012-03-05T00:00:00"), 1e9).days, 0);
    EXPECT_EQ(MSPEScheduleLeaps(uneven, Backward).leapFrom(walkFrom(uneven, "2012-03-05T00:00:00", Backward), 1e9).days,
              0);
}

TEST(MSPEScheduleLeaps, passDaysThatWorkOffLess) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(greenwich());
    const MSPEScheduleLeaps leaps(calendar, Forward);
    EXPECT_TRUE(leaps.passesDay(Monday, 28'801));
    EXPECT_FALSE(leaps.passesDay(Monday, 28'800));
}
