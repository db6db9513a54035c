#include <gtest/gtest.h>

#include <limits>

#include "ExpectRaises.h"
#include "MSPEScheduleCalendar.h"
#include "WallClock.h"

// Dates that lie a working duration away. 2012-03-05 is a Monday.

namespace {

constexpr auto Monday = MSPCWeekday::Monday;
constexpr auto Tuesday = MSPCWeekday::Tuesday;
constexpr auto Forward = MSPEDirection::Forward;
constexpr auto Backward = MSPEDirection::Backward;
constexpr auto Allowed = MSPEEdgeTime::Allowed;
constexpr auto NotAllowed = MSPEEdgeTime::NotAllowed;
constexpr MSPCTimeInterval Hour = 3600;

const MSPCGregorianCalendar& utc() {
    static const auto gregorian = gregorianIn("UTC");
    return gregorian;
}

struct Case {
    const char* date;
    MSPCTimeInterval duration;
    MSPEDirection direction;
    MSPEEdgeTime edgeTime;
    const char* expected;
};

template <std::size_t Count>
void expectAdvanced(const MSPEScheduleCalendar& calendar, const Case (&table)[Count]) {
    const auto& gregorian = calendar.gregorian();
    for (const auto& row : table) {
        const auto advanced = calendar.dateAdvanceByDurationForwardAllowEdgeTime(
            instantAt(row.date, gregorian), row.duration, row.direction, row.edgeTime);
        EXPECT_EQ(wallClockText(advanced, gregorian), row.expected)
            << row.date << (row.direction == Forward ? " + " : " - ") << row.duration << " s";
    }
}

MSPEScheduleCalendar mondayMornings() {
    MSPEScheduleCalendar calendar(utc());
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, Monday);
    return calendar;
}

}  // namespace

TEST(MSPEScheduleAdvance, standardCalendarForward) {
    expectAdvanced(MSPEScheduleCalendar::standardCalendar(utc()),
                   {
                       {"2012-03-09T16:00:00", 2 * Hour, Forward, Allowed, "2012-03-12T09:00:00"},
                       {"2012-03-10T10:00:00", 1 * Hour, Forward, Allowed, "2012-03-12T09:00:00"},
                       {"2012-03-05T12:30:00", 1 * Hour, Forward, Allowed, "2012-03-05T14:00:00"},
                       {"2012-03-05T12:00:00", 0.5, Forward, Allowed, "2012-03-05T13:00:00"},
                       {"2012-03-05T09:00:00", 0, Forward, Allowed, "2012-03-05T09:00:00"},
                       {"2012-03-05T09:00:00", 1, Forward, Allowed, "2012-03-05T09:00:01"},
                       {"2012-03-05T08:00:00", 4 * Hour, Forward, Allowed, "2012-03-05T12:00:00"},
                       {"2012-03-05T08:00:00", 8 * Hour, Forward, Allowed, "2012-03-05T17:00:00"},
                       {"2012-03-05T08:00:00", 8 * Hour + 1, Forward, Allowed, "2012-03-06T08:00:01"},
                       {"2012-03-05T08:00:00", 40 * Hour, Forward, Allowed, "2012-03-09T17:00:00"},
                       {"2012-03-05T08:00:00", 41 * Hour, Forward, Allowed, "2012-03-12T09:00:00"},
                       {"2012-03-05T08:00:00", 400 * Hour, Forward, Allowed, "2012-05-11T17:00:00"},
                   });
}

TEST(MSPEScheduleAdvance, standardCalendarBackward) {
    expectAdvanced(MSPEScheduleCalendar::standardCalendar(utc()),
                   {
                       {"2012-03-06T08:00:00", 1 * Hour, Backward, Allowed, "2012-03-05T16:00:00"},
                       {"2012-03-05T13:00:00", 0, Backward, Allowed, "2012-03-05T12:00:00"},
                       {"2012-03-12T09:00:00", 2 * Hour, Backward, Allowed, "2012-03-09T16:00:00"},
                       {"2012-03-09T17:00:00", 8 * Hour, Backward, Allowed, "2012-03-09T08:00:00"},
                       {"2012-03-09T17:00:00", 40 * Hour, Backward, Allowed, "2012-03-05T08:00:00"},
                       {"2012-05-11T17:00:00", 400 * Hour, Backward, Allowed, "2012-03-05T08:00:00"},
                   });
}

