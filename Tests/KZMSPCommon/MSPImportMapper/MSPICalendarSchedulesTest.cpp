#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ExpectRaises.h"
#include "MSPCException.h"
#include "MSPICalendarMapper.h"
#include "MappingFixture.h"

// Calendars that several resources of one scenario have.

namespace {

std::string oneCalendar(const std::string& content) {
    return "<Calendars><Calendar><UID>2</UID><Name>Site</Name>" + content + "</Calendar></Calendars>";
}

const std::string weekOfWork =
    "<WeekDays><WeekDay><DayType>2</DayType><DayWorking>1</DayWorking><WorkingTimes><WorkingTime>"
    "<FromTime>08:00:00</FromTime><ToTime>12:00:00</ToTime></WorkingTime></WorkingTimes></WeekDay></WeekDays>";

std::string dayOff(const std::string& from, const std::string& to) {
    return "<Exceptions><Exception><TimePeriod><FromDate>" + from + "</FromDate><ToDate>" + to +
           "</ToDate></TimePeriod><Type>1</Type><DayWorking>0</DayWorking></Exception></Exceptions>";
}

class SharedCalendar : public MappingFixture {
public:
    explicit SharedCalendar(const std::string& content) : MappingFixture(oneCalendar(content), "UTC") {}
    SharedCalendar(const SharedCalendar&) = delete;
    SharedCalendar& operator=(const SharedCalendar&) = delete;
    ~SharedCalendar() { log.ignoreLines(); }  // one test looks at the log

    MSPCXMLNewElement schedule() {
        return MSPICalendarMapper(context).newScheduleFromMSPCalendar(node("Calendars/Calendar"));
    }
};

TEST(MSPICalendarSchedules, EveryResourceHasAScheduleOfItsOwnAndALineOnTheLog) {
    SharedCalendar calendar(weekOfWork + dayOff("2010-01-07T00:00:00", "2010-01-07T23:59:00"));
    const std::string expected =
        "<schedule><schedule-day day-of-week=\"monday\"><time-span start-time=\"28800\" "
        "end-time=\"43200\"/></schedule-day>"
        "<calendar name=\"Time Off\" editable=\"yes\" overtime=\"no\">"
        "<event start=\"2010-01-07T00:00:00Z\" end=\"2010-01-07T23:59:59Z\"/></calendar></schedule>";
    auto first = calendar.schedule();
    auto second = calendar.schedule();
    auto third = calendar.schedule();
    second.node().setAttribute("changed", "yes");
    EXPECT_EQ(markupOf(std::move(first)), expected);
    EXPECT_EQ(markupOf(std::move(third)), expected);
    EXPECT_EQ(calendar.log.takeLines(), std::vector<std::string>(3, "  Mapping Calendar UID='2' name='Site' ..."));
}

// What is read of the plan later changes nothing.
TEST(MSPICalendarSchedules, FromTheSecondUseOnACalendarIsNotReadAgain) {
    SharedCalendar calendar(weekOfWork);
    const auto first = calendar.schedule();
    static_cast<void>(calendar.node("Calendars/Calendar/WeekDays").detach());
    EXPECT_EQ(markupOf(calendar.schedule()),
              "<schedule><schedule-day day-of-week=\"monday\"><time-span start-time=\"28800\" "
              "end-time=\"43200\"/></schedule-day></schedule>");
}

TEST(MSPICalendarSchedules, WhatThePlanHoldsIsNotCountedItsCopiesAre) {
    SharedCalendar calendar(weekOfWork + dayOff("2010-01-07T00:00:00", "2010-01-07T23:59:00"));
    calendar.context.growthBounds().addScheduleElements(10'000'000 - 3);  // a day, a working time and an event
    const auto first = calendar.schedule();
    EXPECT_NO_THROW(static_cast<void>(calendar.schedule()));
    EXPECT_RAISES(static_cast<void>(calendar.schedule()), MSPCInternalInconsistency,
                  "Too many working times and calendar events in all schedules together: more than 10000000.");
}

// Thursday to the Tuesday of the week after the next: three weeks, of which the first is the plan's own.
TEST(MSPICalendarSchedules, OfARangeAllWeeksButTheFirstAreCounted) {
    SharedCalendar two(dayOff("2010-01-07T00:00:00", "2010-01-19T23:59:00"));
    two.context.growthBounds().addScheduleElements(10'000'000 - 2);
    EXPECT_NO_THROW(static_cast<void>(two.schedule()));
    SharedCalendar one(dayOff("2010-01-07T00:00:00", "2010-01-19T23:59:00"));
    one.context.growthBounds().addScheduleElements(10'000'000 - 1);
    EXPECT_RAISES(static_cast<void>(one.schedule()), MSPCInternalInconsistency,
                  "Too many working times and calendar events in all schedules together: more than 10000000.");
}

// 10,000 years have 521,775 weeks: as many again are more than a million.
TEST(MSPICalendarSchedules, TheRangesOfOneCalendarAreBoundInAllScenariosTogether) {
    SharedCalendar actual(dayOff("0001-01-01T00:00:00", "9999-12-31T00:00:00"));
    static_cast<void>(actual.schedule());
    MSPIMappingContext baseline(actual.plan, actual.services);
    EXPECT_RAISES(
        static_cast<void>(MSPICalendarMapper(baseline).newScheduleFromMSPCalendar(actual.node("Calendars/Calendar"))),
        MSPCInternalInconsistency, "Too many calendar events from '0001-01-01T00:00:00' to '9999-12-31T00:00:00'.");
}

}  // namespace
