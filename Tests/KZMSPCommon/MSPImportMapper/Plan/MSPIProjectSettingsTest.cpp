#include "MSPIProjectSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MappingFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

MSPIProjectSettings settingsOf(const std::string& projectContent) {
    MappingFixture fixture(projectContent);
    return MSPIProjectSettings::ofProject(fixture.context.mspProject());
}

MSPICurrencySettings currencyOf(const std::string& projectContent) {
    MappingFixture fixture(projectContent);
    return MSPICurrencySettings::ofProject(fixture.context.mspProject(), false, fixture.log);
}

std::vector<std::string> currencyWarningsOf(const std::string& projectContent, bool readsCurrencyCode) {
    MappingFixture fixture(projectContent);
    static_cast<void>(MSPICurrencySettings::ofProject(fixture.context.mspProject(), readsCurrencyCode, fixture.log));
    return fixture.log.takeLines();
}

TEST(MSPIProjectSettings, OfAnEmptyProjectAreTheDefaults) {
    const auto settings = settingsOf("");
    EXPECT_EQ(settings.saveVersion, 9);
    EXPECT_EQ(settings.minutesPerDay, -1);
    EXPECT_EQ(settings.minutesPerWeek, -1);
    EXPECT_EQ(settings.daysPerMonth, -1);
    EXPECT_EQ(settings.weekStartDay, -1);
    EXPECT_EQ(settings.durationFormat, -1);
}

TEST(MSPIProjectSettings, ReadEachFromTheElementOfItsName) {
    const auto settings = settingsOf(
        "<SaveVersion>14</SaveVersion><MinutesPerDay>450</MinutesPerDay><MinutesPerWeek>2250</MinutesPerWeek>"
        "<DaysPerMonth>21</DaysPerMonth><WeekStartDay>1</WeekStartDay><DurationFormat>7</DurationFormat>");
    EXPECT_EQ(settings.saveVersion, 14);
    EXPECT_EQ(settings.minutesPerDay, 450);
    EXPECT_EQ(settings.minutesPerWeek, 2250);
    EXPECT_EQ(settings.daysPerMonth, 21);
    EXPECT_EQ(settings.weekStartDay, 1);
    EXPECT_EQ(settings.durationFormat, 7);
}

TEST(MSPIProjectSettings, NeverFailOnTextThatHoldsNoNumber) {
    struct Case {
        std::string content;
        std::int64_t saveVersion;
    };
    const Case cases[] = {
        {"<SaveVersion/>", 9},
        {"<SaveVersion>  </SaveVersion>", 9},
        {"<SaveVersion>new</SaveVersion>", 9},
        {"<SaveVersion>12</SaveVersion><SaveVersion>14</SaveVersion>", 9},
        {"<SaveVersion> 12 </SaveVersion>", 12},
        {"<SaveVersion>12.5</SaveVersion>", 12},
        {"<SaveVersion>-4</SaveVersion>", -4},
        {"<SaveVersion>1<!-- x -->4</SaveVersion>", 14},
        {"<Tasks><SaveVersion>12</SaveVersion></Tasks>", 9},
    };
    for (const auto& [content, saveVersion] : cases) {
        EXPECT_EQ(settingsOf(content).saveVersion, saveVersion) << content;
    }
}

TEST(MSPICurrencySettings, AreTwoDigitsAndADollarInFrontByDefault) {
    const auto currency = currencyOf("");
    EXPECT_EQ(currency.digits, 2);
    EXPECT_EQ(currency.symbol, "$");
    EXPECT_EQ(currency.symbolPosition, 0);
    EXPECT_EQ(currency.sampleAmount(), "$1,234.56");
}

TEST(MSPICurrencySettings, FallBackToTheDefaultsForTextThatHoldsNoNumber) {
    const auto currency = currencyOf(
        "<CurrencyDigits>two</CurrencyDigits><CurrencySymbolPosition/><CurrencySymbolPosition>3"
        "</CurrencySymbolPosition>");
    EXPECT_EQ(currency.digits, 2);
    EXPECT_EQ(currency.symbolPosition, 0);
}

TEST(MSPICurrencySettings, KeepAnEmptySymbol) {
    EXPECT_EQ(currencyOf("<CurrencySymbol/>").sampleAmount(), "1,234.56");
}

TEST(MSPICurrencySettings, TakeTheLastOfSeveralSymbols) {
    EXPECT_EQ(currencyOf("<CurrencySymbol>A</CurrencySymbol><CurrencySymbol>B</CurrencySymbol>").symbol, "B");
}