TEST(MSPEScheduleAdvance, resultOnAnEdge_movesToTheNextPeriodWhenEdgesAreNotAllowed) {
    expectAdvanced(MSPEScheduleCalendar::standardCalendar(utc()),
                   {
                       {"2012-03-05T08:00:00", 4 * Hour, Forward, NotAllowed, "2012-03-05T13:00:00"},
                       {"2012-03-05T08:00:00", 8 * Hour, Forward, NotAllowed, "2012-03-06T08:00:00"},
                       {"2012-03-09T08:00:00", 8 * Hour, Forward, NotAllowed, "2012-03-12T08:00:00"},
                       {"2012-03-09T08:00:00", 8 * Hour - 1, Forward, NotAllowed, "2012-03-09T16:59:59"},
                       {"2012-03-05T17:00:00", 4 * Hour, Backward, NotAllowed, "2012-03-05T12:00:00"},
                       {"2012-03-06T17:00:00", 8 * Hour, Backward, NotAllowed, "2012-03-05T17:00:00"},
                       {"2012-03-05T17:00:00", 8 * Hour, Backward, NotAllowed, "2012-03-02T17:00:00"},
                   });
}

// Deliberate: a week after its beginning the walk looks for no next day any more; the last four hours count twice.
TEST(MSPEScheduleAdvance, edgeAfterSevenDays_worksTheLastPeriodOffTwice) {
    expectAdvanced(MSPEScheduleCalendar::standardCalendar(utc()),
                   {
                       {"2012-03-05T08:00:00", 40 * Hour, Forward, NotAllowed, "2012-03-12T08:00:00"},
                       {"2012-03-05T08:00:00", 44 * Hour, Forward, NotAllowed, "2012-03-12T13:00:00"},
                       {"2012-03-05T08:00:00", 48 * Hour, Forward, NotAllowed, "2012-03-13T13:00:00"},
                       {"2012-03-09T17:00:00", 48 * Hour, Backward, NotAllowed, "2012-03-01T12:00:00"},
                   });
}

TEST(MSPEScheduleAdvance, edgeSearch_reachesTheSameWeekdayOfTheNextWeek) {
    expectAdvanced(mondayMornings(), {
                                         {"2012-03-05T08:00:00", 4 * Hour, Forward, NotAllowed, "2012-03-12T08:00:00"},
                                         {"2012-03-05T08:00:00", 8 * Hour, Forward, Allowed, "2012-03-12T12:00:00"},
                                         {"2012-03-12T12:00:00", 4 * Hour, Backward, NotAllowed, "2012-03-05T12:00:00"},
                                     });
}

TEST(MSPEScheduleAdvance, edgesGivenUpOnEveryDay_giveNone) {
    expectAdvanced(mondayMornings(), {{"2012-03-05T08:00:00", 8 * Hour, Forward, NotAllowed, "none"}});
}

TEST(MSPEScheduleAdvance, defaultAllowsEdges) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(utc());
    const auto advanced =
        calendar.dateAdvanceByDurationForward(instantAt("2012-03-05T08:00:00", utc()), 8 * Hour, Forward);
    EXPECT_EQ(wallClockText(advanced, utc()), "2012-03-05T17:00:00");
}

TEST(MSPEScheduleAdvance, fractionsOfTheDuration_areKept) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(utc());
    const auto monday = instantAt("2012-03-05T08:00:00", utc());
    const auto tuesday = instantAt("2012-03-06T08:00:00", utc());
    EXPECT_EQ(calendar.dateAdvanceByDurationForward(monday, 1.25, Forward), monday + 1.25);
    EXPECT_EQ(calendar.dateAdvanceByDurationForward(monday, 28800.25, Forward), tuesday + 0.25);
    EXPECT_EQ(calendar.dateAdvanceByDurationForward(monday, 0.999, Forward), monday);
}

TEST(MSPEScheduleAdvance, acrossClockChanges_shiftsByTheChange) {
    expectAdvanced(MSPEScheduleCalendar::standardCalendar(gregorianIn("Europe/Berlin")),
                   {
                       {"2012-03-23T12:00:00", 8 * Hour, Forward, Allowed, "2012-03-26T13:00:00"},
                       {"2012-10-26T12:00:00", 8 * Hour, Forward, Allowed, "2012-10-30T11:00:00"},
                       // Backward the stepped midnights are Sunday 00:00, then Friday 23:00; and in autumn 01:00.
                       {"2012-03-26T12:00:00", 5 * Hour, Backward, Allowed, "2012-03-24T15:00:00"},
                       {"2012-10-29T12:00:00", 5 * Hour, Backward, Allowed, "2012-10-26T17:00:00"},
                   });
}

