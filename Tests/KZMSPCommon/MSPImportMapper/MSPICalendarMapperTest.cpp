#include "MSPICalendarMapper.h"

#include <gtest/gtest.h>

#include "ExpectRaises.h"
#include "MSPEScheduleCalendar.h"
#include "MappingFixture.h"

// Calendars of the weekly kind; the events of exceptions have a file of their own.

namespace {

// A calendar in Europe/Berlin and its mapping.
class CalendarFixture : public MappingFixture {
public:
    explicit CalendarFixture(const std::string& content)
        : MappingFixture("<Calendars><Calendar>" + content + "</Calendar></Calendars>") {}

    [[nodiscard]] MSPCXMLNewElement newSchedule() {
        auto schedule = MSPICalendarMapper(context).newScheduleFromMSPCalendar(node("Calendars/Calendar"));
        logLines = log.takeLines();
        return schedule;
    }

    std::vector<std::string> logLines;
};

std::string scheduleMarkup(const std::string& calendarContent) {
    return markupOf(CalendarFixture(calendarContent).newSchedule());
}

std::string weekDays(bool isBase, const std::string& days) {
    return std::string("<IsBaseCalendar>") + (isBase ? "1" : "0") + "</IsBaseCalendar><WeekDays>" + days +
           "</WeekDays>";
}

constexpr const char* Morning = "<WorkingTime><FromTime>08:00:00</FromTime><ToTime>12:00:00</ToTime></WorkingTime>";

std::string weekDay(const std::string& dayType, const std::string& dayWorking, const std::string& workingTimes) {
    return "<WeekDay><DayType>" + dayType + "</DayType><DayWorking>" + dayWorking + "</DayWorking>" +
           (workingTimes.empty() ? "" : "<WorkingTimes>" + workingTimes + "</WorkingTimes>") + "</WeekDay>";
}

class OpenCalendarMapper : public MSPICalendarMapper {
public:
    using MSPICalendarMapper::MSPICalendarMapper;
    using MSPIObjectMapperBase::checkNode;
};

}  // namespace

TEST(MSPICalendarMapper, baseCalendarWithoutWeekDays_getsTheDefaultWeek) {
    const std::string spans =
        "<time-span start-time=\"28800\" end-time=\"43200\"/>"
        "<time-span start-time=\"46800\" end-time=\"61200\"/>";
    EXPECT_EQ(scheduleMarkup("<IsBaseCalendar>1</IsBaseCalendar>"),
              "<schedule><schedule-day day-of-week=\"sunday\"/>"
              "<schedule-day day-of-week=\"monday\">" +
                  spans +
                  "</schedule-day>"
                  "<schedule-day day-of-week=\"tuesday\">" +
                  spans +
                  "</schedule-day>"
                  "<schedule-day day-of-week=\"wednesday\">" +
                  spans +
                  "</schedule-day>"
                  "<schedule-day day-of-week=\"thursday\">" +
                  spans +
                  "</schedule-day>"
                  "<schedule-day day-of-week=\"friday\">" +
                  spans +
                  "</schedule-day>"
                  "<schedule-day day-of-week=\"saturday\"/></schedule>");
}

TEST(MSPICalendarMapper, derivedCalendarWithoutWeekDays_isABareSchedule) {
    EXPECT_EQ(scheduleMarkup("<IsBaseCalendar>0</IsBaseCalendar>"), "<schedule/>");
    EXPECT_EQ(scheduleMarkup("<IsBaseCalendar>0</IsBaseCalendar><WeekDays/>"), "<schedule/>");
    EXPECT_EQ(scheduleMarkup(""), "<schedule/>");
}

TEST(MSPICalendarMapper, weekDayThatIsNotWorked_isEmptyInABaseCalendarOnly) {
    EXPECT_EQ(scheduleMarkup(weekDays(true, weekDay("1", "0", ""))),
              "<schedule><schedule-day day-of-week=\"sunday\"/></schedule>");
    EXPECT_EQ(scheduleMarkup(weekDays(false, weekDay("1", "0", ""))), "<schedule/>");
    EXPECT_EQ(scheduleMarkup(weekDays(false, weekDay("1", "0", Morning))),
              "<schedule><schedule-day day-of-week=\"sunday\"/></schedule>");
}

