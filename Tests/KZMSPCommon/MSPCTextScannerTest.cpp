#include "MSPCTextScanner.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <string>

namespace {

constexpr auto Highest64 = std::numeric_limits<std::int64_t>::max();
constexpr auto Lowest64 = std::numeric_limits<std::int64_t>::min();
constexpr auto Highest32 = std::numeric_limits<std::int32_t>::max();
constexpr auto Lowest32 = std::numeric_limits<std::int32_t>::min();

TEST(MSPCTextScanner, readsIntegersAtTheStart) {
    struct Case {
        std::string_view text;
        std::optional<std::int64_t> value;
    };
    constexpr Case cases[] = {
        {"42", 42},
        {" 42abc", 42},
        {"12h", 12},
        {"\t\n\v\f\r 7", 7},
        {"+5", 5},
        {"-5", -5},
        {"007", 7},
        {"1.9", 1},
        {"0x10", 0},
        {"-0", 0},
        {"9223372036854775807", Highest64},
        {"9223372036854775808", Highest64},
        {"-9223372036854775808", Lowest64},
        {"-9223372036854775809", Lowest64},
        {"99999999999999999999999999", Highest64},
        {"", std::nullopt},
        {"   ", std::nullopt},
        {"abc", std::nullopt},
        {"-", std::nullopt},
        {"+", std::nullopt},
        {"+-5", std::nullopt},
        {"- 5", std::nullopt},
        {".5", std::nullopt},
        {"\xC2\xA0"
         "5",
         std::nullopt},
    };
    for (const auto& [text, value] : cases) {
        EXPECT_EQ(scanInteger64(text), value) << text;
    }
    EXPECT_EQ(scanInteger64(std::string(1'000'000, '9')), Highest64);
}

TEST(MSPCTextScanner, smallIntegersSaturateAtTheirOwnBounds) {
    EXPECT_EQ(scanInteger32("2147483647"), Highest32);
    EXPECT_EQ(scanInteger32("2147483648"), Highest32);
    EXPECT_EQ(scanInteger32("-2147483648"), Lowest32);
    EXPECT_EQ(scanInteger32("-99999999999999999999"), Lowest32);
    EXPECT_EQ(scanInteger32(" 12h"), 12);
    EXPECT_EQ(scanInteger32("x"), std::nullopt);
}

TEST(MSPCTextScanner, readsDecimalNumbersAtTheStart) {
    constexpr auto largest = std::numeric_limits<double>::max();
    struct Case {
        std::string_view text;
        std::optional<double> value;
    };
    constexpr Case cases[] = {
        {"1.5", 1.5},          {" \n-2.25x", -2.25},
        {"+0.5", 0.5},         {".5", 0.5},
        {"-.5", -0.5},         {"7.", 7.0},
        {"1e3", 1000.0},       {"1.5E-2", 0.015},
        {"1e", 1.0},           {"1e+", 1.0},
        {"1,5", 1.0},          {"0x10", 0.0},
        {"42", 42.0},          {"1e400", largest},
        {"-1e400", -largest},  {"1e-400", 0.0},
        {"0.1e999", largest},  {"10e-999", 0.0},
        {"", std::nullopt},    {"  ", std::nullopt},
        {"inf", std::nullopt}, {"-inf", std::nullopt},
        {"nan", std::nullopt}, {"infinity", std::nullopt},
        {"abc", std::nullopt}, {".", std::nullopt},
        {"-", std::nullopt},   {"+-1", std::nullopt},
        {"e5", std::nullopt},
    };
    for (const auto& [text, value] : cases) {
        EXPECT_EQ(scanDouble(text), value) << text;
    }
    EXPECT_TRUE(std::signbit(scanDouble("-0").value_or(1.0)));
    EXPECT_EQ(scanDouble(std::string(1'000'000, '9')), largest);
    EXPECT_EQ(scanDouble("0." + std::string(1'000'000, '0') + "1"), 0.0);
    EXPECT_EQ(scanDouble(std::string(1000, '0') + "1" + std::string(10, '0')), 1e10);
}

TEST(MSPCTextScanner, numbersReadAlikeInEveryLocale) {
    const std::string former = std::setlocale(LC_ALL, nullptr);
    for (const char* locale : {"de_DE.UTF-8", "fr_FR.UTF-8", "C"}) {
        std::setlocale(LC_ALL, locale);
        EXPECT_EQ(scanDouble("1.5"), 1.5) << locale;
        EXPECT_EQ(scanDouble("1,5"), 1.0) << locale;
    }
    std::setlocale(LC_ALL, former.c_str());
}

TEST(MSPCTextScanner, trimsBlanksAtBothEnds) {
    EXPECT_EQ(trimmed(" \t\n\v\f\ra b\r\n "), "a b");
    EXPECT_EQ(trimmed("a"), "a");
    EXPECT_EQ(trimmed("  "), "");
    EXPECT_EQ(trimmed(""), "");
}

}  // namespace
