#include "MSPEWorkingDayIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "PlainWorkingTime.h"

// The index answers what looking at each period answers.

namespace {

using Periods = std::vector<MSPETimePeriod>;

MSPCTimeInterval plainWork(const Periods& periods, MSPCTimeOfDay lower, MSPCTimeOfDay upper) {
    MSPCTimeInterval work = 0;
    for (const auto& period : periods) {
        work += std::max(0.0, std::min(upper, period.endTime()) - std::max(lower, period.startTime()));
    }
    return work;
}

std::optional<std::int64_t> plainFirstEndingAfter(const Periods& periods, MSPCTimeOfDay time) {
    for (std::size_t i = 0; i < periods.size(); ++i) {
        if (periods[i].endTime() > time) {
            return static_cast<std::int64_t>(i);
        }
    }
    return std::nullopt;
}

std::optional<std::int64_t> plainLastStartingBefore(const Periods& periods, MSPCTimeOfDay time) {
    for (auto i = periods.size(); i-- > 0;) {
        if (periods[i].startTime() < time) {
            return static_cast<std::int64_t>(i);
        }
    }
    return std::nullopt;
}

MSPCTimeInterval plainMost(Periods periods, MSPEDirection direction) {
    if (direction == MSPEDirection::Backward) {
        std::reverse(periods.begin(), periods.end());
    }
    MSPCTimeInterval sum = 0;
    MSPCTimeInterval most = 0;
    for (const auto& period : periods) {
        sum += period.duration();
        most = std::max(most, sum);
    }
    return most;
}

MSPETimePeriod seconds(std::int64_t from, std::int64_t to) {
    return {0, 0, from, 0, 0, to};
}

}  // namespace

TEST(MSPEWorkingDayIndex, answersAsThePeriodsDo) {
    RandomSchedules random;
    for (int i = 0; i < 2'000; ++i) {
        Periods periods;
        const auto farthest = i % 3 == 0 ? 30 : i % 3 == 1 ? 86'400 : 500'000;
        for (auto count = random.between(0, 8); count > 0; --count) {
            periods.push_back(
                seconds(random.between(-farthest / 3, farthest), random.between(-farthest / 3, farthest)));
        }
        const MSPEWorkingDayIndex index(periods);
        const auto timeUpTo = [&random](std::int64_t latest) {
            return MSPCTimeOfDay{static_cast<double>(random.between(0, std::min<std::int64_t>(latest, 86'400)))};
        };
        for (int k = 0; k < 30; ++k) {
            const auto lower = timeUpTo(farthest);
            const auto upper = timeUpTo(farthest);
            ASSERT_EQ(index.workBetween(lower, upper), plainWork(periods, lower, upper))
                << lower.sinceMidnight << ' ' << upper.sinceMidnight;
            ASSERT_EQ(index.firstEndingAfter(lower), plainFirstEndingAfter(periods, lower)) << lower.sinceMidnight;
            ASSERT_EQ(index.lastStartingBefore(lower), plainLastStartingBefore(periods, lower)) << lower.sinceMidnight;
        }
        ASSERT_EQ(index.workOfDay(), plainWork(periods, MSPCMidnight, MSPCEndOfDay));
        for (const auto direction : {MSPEDirection::Forward, MSPEDirection::Backward}) {
            ASSERT_EQ(index.mostDuration(direction), plainMost(periods, direction));
        }
    }
}

TEST(MSPEWorkingDayIndex, ofTheStandardDay) {
    const MSPEWorkingDayIndex index({{8, 0, 0, 12, 0, 0}, {13, 0, 0, 17, 0, 0}});
    EXPECT_EQ(index.workOfDay(), 28'800);
    EXPECT_EQ(index.workBetween({36'000}, {50'400}), 10'800);
    EXPECT_EQ(index.workBetween({50'400}, {36'000}), 0);
    EXPECT_EQ(index.firstEndingAfter({43'199}), 0);
    EXPECT_EQ(index.firstEndingAfter({43'200}), 1);
    EXPECT_EQ(index.firstEndingAfter({61'200}), std::nullopt);
    EXPECT_EQ(index.lastStartingBefore({46'801}), 1);
    EXPECT_EQ(index.lastStartingBefore({46'800}), 0);
    EXPECT_EQ(index.lastStartingBefore({28'800}), std::nullopt);
    EXPECT_EQ(index.duration(), 28'800);
    EXPECT_EQ(index.farthestTime(), 61'200);
}

TEST(MSPEWorkingDayIndex, ofADayWithoutPeriods) {
    const MSPEWorkingDayIndex index({});
    EXPECT_EQ(index.workOfDay(), 0);
    EXPECT_EQ(index.firstEndingAfter({-1}), std::nullopt);
    EXPECT_EQ(index.lastStartingBefore({1e9}), std::nullopt);
    EXPECT_EQ(index.duration(), 0);
    EXPECT_EQ(index.mostDuration(MSPEDirection::Forward), 0);
}

TEST(MSPEWorkingDayIndex, ofReversedPeriods_hasNoWorkAndANegativeDuration) {
    const MSPEWorkingDayIndex index({seconds(100, 300), seconds(1'000, 100)});
    EXPECT_EQ(index.workOfDay(), 200);
    EXPECT_EQ(index.duration(), -700);
    EXPECT_EQ(index.mostDuration(MSPEDirection::Forward), 200);
    EXPECT_EQ(index.mostDuration(MSPEDirection::Backward), 0);
}

TEST(MSPEWorkingDayIndex, ofTimesOfAnySize_hasItsDay) {
    constexpr auto huge = std::numeric_limits<std::int64_t>::max();
    const MSPEWorkingDayIndex index({{-huge, -huge, -huge, huge, huge, huge}, {huge, 0, 0, -huge, 0, 0}});
    EXPECT_EQ(index.workOfDay(), 86'400);
    EXPECT_EQ(index.workBetween({1}, {3}), 2);
}
