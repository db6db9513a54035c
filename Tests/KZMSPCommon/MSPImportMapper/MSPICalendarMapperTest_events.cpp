#include <gtest/gtest.h>

#include "ExpectRaises.h"
#include "MSPICalendarMapper.h"
#include "MappingFixture.h"

// Exceptions of calendars as events. 2010-01-07 is a Thursday, 2012-03-24 a Saturday; the clocks of Berlin change on
// Sunday 2012-03-25 and on Sunday 2012-10-28.

namespace {

struct Event {
    std::string start;
    std::string end;

    friend bool operator==(const Event&, const Event&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Event& event) {
        return out << event.start << " - " << event.end;
    }
};
using Events = std::vector<Event>;
using Text = std::optional<std::string>;

Events eventsOf(const std::vector<MSPCXMLNewElement>& elements) {
    Events events;
    for (const auto& element : elements) {
        EXPECT_EQ(element.node().name(), "event");
        events.push_back(
            {element.node().attribute("start").stringValue(), element.node().attribute("end").stringValue()});
    }
    return events;
}

Events eventsFrom(const Text& fromDate, const Text& toDate, const Text& fromTime = {}, const Text& toTime = {},
                  const char* zone = "Europe/Berlin") {
    MappingFixture fixture("", zone);
    std::vector<MSPCXMLNewElement> events;
    MSPICalendarMapper(fixture.context)
        .addEventsFromDateToDateFromTimeToTimeToCollection(fromDate, toDate, fromTime, toTime, events);
    return eventsOf(events);
}

std::string exception(const std::string& dayWorking, const std::string& type, const std::string& content) {
    return "<Exception><DayWorking>" + dayWorking + "</DayWorking><Type>" + type + "</Type>" + content + "</Exception>";
}

std::string timePeriod(const std::string& from, const std::string& to) {
    return "<TimePeriod><FromDate>" + from + "</FromDate><ToDate>" + to + "</ToDate></TimePeriod>";
}

std::string workingTime(const std::string& from, const std::string& to) {
    return "<WorkingTime><FromTime>" + from + "</FromTime><ToTime>" + to + "</ToTime></WorkingTime>";
}

std::string scheduleWith(const std::string& exceptions) {
    MappingFixture fixture("<Calendars><Calendar><Exceptions>" + exceptions + "</Exceptions></Calendar></Calendars>",
                           "UTC");
    auto schedule = MSPICalendarMapper(fixture.context).newScheduleFromMSPCalendar(fixture.node("Calendars/Calendar"));
    fixture.log.ignoreLines();
    return markupOf(std::move(schedule));
}

}  // namespace

TEST(MSPICalendarMapperEvents, rangeOverAWeekend_isCutAtTheSaturday) {
    EXPECT_EQ(eventsFrom("2010-01-07T00:00:00", "2010-01-12T00:00:00"),
              (Events{{"2010-01-07T00:00:00+01:00", "2010-01-09T23:59:59+01:00"},
                      {"2010-01-10T00:00:00+01:00", "2010-01-12T23:59:59+01:00"}}));
}

TEST(MSPICalendarMapperEvents, oneDay_isOneEvent) {
    for (const auto* toDate : {"2010-01-07T00:00:00", "2010-01-07T23:59:00"}) {
        EXPECT_EQ(eventsFrom("2010-01-07T00:00:00", toDate),
                  (Events{{"2010-01-07T00:00:00+01:00", "2010-01-07T23:59:59+01:00"}}));
    }
}

TEST(MSPICalendarMapperEvents, missingDate_givesNoEventsWhateverTheOtherDateIs) {
    for (const auto* otherDate : {"2010-01-07T00:00:00", "2010-01-07 08:00:00", "2010-01-07T08:00:00Z", "tomorrow"}) {
        for (const auto& missing : {Text(), Text("")}) {
            EXPECT_EQ(eventsFrom(otherDate, missing), Events{}) << otherDate;
            EXPECT_EQ(eventsFrom(missing, otherDate), Events{}) << otherDate;
        }
    }
}

