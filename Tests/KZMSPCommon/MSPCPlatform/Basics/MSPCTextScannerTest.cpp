#include "MSPCTextScanner.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <set>
#include <string>

namespace {

constexpr auto Highest64 = std::numeric_limits<std::int64_t>::max();
constexpr auto Lowest64 = std::numeric_limits<std::int64_t>::min();
constexpr auto Highest32 = std::numeric_limits<std::int32_t>::max();
constexpr auto Lowest32 = std::numeric_limits<std::int32_t>::min();

// Of a character of the basic plane.
std::string utf8Of(char32_t character) {
    const auto byte = [](char32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); };
    if (character < 0x80) {
        return {byte(character)};
    }
    if (character < 0x800) {
        return {byte(0xC0 | character >> 6), byte(0x80 | (character & 0x3F))};
    }
    return {byte(0xE0 | character >> 12), byte(0x80 | (character >> 6 & 0x3F)), byte(0x80 | (character & 0x3F))};
}

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

TEST(MSPCTextScanner, skipsWhiteSpaceOfAllOfUnicode) {
    EXPECT_EQ(scanInteger64("\u00A05"), 5);                   // no-break space
    EXPECT_EQ(scanInteger32("\u3000\u2009\u0085-12h"), -12);  // ideographic and thin space, next line
    EXPECT_EQ(scanDouble(" \u202F\u2028\u20291.5"), 1.5);     // narrow no-break space, line and paragraph separator
    // No white space: zero width space, byte order mark, the lone first byte of a no-break space.
    for (const std::string_view text : {"\u200B5", "\uFEFF5", "\xC2",
                                        "\xC2"
                                        "5"}) {
        EXPECT_EQ(scanInteger64(text), std::nullopt) << text;
        EXPECT_EQ(scanDouble(text), std::nullopt) << text;
    }
}

TEST(MSPCTextScanner, trimsWhiteSpaceAtBothEnds) {
    const struct {
        std::string_view text;
        std::string_view trimmed;
    } table[] = {
        {" \t\n\v\f\ra b\r\n ", "a b"},
        {"\u00A0\u3000a\u2003b\u2028\u0085", "a\u2003b"},
        {"\u00A0 \u00E4 \u00A0", "\u00E4"},
        {"a", "a"},
        {"  ", ""},
        {"\u2029 ", ""},
        {"", ""},
        {"\x7F\x1F", "\x7F\x1F"},
        {"\u200Ba\uFEFF", "\u200Ba\uFEFF"},
        // Bytes that are no UTF-8, though they are part of a blank's.
        {"\xC2 a \xA0", "\xC2 a \xA0"},
        {"\xE3\x80", "\xE3\x80"},
    };
    for (const auto& row : table) {
        EXPECT_EQ(trimmed(row.text), row.trimmed) << row.text;
    }
}

// Unicode's list: White_Space in PropList.txt.
TEST(MSPCTextScanner, whiteSpaceIsWhatUnicodeCallsIt) {
    const std::set<char32_t> whiteSpace{0x09,   0x0A,   0x0B,   0x0C,   0x0D,   0x20,   0x85,   0xA0,   0x1680,
                                        0x2000, 0x2001, 0x2002, 0x2003, 0x2004, 0x2005, 0x2006, 0x2007, 0x2008,
                                        0x2009, 0x200A, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000};
    for (char32_t character = 0; character <= 0xFFFF; ++character) {
        if (character < 0xD800 || character > 0xDFFF) {
            EXPECT_EQ(trimmed(utf8Of(character)).empty(), whiteSpace.contains(character))
                << static_cast<unsigned>(character);
        }
    }
}

}  // namespace
