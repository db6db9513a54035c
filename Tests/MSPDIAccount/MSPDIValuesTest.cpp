#include "MSPDIValues.h"

#include <gtest/gtest.h>

TEST(MSPDIValuesTest, comparesValuesWithAList) {
    EXPECT_TRUE(MSPDIIsOneOf("0", "0|-1"));
    EXPECT_TRUE(MSPDIIsOneOf(" 0.00 ", "0|-1"));
    EXPECT_TRUE(MSPDIIsOneOf("-1", "0|-1"));
    EXPECT_TRUE(MSPDIIsOneOf("PT0H0M0S", "0"));
    EXPECT_TRUE(MSPDIIsOneOf("PT0S", "0"));
    EXPECT_TRUE(MSPDIIsOneOf("false", "0"));
    EXPECT_TRUE(MSPDIIsOneOf("true", "1"));
    EXPECT_TRUE(MSPDIIsOneOf("NA", "0|NA"));
    EXPECT_TRUE(MSPDIIsOneOf("", ""));
    EXPECT_FALSE(MSPDIIsOneOf("1", "0|-1"));
    EXPECT_FALSE(MSPDIIsOneOf("PT0H0M1S", "0"));
    EXPECT_FALSE(MSPDIIsOneOf("0x", "0"));
    EXPECT_FALSE(MSPDIIsOneOf("Standard", ""));
}

TEST(MSPDIValuesTest, readsTruthWithoutRaising) {
    for (const auto* text : {"1", "true", "YES", " 2 "}) {
        EXPECT_TRUE(MSPDIIsTrue(text)) << text;
    }
    for (const auto* text : {"0", "false", "no", "", "perhaps"}) {
        EXPECT_FALSE(MSPDIIsTrue(text)) << text;
    }
}

TEST(MSPDIValuesTest, readsDurationsWithoutRaising) {
    EXPECT_EQ(MSPDISeconds("PT1H30M0S"), 5400);
    EXPECT_EQ(MSPDISeconds(""), -1);
    EXPECT_EQ(MSPDISeconds("eight hours"), std::nullopt);
}

// They are remembered, but only so many.
TEST(MSPDIValuesTest, readsEachDurationAsItself) {
    for (int round = 0; round < 2; ++round) {
        for (int hours = 0; hours < 1000; ++hours) {
            const auto text = std::to_string(hours);
            ASSERT_EQ(MSPDISeconds("PT" + text + "H0M0S"), hours * 3600) << round;
            ASSERT_EQ(MSPDISeconds("PT" + text + "H"), hours * 3600) << round;
            ASSERT_EQ(MSPDISeconds(text + " hours"), std::nullopt) << round;
        }
    }
}
