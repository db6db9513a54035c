#include "MSPEScheduleIterator.h"

#include <gtest/gtest.h>

#include "ExpectRaises.h"
#include "MSPEScheduleCalendar.h"
#include "WallClock.h"

// 2012-03-05 is a Monday.

namespace {

constexpr auto Monday = MSPCWeekday::Monday;
constexpr auto Forward = MSPEDirection::Forward;
constexpr auto Backward = MSPEDirection::Backward;

// "<midnight> <index> <start>-<end> <flags>", "end" when the walk has ended.
std::string nextText(MSPEScheduleIterator& iterator, const MSPCGregorianCalendar& gregorian) {
    const auto stop = iterator.nextTimePeriodTimePeriodIndexDateFlag();
    if (!stop) {
        return "end";
    }
    return wallClockText(stop->date, gregorian) + " " + std::to_string(stop->timePeriodIndex) + " " +
           std::to_string(stop->timePeriod.fromHour) + "-" + std::to_string(stop->timePeriod.toHour) + " " +
           std::to_string(stop->flags);
}

class MSPEScheduleIteratorTest : public ::testing::Test {
protected:
    const MSPCGregorianCalendar gregorian = gregorianIn("UTC");
    const MSPEScheduleCalendar standard = MSPEScheduleCalendar::standardCalendar(gregorian);
};

}  // namespace

TEST_F(MSPEScheduleIteratorTest, saturdayForward_yieldsMondayFirst) {
    MSPEScheduleIterator iterator(standard, gregorian, instantAt("2012-03-10T15:00:00", gregorian), Forward);
    EXPECT_EQ(nextText(iterator, gregorian), "2012-03-12T00:00:00 0 8-12 1");
    EXPECT_EQ(nextText(iterator, gregorian), "2012-03-12T00:00:00 1 13-17 0");
    EXPECT_EQ(nextText(iterator, gregorian), "2012-03-13T00:00:00 0 8-12 1");
}

TEST_F(MSPEScheduleIteratorTest, mondayBackward_yieldsItsLastPeriodFirst) {
    MSPEScheduleIterator iterator(standard, gregorian, instantAt("2012-03-05T01:00:00", gregorian), Backward);
    EXPECT_EQ(nextText(iterator, gregorian), "2012-03-05T00:00:00 1 13-17 0");
    EXPECT_EQ(nextText(iterator, gregorian), "2012-03-05T00:00:00 0 8-12 0");
    EXPECT_EQ(nextText(iterator, gregorian), "2012-03-02T00:00:00 1 13-17 1");
    EXPECT_EQ(nextText(iterator, gregorian), "2012-03-02T00:00:00 0 8-12 0");
}

TEST_F(MSPEScheduleIteratorTest, timeOfDay_playsNoPart) {
    MSPEScheduleIterator iterator(standard, gregorian, instantAt("2012-03-05T23:00:00", gregorian), Forward);
    EXPECT_EQ(nextText(iterator, gregorian), "2012-03-05T00:00:00 0 8-12 0");
}

TEST_F(MSPEScheduleIteratorTest, calendarWithoutWorkingDays_yieldsNothing) {
    const MSPEScheduleCalendar calendar(gregorian);
    for (const auto direction : {Forward, Backward}) {
        MSPEScheduleIterator iterator(calendar, gregorian, instantAt("2012-03-05T00:00:00", gregorian), direction);
        EXPECT_EQ(nextText(iterator, gregorian), "end");
        EXPECT_EQ(nextText(iterator, gregorian), "end");
    }
}

TEST_F(MSPEScheduleIteratorTest, oneWorkingDayAWeek_isMetEveryWeek) {
    MSPEScheduleCalendar calendar(gregorian);
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, Monday);
    MSPEScheduleIterator iterator(calendar, gregorian, instantAt("2012-03-05T00:00:00", gregorian), Forward);
    EXPECT_EQ(nextText(iterator, gregorian), "2012-03-05T00:00:00 0 8-12 0");
    EXPECT_EQ(nextText(iterator, gregorian), "2012-03-12T00:00:00 0 8-12 1");
}