TEST(MSPEScheduleAdvance, missingDate_raises) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(utc());
    EXPECT_RAISES(calendar.dateAdvanceByDurationForward(std::nullopt, 1, Forward), MSPCInternalInconsistency,
                  "Date to advance from not specified.");
}

TEST(MSPEScheduleAdvance, negativeDuration_raises) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(utc());
    EXPECT_RAISES(calendar.dateAdvanceByDurationForward(MSPCInstant{0}, -1, Forward), MSPCInternalInconsistency,
                  "Duration can not be negative. To specify backward advance use argument forward=NO.");
}

TEST(MSPEScheduleAdvance, calendarWithoutWorkingDays_givesNone) {
    const MSPEScheduleCalendar calendar(utc());
    EXPECT_EQ(calendar.dateAdvanceByDurationForward(MSPCInstant{0}, 1, Forward), std::nullopt);
    EXPECT_EQ(calendar.dateAdvanceByDurationForward(MSPCInstant{0}, 0, Backward), std::nullopt);
}

TEST(MSPEScheduleAdvance, durationsOutOfReach_giveNone) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn("Europe/Berlin"));
    using Limits = std::numeric_limits<double>;
    for (const auto duration : {Limits::infinity(), Limits::quiet_NaN(), Limits::max(), 0x1p60, 0x1p53}) {
        EXPECT_EQ(calendar.dateAdvanceByDurationForward(MSPCInstant{0}, duration, Forward), std::nullopt) << duration;
        EXPECT_EQ(calendar.dateAdvanceByDurationForward(MSPCInstant{0}, duration, Backward), std::nullopt) << duration;
    }
}

TEST(MSPEScheduleAdvance, backwardIntoAWorkingDayWithoutPeriods_raises) {
    MSPEWorkingWeek::WorkingDays days;
    days[static_cast<std::size_t>(Tuesday)].isWorkingDay = true;
    const MSPEScheduleCalendar calendar(utc(), MSPEWorkingWeek(days));
    const auto wednesday = instantAt("2012-03-07T12:00:00", utc());
    EXPECT_RAISES(calendar.dateAdvanceByDurationForward(wednesday, 1, Backward), MSPCInternalInconsistency,
                  "No time period specified to start duration countdown from.");
    // Below one second the walk does not begin.
    EXPECT_EQ(wallClockText(calendar.dateAdvanceByDurationForward(wednesday, 0.5, Backward), utc()),
              "2012-03-04T23:59:59");
    EXPECT_EQ(calendar.dateAdvanceByDurationForward(wednesday - 2 * 86400.0, 1, Forward), std::nullopt);
}

TEST(MSPEScheduleAdvance, startOnADayWithTooFewPeriods_raises) {
    MSPEScheduleCalendar calendar(utc());
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 9, 0, 0}, Monday);
    calendar.addWorkingTimePeriodWeekday({10, 0, 0, 11, 0, 0}, Monday);
    calendar.addWorkingTimePeriodWeekday({24, 30, 0, 26, 0, 0}, Monday);  // begins on Tuesday
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 9, 0, 0}, Tuesday);
    const auto monday = instantAt("2012-03-05T12:00:00", utc());
    EXPECT_RAISES(calendar.dateAdvanceByDurationForward(monday, Hour, Forward), MSPCInternalInconsistency,
                  "Working day has no or too few working time periods.");
    // Deliberate: one period too few passes. Tuesday is then left at once, and the first period met, next Monday's from
    // 08:00 to 09:00, still counts from 24:30: a stretch of minus 15.5 hours, worked off in weeks of 5.5 hours.
    calendar.addWorkingTimePeriodWeekday({10, 0, 0, 11, 0, 0}, Tuesday);
    EXPECT_EQ(wallClockText(calendar.dateAdvanceByDurationForward(monday, Hour, Forward), utc()),
              "2012-04-02T09:00:00");
}

