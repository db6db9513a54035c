#include "MSPIUtilities.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "ExpectRaises.h"
#include "MappingFixture.h"
#include "UTCInstant.h"

namespace {

using Text = std::optional<std::string>;

// The conversions in one zone, run in winter unless told otherwise.
class Conversions : public MappingServices {
public:
    explicit Conversions(std::string_view zone = "Europe/Berlin") : MappingServices(zone), utilities(services) {}
    static MSPCInstant inSummer() { return utcInstant(2012, 7, 10, 11); }

    const MSPIUtilities utilities;
};

// Nothing can be read from such a text: it ends before it has begun. Unlike an empty one it is not missing.
constexpr std::string_view Unreadable("\0 08:00:00", 10);

std::string withUnreadable(std::string_view before, std::string_view after) {
    return std::string(before).append(Unreadable).append(after);
}

}  // namespace

TEST(MSPIUtilities, recognisersTellDateTimesWithAndWithoutZone) {
    struct Case {
        const char* text;
        bool isIsoi;
        bool isKdzx;
        bool isMspdi;
    };
    const Case cases[] = {
        {"2012-01-05T08:00:00", true, false, true},
        {"2012-01-05T08:00:00Z", true, true, false},
        {"2012-01-05T08:00:00-03:30", true, true, false},
        {"2012-01-05T08:00:00.000+02:00", true, false, true},  // the offset behind a fraction is dropped
        {"2012-01-05", true, false, true},
        {"08:30:00", true, false, true},
        {"", false, false, false},
        {"abc", false, false, false},
        {"--", false, false, false},
        {"2012-01-05X08:00:00", false, false, false},
        {"2012-03-05 08:00:00", false, false, false},
    };
    const Conversions berlin;
    for (const auto& [text, isIsoi, isKdzx, isMspdi] : cases) {
        EXPECT_EQ(berlin.utilities.isIsoiDateTime(text), isIsoi) << text;
        EXPECT_EQ(berlin.utilities.isKdzxDateTime(text), isKdzx) << text;
        EXPECT_EQ(berlin.utilities.isMspdiDateTime(text), isMspdi) << text;
    }
}

TEST(MSPIUtilities, durationsAreRecognisedByPAndT) {
    const Conversions berlin;
    for (const char* text : {"PT8H0M0S", "P1DT2H0M0S", "PT", "PT1H30M"}) {
        EXPECT_TRUE(berlin.utilities.isMspdiDuration(text)) << text;
    }
    for (const char* text : {"", "8H", "P1D"}) {
        EXPECT_FALSE(berlin.utilities.isMspdiDuration(text)) << text;
    }
}

