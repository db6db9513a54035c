#include "MSPCClock.h"

#include <gtest/gtest.h>

#include <ctime>

TEST(MSPCSystemClock, agreesWithTheMachinesClock) {
    const auto before = static_cast<double>(std::time(nullptr)) - 1;
    const auto now = MSPCSystemClock().now().secondsSince1970;
    const auto after = static_cast<double>(std::time(nullptr)) + 1;
    EXPECT_GE(now, before);
    EXPECT_LE(now, after);
}
