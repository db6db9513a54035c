#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "ExpectRaises.h"
#include "MSPIUtilities.h"

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

}  // namespace

TEST(MSPIUtilitiesDurations, mspdiDurationCountsHoursMinutesAndSeconds) {
    struct Case {
        const char* text;
        std::int64_t seconds;
    };
    const Case cases[] = {{"PT8H0M0S", 28'800},
                          {"P1DT2H0M0S", 7'200},  // the day does not count
                          {"P1Y1M1DT1S", 1},
                          {"PT1H30M", 5'400},
                          {"PT8H", 28'800},
                          {"PT", 0},
                          {"PT99999999999H0M0S", 7'730'941'129'200},  // 2147483647 hours
                          {"", -1}};
    for (const auto& [text, seconds] : cases) {
        EXPECT_EQ(MSPIUtilities::mspdiDurationInSecs(text), seconds) << text;
    }
}

TEST(MSPIUtilitiesDurations, textThatIsNoDurationRaises) {
    for (const std::string text : {"8H", "P1D", "abc", " "}) {
        const auto reason = "Failed to convert MSPDI duration: '" + text + "'.";
        EXPECT_RAISES(MSPIUtilities::mspdiDurationInSecs(text), MSPCInternalInconsistency, reason);
        EXPECT_RAISES(MSPIUtilities::mspdiToKdzxDuration(text), MSPCInternalInconsistency, reason);
    }
}

TEST(MSPIUtilitiesDurations, kdzxDurationIsWholeSecondsAndNoneForAnEmptyText) {
    EXPECT_EQ(MSPIUtilities::mspdiToKdzxDuration("PT8H0M0S"), "28800");
    EXPECT_EQ(MSPIUtilities::mspdiToKdzxDuration("PT0H0M0S"), "0");
    EXPECT_EQ(MSPIUtilities::mspdiToKdzxDuration(""), std::nullopt);
}

TEST(MSPIUtilitiesDurations, mppDurationNeedsAllThreeLetters) {
    EXPECT_EQ(MSPIUtilities::mspdiToMppDuration("PT8H30M15S"), 30'615.0);
    EXPECT_EQ(MSPIUtilities::mspdiToMppDuration("PTHM15S"), 15.0);
    EXPECT_EQ(MSPIUtilities::mspdiToMppDuration("xPT1H0M0Sx"), 3'600.0);
    for (const char* text : {"", "PT8H", "PT1H30M", "P1DT8H0M0S", "abc"}) {
        EXPECT_EQ(MSPIUtilities::mspdiToMppDuration(text), 0.0) << text;
    }
}

TEST(MSPIUtilitiesDurations, mppDurationIsA32BitSum) {
    // 3,600,000,000 less 2^32, and 2147483647 * (3600 + 60 + 1) modulo 2^32: 2^31 - 3661.
    EXPECT_EQ(MSPIUtilities::mspdiToMppDuration("PT1000000H0M0S"), -694'967'296.0);
    EXPECT_EQ(MSPIUtilities::mspdiToMppDuration("PT99999999999H99999999999M99999999999S"), 2'147'479'987.0);
    EXPECT_EQ(MSPIUtilities::mspdiToMppDuration("PT0H0M99999999999S"), 2'147'483'647.0);
}

TEST(MSPIUtilitiesDurations, kdzxDurationOfMppSecondsHasTwoDecimals) {
    EXPECT_EQ(MSPIUtilities::mppToKdzxDuration(28'800), "28800.00");
    EXPECT_EQ(MSPIUtilities::mppToKdzxDuration(0.125), "0.12");
    EXPECT_EQ(MSPIUtilities::mppToKdzxDuration(-1.5), "-1.50");
    EXPECT_EQ(MSPIUtilities::mppToKdzxDuration(1e15), "1000000000000000.00");
}

TEST(MSPIUtilitiesDurations, mspdiTextIsTruncatedToWhole32BitSeconds) {
    struct Case {
        double seconds;
        const char* text;
    };
    const Case cases[] = {{3599.9, "PT0H59M59S"},       {28'800, "PT8H0M0S"},      {-3599.9, "PT0H-59M-59S"},
                          {-0.9, "PT0H0M0S"},           {1e12, "PT596523H14M7S"},  // 2147483647 seconds
                          {-1e12, "PT-596523H-14M-8S"},                            // -2147483648
                          {Infinity, "PT596523H14M7S"}, {std::nan(""), "PT0H0M0S"}};
    for (const auto& [seconds, text] : cases) {
        EXPECT_EQ(MSPIUtilities::mppToMspdiDuration(seconds), text) << seconds;
    }
}

TEST(MSPIUtilitiesDurations, kdzxTextBecomesMspdiText) {
    EXPECT_EQ(MSPIUtilities::kdzxToMspdiDuration("28800"), "PT8H0M0S");
    EXPECT_EQ(MSPIUtilities::kdzxToMspdiDuration("90061"), "PT25H1M1S");
    EXPECT_EQ(MSPIUtilities::kdzxToMspdiDuration("-90"), "PT0H-1M-30S");
    EXPECT_EQ(MSPIUtilities::kdzxToMspdiDuration("28800.00"), "PT8H0M0S");
    EXPECT_EQ(MSPIUtilities::kdzxToMspdiDuration("10000000000"), "PT2777777H46M40S");
    EXPECT_EQ(MSPIUtilities::kdzxToMspdiDuration("abc"), "PT0H0M0S");
    EXPECT_EQ(MSPIUtilities::kdzxToMspdiDuration(""), std::nullopt);
}

TEST(MSPIUtilitiesDurations, clockFormHasTwoDigitsAndAsManyHoursAsNeeded) {
    EXPECT_EQ(MSPIUtilities::hourMinSecFromDuration(3'725), "01:02:05");
    EXPECT_EQ(MSPIUtilities::hourMinSecFromDuration(360'000), "100:00:00");
    EXPECT_EQ(MSPIUtilities::hourMinSecFromDuration(59.9), "00:00:59");
    EXPECT_EQ(MSPIUtilities::hourMinSecFromDuration(-3'725), "-1:-2:-5");
    EXPECT_EQ(MSPIUtilities::hourMinSecFromDuration(Infinity), "2562047788015215:30:07");  // the largest integer
}

TEST(MSPIUtilitiesDurations, lagIsTenthsOfAMinute) {
    EXPECT_EQ(MSPIUtilities::mspdiToMppLinkLag("4800"), 28'800.0);
    EXPECT_EQ(MSPIUtilities::mspdiToMppLinkLag("-1"), -6.0);
    EXPECT_EQ(MSPIUtilities::mspdiToMppLinkLag(""), 0.0);
    EXPECT_EQ(MSPIUtilities::mspdiToMppLinkLag("abc"), 0.0);
    EXPECT_EQ(MSPIUtilities::mspdiToMppLinkLag("99999999999999999999"), 9'223'372'036'854'775'807.0 * 6);
}

TEST(MSPIUtilitiesDurations, leadTimeIsTruncatedToTenthsOfAMinute) {
    EXPECT_EQ(MSPIUtilities::mppToMspdiLeadTimeIsPercentage(28'800, false), "4800");
    EXPECT_EQ(MSPIUtilities::mppToMspdiLeadTimeIsPercentage(11.9, false), "1");
    EXPECT_EQ(MSPIUtilities::mppToMspdiLeadTimeIsPercentage(-11.9, false), "-1");
    EXPECT_EQ(MSPIUtilities::kdzxToMspdiLeadTimeIsPercentage("28800", false), "4800");
    EXPECT_EQ(MSPIUtilities::kdzxToMspdiLeadTimeIsPercentage("-11", false), "-1");
    EXPECT_EQ(MSPIUtilities::kdzxToMspdiLeadTimeIsPercentage("", false), std::nullopt);
    EXPECT_EQ(MSPIUtilities::kdzxToMspdiLeadTimeIsPercentage("", true), std::nullopt);
}

TEST(MSPIUtilitiesDurations, leadTimeInPercentIsTruncated) {
    EXPECT_EQ(MSPIUtilities::kdzxToMspdiLeadTimeIsPercentage("0.29", true), "28");  // 28.999...
    EXPECT_EQ(MSPIUtilities::mppToMspdiLeadTimeIsPercentage(0.29, true), "28");
    EXPECT_EQ(MSPIUtilities::mppToMspdiLeadTimeIsPercentage(0, true), "0");
    EXPECT_EQ(MSPIUtilities::mppToMspdiLeadTimeIsPercentage(1, true), "100");
    EXPECT_EQ(MSPIUtilities::kdzxToMspdiLeadTimeIsPercentage("abc", true), "0");
}

TEST(MSPIUtilitiesDurations, leadTimeOutsideTheWholeRaises) {
    EXPECT_RAISES(MSPIUtilities::kdzxToMspdiLeadTimeIsPercentage("1.5", true), MSPCInternalInconsistency,
                  "Expected lead time in range [0...1]. Got 1.500000");
    EXPECT_RAISES(MSPIUtilities::mppToMspdiLeadTimeIsPercentage(-0.1, true), MSPCInternalInconsistency,
                  "Expected lead time in range [0...1]. Got -0.100000");
    EXPECT_RAISES(MSPIUtilities::mppToMspdiLeadTimeIsPercentage(std::nan(""), true), MSPCInternalInconsistency,
                  "Expected lead time in range [0...1]. Got nan");
}
