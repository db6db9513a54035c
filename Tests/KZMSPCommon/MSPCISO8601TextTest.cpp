#include "MSPCISO8601Text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

#include "ExpectRaises.h"
#include "MSPCRegex.h"
#include "UTCInstant.h"

namespace {

constexpr MSPCUnitFlags Z = MSPCUnit::ZoneIsZ;
constexpr MSPCUnitFlags Offset = MSPCUnit::ZoneHour | MSPCUnit::ZoneMinute;
constexpr std::int64_t None = MSPCDateFields::Undefined;

struct Expected {
    MSPCUnitFlags units = 0;
    std::int64_t year = None;
    std::int64_t month = None;
    std::int64_t day = None;
    std::int64_t hour = None;
    std::int64_t minute = None;
    std::int64_t second = None;
    std::int64_t zoneHour = 0;
    std::int64_t zoneMinute = 0;
};

struct Case {
    std::string text;
    Expected expected;
};

MSPCDateComponents componentsOf(const Expected& expected) {
    MSPCDateComponents components;
    components.year = expected.year;
    components.month = expected.month;
    components.day = expected.day;
    components.hour = expected.hour;
    components.minute = expected.minute;
    components.second = expected.second;
    components.timeZoneHour = expected.zoneHour;
    components.timeZoneMinute = expected.zoneMinute;
    components.fixUTC();
    return components;
}

using Reader = MSPCUnitFlags (*)(MSPCDateComponents&, std::string_view);

template <std::size_t Count>
void expectRead(Reader reader, const Case (&cases)[Count]) {
    for (const auto& [text, expected] : cases) {
        MSPCDateComponents components;
        EXPECT_EQ(reader(components, text), expected.units) << text;
        EXPECT_EQ(components, componentsOf(expected)) << text << components.description();
    }
}

MSPCDateComponents dateTime(std::int64_t year, std::int64_t month, std::int64_t day) {
    return componentsOf({.year = year, .month = month, .day = day, .hour = 8, .minute = 0, .second = 0});
}

}  // namespace

TEST(MSPCISO8601Text, dateTimesAreReadWithTheUnitsTheyHold) {
    const Case cases[] = {
        {"2012-01-05T08:00:00", {252, 2012, 1, 5, 8, 0, 0}},
        {"2012-01-05T08:00:00Z", {252 | Z, 2012, 1, 5, 8, 0, 0}},
        {"2012-01-05T08:00:00+01:00", {252 | Offset, 2012, 1, 5, 8, 0, 0, 1, 0}},
        {"2012-01-05T08:00:00+00:00", {252 | Offset, 2012, 1, 5, 8, 0, 0}},
        {"2012-01-05", {28, 2012, 1, 5}},
        {"08:30:00", {224, None, None, None, 8, 30, 0}},
        {"08:30:00Z", {224 | Z, None, None, None, 8, 30, 0}},
        {"12012-1-5T8:0:0", {252, 12012, 1, 5, 8, 0, 0}},
    };
    expectRead(updateDateTimeComponentsFromISODateTime, cases);
}

TEST(MSPCISO8601Text, offsetBehindAFractionIsDropped) {
    const Case cases[] = {
        {"2012-01-05T08:00:00.000+02:00", {252, 2012, 1, 5, 8, 0, 0}},
        {"2012-01-05T08:00:00.000", {252, 2012, 1, 5, 8, 0, 0}},
        {"2012-01-05T08:00:00x5-02:00", {252, 2012, 1, 5, 8, 0, 0}},  // any character begins a fraction
        {"2012-01-05T08:00:00+0200", {252, 2012, 1, 5, 8, 0, 0}},     // and "+0200" is one
        {"2012-01-05T08:00:00Z5", {252, 2012, 1, 5, 8, 0, 0}},
    };
    expectRead(updateDateTimeComponentsFromISODateTime, cases);
}

TEST(MSPCISO8601Text, zBehindAFractionIsKept) {
    const Case cases[] = {
        {"2012-01-05T08:00:00.5Z", {252 | Z, 2012, 1, 5, 8, 0, 0}},
        {"08:00:00ZZ", {224 | Z, None, None, None, 8, 0, 0}},
    };
    expectRead(updateDateTimeComponentsFromISODateTime, cases);
}

