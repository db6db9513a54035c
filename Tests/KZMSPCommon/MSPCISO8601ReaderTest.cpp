#include "MSPCISO8601Reader.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

constexpr int GeneratedTexts = 1'000'000;
constexpr std::int32_t Largest = 2'147'483'647;
const std::string Nines(1'000'000, '9');
const std::string Zeros(1'000'000, '0');

// Texts like those of plans, half of them spoilt in one to three places. The same ones in every run.
class TextGenerator {
public:
    std::string dateTime() {
        static constexpr const char* zones[] = {"", "", "Z", "+00:00", "-00:00", "0", ".0", ".00Z", "+0000", " "};
        return maybeSpoilt(withDigits(std::string("0000-00-00T00:00:00") + zones[below(std::size(zones))]));
    }

    std::string duration() { return maybeSpoilt("PT" + number() + "H" + number() + "M" + number() + "S"); }

private:
    std::size_t below(std::size_t bound) { return _random() % bound; }

    std::string withDigits(std::string text) {
        for (char& character : text) {
            character = character == '0' ? static_cast<char>('0' + below(10)) : character;
        }
        return text;
    }

    std::string number() {
        static constexpr std::size_t lengths[] = {1, 1, 1, 2, 2, 3, 5, 9, 10, 12, 25};
        return withDigits(std::string(lengths[below(std::size(lengths))], '0'));
    }

    std::string maybeSpoilt(std::string text) {
        if (below(2) == 0) {
            return text;
        }
        static constexpr std::string_view characters("0123456789--::TTZZPHMSDY+.. xz\n\xC3\xA4\0", 35);
        for (std::size_t edits = 1 + below(3); edits > 0; --edits) {
            const auto position = below(text.size());
            const std::string piece(1, characters[below(characters.size())]);
            text.replace(position, below(2), below(3) == 0 ? std::string() : piece);
            if (text.empty()) {
                break;
            }
        }
        return text;
    }

    std::mt19937_64 _random{20'120'105};
};

}  // namespace

TEST(MSPCISO8601Reader, readsTheUsualDateTimesAndNothingElse) {
    MSPCDateComponents components;
    EXPECT_EQ(scanISODateTime(components, "2012-01-05T08:00:00"), 252);
    EXPECT_EQ(scanISODateTime(components, "2012-01-05T08:00:00Z"), 252 | 0x800000);
    EXPECT_EQ(scanISODateTime(components, "2012-01-05T08:00:00-05:30"), 252 | 0x600000);
    MSPCDateComponents untouched;
    for (const char* text :
         {"", "2012-01-05", "08:00:00", "2012-01-05T08:00:0", "2012-01-05T08:00:00.0", "2012-01-05T08:00:00z",
          "2012-01-05T08:00:00+01", " 2012-01-05T08:00:00", "2012-01-05t08:00:00", "2012-01-05T08:00:00ZZ"}) {
        EXPECT_EQ(scanISODateTime(untouched, text), std::nullopt) << text;
    }
    EXPECT_EQ(untouched, MSPCDateComponents());
}

TEST(MSPCISO8601Reader, answersDateTimesAsThePatternsDo) {
    TextGenerator generator;
    int scannedTexts = 0;
    for (int i = 0; i < GeneratedTexts; ++i) {
        const auto text = generator.dateTime();
        MSPCDateComponents scanned;
        const auto scannedUnits = scanISODateTime(scanned, text);
        if (scannedUnits) {
            ++scannedTexts;
            MSPCDateComponents matched;
            ASSERT_EQ(scannedUnits, matchISODateTime(matched, text)) << text;
            ASSERT_EQ(scanned, matched) << text << scanned.description() << matched.description();
        }
    }
    // Otherwise the texts would show nothing.
    EXPECT_GT(scannedTexts, GeneratedTexts / 4);
    EXPECT_LT(scannedTexts, GeneratedTexts * 3 / 4);
}

TEST(MSPCISO8601Reader, answersDurationsAsThePatternsDo) {
    TextGenerator generator;
    int scannedTexts = 0;
    for (int i = 0; i < GeneratedTexts; ++i) {
        const auto text = generator.duration();
        const auto scanned = scanMSPDIDuration(text);
        if (scanned) {
            ++scannedTexts;
            ASSERT_EQ(scanned, matchMSPDIDuration(text)) << text;
            MSPCDateComponents matched;
            ASSERT_EQ(matchISODuration(matched, text), MSPCUnit::Time) << text;
            ASSERT_EQ(matched.hour, scanned->hours) << text;
            ASSERT_EQ(matched.minute, scanned->minutes) << text;
            ASSERT_EQ(matched.second, scanned->seconds) << text;
        }
    }
    EXPECT_GT(scannedTexts, GeneratedTexts / 4);
    EXPECT_LT(scannedTexts, GeneratedTexts * 3 / 4);
}

// Numbers of a million digits: read as the nearest 32-bit integer, like any number that is too long, and at once.

TEST(MSPCISO8601Reader, aDateOfAMillionDigitsIsTheLargestNumber) {
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

TEST(MSPCISO8601Reader, aMillionDigitsAloneAreNoDateTime) {
    MSPCDateComponents components;
    EXPECT_EQ(matchISODateTime(components, Nines), MSPCUnitFlags{0});
}

TEST(MSPCISO8601Reader, aZoneBehindAFractionOfAMillionDigitsIsDropped) {
    MSPCDateComponents components;
    EXPECT_EQ(matchISODateTime(components, "08:00:00." + Nines + "+02:00"), MSPCUnit::Time);
    EXPECT_EQ(components.timeZoneHour, 0);
}

TEST(MSPCISO8601Reader, durationsOfAMillionDigitsAreTheLargestNumber) {
    MSPCDateComponents components;
    EXPECT_EQ(matchISODuration(components, "P" + Zeros + "3DT" + Nines + "H"), MSPCUnit::Day | MSPCUnit::Hour);
    EXPECT_EQ(components.day, 3);
    EXPECT_EQ(components.hour, Largest);
    const MSPCHoursMinutesSeconds expected{Largest, 0, 5};
    EXPECT_EQ(matchMSPDIDuration("x PT" + Nines + "H" + Zeros + "M" + Zeros + "5S"), expected);
}