TEST(MSPICalendarMapperEvents, emptyTimes_areTheDefaults) {
    EXPECT_EQ(eventsFrom("2010-01-07T00:00:00", "2010-01-07T00:00:00", "08:00:00", ""),
              (Events{{"2010-01-07T08:00:00+01:00", "2010-01-07T23:59:59+01:00"}}));
    EXPECT_EQ(eventsFrom("2010-01-07T00:00:00", "2010-01-07T00:00:00", "", "08:00:00"),
              (Events{{"2010-01-07T00:00:00+01:00", "2010-01-07T08:00:00+01:00"}}));
    EXPECT_EQ(eventsFrom("2010-01-07T00:00:00", "2010-01-07T00:00:00", "", ""),
              (Events{{"2010-01-07T00:00:00+01:00", "2010-01-07T23:59:59+01:00"}}));
}

TEST(MSPICalendarMapperEvents, exceptionWithoutAToDate_isLeftOutThoughItsFromDateIsUnreadable) {
    EXPECT_EQ(scheduleWith(exception("0", "1", "<TimePeriod><FromDate>tomorrow</FromDate></TimePeriod>") +
                           exception("1", "1",
                                     "<TimePeriod><FromDate>tomorrow</FromDate><ToDate/></TimePeriod>"
                                     "<WorkingTimes><WorkingTime/></WorkingTimes>")),
              "<schedule/>");
}

TEST(MSPICalendarMapperEvents, saturdayToTheNextSunday_isTwoEvents) {
    EXPECT_EQ(eventsFrom("2010-01-09T00:00:00", "2010-01-10T23:59:00"),
              (Events{{"2010-01-09T00:00:00+01:00", "2010-01-09T23:59:59+01:00"},
                      {"2010-01-10T00:00:00+01:00", "2010-01-10T23:59:59+01:00"}}));
}

TEST(MSPICalendarMapperEvents, rangeThatEndsOnAFriday_endsThere) {
    EXPECT_EQ(eventsFrom("2010-01-04T00:00:00", "2010-01-15T23:59:00"),
              (Events{{"2010-01-04T00:00:00+01:00", "2010-01-09T23:59:59+01:00"},
                      {"2010-01-10T00:00:00+01:00", "2010-01-15T23:59:59+01:00"}}));
}

TEST(MSPICalendarMapperEvents, overtimeOverSeveralWeeks_beginsAndEndsAtItsTimes) {
    EXPECT_EQ(eventsFrom("2010-01-07T00:00:00", "2010-01-18T00:00:00", "18:30:00", "20:00:15"),
              (Events{{"2010-01-07T18:30:00+01:00", "2010-01-09T20:00:15+01:00"},
                      {"2010-01-10T18:30:00+01:00", "2010-01-16T20:00:15+01:00"},
                      {"2010-01-17T18:30:00+01:00", "2010-01-18T20:00:15+01:00"}}));
}

TEST(MSPICalendarMapperEvents, toTimeBeforeFromTime_endsEarlierOnTheLastDay) {
    EXPECT_EQ(eventsFrom("2010-01-07T00:00:00", "2010-01-08T00:00:00", "22:30:10", "06:00:05"),
              (Events{{"2010-01-07T22:30:10+01:00", "2010-01-08T06:00:05+01:00"}}));
}

TEST(MSPICalendarMapperEvents, absentTimes_areThoseOfTheWholeDay) {
    EXPECT_EQ(eventsFrom("2010-01-07T00:00:00", "2010-01-07T00:00:00", std::nullopt, "12:00:00"),
              (Events{{"2010-01-07T00:00:00+01:00", "2010-01-07T12:00:00+01:00"}}));
    EXPECT_EQ(eventsFrom("2010-01-07T00:00:00", "2010-01-07T00:00:00", "12:00:00", std::nullopt),
              (Events{{"2010-01-07T12:00:00+01:00", "2010-01-07T23:59:59+01:00"}}));
}