TEST(MSPICalendarMapper, workingDays_keepTheirOrderAndAreNotMerged) {
    EXPECT_EQ(scheduleMarkup(weekDays(
                  false, weekDay("7", "1", Morning) + weekDay("2", "true", Morning) + weekDay("7", "1", Morning))),
              "<schedule><schedule-day day-of-week=\"saturday\"><time-span start-time=\"28800\" end-time=\"43200\"/>"
              "</schedule-day><schedule-day day-of-week=\"monday\"><time-span start-time=\"28800\" end-time=\"43200\"/>"
              "</schedule-day><schedule-day day-of-week=\"saturday\"><time-span start-time=\"28800\" "
              "end-time=\"43200\"/></schedule-day></schedule>");
}

// Deliberate: midnight is the beginning of the day, so these count no work.
TEST(MSPICalendarMapper, workingTimesUntilMidnight_endAtTheDaysBeginning) {
    const std::string workingTimes =
        "<WorkingTime><FromTime>00:00:00</FromTime><ToTime>00:00:00</ToTime></WorkingTime>"
        "<WorkingTime><FromTime>17:00:00</FromTime><ToTime>00:00:00</ToTime></WorkingTime>";
    EXPECT_EQ(scheduleMarkup(weekDays(true, weekDay("2", "1", workingTimes))),
              "<schedule><schedule-day day-of-week=\"monday\"><time-span start-time=\"0\" end-time=\"0\"/>"
              "<time-span start-time=\"61200\" end-time=\"0\"/></schedule-day></schedule>");
}