TEST(MSPIUtilities, mspdiDateGetsTheOffsetNowPlusTheDaylightSavingPart) {
    struct Case {
        const char* zone;
        bool runsInJuly;
        const char* mspdi;
        const char* kdzx;
    };
    const Case cases[] = {
        {"Europe/Berlin", false, "2012-03-05T08:00:00", "2012-03-05T08:00:00+01:00"},
        {"Europe/Berlin", false, "2012-07-05T08:00:00", "2012-07-05T08:00:00+02:00"},
        {"Europe/Berlin", true, "2012-07-05T08:00:00", "2012-07-05T08:00:00+03:00"},
        {"Europe/Berlin", true, "2012-03-05T08:00:00", "2012-03-05T08:00:00+02:00"},
        {"UTC", true, "2012-07-05T08:00:00", "2012-07-05T08:00:00Z"},
        {"Asia/Kolkata", true, "2012-07-05T08:00:00", "2012-07-05T08:00:00+05:30"},
        {"America/St_Johns", false, "2012-01-05T08:00:00", "2012-01-05T08:00:00-03:30"},
        {"America/St_Johns", false, "2012-07-05T08:00:00", "2012-07-05T08:00:00-02:30"},
        {"America/St_Johns", true, "2012-07-05T08:00:00", "2012-07-05T08:00:00-01:30"},
        {"Pacific/Marquesas", true, "2012-07-05T08:00:00", "2012-07-05T08:00:00-09:30"},
        {"Europe/Dublin", false, "2012-01-05T08:00:00", "2012-01-05T08:00:00Z"},
        {"Europe/Dublin", false, "2012-07-05T08:00:00", "2012-07-05T08:00:00+01:00"},
        {"Europe/Dublin", true, "2012-07-05T08:00:00", "2012-07-05T08:00:00+02:00"},
        {"Australia/Lord_Howe", true, "2012-07-05T08:00:00", "2012-07-05T08:00:00+10:30"},
        {"Australia/Lord_Howe", true, "2012-01-05T08:00:00", "2012-01-05T08:00:00+11:00"},
        {"Australia/Lord_Howe", false, "2012-01-05T08:00:00", "2012-01-05T08:00:00+11:30"},
        {"Africa/Windhoek", true, "2000-01-05T08:00:00", "2000-01-05T08:00:00+02:00"},
        {"Africa/Windhoek", true, "2000-07-05T08:00:00", "2000-07-05T08:00:00+01:00"},
        {"Africa/Windhoek", false, "1996-01-05T08:00:00", "1996-01-05T08:00:00+03:00"},
        {"Africa/Windhoek", false, "1996-07-05T08:00:00", "1996-07-05T08:00:00+02:00"},
        {"Pacific/Apia", false, "2012-01-05T08:00:00", "2012-01-05T08:00:00+15:00"},
        {"Pacific/Apia", true, "2012-07-05T08:00:00", "2012-07-05T08:00:00+13:00"},
        {"Pacific/Apia", true, "2011-12-30T08:00:00", "2011-12-30T08:00:00+14:00"},  // no clock there showed this day
    };
    for (const auto& [zone, runsInJuly, mspdi, kdzx] : cases) {
        Conversions there(zone);
        if (runsInJuly) {
            there.clock.set(Conversions::inSummer());
        }
        EXPECT_EQ(there.utilities.mspdiToKdzxDateTime(mspdi), kdzx) << zone << ' ' << runsInJuly;
    }
}

TEST(MSPIUtilities, mspdiDatesInGapAndOverlapOfTheClock) {
    const Conversions berlin;
    // The skipped 02:30 is the instant of 03:30, in summer; the repeated one is the later, in winter.
    EXPECT_EQ(berlin.utilities.mspdiToKdzxDateTime("2012-03-25T02:30:00"), "2012-03-25T02:30:00+02:00");
    EXPECT_EQ(berlin.utilities.mspdiToKdzxDateTime("2012-10-28T02:30:00"), "2012-10-28T02:30:00+01:00");
    EXPECT_EQ(berlin.utilities.mspdiToMppDateTime("2012-03-25T02:30:00"), utcInstant(2012, 3, 25, 1, 30));
    EXPECT_EQ(berlin.utilities.mspdiToMppDateTime("2012-10-28T02:30:00"), utcInstant(2012, 10, 28, 1, 30));
}

TEST(MSPIUtilities, dateWithAZoneKeepsIt) {
    const Conversions berlin;
    EXPECT_EQ(berlin.utilities.mspdiToKdzxDateTime("2012-07-05T08:00:00Z"), "2012-07-05T08:00:00Z");
    EXPECT_EQ(berlin.utilities.mspdiToKdzxDateTime("2012-07-05T08:00:00-05:30"), "2012-07-05T08:00:00-05:30");
    EXPECT_EQ(berlin.utilities.mspdiToKdzxDateTime("2012-07-05T08:00:00+00:00"), "2012-07-05T08:00:00Z");
}