TEST(MSPICalendarMapperEvents, timeOf24Hours_isMidnightOfTheDay) {
    EXPECT_EQ(eventsFrom("2010-01-07T00:00:00", "2010-01-08T00:00:00", "24:00:00", "12:00:00"),
              (Events{{"2010-01-07T00:00:00+01:00", "2010-01-08T12:00:00+01:00"}}));
    EXPECT_EQ(eventsFrom("2010-01-07T00:00:00", "2010-01-08T00:00:00", "12:00:00", "24:00:00"),
              (Events{{"2010-01-07T12:00:00+01:00", "2010-01-08T00:00:00+01:00"}}));
}

TEST(MSPICalendarMapperEvents, eventAcrossAClockChange_endsByTheWallClock) {
    EXPECT_EQ(eventsFrom("2012-03-22T00:00:00", "2012-03-27T00:00:00"),
              (Events{{"2012-03-22T00:00:00+01:00", "2012-03-24T23:59:59+01:00"},
                      {"2012-03-25T00:00:00+01:00", "2012-03-27T23:59:59+02:00"}}));
    EXPECT_EQ(eventsFrom("2012-10-28T00:00:00", "2012-10-28T00:00:00"),
              (Events{{"2012-10-28T00:00:00+02:00", "2012-10-28T23:59:59+01:00"}}));
    EXPECT_EQ(eventsFrom("2012-03-25T00:00:00", "2012-03-25T00:00:00", "01:00:00", "05:00:00"),
              (Events{{"2012-03-25T01:00:00+01:00", "2012-03-25T05:00:00+02:00"}}));
}

TEST(MSPICalendarMapperEvents, dayAfterAClockChange_keepsItsTimes) {
    // 02:30 does not exist on the Sunday before.
    EXPECT_EQ(eventsFrom("2026-03-30T00:00:00", "2026-03-30T23:59:00", "02:30:00", "06:00:00"),
              (Events{{"2026-03-30T02:30:00+02:00", "2026-03-30T06:00:00+02:00"}}));
    // In Chile midnight does not exist on Sunday 2026-09-06: the offset is -03:00 from 01:00 on.
    EXPECT_EQ(eventsFrom("2026-09-07T00:00:00", "2026-09-07T23:59:00", {}, {}, "America/Santiago"),
              (Events{{"2026-09-07T00:00:00-02:00", "2026-09-07T23:59:59-02:00"}}));
    EXPECT_EQ(eventsFrom("2026-03-30T00:00:00", "2026-03-30T23:59:00", {}, {}, "Asia/Beirut"),
              (Events{{"2026-03-30T00:00:00+03:00", "2026-03-30T23:59:59+03:00"}}));
}

TEST(MSPICalendarMapperEvents, rangeAcrossAClockChange_keepsItsTimesInEveryWeek) {
    EXPECT_EQ(eventsFrom("2026-03-26T00:00:00", "2026-04-07T23:59:00", "02:30:00", "06:00:00"),
              (Events{{"2026-03-26T02:30:00+01:00", "2026-03-28T06:00:00+01:00"},
                      {"2026-03-29T03:30:00+02:00", "2026-04-04T06:00:00+02:00"},
                      {"2026-04-05T02:30:00+02:00", "2026-04-07T06:00:00+02:00"}}));
    EXPECT_EQ(eventsFrom("2026-03-28T00:00:00", "2026-04-05T23:59:00", {}, {}, "Asia/Beirut"),
              (Events{{"2026-03-28T00:00:00+02:00", "2026-03-28T23:59:59+02:00"},
                      {"2026-03-29T01:00:00+03:00", "2026-04-04T23:59:59+03:00"},
                      {"2026-04-05T00:00:00+03:00", "2026-04-05T23:59:59+03:00"}}));
}

