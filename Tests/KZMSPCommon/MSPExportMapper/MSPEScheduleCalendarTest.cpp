#include "MSPEScheduleCalendar.h"

#include <gtest/gtest.h>

#include "ExpectRaises.h"
#include "WallClock.h"

namespace {

constexpr auto Sunday = MSPCWeekday::Sunday;
constexpr auto Monday = MSPCWeekday::Monday;
constexpr auto Tuesday = MSPCWeekday::Tuesday;
constexpr auto Forward = MSPEDirection::Forward;
constexpr auto Backward = MSPEDirection::Backward;

class MSPEScheduleCalendarTest : public ::testing::Test {
protected:
    const MSPCGregorianCalendar gregorian = gregorianIn("UTC");
    const MSPEScheduleCalendar standard = MSPEScheduleCalendar::standardCalendar(gregorian);
};

}  // namespace

TEST_F(MSPEScheduleCalendarTest, weekdayOutside1To7_raises) {
    EXPECT_RAISES(standard.durationOfWeekday(MSPCWeekday{9}), MSPCInternalInconsistency,
                  "Incorrect value of weekdey (9). Should be from 1 to 7.");
    EXPECT_RAISES(standard.timePeriodFromDurationForwardWeekday(1, Forward, MSPCWeekday{0}), MSPCInternalInconsistency,
                  "Incorrect value of weekdey (0). Should be from 1 to 7.");
}

TEST_F(MSPEScheduleCalendarTest, durationOfWeekday_isSeededWithMinusOne) {
    EXPECT_EQ(standard.durationOfWeekday(Monday), 28799);
    EXPECT_EQ(standard.durationOfWeekday(Sunday), -1);
    MSPEWorkingWeek::WorkingDays days;
    days[static_cast<std::size_t>(Monday)].isWorkingDay = true;
    EXPECT_EQ(MSPEScheduleCalendar(gregorian, MSPEWorkingWeek(days)).durationOfWeekday(Monday), -1);
}

TEST_F(MSPEScheduleCalendarTest, readersOfAPeriod_answerQuietlyWhenThereIsNone) {
    EXPECT_EQ(standard.durationOfTimePeriodWeekday(1, Monday), 14400);
    EXPECT_EQ(standard.startTimeForTimePeriodWeekday(1, Monday).sinceMidnight, 46800);
    EXPECT_EQ(standard.endTimeForTimePeriodWeekday(1, Monday).sinceMidnight, 61200);
    EXPECT_EQ(standard.startHourMinuteSecondTimePeriodWeekday(1, Monday), (MSPEHourMinuteSecond{13, 0, 0}));
    EXPECT_EQ(standard.endHourMinuteSecondTimePeriodWeekday(1, Monday), (MSPEHourMinuteSecond{17, 0, 0}));

    const std::pair<std::int64_t, MSPCWeekday> missing[] = {
        {0, MSPCWeekday{0}}, {0, MSPCWeekday{8}}, {0, Sunday}, {2, Monday}, {-1, Monday}};
    for (const auto& [timePeriod, weekday] : missing) {
        SCOPED_TRACE(testing::Message() << "period " << timePeriod << " of weekday " << MSPCNumberOf(weekday));
        EXPECT_EQ(standard.durationOfTimePeriodWeekday(timePeriod, weekday), -1);
        EXPECT_EQ(standard.startTimeForTimePeriodWeekday(timePeriod, weekday).sinceMidnight, -1);
        EXPECT_EQ(standard.endTimeForTimePeriodWeekday(timePeriod, weekday).sinceMidnight, -1);
        EXPECT_EQ(standard.startHourMinuteSecondTimePeriodWeekday(timePeriod, weekday), std::nullopt);
        EXPECT_EQ(standard.endHourMinuteSecondTimePeriodWeekday(timePeriod, weekday), std::nullopt);
        EXPECT_EQ(standard.timePeriodWeekday(timePeriod, weekday), std::nullopt);
    }
}