TEST(MSPICurrencySettings, ShowTheirSampleAmount) {
    struct Case {
        std::string digits;
        std::string symbol;
        std::string position;
        std::string sample;
    };
    const Case cases[] = {
        {"2", "$", "0", "$1,234.56"},
        {"2", "$", "1", "1,234.56$"},
        {"2", "$", "2", " $1,234.56"},
        {"2", "$", "3", "1,234.56 $"},
        {"2", "$", "4", "1,234.56"},
        {"2", "$", "-1", "1,234.56"},
        {"0", "Kc", "3", "1,234 Kc"},
        {"1", "EUR", "1", "1,234.5EUR"},
        {"3", "$", "0", "$1,234.567"},
        {"4", "$", "0", "$1,234.5678"},
        {"5", "$", "0", "$1,234.56789"},
        {"6", "$", "0", "$1,234.56789"},
        {"99999999999", "$", "0", "$1,234.56789"},
        {"-1", "$", "0", "$1,234"},
        {"2", "\xE2\x82\xAC", "3", "1,234.56 \xE2\x82\xAC"},
    };
    for (const auto& [digits, symbol, position, sample] : cases) {
        const auto currency =
            currencyOf("<CurrencyDigits>" + digits + "</CurrencyDigits><CurrencySymbol>" + symbol +
                       "</CurrencySymbol><CurrencySymbolPosition>" + position + "</CurrencySymbolPosition>");
        EXPECT_EQ(currency.sampleAmount(), sample) << digits << " " << symbol << " " << position;
    }
}

TEST(MSPICurrencySettings, WarnAboutACurrencyCodeOtherThanUSD) {
    EXPECT_THAT(currencyWarningsOf("<CurrencyCode>EUR</CurrencyCode>", true),
                ElementsAre("WARNING: Igonring currency code from MSPDI: EUR. Always assume USD."));
    EXPECT_THAT(currencyWarningsOf("<CurrencyCode/>", true),
                ElementsAre("WARNING: Igonring currency code from MSPDI: . Always assume USD."));
}

TEST(MSPICurrencySettings, SayNothingAboutUSDOrNoCodeOrAnOlderFile) {
    EXPECT_THAT(currencyWarningsOf("<CurrencyCode>USD</CurrencyCode>", true), IsEmpty());
    EXPECT_THAT(currencyWarningsOf("", true), IsEmpty());
    EXPECT_THAT(currencyWarningsOf("<CurrencyCode>EUR</CurrencyCode>", false), IsEmpty());
}

TEST(MSPIWorkingTimeUnits, AreWholeHoursTruncated) {
    struct Case {
        std::int64_t minutesPerDay, minutesPerWeek, daysPerMonth;
        std::int64_t perDay, perWeek, perMonth, perYear;
    };
    const Case cases[] = {
        {-1, -1, -1, 8, 40, 160, 1920},     // nothing given
        {450, 2250, 20, 7, 37, 140, 1680},  // 7.5 hours a day count as 7
        {480, 2400, 20, 8, 40, 160, 1920},
        {600, -1, -1, 10, 40, 160, 1920},  // a month that is not given does not follow the day
        {-1, -1, 21, 8, 40, 168, 2016},
        {0, 0, 0, 0, 0, 0, 0},
        {59, 59, 20, 0, 0, 0, 0},
        {-500, -60, -2, 8, 40, 160, 1920},
        {6000, 1, INT64_MAX, 100, 0, INT64_MAX, INT64_MAX},
    };
    for (const auto& given : cases) {
        MSPIProjectSettings settings;
        settings.minutesPerDay = given.minutesPerDay;
        settings.minutesPerWeek = given.minutesPerWeek;
        settings.daysPerMonth = given.daysPerMonth;
        const auto units = MSPIWorkingTimeUnits::ofSettings(settings);
        EXPECT_EQ(units.hoursPerDay, given.perDay) << given.minutesPerDay;
        EXPECT_EQ(units.hoursPerWeek, given.perWeek) << given.minutesPerWeek;
        EXPECT_EQ(units.hoursPerMonth, given.perMonth) << given.minutesPerDay << " x " << given.daysPerMonth;
        EXPECT_EQ(units.hoursPerYear, given.perYear) << given.minutesPerDay << " x " << given.daysPerMonth;
    }
}

}  // namespace