TEST(MSPEScheduleAdvance, periodsOfAnySize_endWithoutOverflow) {
    constexpr auto huge = std::numeric_limits<std::int64_t>::max();
    const MSPETimePeriod odd[] = {{huge, huge, huge, -huge, -huge, -huge},
                                  {-huge, 0, 0, huge, 0, 0},
                                  {0, 0, 1'000'000'000'000'000'000, 0, 0, huge},
                                  {12, 0, 0, 8, 0, 0},
                                  {8, 0, 0, 8, 0, 0}};
    for (const auto& first : odd) {
        for (const auto& second : odd) {
            MSPEScheduleCalendar calendar(gregorianIn("Europe/Berlin"));
            calendar.addWorkingTimePeriodWeekday(first, Monday);
            calendar.addWorkingTimePeriodWeekday(second, Monday);
            for (const auto direction : {Forward, Backward}) {
                for (const auto edge : {Allowed, NotAllowed}) {
                    try {
                        static_cast<void>(calendar.dateAdvanceByDurationForwardAllowEdgeTime(
                            instantAt("2012-03-05T10:00:00", utc()), 1e9, direction, edge));
                    } catch (const MSPCInternalInconsistency& raised) {
                        EXPECT_EQ(raised.reason(), "Working day has no or too few working time periods.");
                    }
                }
            }
        }
    }
}

// Deliberate: a day is compared with the period at which the working day before it was begun.
TEST(MSPEScheduleAdvance, workingDayAfterOneBegunAtALaterPeriodThanItHas_raises) {
    MSPEScheduleCalendar calendar(utc());
    for (const std::int64_t hour : {8, 10, 12}) {
        calendar.addWorkingTimePeriodWeekday({hour, 0, 0, hour + 1, 0, 0}, Monday);
    }
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 9, 0, 0}, Tuesday);
    const auto begunInTheThirdPeriod = instantAt("2012-03-05T12:00:00", utc());
    EXPECT_RAISES(calendar.dateAdvanceByDurationForward(begunInTheThirdPeriod, 2 * Hour, Forward),
                  MSPCInternalInconsistency, "Working day has no or too few working time periods.");
    // One period too few passes, and the day is then begun at its first one.
    expectAdvanced(calendar, {{"2012-03-05T10:00:00", 3 * Hour, Forward, Allowed, "2012-03-06T09:00:00"}});
    // From Tuesday on every day is begun at its first period, and any number of periods is enough.
    expectAdvanced(calendar, {{"2012-03-06T08:00:00", 5 * Hour, Forward, Allowed, "2012-03-13T09:00:00"}});
    // Ended within the day, or before the failing day is reached.
    expectAdvanced(calendar, {{"2012-03-05T12:00:00", Hour, Forward, Allowed, "2012-03-05T13:00:00"}});
}

TEST(MSPEScheduleAdvance, workingDayBeforeOneWithTwoMorePeriods_raises) {
    MSPEScheduleCalendar calendar(utc());
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 9, 0, 0}, Monday);
    for (const std::int64_t hour : {8, 10, 12}) {
        calendar.addWorkingTimePeriodWeekday({hour, 0, 0, hour + 1, 0, 0}, Tuesday);
    }
    const auto monday = instantAt("2012-03-05T09:00:00", utc());
    EXPECT_RAISES(calendar.dateAdvanceByDurationForward(instantAt("2012-03-06T13:00:00", utc()), 4 * Hour, Backward),
                  MSPCInternalInconsistency, "Working day has no or too few working time periods.");
    // A walk that begins on the day with one period comes to the same two days a week later.
    EXPECT_RAISES(calendar.dateAdvanceByDurationForward(monday, 5 * Hour, Backward), MSPCInternalInconsistency,
                  "Working day has no or too few working time periods.");
    expectAdvanced(calendar, {{"2012-03-05T09:00:00", 4 * Hour, Backward, Allowed, "2012-02-28T08:00:00"}});
    calendar.addWorkingTimePeriodWeekday({10, 0, 0, 11, 0, 0}, Monday);
    expectAdvanced(calendar, {{"2012-03-06T13:00:00", 4 * Hour, Backward, Allowed, "2012-03-05T10:00:00"}});
}

// Far more weeks than the walk steps through: the failure is met all the same.
TEST(MSPEScheduleAdvance, workingDayWithTooFewPeriods_raisesInALongWalkToo) {
    MSPEScheduleCalendar calendar(utc());
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 9, 0, 0}, Monday);
    for (const std::int64_t hour : {8, 10, 12}) {
        calendar.addWorkingTimePeriodWeekday({hour, 0, 0, hour + 1, 0, 0}, Tuesday);
    }
    EXPECT_RAISES(calendar.dateAdvanceByDurationForward(instantAt("2012-03-05T09:00:00", utc()), 1e9, Backward),
                  MSPCInternalInconsistency, "Working day has no or too few working time periods.");
    EXPECT_TRUE(calendar.dateAdvanceByDurationForward(instantAt("2012-03-05T08:00:00", utc()), 1e9, Forward));
}