TEST(MSPIUtilities, undefinedTimeCountsAndPrintsAs0) {
    const Conversions berlin;
    EXPECT_EQ(berlin.utilities.mspdiToKdzxDateTime("2008-12-04T17:-0:00"), "2008-12-04T00:00:00+01:00");
    EXPECT_EQ(berlin.utilities.mspdiToKdzxDateTime("2008-12-04"), "2008-12-04T00:00:00+01:00");
    EXPECT_EQ(berlin.utilities.mspdiToMppDateTime("2008-12-04T17:-0:00"), utcInstant(2008, 12, 3, 23));
    EXPECT_EQ(berlin.utilities.mspdiDateTimeToString("2008-12-04"), "2008-12-04 00:00:00 +0100");
}

TEST(MSPIUtilities, textWithoutAWholeDateRaisesIsNoneOrYieldsNothing) {
    const Conversions berlin;
    for (const std::string text : {"abc", "08:30:00", "2012--05", "08:30:00Z"}) {
        EXPECT_RAISES(berlin.utilities.mspdiToKdzxDateTime(text), MSPCInternalInconsistency,
                      "Failed to make MSPCDateComponents from MSPDI date-time: '" + text + "'.");
        EXPECT_EQ(berlin.utilities.mspdiDateTimeToString(text), std::nullopt) << text;
    }
    EXPECT_EQ(berlin.utilities.mspdiToMppDateTime("08:30:00"), std::nullopt);
    EXPECT_EQ(berlin.utilities.kdzxToMppDateTime("08:30:00Z"), std::nullopt);
    EXPECT_RAISES(berlin.utilities.kdzxToMspdiDateTime("08:30:00Z"), MSPCInternalInconsistency,
                  "Failed to make MSPCDateComponents from KDZX date-time: '08:30:00Z'.");
}

TEST(MSPIUtilities, textThatDoesNotParseRaises) {
    const Conversions berlin;
    const auto mspdiFailure = withUnreadable("Failed to make MSPCDateComponents from MSPDI date-time: '", "'.");
    const auto kdzxFailure = withUnreadable("Failed to make MSPCDateComponents from KDZX date-time: '", "'.");
    const auto& utilities = berlin.utilities;
    EXPECT_RAISES(utilities.mspdiToKdzxDateTime(Unreadable), MSPCInternalInconsistency, mspdiFailure);
    EXPECT_RAISES(utilities.mspdiDateTimeToString(Unreadable), MSPCInternalInconsistency, mspdiFailure);
    EXPECT_RAISES(utilities.mspdiToMppDateTime(Unreadable), MSPCInternalInconsistency, mspdiFailure);
    EXPECT_RAISES(utilities.mspdiToTimeOfDay(Unreadable), MSPCInternalInconsistency, mspdiFailure);
    EXPECT_RAISES(utilities.mspdiToKdzxTimeOnly(Unreadable), MSPCInternalInconsistency,
                  withUnreadable("Failed to get time only value from MSPDI date-time: '", "'."));
    EXPECT_RAISES(utilities.kdzxToMppDateTime(Unreadable), MSPCInternalInconsistency, kdzxFailure);
    EXPECT_RAISES(utilities.kdzxToMspdiDateTime(Unreadable), MSPCInternalInconsistency, kdzxFailure);
    EXPECT_RAISES(utilities.kdzxToMspdiDateEndTime(Unreadable), MSPCInternalInconsistency, kdzxFailure);
    EXPECT_RAISES(utilities.compareMspdiDateTimeToMspdiDateTime("2012-01-01T00:00:00", Unreadable),
                  MSPCInternalInconsistency, mspdiFailure);
    EXPECT_RAISES(utilities.mspdiToKdzxDateTime("2012-01-05X08:00:00"), MSPCInternalInconsistency, "");
}

