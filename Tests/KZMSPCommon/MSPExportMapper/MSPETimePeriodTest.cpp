#include "MSPETimePeriod.h"

#include <gtest/gtest.h>

#include <limits>

TEST(MSPETimePeriod, timesAreSecondsSinceMidnight) {
    constexpr MSPETimePeriod period{8, 30, 15, 12, 0, 0};
    EXPECT_EQ(period.startTime().sinceMidnight, 30615);
    EXPECT_EQ(period.endTime().sinceMidnight, 43200);
    EXPECT_EQ(period.duration(), 12585);
}

TEST(MSPETimePeriod, reversedPeriod_hasNegativeDuration) {
    EXPECT_EQ((MSPETimePeriod{12, 0, 0, 8, 0, 0}.duration()), -14400);
}

TEST(MSPETimePeriod, fieldsMayHoldAnything_withoutOverflow) {
    constexpr auto huge = std::numeric_limits<std::int64_t>::max();
    EXPECT_GT((MSPETimePeriod{0, 0, 0, huge, huge, huge}.duration()), 3.3e22);
    EXPECT_LT((MSPETimePeriod{huge, huge, huge, -huge, -huge, -huge}.duration()), -6.6e22);
}