TEST_F(MSPEScheduleCalendarTest, periodFromADuration_isTheOneInWhichItEnds) {
    constexpr auto NotFound = MSPEScheduleCalendar::NotFound;
    EXPECT_EQ(NotFound, 9'223'372'036'854'775'807);
    const struct {
        MSPCTimeInterval duration;
        MSPEDirection direction;
        MSPCWeekday weekday;
        std::int64_t timePeriod;
        MSPCTimeInterval startTime;
    } table[] = {
        {0, Forward, Monday, NotFound, -1},  {0.5, Forward, Monday, 0, 28800},
        {14400, Forward, Monday, 0, 28800},  {14400.5, Forward, Monday, 1, 46800},
        {28800, Forward, Monday, 1, 46800},  {28801, Forward, Monday, NotFound, -1},
        {1, Backward, Monday, 1, 46800},     {14400, Backward, Monday, 1, 46800},
        {14401, Backward, Monday, 0, 28800}, {28801, Backward, Monday, NotFound, -1},
        {1, Forward, Sunday, NotFound, -1},  {-5, Forward, Monday, NotFound, -1},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(testing::Message() << row.duration << " s, weekday " << MSPCNumberOf(row.weekday));
        EXPECT_EQ(standard.timePeriodFromDurationForwardWeekday(row.duration, row.direction, row.weekday),
                  row.timePeriod);
        EXPECT_EQ(standard.dayTimeFromDurationForwardWeekday(row.duration, row.direction, row.weekday).sinceMidnight,
                  row.startTime);
        for (const MSPCTimeOfDay startedAt : {MSPCMidnight, MSPCTimeOfDay{30000}, MSPCTimeOfDay{50000}}) {
            EXPECT_EQ(standard.timePeriodEndDurationStartedAtForwardWeekday(row.duration, startedAt, row.direction,
                                                                            row.weekday),
                      row.timePeriod);
            EXPECT_EQ(
                standard.dayTimeEndDurationStartedAtForwardWeekday(row.duration, startedAt, row.direction, row.weekday)
                    .sinceMidnight,
                row.startTime);
        }
    }
}

TEST_F(MSPEScheduleCalendarTest, dayTimeOfAPeriodThatDoesNotExist_raises) {
    EXPECT_EQ(standard.dayTimeOfFoundTimePeriodWeekday(1, Tuesday).sinceMidnight, 46800);
    EXPECT_RAISES(standard.dayTimeOfFoundTimePeriodWeekday(2, Tuesday), MSPCInternalInconsistency,
                  "Failed to get starting hour of time period 2 at weekday 3.");
}

TEST_F(MSPEScheduleCalendarTest, description_hasALinePerSlot) {
    MSPEScheduleCalendar calendar(gregorian);
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 5, 9}, Monday);
    calendar.addWorkingTimePeriodWeekday({13, 30, 0, 117, 0, -3}, Monday);
    const auto text = calendar.description();
    const auto firstLine = text.find('\n');
    ASSERT_NE(firstLine, std::string::npos);
    EXPECT_TRUE(text.starts_with("<MSPEScheduleCalendar: 0x")) << text;
    EXPECT_EQ(text[firstLine - 1], '>');
    EXPECT_EQ(text.substr(firstLine),
              "\n  0: '(null)' isWorkingDay=NO timePeriods=0: "
              "\n  1: 'sunday' isWorkingDay=NO timePeriods=0: "
              "\n  2: 'monday' isWorkingDay=YES timePeriods=2:  8:00:00-12:05:09 13:30:00-117:00:-3"
              "\n  3: 'tuesday' isWorkingDay=NO timePeriods=0: "
              "\n  4: 'wednesday' isWorkingDay=NO timePeriods=0: "
              "\n  5: 'thursday' isWorkingDay=NO timePeriods=0: "
              "\n  6: 'friday' isWorkingDay=NO timePeriods=0: "
              "\n  7: 'saturday' isWorkingDay=NO timePeriods=0: ");
}

TEST_F(MSPEScheduleCalendarTest, workingDayOfADate_isThatOfItsWeekdayInTheZone) {
    EXPECT_TRUE(standard.isWorkingDay(instantAt("2012-03-09T23:59:59", gregorian)));
    EXPECT_FALSE(standard.isWorkingDay(instantAt("2012-03-10T00:00:00", gregorian)));
    // Friday evening in UTC is Saturday morning in Berlin.
    const auto berlin = MSPEScheduleCalendar::standardCalendar(gregorianIn("Europe/Berlin"));
    EXPECT_FALSE(berlin.isWorkingDay(instantAt("2012-03-09T23:59:59", gregorian)));
}
