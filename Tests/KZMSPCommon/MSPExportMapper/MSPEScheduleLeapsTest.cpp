#include "MSPEScheduleLeaps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "MSPEScheduleCalendar.h"
#include "MSPEScheduleIterator.h"
#include "WallClock.h"

// Walks that leap over repeating weeks and years give exactly what the walks day by day give.

namespace {

constexpr auto Forward = MSPEDirection::Forward;
constexpr auto Backward = MSPEDirection::Backward;
constexpr MSPCTimeInterval Day = 86'400;

// Working time counted period by period.
MSPCTimeInterval plainCount(const MSPEScheduleCalendar& calendar, MSPCInstant from, MSPCInstant to) {
    const auto& gregorian = calendar.gregorian();
    const auto fromDay = gregorian.midnightOf(from);
    const auto toDay = gregorian.midnightOf(to);
    const auto fromTime = static_cast<double>(gregorian.timeOfDayOf(from));
    const auto toTime = static_cast<double>(gregorian.timeOfDayOf(to));
    MSPCTimeInterval total = 0;
    MSPEScheduleIterator iterator(calendar, from, Forward);
    for (auto stop = iterator.nextTimePeriodTimePeriodIndexDateFlag(); from < to && stop && stop->date <= toDay;
         stop = iterator.nextTimePeriodTimePeriodIndexDateFlag()) {
        const auto lower = stop->date == fromDay ? fromTime : 0;
        const auto upper = stop->date == toDay ? toTime : Day;
        total +=
            std::max(0.0, std::min(upper, stop->timePeriod.endTime()) - std::max(lower, stop->timePeriod.startTime()));
    }
    return total;
}

// A duration worked off day by day, with results on edges left there.
std::optional<MSPCInstant> plainAdvance(const MSPEScheduleCalendar& calendar, MSPCInstant date,
                                        MSPCTimeInterval duration, MSPEDirection direction) {
    const auto start = calendar.startDateStartDurationStartTimePeriodForDateForward(date, direction);
    if (!start) {
        return std::nullopt;
    }
    const auto sign = direction == Forward ? 1 : -1;
    auto midnight = calendar.gregorian().midnightOf(start->date);
    auto near = std::optional(start->timeOfDay);
    auto index = std::optional(start->timePeriod);
    for (;; midnight = midnight + sign * Day, index.reset()) {
        const auto weekday = calendar.gregorian().weekdayOf(midnight);
        const auto count = calendar.timePeriodsInWeekday(weekday);
        auto i = index.value_or(direction == Forward ? 0 : count - 1);
        for (; i >= 0 && i < count; i += sign, near.reset()) {
            const auto begin = calendar.startTimeForTimePeriodWeekday(i, weekday);
            const auto end = calendar.endTimeForTimePeriodWeekday(i, weekday);
            const auto from = near.value_or(direction == Forward ? begin : end);
            const auto to = direction == Forward ? end : begin;
            if (sign * (from + sign * duration) <= sign * to) {
                return midnight + (from + sign * duration);
            }
            duration -= sign * (to - from);
        }
    }
}

class Random {
public:
    std::int64_t between(std::int64_t low, std::int64_t high) {
        return std::uniform_int_distribution<std::int64_t>(low, high)(_engine);
    }

    MSPEScheduleCalendar calendar(const MSPCGregorianCalendar& gregorian) {
        MSPEScheduleCalendar calendar(gregorian);
        for (std::int64_t weekday = 1; weekday <= 7; ++weekday) {
            for (auto hour = between(0, 20); between(0, 2) > 0 && hour < 24; hour += 3) {
                calendar.addWorkingTimePeriodWeekday({hour, between(0, 59), 0, hour + between(1, 2), 0, between(0, 59)},
                                                     weekday);
            }
        }
        return calendar;
    }

private:
    std::mt19937_64 _engine{20120305};
};

constexpr const char* Zones[] = {
    "UTC",         "Europe/Berlin", "America/St_Johns", "Australia/Lord_Howe", "Africa/Casablanca", "America/Sao_Paulo",
    "Pacific/Apia"};

}  // namespace