TEST(MSPIUtilities, emptyTextGivesNone) {
    const Conversions berlin;
    const auto& utilities = berlin.utilities;
    EXPECT_EQ(utilities.mspdiToKdzxDateTime(""), std::nullopt);
    EXPECT_EQ(utilities.mspdiToKdzxTimeOnly(""), std::nullopt);
    EXPECT_EQ(utilities.mspdiDateTimeToString(""), std::nullopt);
    EXPECT_EQ(utilities.mspdiToMppDateTime(""), std::nullopt);
    EXPECT_EQ(utilities.mspdiToTimeOfDay(""), MSPCDateFields());
    EXPECT_EQ(utilities.kdzxToMppDateTime(""), std::nullopt);
    EXPECT_EQ(utilities.kdzxToMspdiDateTimeCalendarUnits("", 28), std::nullopt);
    EXPECT_EQ(utilities.kdzxToMspdiDateTime(""), std::nullopt);
    EXPECT_EQ(utilities.kdzxToMspdiDateOnly(""), std::nullopt);
    EXPECT_EQ(utilities.kdzxToMspdiDateStartTime(""), std::nullopt);
    EXPECT_EQ(utilities.kdzxToMspdiDateEndTime(""), std::nullopt);
    EXPECT_EQ(utilities.mppToKdzxDateTime(std::nullopt), std::nullopt);
    EXPECT_EQ(utilities.mppToMspdiDateTime(std::nullopt), std::nullopt);
    EXPECT_EQ(utilities.componentsFromISODateTime(""), std::nullopt);
}

TEST(MSPIUtilities, timeOnlyIsSecondsSinceMidnight) {
    const Conversions berlin;
    EXPECT_EQ(berlin.utilities.mspdiToKdzxTimeOnly("2012-03-05T08:30:00"), "30600");
    EXPECT_EQ(berlin.utilities.mspdiToKdzxTimeOnly("08:30:15"), "30615");
    EXPECT_EQ(berlin.utilities.mspdiToKdzxTimeOnly("2012-03-05"), "0");
    EXPECT_EQ(berlin.utilities.mspdiToKdzxTimeOnly("24:00:00"), "86400");
    EXPECT_EQ(berlin.utilities.mspdiToKdzxTimeOnly(":30:"), "1800");
}

TEST(MSPIUtilities, displayFormIsWhatTheMachinesClocksShow) {
    const Conversions berlin;
    EXPECT_EQ(berlin.utilities.mspdiDateTimeToString("2012-03-05"), "2012-03-05 00:00:00 +0100");
    EXPECT_EQ(berlin.utilities.mspdiDateTimeToString("2012-07-05T01:30:15"), "2012-07-05 01:30:15 +0200");
    EXPECT_EQ(berlin.utilities.mspdiDateTimeToString("2012-03-25T02:30:00"), "2012-03-25 03:30:00 +0200");  // skipped
    EXPECT_EQ(berlin.utilities.mspdiDateTimeToString("2012-10-28T02:30:00"), "2012-10-28 02:30:00 +0100");  // twice
    EXPECT_EQ(Conversions("America/St_Johns").utilities.mspdiDateTimeToString("2012-01-05T08:00:00"),
              "2012-01-05 08:00:00 -0330");
    EXPECT_EQ(Conversions("Asia/Kolkata").utilities.mspdiDateTimeToString("2012-01-05T08:00:00"),
              "2012-01-05 08:00:00 +0530");
    EXPECT_EQ(Conversions("UTC").utilities.mspdiDateTimeToString("999-1-5"), "0999-01-05 00:00:00 +0000");
}

TEST(MSPIUtilities, dateFieldsAreThoseWrittenWhateverTheClocksDo) {
    const auto fieldsOf = [](std::string_view text) {
        return Conversions("Pacific/Apia").utilities.mspdiToDateFields(text);
    };
    MSPCDateFields expected;
    expected.year = 2011;
    expected.month = 12;
    expected.day = 30;  // a day that Samoa left out
    expected.hour = 8;
    expected.minute = 15;
    expected.second = 30;
    expected.weekday = 6;
    EXPECT_EQ(fieldsOf("2011-12-30T08:15:30"), expected);
    EXPECT_EQ(fieldsOf("2011-11-60T08:15:30"), expected);
    EXPECT_EQ(fieldsOf("08:15:30"), std::nullopt);
    EXPECT_EQ(fieldsOf(""), std::nullopt);
    EXPECT_RAISES(fieldsOf("2011-12-30T08:15:30Z"), MSPCInternalInconsistency,
                  "Not a valid MSPDI date-time: '2011-12-30T08:15:30Z' (time zone?).");
    EXPECT_RAISES(fieldsOf(Unreadable), MSPCInternalInconsistency,
                  withUnreadable("Failed to make MSPCDateComponents from MSPDI date-time: '", "'."));
}