TEST(MSPCISO8601Text, signOfAnOffsetBelongsToTheHourAlone) {
    const Case cases[] = {
        {"2012-01-05T08:00:00-05:30", {252 | Offset, 2012, 1, 5, 8, 0, 0, -5, 30}},
        {"2012-01-05T08:00:00-00:30", {252 | Offset, 2012, 1, 5, 8, 0, 0, 0, 30}},
        {"8:0:0-5:30", {224 | Offset, None, None, None, 8, 0, 0, -5, 30}},
        {"8:0:0-:30", {224 | MSPCUnit::ZoneMinute, None, None, None, 8, 0, 0, 0, 30}},
        {"8:0:0-3:", {224 | MSPCUnit::ZoneHour, None, None, None, 8, 0, 0, -3, 0}},
    };
    expectRead(updateDateTimeComponentsFromISODateTime, cases);
}

TEST(MSPCISO8601Text, whatATextDoesNotHoldStaysUndefined) {
    const Case cases[] = {
        {"2008-12-04T17:-0:00", {28, 2008, 12, 4}},  // no two colons among digits: no time
        {"2012-01-05T08:00", {28, 2012, 1, 5}},
        {"2012-01-05Z", {28, 2012, 1, 5}},
        {"2012--05", {20, 2012, None, 5}},
        {"--", {0}},
        {"::", {0}},
        {"-:30:", {64, None, None, None, None, 30}},
        {"-2012-01-05", {28, 2012, 1, 5}},  // the sign of a year is not read
        {"abc", {0}},
        {" ", {0}},
        {"2012-01", {0}},
        {"x2012-01-05", {0}},  // a date stands at the start
        {"x08:30:00", {224, None, None, None, 8, 30, 0}},
    };
    expectRead(updateDateTimeComponentsFromISODateTime, cases);
}

TEST(MSPCISO8601Text, timeIsTheFirstPieceWithTwoColonsAmongDigits) {
    const Case cases[] = {
        {"x1:2x13:4:5:6", {224, None, None, None, 13, 4, 5}},
        {"a:1b2:3:4", {224, None, None, None, 2, 3, 4}},
        {"12:3:4:5:6", {224, None, None, None, 12, 3, 4}},
        {":1::2:3", {64, None, None, None, None, 1}},
        {"1:2", {0}},
        {"1:2x:3", {0}},
    };
    expectRead(updateDateTimeComponentsFromISODateTime, cases);
}

