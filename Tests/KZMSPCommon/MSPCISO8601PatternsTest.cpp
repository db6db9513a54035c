#include "MSPCISO8601Patterns.h"

#include <gtest/gtest.h>

// Numbers of a million digits: read as the nearest 32-bit integer, like any number that is too long, and at once.

namespace {

constexpr std::int32_t Largest = 2'147'483'647;
const std::string Nines(1'000'000, '9');
const std::string Zeros(1'000'000, '0');

}  // namespace

TEST(MSPCISO8601Patterns, aDateOfAMillionDigitsIsTheLargestNumber) {
    MSPCDateComponents components;
    EXPECT_EQ(matchISODateTime(components, Nines + "-" + Zeros + "7-" + Nines + "T08:" + Zeros + ":30"),
              MSPCUnit::Date | MSPCUnit::Time);
    EXPECT_EQ(components.year, Largest);
    EXPECT_EQ(components.month, 7);
    EXPECT_EQ(components.day, Largest);
    EXPECT_EQ(components.hour, 8);
    EXPECT_EQ(components.minute, 0);
    EXPECT_EQ(components.second, 30);
}

TEST(MSPCISO8601Patterns, aMillionDigitsAloneAreNoDateTime) {
    MSPCDateComponents components;
    EXPECT_EQ(matchISODateTime(components, Nines), MSPCUnitFlags{0});
}

TEST(MSPCISO8601Patterns, aZoneBehindAFractionOfAMillionDigitsIsDropped) {
    MSPCDateComponents components;
    EXPECT_EQ(matchISODateTime(components, "08:00:00." + Nines + "+02:00"), MSPCUnit::Time);
    EXPECT_EQ(components.timeZoneHour, 0);
}

TEST(MSPCISO8601Patterns, durationsOfAMillionDigitsAreTheLargestNumber) {
    MSPCDateComponents components;
    EXPECT_EQ(matchISODuration(components, "P" + Zeros + "3DT" + Nines + "H"), MSPCUnit::Day | MSPCUnit::Hour);
    EXPECT_EQ(components.day, 3);
    EXPECT_EQ(components.hour, Largest);
    const MSPCHoursMinutesSeconds expected{Largest, 0, 5};
    EXPECT_EQ(matchMSPDIDuration("x PT" + Nines + "H" + Zeros + "M" + Zeros + "5S"), expected);
}
