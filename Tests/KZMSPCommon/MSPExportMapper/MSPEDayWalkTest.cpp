#include "MSPEDayWalk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "PlainWorkingTime.h"
#include "WallClock.h"

namespace {

constexpr auto Forward = MSPEDirection::Forward;
constexpr auto Backward = MSPEDirection::Backward;
constexpr auto Endless = std::numeric_limits<double>::infinity();

}  // namespace

TEST(MSPEDayWalk, stepsDaysOf86400SecondsWithTheirWeekdays) {
    for (const auto* zone : {"Asia/Beirut", "America/Santiago", "Africa/Cairo", "Europe/Berlin", "Australia/Lord_Howe",
                             "Pacific/Apia", "UTC"}) {
        const auto gregorian = gregorianIn(zone);
        for (const auto* begin : {"2010-01-05T00:00:00", "2010-07-05T00:00:00"}) {
            for (const auto direction : {Forward, Backward}) {
                const auto first = instantAt(begin, gregorian);
                MSPEDayWalk walk(gregorian, first, direction);
                for (int day = 0; day < 2'000; ++day, walk.step()) {
                    ASSERT_EQ(walk.date(), first + (direction == Forward ? day : -day) * PlainDay) << zone;
                    ASSERT_EQ(walk.weekday(), gregorian.weekdayOf(walk.date())) << zone << ' ' << day;
                }
            }
        }
    }
}

TEST(MSPEDayWalk, daysBeforeAChangeLieBeforeIt) {
    // The clocks of Beirut change on Sunday 2026-10-25 at 00:00, three weeks after this day to the second.
    const auto beirut = gregorianIn("Asia/Beirut");
    EXPECT_EQ(MSPEDayWalk(beirut, instantAt("2026-10-04T00:00:00", beirut), Forward).daysBeforeChange(), 20);
    EXPECT_EQ(MSPEDayWalk(beirut, instantAt("2026-10-24T00:00:00", beirut), Forward).daysBeforeChange(), 0);
    // Backward the change itself belongs to the days behind it: two days before Tuesday 00:00 it is Sunday 00:00.
    EXPECT_EQ(MSPEDayWalk(beirut, instantAt("2026-10-27T00:00:00", beirut), Backward).daysBeforeChange(), 2);
    // Those of Berlin on Sunday 2012-03-25 at 02:00.
    const auto berlin = gregorianIn("Europe/Berlin");
    EXPECT_EQ(MSPEDayWalk(berlin, instantAt("2012-03-05T00:00:00", berlin), Forward).daysBeforeChange(), 20);
    EXPECT_EQ(MSPEDayWalk(berlin, instantAt("2012-04-02T00:00:00", berlin), Backward).daysBeforeChange(), 7);
    EXPECT_EQ(MSPEDayWalk(gregorianIn("UTC"), MSPCInstant{0}, Forward).daysBeforeChange(), Endless);
}

TEST(MSPEDayWalk, leapsOverDaysComeToTheSameDays) {
    for (const auto* zone : {"Asia/Beirut", "America/Santiago", "Europe/Berlin", "Australia/Lord_Howe"}) {
        const auto gregorian = gregorianIn(zone);
        for (const auto direction : {Forward, Backward}) {
            MSPEDayWalk walk(gregorian, instantAt("2026-01-05T00:00:00", gregorian), direction);
            for (int i = 0; i < 3'000; ++i) {
                const auto days = std::floor(std::min(walk.daysBeforeChange(), 10'000.0) / (1 + i % 3));
                const auto span = walk.steadySpan();
                walk.leap(days);
                ASSERT_EQ(walk.weekday(), gregorian.weekdayOf(walk.date())) << zone << ' ' << i;
                ASSERT_EQ(walk.steadySpan(), span);
                walk.step();
                ASSERT_EQ(walk.weekday(), gregorian.weekdayOf(walk.date())) << zone << ' ' << i;
            }
        }
    }
}

TEST(MSPEDayWalk, cyclesLieAheadWhereTheyRepeat) {
    const auto gregorian = gregorianIn("Europe/Berlin");
    const auto begin = gregorian.midnightOf(MSPCTimeZone::startOfCycles() + PlainDay);
    constexpr auto cycle = MSPCTimeZone::GregorianCycle;
    EXPECT_EQ(MSPEDayWalk(gregorian, begin - 3 * PlainDay, Forward).cyclesAhead(), 0);
    EXPECT_EQ(MSPEDayWalk(gregorian, begin, Forward).cyclesAhead(), Endless);
    EXPECT_EQ(MSPEDayWalk(gregorian, begin, Backward).cyclesAhead(), 0);
    EXPECT_EQ(MSPEDayWalk(gregorian, begin + cycle, Backward).cyclesAhead(), 0);
    EXPECT_EQ(MSPEDayWalk(gregorian, begin + cycle + 7 * PlainDay, Backward).cyclesAhead(), 1);
    EXPECT_EQ(MSPEDayWalk(gregorian, begin + 2.5 * cycle, Backward).cyclesAhead(), 2);
}