TEST(MSPCISO8601Text, timeIsFoundWhereThePatternAloneFindsIt) {
    const MSPCRegex pattern("([[:digit:]]*):([[:digit:]]*):([[:digit:]]*)");
    constexpr std::string_view characters = "0123:::::: x";
    std::mt19937_64 random(20'120'105);
    int timesFound = 0;
    for (int i = 0; i < 100'000; ++i) {
        std::string text("x");  // no date stands before the time
        for (auto length = random() % 12; length > 0; --length) {
            text += characters[random() % characters.size()];
        }
        Expected expected;
        if (const auto match = pattern.firstMatch(text, 4)) {
            ++timesFound;
            const std::pair<std::int64_t Expected::*, MSPCUnitFlags> places[] = {
                {&Expected::hour, 32}, {&Expected::minute, 64}, {&Expected::second, 128}};
            for (std::size_t place = 0; place < 3; ++place) {
                if (const auto digits = (*match)[place + 1]; !digits->empty()) {
                    expected.*places[place].first = std::stoll(std::string(*digits));
                    expected.units |= places[place].second;
                }
            }
        }
        MSPCDateComponents components;
        ASSERT_EQ(updateDateTimeComponentsFromISODateTime(components, text), expected.units) << text;
        ASSERT_EQ(components, componentsOf(expected)) << text << components.description();
    }
    EXPECT_GT(timesFound, 20'000);
    EXPECT_LT(timesFound, 80'000);
}

// A walk over the digits for each of them would take hours.
TEST(MSPCISO8601Text, longNumbersAreReadInOneWalk) {
    const std::string number(1'000'000, '1');
    const Case cases[] = {
        {number, {0}},
        {"2012-01-05T" + number, {28, 2012, 1, 5}},
        {number + "-01-05T08:00:00", {252, 2'147'483'647, 1, 5, 8, 0, 0}},
        {"x" + number + ":30:15", {224, None, None, None, 2'147'483'647, 30, 15}},
        {"2012-01-05T08:00:00." + number + "Z", {252 | Z, 2012, 1, 5, 8, 0, 0}},
    };
    expectRead(updateDateTimeComponentsFromISODateTime, cases);
    for (const auto& text : {"PT" + number, "P" + number, number}) {
        EXPECT_EQ(hoursMinutesSecondsFromMSPDIDuration(text), std::nullopt);
    }
}

TEST(MSPCISO8601Text, numbersBecomeTheNearest32BitInteger) {
    const Case cases[] = {
        {"99999999999-01-05", {28, 2'147'483'647, 1, 5}},
        {"2012-01-05T99999999999999999999:00:00", {252, 2012, 1, 5, 2'147'483'647, 0, 0}},
    };
    expectRead(updateDateTimeComponentsFromISODateTime, cases);
}

TEST(MSPCISO8601Text, onlyAnEmptyDateTimeIsNotFound) {
    MSPCDateComponents components;
    EXPECT_EQ(updateDateTimeComponentsFromISODateTime(components, ""), MSPCUnit::NotFound);
    EXPECT_EQ(updateDateTimeComponentsFromISODateTime(components, std::string_view("\0 08:00:00", 10)),
              MSPCUnit::NotFound);  // a text ends at a NUL character
    EXPECT_EQ(components, MSPCDateComponents());
}

TEST(MSPCISO8601Text, dateThatNoTAndTimeFollowRaises) {
    for (const char* text :
         {"2012-01-05X08:00:00", "2012-01-05 08:00:00", "2012-01-05T 08:00:00", "2012-01-05:08:00", "--08:00:00"}) {
        MSPCDateComponents components;
        EXPECT_RAISES(updateDateTimeComponentsFromISODateTime(components, text), MSPCInternalInconsistency, "");
        EXPECT_EQ(unitsOfISODateTime(text), MSPCUnit::NotFound) << text;
    }
    EXPECT_EQ(unitsOfISODateTime("2012-01-05T08:00:00"), 252);
}

TEST(MSPCISO8601Text, fieldsThatTheTextDoesNotHoldAreLeftAlone) {
    auto components = dateTime(1999, 12, 31);
    components.timeZoneHour = 7;
    components.isUTC = false;
    EXPECT_EQ(updateDateTimeComponentsFromISODateTime(components, "2012-01-05"), 28);
    EXPECT_EQ(components.year, 2012);
    EXPECT_EQ(components.hour, 8);
    EXPECT_EQ(components.timeZoneHour, 7);
    EXPECT_FALSE(components.isUTC);
}

TEST(MSPCISO8601Text, durationsAreReadWithTheUnitsTheyHold) {
    const Case cases[] = {
        {"PT8H0M0S", {224, None, None, None, 8, 0, 0}},
        {"P2DT0H", {16 | 32, None, None, 2, 0}},
        {"P1Y2M3DT4H5M6S", {252, 1, 2, 3, 4, 5, 6}},
        {"PT30M", {64, None, None, None, None, 30}},
        {"PT99999999999S", {128, None, None, None, None, None, 2'147'483'647}},
        {"xPT8H ", {32, None, None, None, 8}},
        {"PT", {0}},
        {"PTM", {0}},
        {"PT1.5H", {0}},  // the piece "PT" is found
        {"PT8H5", {32, None, None, None, 8}},
    };
    expectRead(updateDateTimeComponentsFromISODuration, cases);
}

TEST(MSPCISO8601Text, textWithoutPAndTIsNoDuration) {
    for (const char* text : {"", "8H", "P1D", "T8H", "PXT", "pt8h"}) {
        MSPCDateComponents components;
        EXPECT_EQ(updateDateTimeComponentsFromISODuration(components, text), MSPCUnit::NotFound) << text;
        EXPECT_EQ(components, MSPCDateComponents()) << text;
    }
}

TEST(MSPCISO8601Text, mspdiDurationNeedsAllThreeLetters) {
    using Duration = MSPCHoursMinutesSeconds;
    EXPECT_EQ(hoursMinutesSecondsFromMSPDIDuration("PT8H30M15S"), (Duration{8, 30, 15}));
    EXPECT_EQ(hoursMinutesSecondsFromMSPDIDuration("P1DPT008H30M15S!"), (Duration{8, 30, 15}));
    EXPECT_EQ(hoursMinutesSecondsFromMSPDIDuration("PTHMS"), (Duration{0, 0, 0}));
    EXPECT_EQ(hoursMinutesSecondsFromMSPDIDuration("PT99999999999H0M0S"), (Duration{2'147'483'647, 0, 0}));
    for (const char* text : {"", "PT8H", "PT1H30M", "P1DT8H0M0S", "PT8H0M0", "PT1.5H0M0S"}) {
        EXPECT_EQ(hoursMinutesSecondsFromMSPDIDuration(text), std::nullopt) << text;
    }
}

TEST(MSPCISO8601Text, unitsArePrintedAsAskedFor) {
    auto inUTC = dateTime(2012, 1, 5);
    auto eastern = inUTC;
    eastern.timeZoneHour = 1;
    eastern.isUTC = false;
    struct PrintCase {
        const MSPCDateComponents& components;
        MSPCUnitFlags units;
        const char* expected;
    };
    const PrintCase cases[] = {
        {inUTC, 252 | Z, "2012-01-05T08:00:00Z"},
        {inUTC, 0xe000fc, "2012-01-05T08:00:00Z"},
        {inUTC, 252 | Offset, "2012-01-05T08:00:00+00:00"},
        {inUTC, 252, "2012-01-05T08:00:00"},
        {inUTC, 28, "2012-01-05"},
        {inUTC, 224, "08:00:00"},
        {inUTC, 4, "2012--"},  // separators follow whatever is there
        {inUTC, 8, "01-"},
        {inUTC, 16, "05"},
        {inUTC, 32, "08::"},
        {inUTC, 4 | 64, "2012--T:00:"},
        {inUTC, Z, "Z"},
        {inUTC, 28 | Z, "2012-01-05TZ"},
        {inUTC, 0, ""},
        {eastern, 0xe000fc, "2012-01-05T08:00:00+01:00"},
        {eastern, 252 | Z, "2012-01-05T08:00:00+00:00"},
        {eastern, 252 | MSPCUnit::ZoneHour, "2012-01-05T08:00:00+01:00"},
    };
    for (const auto& [components, units, expected] : cases) {
        EXPECT_EQ(stringFromComponentsUnitFlags(components, units), expected) << units;
    }
    EXPECT_EQ(stringFromComponentsUnitFlags(inUTC, MSPCUnit::NotFound), std::nullopt);
}

TEST(MSPCISO8601Text, yearIsPrintedWithoutPadding) {
    EXPECT_EQ(stringFromComponentsUnitFlags(dateTime(999, 1, 5), 28), "999-01-05");
    EXPECT_EQ(stringFromComponentsUnitFlags(dateTime(-44, 3, 15), 28), "-44-03-15");
    EXPECT_EQ(stringFromComponentsUnitFlags(dateTime(12012, 1, 5), 28), "12012-01-05");
}

TEST(MSPCISO8601Text, undefinedFieldsArePrintedAs0) {
    EXPECT_EQ(stringFromComponentsUnitFlags(MSPCDateComponents(), 252), "0-00-00T00:00:00");
}

TEST(MSPCISO8601Text, offsetHasOneSignForHourAndMinute) {
    struct OffsetCase {
        std::int64_t hour;
        std::int64_t minute;
        const char* expected;
    };
    const OffsetCase cases[] = {{-3, -30, "-03:30"}, {-5, 30, "-05:30"}, {0, -30, "-00:30"}, {0, 30, "+00:30"},
                                {5, 45, "+05:45"},   {-9, 0, "-09:00"},  {14, 0, "+14:00"},  {-100, 0, "-100:00"}};
    for (const auto& [hour, minute, expected] : cases) {
        auto components = dateTime(2012, 1, 5);
        components.timeZoneHour = hour;
        components.timeZoneMinute = minute;
        components.isUTC = false;
        EXPECT_EQ(stringFromComponentsUnitFlags(components, MSPCUnit::Zone), expected);
    }
}

TEST(MSPCISO8601Text, printedTextsAreReadBackAsTheyWere) {
    for (const char* text : {"2012-01-05T08:00:00Z", "2012-01-05T08:00:00-05:30", "2012-12-31T23:59:59+12:45",
                             "2012-01-05", "08:30:15", "12012-01-05T08:00:00"}) {
        MSPCDateComponents components;
        const auto units = updateDateTimeComponentsFromISODateTime(components, text);
        EXPECT_EQ(stringFromComponentsUnitFlags(components, units), text);
    }
}

TEST(MSPCISO8601Text, instantOfComponentsIsTheCalendarsWallClockWhateverTheirOffset) {
    const MSPCGregorianCalendar berlin(MSPCTimeZone::named("Europe/Berlin").value());
    auto components = dateTime(2012, 1, 5);
    components.timeZoneHour = 5;
    components.isUTC = false;
    EXPECT_EQ(dateFromComponents(components, berlin), utcInstant(2012, 1, 5, 7));
    EXPECT_EQ(dateFromComponents(MSPCDateComponents(), berlin), std::nullopt);
}