TEST(MSPEScheduleLeaps, countsAsTheIteratorDoes) {
    Random random;
    for (const auto* zone : Zones) {
        const auto gregorian = gregorianIn(zone);
        for (int i = 0; i < 60; ++i) {
            const auto calendar = random.calendar(gregorian);
            const MSPCInstant from{static_cast<double>(random.between(-5'000'000'000, 20'000'000'000))};
            const auto to = from + static_cast<double>(random.between(0, i < 40 ? 100'000'000 : 3'000'000'000));
            ASSERT_EQ(calendar.workingTimeFromDateToDate(from, to), plainCount(calendar, from, to))
                << zone << ", from " << from.secondsSince1970 << " to " << to.secondsSince1970;
        }
    }
}

TEST(MSPEScheduleLeaps, countsThousandsOfYearsAsTheIteratorDoes) {
    for (const auto* zone : {"Europe/Berlin", "Australia/Lord_Howe"}) {
        const auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn(zone));
        const auto from = instantAt("2010-06-07T10:11:12", calendar.gregorian());
        const auto to = instantAt("4321-01-23T09:08:07", calendar.gregorian());
        EXPECT_EQ(calendar.workingTimeFromDateToDate(from, to), plainCount(calendar, from, to)) << zone;
    }
}

// Juneau moved to the other side of the date line in 1867 and had a Saturday twice; no later cycle repeats that.
static MSPEScheduleCalendar workingSaturdaysInJuneau() {
    auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn("America/Juneau"));
    calendar.addWorkingTimePeriodWeekday({8, 0, 0, 12, 0, 0}, 7);
    return calendar;
}

TEST(MSPEScheduleLeaps, countFromThePastAcrossCyclesAsTheIteratorDoes) {
    const auto calendar = workingSaturdaysInJuneau();
    const auto from = instantAt("1860-06-07T10:11:12", calendar.gregorian());
    const auto to = instantAt("3456-01-23T09:08:07", calendar.gregorian());
    EXPECT_EQ(calendar.workingTimeFromDateToDate(from, to), plainCount(calendar, from, to));
}

TEST(MSPEScheduleLeaps, countCyclesFromEveryWeekdayAsTheIteratorDoes) {
    Random random;
    const auto gregorian = gregorianIn("Europe/Berlin");
    for (int day = 0; day < 14; ++day) {
        const auto calendar = random.calendar(gregorian);
        const auto from = instantAt("2150-01-01T00:00:00", gregorian) + day * Day;
        const auto to = from + 480'000 * Day;
        EXPECT_EQ(calendar.workingTimeFromDateToDate(from, to), plainCount(calendar, from, to)) << day;
    }
}

