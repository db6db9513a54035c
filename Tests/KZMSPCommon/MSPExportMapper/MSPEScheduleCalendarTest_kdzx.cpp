#include <gtest/gtest.h>

#include "MSPCXMLDocument.h"
#include "MSPEScheduleCalendar.h"
#include "WallClock.h"

// Calendars read from the target format.

namespace {

constexpr auto Monday = MSPCWeekday::Monday;

MSPEScheduleCalendar calendarFrom(const std::string& xml) {
    const auto document = MSPCXMLDocument::read(xml, {.content = MSPCXMLContent::DataOnly});
    EXPECT_TRUE(document) << xml;
    return MSPEScheduleCalendar(gregorianIn("UTC"), document->root());
}

// The calendar whose Monday has the given spans.
MSPEScheduleCalendar mondayWith(const std::string& spans) {
    return calendarFrom("<schedule><schedule-day day-of-week='monday'>" + spans + "</schedule-day></schedule>");
}

}  // namespace

TEST(MSPEScheduleCalendarKdzx, eachWeekdayName_fillsItsWeekday) {
    const std::pair<const char*, MSPCWeekday> names[] = {
        {"sunday", MSPCWeekday::Sunday},       {"monday", MSPCWeekday::Monday},     {"tuesday", MSPCWeekday::Tuesday},
        {"wednesday", MSPCWeekday::Wednesday}, {"thursday", MSPCWeekday::Thursday}, {"friday", MSPCWeekday::Friday},
        {"saturday", MSPCWeekday::Saturday}};
    for (const auto& [name, weekday] : names) {
        const auto calendar =
            calendarFrom(std::string("<schedule><schedule-day day-of-week='") + name +
                         "'><time-span start-time='28800' end-time='43200'/></schedule-day></schedule>");
        for (const auto other : MSPCWeekdays) {
            EXPECT_EQ(calendar.isWorkingDayWeekday(other), other == weekday) << name << " and " << MSPCNumberOf(other);
        }
        EXPECT_EQ(calendar.timePeriodWeekday(0, weekday), (MSPETimePeriod{8, 0, 0, 12, 0, 0})) << name;
    }
}

TEST(MSPEScheduleCalendarKdzx, nameWithACapitalInitial_addsNothing) {
    for (const auto* attribute :
         {"day-of-week='Monday'", "day-of-week=''", "day-of-week='holiday'", "day='monday'", ""}) {
        const auto calendar = calendarFrom(std::string("<schedule><schedule-day ") + attribute +
                                           "><time-span start-time='0' end-time='1'/></schedule-day></schedule>");
        for (const auto weekday : MSPCWeekdays) {
            EXPECT_FALSE(calendar.isWorkingDayWeekday(weekday)) << attribute;
        }
    }
}

TEST(MSPEScheduleCalendarKdzx, spans_areSplitIntoHoursMinutesSeconds) {
    const struct {
        const char* span;
        MSPETimePeriod period;
    } table[] = {
        {"start-time='30615' end-time='86399'", {8, 30, 15, 23, 59, 59}},
        {"start-time='28800.9' end-time='-3661.9'", {8, 0, 0, -1, -1, -1}},
        {"start-time=' 60' end-time='1e2'", {0, 1, 0, 0, 1, 40}},
        {"end-time='3600'", {0, 0, 0, 1, 0, 0}},
        {"start-time='3600'", {1, 0, 0, 0, 0, 0}},
        {"", {}},
        {"start-time='0' end-time='1000000000000000000'", {0, 0, 0, 277'777'777'777'777, 46, 40}},
    };
    for (const auto& row : table) {
        const auto calendar = mondayWith(std::string("<time-span ") + row.span + "/>");
        EXPECT_EQ(calendar.timePeriodWeekday(0, Monday), row.period) << row.span;
    }
}

TEST(MSPEScheduleCalendarKdzx, numbersOutOfReach_saturate) {
    const auto calendar = mondayWith("<time-span start-time='-1e300' end-time='1e300'/>");
    ASSERT_TRUE(calendar.isWorkingDayWeekday(Monday));
    EXPECT_LT(calendar.startTimeForTimePeriodWeekday(0, Monday).sinceMidnight, -9e18);
    EXPECT_GT(calendar.endTimeForTimePeriodWeekday(0, Monday).sinceMidnight, 9e18);
}

TEST(MSPEScheduleCalendarKdzx, spanWithAnAttributeThatIsNoNumber_isLeftOut) {
    const auto calendar = mondayWith(
        "<time-span start-time='eight' end-time='43200'/>"
        "<time-span start-time='46800' end-time=''/>"
        "<time-span start-time='46800' end-time='61200'/>");
    ASSERT_EQ(calendar.timePeriodsInWeekday(Monday), 1);
    EXPECT_EQ(calendar.startTimeForTimePeriodWeekday(0, Monday).sinceMidnight, 46800);
}

TEST(MSPEScheduleCalendarKdzx, dayWithoutUsableSpan_staysNonWorking) {
    EXPECT_FALSE(mondayWith("").isWorkingDayWeekday(Monday));
    EXPECT_FALSE(mondayWith("<time-span start-time='x'/>").isWorkingDayWeekday(Monday));
}

TEST(MSPEScheduleCalendarKdzx, daysOfOneName_addUp) {
    const auto calendar = calendarFrom(
        "<schedule><schedule-day day-of-week='monday'><time-span start-time='0' end-time='1'/></schedule-day>"
        "<calendar/><schedule-day day-of-week='monday'><time-span start-time='2' "
        "end-time='3'/></schedule-day></schedule>");
    EXPECT_EQ(calendar.timePeriodsInWeekday(Monday), 2);
}

TEST(MSPEScheduleCalendarKdzx, withoutDaysOrElement_nothingIsWorked) {
    EXPECT_FALSE(calendarFrom("<schedule/>").isWorkingDayWeekday(Monday));
    EXPECT_FALSE(MSPEScheduleCalendar(gregorianIn("UTC"), MSPCXMLNode()).isWorkingDayWeekday(Monday));
}
