#include <gtest/gtest.h>

#include <limits>

#include "MSPEScheduleCalendar.h"
#include "WallClock.h"

// Working time between two dates. 2012-03-05 is a Monday.

namespace {

constexpr auto Sunday = MSPCWeekday::Sunday;
constexpr auto Monday = MSPCWeekday::Monday;
constexpr MSPCTimeInterval Hour = 3600;
constexpr auto huge = std::numeric_limits<std::int64_t>::max();

MSPCTimeInterval workBetween(const MSPEScheduleCalendar& calendar, const std::string& from, const std::string& to) {
    const auto& gregorian = calendar.gregorian();
    return calendar.workingTimeFromDateToDate(instantAt(from, gregorian), instantAt(to, gregorian));
}

}  // namespace

TEST(MSPEWorkingTimeCount, standardCalendar) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn("UTC"));
    const struct {
        const char* from;
        const char* to;
        MSPCTimeInterval work;
    } table[] = {
        {"2012-03-05T10:00:00", "2012-03-06T09:00:00", 7 * Hour},
        {"2012-03-05T10:00:00", "2012-03-05T10:00:00", 0},
        {"2012-03-06T10:00:00", "2012-03-05T10:00:00", 0},
        {"2012-03-05T11:30:00", "2012-03-05T13:30:00", 1 * Hour},
        {"2012-03-05T12:00:00", "2012-03-05T13:00:00", 0},
        {"2012-03-05T00:00:00", "2012-03-06T00:00:00", 8 * Hour},
        {"2012-03-09T16:00:00", "2012-03-12T09:00:00", 2 * Hour},
        {"2012-03-10T00:00:00", "2012-03-11T23:59:59", 0},
        {"2012-03-10T00:00:00", "2012-03-12T08:00:01", 1},
        {"2012-03-05T00:00:00", "2013-03-04T00:00:00", 52 * 40 * Hour},
        // 400 years are 20,871 weeks.
        {"2012-03-05T00:00:00", "2412-03-05T00:00:00", 20'871 * 40 * Hour},
        {"2012-03-05T12:00:00", "8412-03-05T13:30:00", 16 * 20'871 * 40 * Hour + 0.5 * Hour},
    };
    for (const auto& row : table) {
        EXPECT_EQ(workBetween(calendar, row.from, row.to), row.work) << row.from << " to " << row.to;
    }
}

TEST(MSPEWorkingTimeCount, fractionsOfTheDates_areDropped) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn("UTC"));
    const auto monday = instantAt("2012-03-05T09:00:00", calendar.gregorian());
    EXPECT_EQ(calendar.workingTimeFromDateToDate(monday + 0.9, monday + 2.9), 2);
}

// Deliberate: days are stepped by 86,400 s. In spring the last day begins at 01:00, later than its midnight, and does
// not count; in autumn Sunday comes twice and Monday begins at 23:00 of its own evening.
TEST(MSPEWorkingTimeCount, afterAClockChange_theLastDayIsNotMet) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn("Europe/Berlin"));
    EXPECT_EQ(workBetween(calendar, "2012-03-19T00:00:00", "2012-04-02T12:00:00"), 10 * 8 * Hour);
    EXPECT_EQ(workBetween(calendar, "2012-10-22T00:00:00", "2012-10-29T12:00:00"), 5 * 8 * Hour);
    EXPECT_EQ(workBetween(calendar, "2012-10-22T00:00:00", "2012-10-30T12:00:00"), 6 * 8 * Hour);
}

TEST(MSPEWorkingTimeCount, calendarWithoutWorkingDays_hasNone) {
    const MSPEScheduleCalendar calendar(gregorianIn("UTC"));
    EXPECT_EQ(workBetween(calendar, "2012-03-05T00:00:00", "2112-03-05T00:00:00"), 0);
}

TEST(MSPEWorkingTimeCount, weekdayLeftOutByAClockChange_endsTheCount) {
    MSPEScheduleCalendar sundays(gregorianIn("Europe/Berlin"));
    sundays.addWorkingTimePeriodWeekday({8, 0, 0, 9, 0, 0}, Sunday);
    // 23 Sundays, one of them met twice, until the walk steps from a Saturday evening to Monday.
    EXPECT_EQ(workBetween(sundays, "2012-10-28T00:00:00", "2022-10-28T00:00:00"), 23 * Hour);
}