TEST(MSPIUtilities, mspdiDateIsTheInstantOnTheMachinesWallClock) {
    EXPECT_EQ(Conversions().utilities.mspdiToMppDateTime("2012-07-05T08:00:00"), utcInstant(2012, 7, 5, 6));
    EXPECT_EQ(Conversions("America/St_Johns").utilities.mspdiToMppDateTime("2012-01-05T08:00:00.250"),
              utcInstant(2012, 1, 5, 11, 30));
    EXPECT_EQ(Conversions("UTC").utilities.mspdiToMppDateTime("2012-01-05T24:00:00"), utcInstant(2012, 1, 6));
}

TEST(MSPIUtilities, textWithZoneOrWithoutContentIsNoMspdiDate) {
    const Conversions berlin;
    for (const std::string text : {"2012-01-05T08:00:00Z", "2012-01-05T08:00:00+01:00", "abc"}) {
        const auto reason = "Not a valid MSPDI date-time: '" + text + "' (time zone?).";
        EXPECT_RAISES(berlin.utilities.mspdiToMppDateTime(text), MSPCInternalInconsistency, reason);
        EXPECT_RAISES(berlin.utilities.mspdiToTimeOfDay(text), MSPCInternalInconsistency, reason);
    }
}

TEST(MSPIUtilities, timeOfDayIsReadFromDatesAndTimes) {
    const Conversions berlin;
    MSPCDateFields expected;
    expected.hour = 17;
    expected.minute = 30;
    expected.second = 0;
    EXPECT_EQ(berlin.utilities.mspdiToTimeOfDay("17:30:00"), expected);
    EXPECT_EQ(berlin.utilities.mspdiToTimeOfDay("2012-07-05T17:30:"), expected);
    EXPECT_EQ(berlin.utilities.mspdiToTimeOfDay("40:89:60"), expected);  // of the next day
    expected.hour = expected.minute = 0;
    EXPECT_EQ(berlin.utilities.mspdiToTimeOfDay("24:00:00"), expected);
}

TEST(MSPIUtilities, kdzxDateIsTheInstantInItsZoneOrOnTheMachinesWallClock) {
    const Conversions berlin;
    EXPECT_EQ(berlin.utilities.kdzxToMppDateTime("2012-07-05T08:00:00Z"), utcInstant(2012, 7, 5, 8));
    EXPECT_EQ(berlin.utilities.kdzxToMppDateTime("2012-07-05T08:00:00+05:30"), utcInstant(2012, 7, 5, 2, 30));
    EXPECT_EQ(berlin.utilities.kdzxToMppDateTime("2012-07-05T08:00:00"), utcInstant(2012, 7, 5, 6));
    // The minute counts eastwards: -5 hours and +30 minutes, -16200 seconds.
    EXPECT_EQ(berlin.utilities.kdzxToMppDateTime("2012-07-05T08:00:00-05:30"), utcInstant(2012, 7, 5, 12, 30));
}

