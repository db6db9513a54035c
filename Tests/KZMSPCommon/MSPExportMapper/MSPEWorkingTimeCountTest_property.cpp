#include <gtest/gtest.h>

#include "MSPEScheduleCalendar.h"
#include "PlainWorkingTime.h"
#include "WallClock.h"

// Counting in weeks and cycles gives exactly what the stops of the iterator add up to, for every calendar.

namespace {

// Zones whose clocks change at midnight, at two o'clock, by half an hour, by religious rules, to the other side of the
// date line, and never.
constexpr const char* Zones[] = {"Asia/Beirut",
                                 "America/Santiago",
                                 "Africa/Cairo",
                                 "America/Havana",
                                 "Europe/Berlin",
                                 "America/St_Johns",
                                 "America/Sao_Paulo",
                                 "Australia/Lord_Howe",
                                 "Africa/Casablanca",
                                 "Pacific/Apia",
                                 "UTC"};

// Saturdays are worked too. Juneau moved to the other side of the date line in 1867 and had a Saturday twice; no later
// cycle repeats that.
MSPEScheduleCalendar workingSaturdaysInJuneau() {
    auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn("America/Juneau"));
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, MSPCWeekday::Saturday);
    return calendar;
}

void expectCountedAsPlainly(const MSPEScheduleCalendar& calendar, MSPCInstant from, MSPCInstant to) {
    ASSERT_EQ(calendar.workingTimeFromDateToDate(from, to), plainCount(calendar, from, to))
        << calendar.gregorian().timeZone().name() << ", from " << from.secondsSince1970 << " to " << to.secondsSince1970
        << ", " << calendar.description();
}

}  // namespace

// A day is never stepped to the change: on Sunday 2026-10-25 at 00:00 the clocks of Beirut show Saturday 23:00, and the
// walk, seven days after the Sunday before, ends. 4, 11 and 18 October count.
TEST(MSPEWorkingTimeCountProperty, leapOverWeeks_endsBeforeAChangeOfTheClocksAtMidnight) {
    MSPEScheduleCalendar sundays(gregorianIn("Asia/Beirut"));
    sundays.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, MSPCWeekday::Sunday);
    const auto& utc = gregorianIn("UTC");
    const auto from = instantAt("2026-10-01T00:00:00", utc);
    const auto to = instantAt("2026-12-01T00:00:00", utc);
    EXPECT_EQ(sundays.workingTimeFromDateToDate(from, to), 43'200);
    EXPECT_EQ(plainCount(sundays, from, to), 43'200);
}

TEST(MSPEWorkingTimeCountProperty, oneWorkingWeekday_isCountedAsPlainlyAroundEveryChange) {
    for (const auto* zone : Zones) {
        for (const auto weekday : MSPCWeekdays) {
            MSPEScheduleCalendar calendar(gregorianIn(zone));
            calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, weekday);
            for (int week = 0; week < 60; ++week) {
                const auto from = instantAt("2025-09-01T05:06:07", calendar.gregorian()) + week * 7 * PlainDay;
                expectCountedAsPlainly(calendar, from, from + (20 + week) * PlainDay);
                expectCountedAsPlainly(calendar, from, from + 400 * PlainDay);
            }
        }
    }
}