TEST(MSPEWorkingTimeCount, onlyThePartOfAPeriodWithinItsDay_counts) {
    MSPEScheduleCalendar calendar(gregorianIn("UTC"));
    calendar.addWorkingTimePeriodWeekday({-5, 0, 0, 2, 0, 0}, Monday);
    calendar.addWorkingTimePeriodWeekday({22, 0, 0, 30, 0, 0}, Monday);
    calendar.addWorkingTimePeriodWeekday({12, 0, 0, 10, 0, 0}, Monday);  // reversed: nothing
    EXPECT_EQ(workBetween(calendar, "2012-03-04T00:00:00", "2012-03-07T00:00:00"), 4 * Hour);
    EXPECT_EQ(workBetween(calendar, "2012-03-05T01:00:00", "2012-03-05T23:00:00"), 2 * Hour);
    EXPECT_EQ(workBetween(calendar, "2012-03-01T00:00:00", "2012-05-03T00:00:00"), 9 * 4 * Hour);
}

TEST(MSPEWorkingTimeCount, overlappingPeriods_countTwice) {
    MSPEScheduleCalendar calendar(gregorianIn("UTC"));
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, Monday);
    calendar.addWorkingTimePeriodWeekday({10, 0, 0, 14, 0, 0}, Monday);
    EXPECT_EQ(workBetween(calendar, "2012-03-05T00:00:00", "2012-03-05T11:00:00"), 4 * Hour);
}

// Deliberate: midnight is the beginning of the day, at the end of a period as well.
TEST(MSPEWorkingTimeCount, periodsUntilMidnight_countNoWork) {
    MSPEScheduleCalendar calendar(gregorianIn("UTC"));
    calendar.addWorkingTimePeriodWeekday({0, 0, 0, 0, 0, 0}, Sunday);
    calendar.addWorkingTimePeriodWeekday({17, 0, 0, 0, 0, 0}, Monday);
    EXPECT_EQ(workBetween(calendar, "2012-03-01T00:00:00", "2012-05-03T00:00:00"), 0);
    EXPECT_EQ(workBetween(calendar, "2012-03-05T16:00:00", "2012-03-05T23:00:00"), 0);
    calendar.addWorkingTimePeriodWeekday({17, 0, 0, 24, 0, 0}, Monday);
    EXPECT_EQ(workBetween(calendar, "2012-03-05T16:00:00", "2012-03-05T23:00:00"), 6 * Hour);
}

TEST(MSPEWorkingTimeCount, periodsOfAnySize_countTheirDay) {
    MSPEScheduleCalendar calendar(gregorianIn("Europe/Berlin"));
    calendar.addWorkingTimePeriodWeekday({-huge, -huge, -huge, huge, huge, huge}, Monday);
    calendar.addWorkingTimePeriodWeekday({huge, 0, 0, -huge, 0, 0}, Monday);
    EXPECT_EQ(workBetween(calendar, "2012-03-05T00:00:00", "2012-03-20T00:00:00"), 3 * 24 * Hour);
}

TEST(MSPEWorkingTimeCount, datesBeyondAllCalendars_areCountedInBoundedTime) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn("Europe/Berlin"));
    constexpr auto farthest = std::numeric_limits<double>::max();
    // Forty of 168 hours of 2^61 seconds; the exact number is beyond whole seconds.
    const auto work = calendar.workingTimeFromDateToDate(MSPCInstant{-farthest}, MSPCInstant{farthest});
    EXPECT_GT(work, 5.4e17);
    EXPECT_LT(work, 5.6e17);
    // From 1970 to the year 2,000,000,000 or so, in weeks of 40 hours.
    const auto seconds = 5'000'000 * MSPCTimeZone::GregorianCycle;
    const auto toTheYear2e9 = calendar.workingTimeFromDateToDate(MSPCInstant{0}, MSPCInstant{seconds});
    EXPECT_NEAR(toTheYear2e9 / seconds, 40.0 / 168, 1e-6);
}
