#include <gtest/gtest.h>

#include "ExpectRaises.h"
#include "MSPEScheduleCalendar.h"
#include "PlainWorkingTime.h"
#include "WallClock.h"

// Advancing with leaps gives exactly what the walk day by day gives: the same date, no date, the same failure.

namespace {

constexpr auto Forward = MSPEDirection::Forward;
constexpr auto Backward = MSPEDirection::Backward;
constexpr auto Allowed = MSPEEdgeTime::Allowed;
constexpr auto NotAllowed = MSPEEdgeTime::NotAllowed;

constexpr const char* Zones[] = {
    "Asia/Beirut",       "America/Santiago",    "Africa/Cairo",      "Europe/Berlin", "America/St_Johns",
    "America/Sao_Paulo", "Australia/Lord_Howe", "Africa/Casablanca", "Pacific/Apia",  "UTC"};

struct Question {
    MSPCInstant from;
    MSPCTimeInterval duration;
    MSPEDirection direction;
    MSPEEdgeTime edgeTime;
};

// Compared as far as the plain walk got.
void expectAdvancedAsPlainly(const MSPEScheduleCalendar& calendar, const Question& question, std::int64_t mostDays) {
    const auto plain =
        plainAdvance(calendar, question.from, question.duration, question.direction, question.edgeTime, mostDays);
    SCOPED_TRACE(calendar.gregorian().timeZone().name() + ", " + std::to_string(question.from.secondsSince1970) +
                 (question.direction == Forward ? " + " : " - ") + std::to_string(question.duration) +
                 (question.edgeTime == Allowed ? "" : " off edges") + calendar.description());
    const auto advanced = [&] {
        return calendar.dateAdvanceByDurationForwardAllowEdgeTime(question.from, question.duration, question.direction,
                                                                  question.edgeTime);
    };
    if (plain.hasRaised) {
        EXPECT_RAISES(advanced(), MSPCInternalInconsistency, "Working day has no or too few working time periods.");
        return;
    }
    std::optional<MSPCInstant> date;
    try {
        date = advanced();
    } catch (const MSPCInternalInconsistency&) {
        ASSERT_TRUE(plain.isUnfinished);
        return;
    }
    if (!plain.isUnfinished) {
        ASSERT_EQ(date, plain.date);
    } else if (date) {
        // Days of the walk, less one for changes of the clocks and two for times that lie outside their day.
        ASSERT_GE(std::abs(*date - question.from), static_cast<double>(mostDays - 3) * PlainDay);
    }
}

Question randomQuestion(RandomSchedules& random, int i, std::int64_t longest) {
    const MSPCInstant from{static_cast<double>(random.between(-5'000'000'000, 20'000'000'000))};
    const auto whole = static_cast<double>(random.between(1, longest));
    const auto fraction = i % 2 == 0 ? 0 : static_cast<double>(random.between(0, 1023)) / 1024;
    return {from, whole + fraction, i % 3 == 0 ? Backward : Forward, i % 4 < 2 ? Allowed : NotAllowed};
}

}  // namespace