TEST(MSPIUtilities, kdzxDateBecomesTheMachinesWallClockTime) {
    const Conversions berlin;
    EXPECT_EQ(berlin.utilities.kdzxToMspdiDateTime("2012-03-05T07:00:00Z"), "2012-03-05T08:00:00");
    EXPECT_EQ(berlin.utilities.kdzxToMspdiDateOnly("2012-03-05T07:00:00Z"), "2012-03-05");
    EXPECT_EQ(berlin.utilities.kdzxToMspdiDateStartTime("2012-03-05T07:00:00Z"), "2012-03-05T00:00:00");
    EXPECT_EQ(berlin.utilities.kdzxToMspdiDateEndTime("2012-03-05T07:00:00Z"), "2012-03-05T23:59:59");
    EXPECT_EQ(berlin.utilities.kdzxToMspdiDateOnly("2012-03-05T23:30:00Z"), "2012-03-06");
    EXPECT_EQ(berlin.utilities.kdzxToMspdiDateTimeCalendarUnits("2012-03-05T07:00:00Z", 224 | 0xe00000), "08:00:00");
    EXPECT_EQ(Conversions("America/St_Johns").utilities.kdzxToMspdiDateTime("2012-07-05T12:00:00Z"),
              "2012-07-05T09:30:00");
}

TEST(MSPIUtilities, instantIsPrintedOnTheMachinesWallClock) {
    Conversions berlin;
    EXPECT_EQ(berlin.utilities.mppToKdzxDateTime(utcInstant(2012, 3, 5, 7)), "2012-03-05T08:00:00+01:00");
    EXPECT_EQ(berlin.utilities.mppToKdzxDateTime(utcInstant(2012, 7, 5, 7) + 0.9), "2012-07-05T09:00:00+02:00");
    EXPECT_EQ(berlin.utilities.mppToMspdiDateTime(utcInstant(2012, 3, 5, 7)), "2012-03-05T08:00:00");
    berlin.clock.set(Conversions::inSummer());
    EXPECT_EQ(berlin.utilities.mppToKdzxDateTime(utcInstant(2012, 7, 5, 7)), "2012-07-05T09:00:00+03:00");
    EXPECT_EQ(Conversions("Pacific/Marquesas").utilities.mppToKdzxDateTime(utcInstant(2012, 7, 5, 7)),
              "2012-07-04T21:30:00-09:30");
    EXPECT_EQ(Conversions("UTC").utilities.mppToKdzxDateTime(utcInstant(2012, 7, 5, 7)), "2012-07-05T07:00:00Z");
}

// Deliberate: the way back goes over the Kdzx text, and with it over the oddities of its offset.
TEST(MSPIUtilities, instantBecomesMspdiTextByWayOfItsKdzxText) {
    // The text ends in "-03:30", which is read as 3 hours west and 30 minutes east of Greenwich.
    const Conversions stJohns("America/St_Johns");
    EXPECT_EQ(stJohns.utilities.mppToKdzxDateTime(utcInstant(2012, 1, 5, 11, 30)), "2012-01-05T08:00:00-03:30");
    EXPECT_EQ(stJohns.utilities.mppToMspdiDateTime(utcInstant(2012, 1, 5, 11, 30)), "2012-01-05T07:00:00");
    EXPECT_EQ(Conversions("Asia/Kolkata").utilities.mppToMspdiDateTime(utcInstant(2012, 1, 5, 2, 30)),
              "2012-01-05T08:00:00");
    // In summer the text of a summer date ends in "+03:00", an hour more than the clocks are ahead.
    Conversions berlin;
    berlin.clock.set(Conversions::inSummer());
    EXPECT_EQ(berlin.utilities.mppToMspdiDateTime(utcInstant(2012, 7, 5, 6)), "2012-07-05T07:00:00");
    // The half hour of Lord Howe, in summer there.
    Conversions lordHowe("Australia/Lord_Howe");
    lordHowe.clock.set(utcInstant(2012, 1, 10));
    EXPECT_EQ(lordHowe.utilities.mppToKdzxDateTime(utcInstant(2012, 1, 4, 21)), "2012-01-05T08:00:00+11:30");
    EXPECT_EQ(lordHowe.utilities.mppToMspdiDateTime(utcInstant(2012, 1, 4, 21)), "2012-01-05T07:30:00");
}