TEST(MSPICalendarMapper, everyDayType_hasItsName) {
    const char* names[] = {"sunday", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday"};
    for (int dayType = 1; dayType <= 7; ++dayType) {
        EXPECT_EQ(scheduleMarkup(weekDays(true, weekDay(std::to_string(dayType), "0", ""))),
                  std::string("<schedule><schedule-day day-of-week=\"") + names[dayType - 1] + "\"/></schedule>");
    }
}

TEST(MSPICalendarMapper, daysOfOtherTypes_areNotRead) {
    const auto others = weekDay("0", "1", Morning) + weekDay("8", "1", Morning) + weekDay("x", "1", Morning);
    EXPECT_EQ(scheduleMarkup(weekDays(false, others)), "<schedule/>");
}

TEST(MSPICalendarMapper, severalDayTypesOfWhichTheLastIsNone_raise) {
    CalendarFixture fixture(weekDays(true, "<WeekDay><DayType>3</DayType><DayType>9</DayType></WeekDay>"));
    EXPECT_RAISES(fixture.newSchedule(), MSPCInternalInconsistency, "Unexpected DayType value 9. Must be from 1 to 7.");
    fixture.log.ignoreLines();
}

TEST(MSPICalendarMapper, dayWorkingThatIsMissingOrDouble_isNotWorked) {
    const std::string times = std::string("<WorkingTimes>") + Morning + "</WorkingTimes>";
    for (const std::string dayWorking : {"", "<DayWorking>1</DayWorking><DayWorking>1</DayWorking>"}) {
        EXPECT_EQ(scheduleMarkup(weekDays(true, "<WeekDay><DayType>2</DayType>" + dayWorking + times + "</WeekDay>")),
                  "<schedule><schedule-day day-of-week=\"monday\"/></schedule>");
    }
}

TEST(MSPICalendarMapper, workingTimeWithoutFromTime_hasAnEmptyStartTime) {
    EXPECT_EQ(scheduleMarkup(weekDays(true, weekDay("2", "1",
                                                    "<WorkingTime><ToTime>12:00:00</ToTime></WorkingTime>"
                                                    "<WorkingTime><FromTime>13:30:15</FromTime></WorkingTime>"))),
              "<schedule><schedule-day day-of-week=\"monday\"><time-span start-time=\"\" end-time=\"43200\"/>"
              "<time-span start-time=\"48615\" end-time=\"\"/></schedule-day></schedule>");
}

TEST(MSPICalendarMapper, logLine_namesTheCalendar) {
    CalendarFixture named("<UID>3</UID><Name>Night shift</Name>");
    static_cast<void>(named.newSchedule());
    EXPECT_EQ(named.logLines, std::vector<std::string>{"  Mapping Calendar UID='3' name='Night shift' ..."});
    CalendarFixture nameless("");
    static_cast<void>(nameless.newSchedule());
    EXPECT_EQ(nameless.logLines, std::vector<std::string>{"  Mapping Calendar UID='' name='' ..."});
}

TEST(MSPICalendarMapper, writtenSchedule_isReadBackAsACalendar) {
    CalendarFixture fixture("<IsBaseCalendar>1</IsBaseCalendar>");
    const auto schedule = fixture.newSchedule();
    const auto& gregorian = fixture.context.conversions().gregorian();
    const MSPEScheduleCalendar calendar(gregorian, schedule.node());
    const auto standard = MSPEScheduleCalendar::standardCalendar(gregorian);
    for (const auto weekday : MSPCWeekdays) {
        EXPECT_EQ(calendar.isWorkingDayWeekday(weekday), standard.isWorkingDayWeekday(weekday))
            << MSPCNumberOf(weekday);
        EXPECT_EQ(calendar.workingDay(weekday).timePeriods, standard.workingDay(weekday).timePeriods)
            << MSPCNumberOf(weekday);
    }
}

TEST(MSPICalendarMapper, emptyHandles_areRefused) {
    EXPECT_RAISES(OpenCalendarMapper::checkNode({}, "WeekDay"), MSPCInternalInconsistency,
                  "Expected NSXMLNodeProxy as a WeekDay object.");
    EXPECT_RAISES(OpenCalendarMapper::checkNode({}, "WorkingTime"), MSPCInternalInconsistency,
                  "Expected NSXMLNodeProxy as a WorkingTime object.");
    EXPECT_RAISES(OpenCalendarMapper::checkNode({}, "TimePeriod"), MSPCInternalInconsistency,
                  "Expected NSXMLNodeProxy as a TimePeriod object.");
}

std::string timePeriod(const std::string& from, const std::string& to) {
    return "<TimePeriod><FromDate>" + from + "</FromDate><ToDate>" + to + "</ToDate></TimePeriod>";
}

TEST(MSPICalendarMapper, scheduleBounds_areTheExtremesOfTheWholeDocument) {
    const auto middle = timePeriod("2012-03-05T00:00:00", "2012-03-06T00:00:00");
    const auto last = timePeriod("2012-07-01T08:00:00", "2012-07-05T17:00:00");
    const auto first = timePeriod("2011-12-24T08:00:00", "2012-01-01T00:00:00");
    for (const auto& [day, exception, week] :
         {std::tuple(middle, last, first), std::tuple(first, middle, last), std::tuple(last, first, middle)}) {
        MappingFixture fixture("<Calendars><Calendar/><Calendar><WeekDays><WeekDay>" + day +
                               "</WeekDay></WeekDays><Exceptions><Exception>" + exception +
                               "</Exception></Exceptions></Calendar><Calendar><WorkWeeks><WorkWeek>" + week +
                               "</WorkWeek></WorkWeeks></Calendar></Calendars>");
        const auto calendar = fixture.plan.root().firstChild().firstChild();
        const MSPICalendarMapper mapper(fixture.context);
        EXPECT_EQ(mapper.makeScheduleStartFromMSPCalendar(calendar), "2011-12-24T08:00:00+01:00");
        EXPECT_EQ(mapper.makeScheduleEndFromMSPCalendar(calendar), "2012-07-05T17:00:00+02:00");
    }
}

TEST(MSPICalendarMapper, scheduleBounds_areNoneWithoutDates) {
    MappingFixture fixture("<Calendars><Calendar/></Calendars>");
    const MSPICalendarMapper mapper(fixture.context);
    EXPECT_EQ(mapper.makeScheduleStartFromMSPCalendar(fixture.node("Calendars/Calendar")), std::nullopt);
    EXPECT_EQ(mapper.makeScheduleEndFromMSPCalendar(fixture.node("Calendars/Calendar")), std::nullopt);
}

TEST(MSPICalendarMapper, firstDateWithoutText_raises) {
    MappingFixture fixture("<Calendars><Calendar><Exceptions><Exception>" + timePeriod("", "") +
                           "</Exception><Exception>" + timePeriod("2012-03-05T00:00:00", "2012-03-06T00:00:00") +
                           "</Exception></Exceptions></Calendar></Calendars>");
    const MSPICalendarMapper mapper(fixture.context);
    EXPECT_RAISES(mapper.makeScheduleStartFromMSPCalendar(fixture.node("Calendars/Calendar")),
                  MSPCInternalInconsistency, "Failed to find minimal FromDate in Calendar.");
    EXPECT_RAISES(mapper.makeScheduleEndFromMSPCalendar(fixture.node("Calendars/Calendar")), MSPCInternalInconsistency,
                  "Failed to find maximal ToDate in Calendar.");
}