TEST(MSPICalendarMapperEvents, rangeFromADayWithoutMidnight_countsItsDaysAsTheyAreWritten) {
    EXPECT_EQ(eventsFrom("2026-03-29T00:00:00", "2026-03-30T00:00:00", {}, {}, "Asia/Beirut"),
              (Events{{"2026-03-29T01:00:00+03:00", "2026-03-30T23:59:59+03:00"}}));
}

TEST(MSPICalendarMapperEvents, hourThatOccursTwice_isItsLaterOne) {
    EXPECT_EQ(eventsFrom("2012-10-28T00:00:00", "2012-10-28T00:00:00", "02:30:00", "02:30:00"),
              (Events{{"2012-10-28T02:30:00+01:00", "2012-10-28T02:30:00+01:00"}}));
}

// Samoa went from Thursday 2011-12-29 to Saturday 2011-12-31, from -10:00 to +14:00, in its summer; the import runs in
// a summer too, so that its offset stands there twice.
TEST(MSPICalendarMapperEvents, rangeOverADayThatDoesNotExist_beginsAndEndsAtItsDays) {
    EXPECT_EQ(eventsFrom("2011-12-25T00:00:00", "2012-01-02T23:59:00", {}, {}, "Pacific/Apia"),
              (Events{{"2011-12-25T00:00:00+15:00", "2011-12-31T23:59:59+15:00"},
                      {"2012-01-01T00:00:00+15:00", "2012-01-02T23:59:59+15:00"}}));
    EXPECT_EQ(eventsFrom("2011-12-30T00:00:00", "2011-12-31T23:59:00", {}, {}, "Pacific/Apia"),
              (Events{{"2011-12-31T00:00:00+15:00", "2011-12-31T23:59:59+15:00"}}));
}

TEST(MSPICalendarMapperEvents, wholeDaysAreTruncated_soTimesOfDayCount) {
    // From 17:00 to 08:00 of the next day there is no whole day: one event of one day, spanning its two times.
    EXPECT_EQ(eventsFrom("2010-01-04T17:00:00", "2010-01-05T08:00:00"),
              (Events{{"2010-01-04T00:00:00+01:00", "2010-01-04T23:59:59+01:00"}}));
}

TEST(MSPICalendarMapperEvents, absentEmptyOrReversedDates_giveNone) {
    EXPECT_EQ(eventsFrom(std::nullopt, "2010-01-07T00:00:00"), Events{});
    EXPECT_EQ(eventsFrom("2010-01-07T00:00:00", std::nullopt), Events{});
    EXPECT_EQ(eventsFrom("", "2010-01-07T00:00:00"), Events{});
    EXPECT_EQ(eventsFrom("2010-01-07T00:00:00", ""), Events{});
    EXPECT_EQ(eventsFrom("2010-01-07T00:00:00", "2010-01-06T00:00:00"), Events{});
    EXPECT_EQ(eventsFrom("2000000000-01-07T00:00:00", "0001-01-06T00:00:00"), Events{});
}