TEST(MSPIUtilities, dateWithoutTBeforeItsTimeRaisesWhereverItIsReadAsADate) {
    const Conversions berlin;
    const auto& utilities = berlin.utilities;
    constexpr std::string_view text = "2012-01-05 08:00:00";
    EXPECT_RAISES(utilities.mspdiToKdzxTimeOnly(text), MSPCInternalInconsistency, "");
    EXPECT_RAISES(utilities.kdzxToMspdiDateOnly(text), MSPCInternalInconsistency, "");
}

TEST(MSPIUtilities, questionsAnswerTextThatCannotBeReadQuietly) {
    const Conversions berlin;
    const auto& utilities = berlin.utilities;
    // A date must be followed by "T" and the time, or by nothing.
    for (const std::string_view text : {"2012-01-05 08:00:00", "2012-01-05X08:00:00", "2012-01-05T8 08:00:00"}) {
        EXPECT_EQ(utilities.componentsFromISODateTime(text), std::nullopt) << text;
        EXPECT_FALSE(utilities.isWorkingDayCalendar(text, nullptr)) << text;
        for (const auto direction : {MSPEDirection::Forward, MSPEDirection::Backward}) {
            EXPECT_EQ(utilities.isoDateTimeAdvanceByDurationForwardCalendar(text, 3600, direction, nullptr),
                      std::nullopt)
                << text;
            // Nor is the duration looked at.
            EXPECT_EQ(utilities.isoDateTimeAdvanceByDurationForwardCalendar(text, -1, direction, nullptr), std::nullopt)
                << text;
            EXPECT_EQ(utilities.isoDateTimeAdvanceByKdzxDurationForwardCalendar(text, "3600", direction, nullptr),
                      std::nullopt)
                << text;
        }
        EXPECT_EQ(utilities.durationFromIsoDateTimeStartToIsoDateTimeFinishCalendar(text, text, nullptr), 0.0) << text;
    }
}

TEST(MSPIUtilities, hugeYearsNeitherOverflowNorRaise) {
    const Conversions berlin;
    const auto text = berlin.utilities.mspdiToKdzxDateTime("2147483647-12-31T23:59:59");
    EXPECT_EQ(text, "2147483647-12-31T23:59:59+01:00");
    EXPECT_EQ(berlin.utilities.compareMspdiDateTimeToMspdiDateTime("2147483647-12-31T23:59:59", "2012-01-05"), 1);
    for (const double seconds : {1e300, -1e300, std::numeric_limits<double>::infinity()}) {
        EXPECT_TRUE(berlin.utilities.mppToKdzxDateTime(MSPCInstant{seconds})) << seconds;
    }
}

TEST(MSPIUtilities, componentsOfATextAreThoseItHolds) {
    const auto components = Conversions().utilities.componentsFromISODateTime("08:30:00+01:00").value();
    EXPECT_EQ(components.year, MSPCDateFields::Undefined);
    EXPECT_EQ(components.hour, 8);
    EXPECT_EQ(components.timeZoneHour, 1);
    EXPECT_FALSE(components.isUTC);
}

TEST(MSPIUtilities, datesAreOrderedByInstantAndEmptyOnesComeFirst) {
    struct Case {
        const char* first;
        const char* second;
        int expected;
    };
    const Case cases[] = {
        {"2012-01-01T00:00:00", "2012-01-01T00:00:01", -1},
        {"2012-01-01T00:00:01", "2012-01-01T00:00:00", 1},
        {"2012-01-01", "2012-01-01T00:00:00", 0},
        {"2012-1-31T24:00:00", "2012-02-01T00:00:00", 0},
        {"", "2012-01-01T00:00:00", -1},
        {"2012-01-01T00:00:00", "", 1},
        {"", "", 0},
        {"08:00:00", "2012-01-01T00:00:00", -1},
        {"08:00:00", "abc", 0},
    };
    const Conversions berlin;
    for (const auto& [first, second, expected] : cases) {
        EXPECT_EQ(berlin.utilities.compareMspdiDateTimeToMspdiDateTime(first, second), expected)
            << first << ' ' << second;
    }
}