// Deliberate: days are 86,400 s long, so after a change of the clocks they begin at 01:00 or 23:00.
TEST_F(MSPEScheduleIteratorTest, steppedDays_shiftWithTheClocks) {
    const auto berlin = gregorianIn("Europe/Berlin");
    const auto calendar = MSPEScheduleCalendar::standardCalendar(berlin);
    MSPEScheduleIterator spring(calendar, berlin, instantAt("2012-03-24T00:00:00", berlin), Forward);
    EXPECT_EQ(nextText(spring, berlin), "2012-03-26T01:00:00 0 8-12 1");
    MSPEScheduleIterator autumn(calendar, berlin, instantAt("2012-10-27T00:00:00", berlin), Forward);
    EXPECT_EQ(nextText(autumn, berlin), "2012-10-29T23:00:00 0 8-12 1");
}

// A week that leaves a weekday out ends the walk of a calendar that works on that day alone.
TEST_F(MSPEScheduleIteratorTest, weekdayLeftOutByAClockChange_endsTheWalk) {
    const auto berlin = gregorianIn("Europe/Berlin");
    MSPEScheduleCalendar sundays(berlin);
    sundays.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, MSPCWeekday::Sunday);
    // Stepped days begin at 23:00 from the autumn on, until spring takes the walk from Saturday 23:00 to Monday 00:00.
    MSPEScheduleIterator iterator(sundays, berlin, instantAt("2012-10-28T00:00:00", berlin), Forward);
    std::string last;
    int stops = 0;
    for (auto text = nextText(iterator, berlin); text != "end" && stops < 1000; text = nextText(iterator, berlin)) {
        last = text;
        ++stops;
    }
    // Sunday 28 October twice (00:00 and 23:00), then each Sunday up to 24 March 2013.
    EXPECT_EQ(stops, 23);
    EXPECT_EQ(last, "2013-03-24T23:00:00 0 8-12 1");
}

// So does a week that holds a weekday twice: the next Monday is eight steps away.
TEST_F(MSPEScheduleIteratorTest, weekdayMetTwice_endsTheWalk) {
    const auto berlin = gregorianIn("Europe/Berlin");
    MSPEScheduleCalendar mondays(berlin);
    mondays.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, Monday);
    MSPEScheduleIterator iterator(mondays, berlin, instantAt("2012-10-15T00:00:00", berlin), Forward);
    EXPECT_EQ(nextText(iterator, berlin), "2012-10-15T00:00:00 0 8-12 0");
    EXPECT_EQ(nextText(iterator, berlin), "2012-10-22T00:00:00 0 8-12 1");
    EXPECT_EQ(nextText(iterator, berlin), "end");
}

TEST_F(MSPEScheduleIteratorTest, workingDayWithoutPeriods_raisesBackward) {
    MSPEWorkingWeek::WorkingDays days;
    days[static_cast<std::size_t>(Monday)].isWorkingDay = true;
    const MSPEWorkingWeek calendar(days);
    const auto monday = instantAt("2012-03-05T00:00:00", gregorian);
    EXPECT_RAISES(MSPEScheduleIterator(calendar, gregorian, monday, Backward), MSPCInternalInconsistency,
                  "Incorrect time period index: -1");
    EXPECT_RAISES(MSPEScheduleIterator(calendar, gregorian, monday + 86400.0, Backward), MSPCInternalInconsistency,
                  "Incorrect time period index: -1");
    // Forward it yields one empty period.
    MSPEScheduleIterator iterator(calendar, gregorian, monday, Forward);
    EXPECT_EQ(nextText(iterator, gregorian), "2012-03-05T00:00:00 0 0-0 0");
}