TEST(MSPEScheduleLeaps, advanceAsTheWalkDayByDayDoes) {
    Random random;
    for (const auto* zone : Zones) {
        const auto gregorian = gregorianIn(zone);
        for (int i = 0; i < 60; ++i) {
            const auto calendar = random.calendar(gregorian);
            const MSPCInstant date{static_cast<double>(random.between(-5'000'000'000, 20'000'000'000))};
            const auto whole = static_cast<double>(random.between(1, i < 40 ? 10'000'000 : 300'000'000));
            const auto duration = whole + (i % 2 == 0 ? 0 : static_cast<double>(random.between(0, 999'999)) * 1e-6);
            const auto direction = i % 3 == 0 ? Backward : Forward;
            ASSERT_EQ(calendar.dateAdvanceByDurationForward(date, duration, direction),
                      plainAdvance(calendar, date, duration, direction))
                << zone << ", from " << date.secondsSince1970 << " by " << duration;
        }
    }
}

TEST(MSPEScheduleLeaps, advanceThousandsOfYearsAsTheWalkDayByDayDoes) {
    for (const auto* zone : {"Europe/Berlin", "Australia/Lord_Howe"}) {
        const auto calendar = MSPEScheduleCalendar::standardCalendar(gregorianIn(zone));
        const auto date = instantAt("2010-06-07T10:11:12", calendar.gregorian());
        const auto later = calendar.dateAdvanceByDurationForward(date, 17'000'000'000.25, Forward);
        ASSERT_TRUE(later);
        EXPECT_EQ(later, plainAdvance(calendar, date, 17'000'000'000.25, Forward)) << zone;
        EXPECT_EQ(calendar.dateAdvanceByDurationForward(*later, 17'000'000'000.25, Backward),
                  plainAdvance(calendar, *later, 17'000'000'000.25, Backward))
            << zone;
    }
}

TEST(MSPEScheduleLeaps, advanceFromTheFutureIntoThePastAsTheWalkDayByDayDoes) {
    const auto calendar = workingSaturdaysInJuneau();
    for (int year = 2570; year < 2900; year += 50) {
        const auto date = instantAt(std::to_string(year) + "-06-07T10:11:12", calendar.gregorian());
        const auto duration = (year - 1800) * 8.265e6;
        EXPECT_EQ(calendar.dateAdvanceByDurationForward(date, duration, Backward),
                  plainAdvance(calendar, date, duration, Backward))
            << year;
    }
}

// For starts within working time, whole seconds and a zone that never changes.
TEST(MSPEScheduleLeaps, forwardThenBackward_returns) {
    Random random;
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

TEST(MSPEScheduleLeaps, withinASteadySpan_areWholeWeeksWithinTheLimits) {
    constexpr auto unbounded = std::numeric_limits<double>::infinity();
    const auto gregorian = gregorianIn("UTC");
    MSPEScheduleLeaps leaps(gregorian.timeZone(), Forward, 144'000);
    const auto monday = instantAt("2012-03-05T00:00:00", gregorian);
    const auto byTime = leaps.leapFrom(monday, 0, {20 * Day, unbounded});
    EXPECT_EQ(byTime.time, 14 * Day);
    EXPECT_EQ(byTime.work, 288'000);
    const auto byWork = leaps.leapFrom(monday, 0, {unbounded, 500'000});
    EXPECT_EQ(byWork.time, 21 * Day);
    EXPECT_EQ(byWork.work, 432'000);
    EXPECT_EQ(leaps.leapFrom(monday, 0, {6 * Day, unbounded}).time, 0);
    EXPECT_EQ(leaps.leapFrom(monday, 0, {unbounded, -1}).time, 0);
}

TEST(MSPEScheduleLeaps, endAWeekBeforeTheClocksChange) {
    constexpr auto unbounded = std::numeric_limits<double>::infinity();
    const auto gregorian = gregorianIn("Europe/Berlin");
    // 27 days and two hours from Monday to the change on Sunday 25 March 02:00: three weeks, less one to spare.
    const auto monday = instantAt("2012-02-27T00:00:00", gregorian);
    MSPEScheduleLeaps forward(gregorian.timeZone(), Forward, 144'000);
    EXPECT_EQ(forward.leapFrom(monday, 0, {unbounded, unbounded}).time, 14 * Day);
    // Backward from Monday 16 April, 21 days and 21 hours after it.
    MSPEScheduleLeaps backward(gregorian.timeZone(), Backward, 144'000);
    EXPECT_EQ(backward.leapFrom(instantAt("2012-04-16T00:00:00", gregorian), 0, {unbounded, unbounded}).time, 14 * Day);
}

TEST(MSPEScheduleLeaps, comeByTheEndOfTheCycleBeingMeasured) {
    constexpr auto unbounded = std::numeric_limits<double>::infinity();
    const auto gregorian = gregorianIn("Europe/Berlin");
    MSPEScheduleLeaps leaps(gregorian.timeZone(), Forward, 144'000);
    const auto begin = instantAt("2150-01-05T00:00:00", gregorian);
    // No work is left for a leap, so a cycle begins here.
    EXPECT_EQ(leaps.leapFrom(begin, 0, {unbounded, 0}).time, 0);
    const auto fourWeeksBeforeItsEnd = begin + (MSPCTimeZone::GregorianCycle - 28 * Day);
    EXPECT_EQ(leaps.leapFrom(fourWeeksBeforeItsEnd, 5'000'000, {unbounded, unbounded}).time, 28 * Day);
    // At its end three more cycles fit into the limits.
    const auto byTime = leaps.leapFrom(begin + MSPCTimeZone::GregorianCycle, 5'000'007,
                                       {3.5 * MSPCTimeZone::GregorianCycle, 20'000'000});
    EXPECT_EQ(byTime.time, 3 * MSPCTimeZone::GregorianCycle);
    EXPECT_EQ(byTime.work, 15'000'021);
}