TEST(MSPIUtilities, dateTextIsAdvancedThroughStandardWorkingTime) {
    const Conversions berlin;
    const auto advanced = [&berlin](std::string_view text, MSPCTimeInterval seconds, MSPEDirection direction) {
        return berlin.utilities.isoDateTimeAdvanceByDurationForwardCalendar(text, seconds, direction, nullptr);
    };
    // 2012-03-02 was a Friday.
    EXPECT_EQ(advanced("2012-03-02T16:00:00", 7200, MSPEDirection::Forward), "2012-03-05T09:00:00+01:00");
    EXPECT_EQ(advanced("2012-03-05T08:00:00", 3600, MSPEDirection::Backward), "2012-03-02T16:00:00+01:00");
    EXPECT_EQ(advanced("", 7200, MSPEDirection::Forward), std::nullopt);
    EXPECT_EQ(advanced("abc", 7200, MSPEDirection::Forward), std::nullopt);
    EXPECT_EQ(berlin.utilities.isoDateTimeAdvanceByKdzxDurationForwardCalendar("2012-03-02T16:00:00", "7200.00",
                                                                               MSPEDirection::Forward, nullptr),
              "2012-03-05T09:00:00+01:00");
    EXPECT_RAISES(advanced("2012-03-02T16:00:00", -1, MSPEDirection::Forward), MSPCInternalInconsistency,
                  "Duration can not be negative. To specify backward advance use argument forward=NO.");
}

TEST(MSPIUtilities, workingDaysAreMondayToFriday) {
    const Conversions berlin;
    EXPECT_TRUE(berlin.utilities.isWorkingDayCalendar("2012-03-02T00:00:00", nullptr));
    EXPECT_FALSE(berlin.utilities.isWorkingDayCalendar("2012-03-03T23:59:59", nullptr));
    EXPECT_FALSE(berlin.utilities.isWorkingDayCalendar("", nullptr));
    EXPECT_FALSE(berlin.utilities.isWorkingDayCalendar("08:00:00", nullptr));
}

TEST(MSPIUtilities, calendarOfOnesOwnIsRefusedOnTheLog) {
    Conversions berlin;
    const MSPEScheduleCalendar everyDayOff(berlin.utilities.gregorian());
    EXPECT_TRUE(berlin.utilities.isWorkingDayCalendar("2012-03-02", &everyDayOff));
    EXPECT_EQ(
        berlin.log.takeLines(),
        std::vector<std::string>{"Custom Calendars not supported to determine working days yet. Standard propject "
                                 "Calendar will be used instead."});
    EXPECT_EQ(berlin.utilities.isoDateTimeAdvanceByDurationForwardCalendar("2012-03-02T08:00:00", 3600,
                                                                           MSPEDirection::Forward, &everyDayOff),
              "2012-03-02T09:00:00+01:00");
    EXPECT_EQ(berlin.log.takeLines(),
              std::vector<std::string>{"Custom Calendars not supported to advance date by duration yet. Standard "
                                       "propject Calendar will be used instead."});
}

TEST(MSPIUtilities, durationBetweenDateTextsIsAlways0) {
    const Conversions berlin;
    const auto duration = [&berlin](std::string_view start, std::string_view finish) {
        return berlin.utilities.durationFromIsoDateTimeStartToIsoDateTimeFinishCalendar(
            start, finish, &berlin.utilities.standardCalendar());
    };
    EXPECT_EQ(duration("2012-03-02T08:00:00", "2012-03-02T12:00:00"), 0.0);
    EXPECT_EQ(duration("", ""), 0.0);
    EXPECT_EQ(duration("abc", "2012-03-02T12:00:00"), 0.0);
}