TEST(MSPEScheduleAdvanceProperty, ordinaryCalendars_areWalkedAsPlainly) {
    RandomSchedules random;
    for (const auto* zone : Zones) {
        const auto gregorian = gregorianIn(zone);
        for (int i = 0; i < 120; ++i) {
            expectAdvancedAsPlainly(random.calendar(gregorian),
                                    randomQuestion(random, i, i < 80 ? 10'000'000 : 100'000'000), 40'000);
        }
    }
}

// Whole hours fall on edges, where the search for the next period gives up after seven days.
TEST(MSPEScheduleAdvanceProperty, resultsOnEdges_areGivenUpAsPlainly) {
    RandomSchedules random;
    for (const auto* zone : Zones) {
        MSPEScheduleCalendar calendar(gregorianIn(zone));
        for (auto days = random.between(1, 7); days > 0; --days) {
            calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, MSPCWeekday{random.between(1, 7)});
        }
        for (int hours = 1; hours < 200; ++hours) {
            const MSPCInstant from{static_cast<double>(random.between(1'000'000'000, 2'000'000'000))};
            for (const auto direction : {Forward, Backward}) {
                expectAdvancedAsPlainly(calendar, {from, hours * 3600.0, direction, NotAllowed}, 3'000);
                expectAdvancedAsPlainly(
                    calendar, {calendar.gregorian().midnightOf(from), hours * 3600.0, direction, NotAllowed}, 3'000);
            }
        }
    }
}

TEST(MSPEScheduleAdvanceProperty, oddCalendars_areWalkedAsPlainly) {
    RandomSchedules random;
    for (const auto* zone : Zones) {
        const auto gregorian = gregorianIn(zone);
        for (int i = 0; i < 400; ++i) {
            const auto calendar = random.oddCalendar(gregorian);
            expectAdvancedAsPlainly(calendar, randomQuestion(random, i, i % 8 < 4 ? 300'000 : 10'000'000), 4'000);
        }
    }
}

// Weeks in which reversed periods leave little or nothing, or add up to less than nothing.
TEST(MSPEScheduleAdvanceProperty, weeksOfSmallSums_areWalkedAsPlainly) {
    RandomSchedules random;
    for (const auto* zone : Zones) {
        const auto gregorian = gregorianIn(zone);
        for (int i = 0; i < 200; ++i) {
            MSPEScheduleCalendar calendar(gregorian);
            const auto start = random.between(0, 40'000);
            const auto length = random.between(1, 40'000);
            calendar.addWorkingTimePeriodWeekday({0, 0, start, 0, 0, start + length},
                                                 MSPCWeekday{random.between(1, 7)});
            calendar.addWorkingTimePeriodWeekday({0, 0, start + length - random.between(-300, 2'000), 0, 0, start},
                                                 MSPCWeekday{random.between(1, 7)});
            expectAdvancedAsPlainly(calendar, randomQuestion(random, i, 2 * length + 1'000), 12'000);
        }
    }
}

TEST(MSPEScheduleAdvanceProperty, thousandsOfYears_areWalkedAsPlainly) {
    for (const auto* zone : {"Europe/Berlin", "Australia/Lord_Howe"}) {
        const auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn(zone));
        const auto date = instantAt("2010-06-07T10:11:12", calendar.gregorian());
        const auto later = calendar.dateAdvanceByDurationForward(date, 17'000'000'000.25, Forward);
        ASSERT_TRUE(later);
        expectAdvancedAsPlainly(calendar, {date, 17'000'000'000.25, Forward, Allowed}, 1'000'000);
        expectAdvancedAsPlainly(calendar, {*later, 17'000'000'000.25, Backward, Allowed}, 1'000'000);
        expectAdvancedAsPlainly(calendar, {*later, 17'000'006'400.0, Backward, NotAllowed}, 1'000'000);
    }
}

// Five working days and a reversed one, together 3,600 s a week that are worked off in a walk of centuries.
TEST(MSPEScheduleAdvanceProperty, reversedPeriodsOverCenturies_areWalkedAsPlainly) {
    for (const auto* zone : {"Europe/Berlin", "Asia/Beirut", "UTC"}) {
        auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn(zone));
        calendar.addWorkingTimePeriodWeekday({0, 0, 140'400, 0, 0, 0}, MSPCWeekday::Saturday);
        const auto date = instantAt("2010-06-07T10:11:12", calendar.gregorian());
        for (const auto duration : {1e6, 1e7, 3e7 + 0.5, 1e8}) {
            expectAdvancedAsPlainly(calendar, {date, duration, Forward, Allowed}, 300'000);
            expectAdvancedAsPlainly(calendar, {date, duration, Backward, NotAllowed}, 300'000);
        }
    }
}

TEST(MSPEScheduleAdvanceProperty, fromTheFutureIntoThePast_isWalkedAsPlainly) {
    // Juneau moved to the other side of the date line in 1867 and had a Saturday twice.
    auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn("America/Juneau"));
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, MSPCWeekday::Saturday);
    for (int year = 2570; year < 3400; year += 90) {
        const auto date = instantAt(std::to_string(year) + "-06-07T10:11:12", calendar.gregorian());
        expectAdvancedAsPlainly(calendar, {date, (year - 1800) * 8.265e6, Backward, Allowed}, 700'000);
    }
}

// For starts within working time, whole seconds and a zone that never changes.
TEST(MSPEScheduleAdvanceProperty, forwardThenBackward_returns) {
    RandomSchedules random;
    const auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn("UTC"));
    const auto monday = instantAt("2012-03-05T08:00:00", calendar.gregorian());
    for (int i = 0; i < 500; ++i) {
        const auto start =
            calendar
                .dateAdvanceByDurationForward(monday, static_cast<double>(random.between(1, 1'000'000)) + 0.5, Forward)
                .value();
        const auto duration = static_cast<double>(random.between(1, 1'000'000'000));
        const auto end = calendar.dateAdvanceByDurationForward(start, duration, Forward).value();
        ASSERT_EQ(calendar.workingTimeFromDateToDate(start, end), duration);
        const auto whole = MSPCInstant{start.secondsSince1970 - 0.5};
        const auto wholeEnd = calendar.dateAdvanceByDurationForward(whole, duration, Forward).value();
        const auto back = calendar.dateAdvanceByDurationForward(wholeEnd, duration, Backward).value();
        ASSERT_EQ(calendar.workingTimeFromDateToDate(whole, back), 0);
        ASSERT_EQ(calendar.workingTimeFromDateToDate(back, whole), 0);
    }
}