TEST(MSPEScheduleAdvance, periodsThatAddUpToNothing_giveNone) {
    MSPEScheduleCalendar reversed(gregorianIn("Europe/Berlin"));
    reversed.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, Monday);
    reversed.addWorkingTimePeriodWeekday({17, 0, 0, 13, 0, 0}, Monday);
    expectAdvanced(reversed, {{"2012-03-05T08:00:00", 9 * Hour, Forward, Allowed, "none"}});
    MSPEScheduleCalendar point(gregorianIn("Europe/Berlin"));
    point.addWorkingTimePeriodWeekday({8, 0, 0, 8, 0, 0}, Monday);
    expectAdvanced(point, {{"2012-03-05T07:00:00", 9 * Hour, Forward, Allowed, "none"}});
}

// Tuesdays work 30,201 s off and Sundays, reversed, add 30,000: 201 s are left of a week. In autumn a Sunday is met
// twice, in spring none, and so a year and some days can add more than they work off. Still the 314 weeks to Tuesday
// 2018-10-09 leave 93,156 - 314 * 201 = 30,042 s, the first number below 30,201: eight hours, 20 minutes and 42
// seconds.
TEST(MSPEScheduleAdvance, weekOfASmallSum_isWorkedOffHoweverLongItTakes) {
    for (const auto* zone : {"Europe/Berlin", "UTC"}) {
        MSPEScheduleCalendar calendar(gregorianIn(zone));
        calendar.addWorkingTimePeriodWeekday({8, 0, 0, 16, 23, 21}, Tuesday);
        calendar.addWorkingTimePeriodWeekday({16, 23, 20, 8, 3, 20}, MSPCWeekday::Sunday);
        expectAdvanced(calendar, {{"2012-10-02T08:00:00", 93'156, Forward, Allowed, "2018-10-09T16:20:42"}});
    }
}

// One second a week, for 19,165 years.
TEST(MSPEScheduleAdvance, weekOfOneSecond_isWorkedOffOverThousandsOfYears) {
    MSPEScheduleCalendar calendar(utc());
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 1}, Monday);
    calendar.addWorkingTimePeriodWeekday({12, 0, 0, 8, 0, 0}, Tuesday);
    const auto monday = instantAt("2012-03-05T08:00:00", utc());
    // After a million weeks 14,401 s are left, which that Monday has.
    EXPECT_EQ(calendar.dateAdvanceByDurationForward(monday, 1'014'401, Forward),
              monday + (1'000'000 * 7 * 86'400.0 + 14'401));
    EXPECT_EQ(calendar.dateAdvanceByDurationForward(monday, 1'014'400.5, Forward),
              monday + (1'000'000 * 7 * 86'400.0 + 14'400.5));
}

// What remains of 2^53 s, at 42,912 s a week, is worked off only beyond the dates that can be told apart.
TEST(MSPEScheduleAdvance, reversedPeriodsInAWalkBeyondAllDates_giveNoneInFewSteps) {
    MSPEScheduleCalendar calendar(gregorianIn("Europe/Berlin"));
    calendar.addWorkingTimePeriodWeekday({0, 0, 0, 0, 0, 0}, Monday);
    calendar.addWorkingTimePeriodWeekday({0, 4, 48, 0, 0, 0}, Monday);
    calendar.addWorkingTimePeriodWeekday({13, 0, 0, 17, 0, 0}, Monday);
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, MSPCWeekday::Friday);
    calendar.addWorkingTimePeriodWeekday({0, 0, 0, 0, 0, 0}, MSPCWeekday::Friday);
    calendar.addWorkingTimePeriodWeekday({13, 0, 0, 17, 0, 0}, MSPCWeekday::Friday);
    for (const auto direction : {Forward, Backward}) {
        for (const auto edge : {Allowed, NotAllowed}) {
            EXPECT_EQ(calendar.dateAdvanceByDurationForwardAllowEdgeTime(MSPCInstant{1000}, 0x1p53, direction, edge),
                      std::nullopt);
        }
    }
    EXPECT_LT(calendar.stepsTaken(), 200'000);
}