TEST(MSPEWorkingTimeCountProperty, ordinaryAndOddCalendars_areCountedAsPlainly) {
    RandomSchedules random;
    for (const auto* zone : Zones) {
        const auto gregorian = gregorianIn(zone);
        for (int i = 0; i < 200; ++i) {
            const auto calendar = i % 2 == 0 ? random.calendar(gregorian) : random.oddCalendar(gregorian);
            const MSPCInstant from{static_cast<double>(random.between(-5'000'000'000, 20'000'000'000)) +
                                   0.25 * (i % 4)};
            const auto to = from + static_cast<double>(random.between(0, i < 40 ? 1'000'000'000 : 100'000'000));
            expectCountedAsPlainly(calendar, from, to);
        }
    }
}

// Within some hours and days of each other, where both dates cut periods.
TEST(MSPEWorkingTimeCountProperty, shortSpans_areCountedAsPlainly) {
    RandomSchedules random;
    for (const auto* zone : Zones) {
        const auto gregorian = gregorianIn(zone);
        for (int i = 0; i < 100; ++i) {
            const auto calendar = i % 2 == 0 ? random.calendar(gregorian) : random.oddCalendar(gregorian);
            for (int k = 0; k < 20; ++k) {
                const MSPCInstant from{static_cast<double>(random.between(1'700'000'000, 1'800'000'000))};
                expectCountedAsPlainly(calendar, from, from + static_cast<double>(random.between(-10, 300'000)));
            }
        }
    }
}

TEST(MSPEWorkingTimeCountProperty, thousandsOfYears_areCountedAsPlainly) {
    RandomSchedules random;
    for (const auto* zone : {"Europe/Berlin", "Australia/Lord_Howe", "Asia/Beirut"}) {
        for (const auto& calendar :
             {MSPEScheduleCalendar::standardCalendar(gregorianIn(zone)), random.oddCalendar(gregorianIn(zone))}) {
            const auto from = instantAt("2010-06-07T10:11:12", calendar.gregorian());
            expectCountedAsPlainly(calendar, from, instantAt("4321-01-23T09:08:07", calendar.gregorian()));
        }
    }
}

TEST(MSPEWorkingTimeCountProperty, thePastAndCycles_areCountedAsPlainly) {
    const auto calendar = workingSaturdaysInJuneau();
    const auto from = instantAt("1860-06-07T10:11:12", calendar.gregorian());
    expectCountedAsPlainly(calendar, from, instantAt("3456-01-23T09:08:07", calendar.gregorian()));
}

TEST(MSPEWorkingTimeCountProperty, cyclesFromEveryWeekday_areCountedAsPlainly) {
    RandomSchedules random;
    for (const auto* zone : {"Europe/Berlin", "America/Santiago"}) {
        const auto gregorian = gregorianIn(zone);
        for (int day = 0; day < 10; ++day) {
            const auto calendar = day % 2 == 0 ? random.calendar(gregorian) : random.oddCalendar(gregorian);
            const auto from = instantAt("2150-01-01T00:00:00", gregorian) + day * PlainDay;
            expectCountedAsPlainly(calendar, from, from + (480'000 + day) * PlainDay);
        }
    }
}

// In whole and in half cycles, at the edges of the years that repeat.
TEST(MSPEWorkingTimeCountProperty, aroundWholeCycles_isCountedAsPlainly) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn("Africa/Cairo"));
    for (const double cycles : {1.0, 2.0, 2.5, 3.0}) {
        for (int day = -2; day <= 2; ++day) {
            const auto from = MSPCTimeZone::startOfCycles() + day * PlainDay;
            expectCountedAsPlainly(calendar, from, from + cycles * MSPCTimeZone::GregorianCycle);
        }
    }
}

TEST(MSPEWorkingTimeCountProperty, manyPeriodsOfADay_areCountedAsPlainly) {
    MSPEScheduleCalendar calendar(gregorianIn("Europe/Berlin"));
    for (int minute = 0; minute < 1440; ++minute) {
        calendar.addWorkingTimePeriodWeekday({0, minute, 0, 0, minute, 30}, MSPCWeekday::Monday);
        calendar.addWorkingTimePeriodWeekday({0, 1439 - minute, 10, 0, 1439 - minute, minute % 60},
                                             MSPCWeekday::Wednesday);
    }
    RandomSchedules random;
    for (int i = 0; i < 200; ++i) {
        const MSPCInstant from{static_cast<double>(random.between(1'700'000'000, 1'800'000'000))};
        expectCountedAsPlainly(calendar, from, from + static_cast<double>(random.between(0, 1'000'000)));
    }
}

// What a calendar remembers of 400 years counts for questions that begin in summer, in winter and on any day.
TEST(MSPEWorkingTimeCountProperty, questionsOverCenturies_haveTheAnswersOfACalendarThatIsAskedNothingElse) {
    for (const auto* zone : Zones) {
        const auto& gregorian = gregorianIn(zone);
        const auto shared = MSPEScheduleCalendar::standardCalendar(gregorian);
        for (int number = 0; number < 12; ++number) {
            const auto from = instantAt("2098-01-04T05:06:07", gregorian) + number * 31 * PlainDay;
            const auto to = from + (399 + number % 3 * 400) * 366 * PlainDay;
            const auto fresh = MSPEScheduleCalendar::standardCalendar(gregorian);
            ASSERT_EQ(shared.workingTimeFromDateToDate(from, to), fresh.workingTimeFromDateToDate(from, to))
                << zone << ' ' << number;
        }
        expectCountedAsPlainly(shared, instantAt("2120-07-01T09:00:00", gregorian),
                               instantAt("2523-02-01T09:00:00", gregorian));
    }
}

TEST(MSPEWorkingTimeCountProperty, aPeriodThatIsAddedCountsInEveryCycle) {
    MSPEScheduleCalendar calendar(gregorianIn("Europe/Berlin"));
    const auto from = instantAt("2100-01-03T00:00:00", calendar.gregorian());
    const auto to = instantAt("3700-01-03T00:00:00", calendar.gregorian());  // 4 cycles of 20,871 weeks
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 9, 0, 0}, MSPCWeekday::Wednesday);
    EXPECT_EQ(calendar.workingTimeFromDateToDate(from, to), 4 * 20'871 * 3600.0);
    calendar.addWorkingTimePeriodWeekday({10, 0, 0, 11, 0, 0}, MSPCWeekday::Wednesday);
    EXPECT_EQ(calendar.workingTimeFromDateToDate(from, to), 8 * 20'871 * 3600.0);
}

TEST(MSPEWorkingTimeCountProperty, ofManyQuestionsOverCenturies_oneWalksACycle) {
    const auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn("Europe/Berlin"));
    const auto from = instantAt("2101-01-03T08:00:00", calendar.gregorian());
    const auto to = from + 5 * MSPCTimeZone::GregorianCycle;
    static_cast<void>(calendar.workingTimeFromDateToDate(from, to));
    const auto first = calendar.stepsTaken();
    static_cast<void>(calendar.workingTimeFromDateToDate(from + 14 * PlainDay, to + 21 * PlainDay));
    EXPECT_GT(first, 800U) << "two changes of the clocks a year";
    EXPECT_LT(calendar.stepsTaken() - first, 20U);
}
