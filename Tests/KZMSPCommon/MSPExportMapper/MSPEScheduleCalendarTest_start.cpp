#include <gtest/gtest.h>

#include "MSPEScheduleCalendar.h"
#include "WallClock.h"

// Where working time begins. 2012-03-05 is a Monday.

namespace {

constexpr auto Monday = MSPCWeekday::Monday;
constexpr auto Tuesday = MSPCWeekday::Tuesday;
constexpr auto Forward = MSPEDirection::Forward;
constexpr auto Backward = MSPEDirection::Backward;

const MSPCGregorianCalendar& utc() {
    static const auto gregorian = gregorianIn("UTC");
    return gregorian;
}

std::string startText(const MSPEScheduleCalendar& calendar, const std::string& date, MSPEDirection direction) {
    const auto& gregorian = calendar.gregorian();
    return wallClockText(calendar.startDateForDateForward(instantAt(date, gregorian), direction), gregorian);
}

}  // namespace

TEST(MSPEScheduleCalendarStart, standardCalendar) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(utc());
    const struct {
        const char* date;
        MSPEDirection direction;
        const char* start;
    } table[] = {
        {"2012-03-05T07:59:59", Forward, "2012-03-05T08:00:00"},
        {"2012-03-05T08:00:00", Forward, "2012-03-05T08:00:00"},
        {"2012-03-05T11:59:59", Forward, "2012-03-05T11:59:59"},
        {"2012-03-05T12:00:00", Forward, "2012-03-05T13:00:00"},  // a period's end is no working instant
        {"2012-03-05T17:00:00", Forward, "2012-03-06T08:00:00"},
        {"2012-03-09T17:00:00", Forward, "2012-03-12T08:00:00"},
        {"2012-03-10T10:00:00", Forward, "2012-03-12T08:00:00"},
        {"2012-03-05T18:00:00", Backward, "2012-03-05T17:00:00"},
        {"2012-03-05T17:00:00", Backward, "2012-03-05T17:00:00"},
        {"2012-03-05T13:00:01", Backward, "2012-03-05T13:00:01"},
        {"2012-03-05T13:00:00", Backward, "2012-03-05T12:00:00"},  // a period's start is none backward
        {"2012-03-05T08:00:00", Backward, "2012-03-02T17:00:00"},
        {"2012-03-11T10:00:00", Backward, "2012-03-09T17:00:00"},
    };
    for (const auto& row : table) {
        EXPECT_EQ(startText(calendar, row.date, row.direction), row.start) << row.date;
    }
}

TEST(MSPEScheduleCalendarStart, fractionsOfASecond_areDropped) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(utc());
    const auto monday = instantAt("2012-03-05T09:00:00", utc());
    EXPECT_EQ(calendar.startDateForDateForward(monday + 0.75, Forward), monday);
}

TEST(MSPEScheduleCalendarStart, startTellsTimeOfDayAndPeriod) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(utc());
    const auto at = [&](const char* date, MSPEDirection direction) {
        return calendar.startDateStartDurationStartTimePeriodForDateForward(instantAt(date, utc()), direction).value();
    };
    EXPECT_EQ(at("2012-03-05T12:30:00", Forward).timeOfDay.sinceMidnight, 46800);
    EXPECT_EQ(at("2012-03-05T12:30:00", Forward).timePeriod, 1);
    EXPECT_EQ(at("2012-03-10T12:30:00", Forward).timeOfDay.sinceMidnight, 28800);
    EXPECT_EQ(at("2012-03-10T12:30:00", Forward).timePeriod, 0);
    EXPECT_EQ(at("2012-03-10T12:30:00", Backward).timeOfDay.sinceMidnight, 61200);
    EXPECT_EQ(at("2012-03-10T12:30:00", Backward).timePeriod, 1);
}

TEST(MSPEScheduleCalendarStart, sameWeekdayOfTheNextWeek_isNotReached) {
    MSPEScheduleCalendar calendar(utc());
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, Monday);
    EXPECT_EQ(startText(calendar, "2012-03-05T12:00:00", Forward), "none");
    EXPECT_EQ(startText(calendar, "2012-03-06T12:00:00", Forward), "2012-03-12T08:00:00");
    EXPECT_EQ(startText(calendar, "2012-03-05T08:00:00", Backward), "none");
    EXPECT_EQ(startText(calendar, "2012-03-04T08:00:00", Backward), "2012-02-27T12:00:00");
}

TEST(MSPEScheduleCalendarStart, calendarWithoutWorkingDays_hasNone) {
    const MSPEScheduleCalendar calendar(utc());
    EXPECT_EQ(startText(calendar, "2012-03-05T12:00:00", Forward), "none");
    EXPECT_EQ(startText(calendar, "2012-03-05T12:00:00", Backward), "none");
}

TEST(MSPEScheduleCalendarStart, laterWorkingDayWithoutPeriods_isTakenWithTimeMinusOne) {
    MSPEWorkingWeek::WorkingDays days;
    days[static_cast<std::size_t>(Tuesday)].isWorkingDay = true;
    const MSPEScheduleCalendar calendar(utc(), MSPEWorkingWeek(days));
    const auto forward =
        calendar.startDateStartDurationStartTimePeriodForDateForward(instantAt("2012-03-05T12:00:00", utc()), Forward);
    ASSERT_TRUE(forward);
    EXPECT_EQ(forward->timeOfDay.sinceMidnight, -1);
    EXPECT_EQ(forward->timePeriod, 0);
    EXPECT_EQ(wallClockText(forward->date, utc()), "2012-03-05T23:59:59");
    const auto backward =
        calendar.startDateStartDurationStartTimePeriodForDateForward(instantAt("2012-03-07T12:00:00", utc()), Backward);
    ASSERT_TRUE(backward);
    EXPECT_EQ(backward->timeOfDay.sinceMidnight, -1);
    EXPECT_EQ(backward->timePeriod, -1);
}

TEST(MSPEScheduleCalendarStart, onADayWithAClockChange_countsFromMidnight) {
    MSPEScheduleCalendar calendar(gregorianIn("Europe/Berlin"));
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, MSPCWeekday::Sunday);
    // 08:00:00 is eight hours after midnight, which the clocks show as 09:00 in spring and 07:00 in autumn.
    EXPECT_EQ(startText(calendar, "2012-03-25T07:00:00", Forward), "2012-03-25T09:00:00");
    EXPECT_EQ(startText(calendar, "2012-10-28T05:00:00", Forward), "2012-10-28T07:00:00");
}

TEST(MSPEScheduleCalendarStart, stepsAcrossAClockChange_mayLeaveOutAWeekday) {
    MSPEScheduleCalendar calendar(gregorianIn("Europe/Berlin"));
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, MSPCWeekday::Sunday);
    // A day after Saturday 23:30 it is Monday 00:30 in spring.
    EXPECT_EQ(startText(calendar, "2012-03-24T23:30:00", Forward), "none");
    EXPECT_EQ(startText(calendar, "2012-03-24T22:30:00", Forward), "2012-03-25T09:00:00");
}