TEST(MSPICalendarMapperEvents, thousandsOfYears_giveAnEventPerWeek) {
    // 8,000 years are 417,420 weeks; the range begins on a Sunday and ends on a Saturday.
    const auto events = eventsFrom("2010-01-10T00:00:00", "10010-01-09T00:00:00", {}, {}, "UTC");
    ASSERT_EQ(events.size(), 417'420U);
    EXPECT_EQ(events.back(), (Event{"10010-01-03T00:00:00Z", "10010-01-09T23:59:59Z"}));
}

TEST(MSPICalendarMapperEvents, millionsOfYears_raise) {
    EXPECT_RAISES(eventsFrom("0001-01-01T00:00:00", "2000000000-01-01T00:00:00"), MSPCInternalInconsistency,
                  "Too many calendar events from '0001-01-01T00:00:00' to '2000000000-01-01T00:00:00'.");
}

TEST(MSPICalendarMapperEvents, calendarWithoutExceptionsOfType1_hasNoNestedCalendars) {
    const auto period = timePeriod("2010-01-07T00:00:00", "2010-01-07T23:59:00");
    const auto times = "<WorkingTimes>" + workingTime("08:00:00", "12:00:00") + "</WorkingTimes>";
    EXPECT_EQ(scheduleWith(""), "<schedule/>");
    EXPECT_EQ(scheduleWith(exception("0", "2", period) + exception("1", "6", period + times)), "<schedule/>");
}

TEST(MSPICalendarMapperEvents, timeOffAlone_givesOnlyItsCalendar) {
    EXPECT_EQ(scheduleWith(exception("0", "1", timePeriod("2010-01-07T00:00:00", "2010-01-07T23:59:00")) +
                           exception("0", "1", timePeriod("2010-01-12T00:00:00", "2010-01-12T23:59:00"))),
              "<schedule><calendar name=\"Time Off\" editable=\"yes\" overtime=\"no\">"
              "<event start=\"2010-01-07T00:00:00Z\" end=\"2010-01-07T23:59:59Z\"/>"
              "<event start=\"2010-01-12T00:00:00Z\" end=\"2010-01-12T23:59:59Z\"/></calendar></schedule>");
}

TEST(MSPICalendarMapperEvents, overtimeWithTwoWorkingTimes_isTwoEventsAndStandsBehindTimeOff) {
    const auto times = "<WorkingTimes>" + workingTime("08:00:00", "12:00:00") + workingTime("13:00:00", "17:00:00") +
                       "</WorkingTimes>";
    EXPECT_EQ(scheduleWith(exception("1", "1", timePeriod("2010-01-03T00:00:00", "2010-01-09T23:59:00") + times) +
                           exception("0", "1", timePeriod("2010-01-12T00:00:00", "2010-01-12T23:59:00"))),
              "<schedule><calendar name=\"Time Off\" editable=\"yes\" overtime=\"no\">"
              "<event start=\"2010-01-12T00:00:00Z\" end=\"2010-01-12T23:59:59Z\"/></calendar>"
              "<calendar name=\"Overtime\" editable=\"yes\" overtime=\"yes\">"
              "<event start=\"2010-01-03T08:00:00Z\" end=\"2010-01-09T12:00:00Z\"/>"
              "<event start=\"2010-01-03T13:00:00Z\" end=\"2010-01-09T17:00:00Z\"/></calendar></schedule>");
}

TEST(MSPICalendarMapperEvents, overtimeWithoutWorkingTimes_givesNothing) {
    EXPECT_EQ(scheduleWith(exception("1", "1", timePeriod("2010-01-03T00:00:00", "2010-01-09T23:59:00"))),
              "<schedule/>");
}

TEST(MSPICalendarMapperEvents, exceptionWithoutTimePeriodOrDate_isSkipped) {
    const auto times = "<WorkingTimes>" + workingTime("08:00:00", "12:00:00") + "</WorkingTimes>";
    const std::string halfPeriod = "<TimePeriod><FromDate>2010-01-07T00:00:00</FromDate></TimePeriod>";
    EXPECT_EQ(
        scheduleWith(exception("0", "1", "") + exception("0", "1", "<TimePeriod/>") + exception("0", "1", halfPeriod) +
                     exception("1", "1", times) + exception("1", "1", halfPeriod + times)),
        "<schedule/>");
}

TEST(MSPICalendarMapperEvents, overtimeWithoutFromTime_beginsAtMidnight) {
    EXPECT_EQ(scheduleWith(exception("1", "1",
                                     timePeriod("2010-01-07T00:00:00", "2010-01-07T23:59:00") +
                                         "<WorkingTimes><WorkingTime><ToTime>12:00:00</ToTime></WorkingTime>"
                                         "</WorkingTimes>")),
              "<schedule><calendar name=\"Overtime\" editable=\"yes\" overtime=\"yes\">"
              "<event start=\"2010-01-07T00:00:00Z\" end=\"2010-01-07T12:00:00Z\"/></calendar></schedule>");
}
