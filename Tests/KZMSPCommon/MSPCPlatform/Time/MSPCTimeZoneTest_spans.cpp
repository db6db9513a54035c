#include <gtest/gtest.h>

#include <cmath>
#include <ctime>

#include "MSPCTimeZone.h"
#include "ScopedEnvironment.h"
#include "UTCInstant.h"

// Stretches of time without a change of the clocks.

TEST(MSPCTimeZoneSpans, spanOfAZoneWithoutChanges_isUnbounded) {
    for (const auto instant : {utcInstant(2012, 3, 5), MSPCInstant{-1e15}, MSPCInstant{1e15}}) {
        const auto span = MSPCTimeZone::fixed(3600).steadySpanAt(instant);
        EXPECT_EQ(span.start.secondsSince1970, -INFINITY);
        EXPECT_EQ(span.end.secondsSince1970, INFINITY);
    }
}

TEST(MSPCTimeZoneSpans, spanBeginsAtOneChange_andEndsAtTheNext) {
    const auto berlin = MSPCTimeZone::named("Europe/Berlin").value();
    const auto span = berlin.steadySpanAt(utcInstant(2012, 7, 1));
    EXPECT_EQ(span.start, utcInstant(2012, 3, 25, 1));
    EXPECT_EQ(span.end, utcInstant(2012, 10, 28, 1));
    // The first instant of a span belongs to it, its end to the next one.
    EXPECT_EQ(berlin.steadySpanAt(span.start).end, span.end);
    EXPECT_EQ(berlin.steadySpanAt(span.end).start, span.end);
}

TEST(MSPCTimeZoneSpans, beforeTheFirstChange_thereIsNoStart) {
    const auto berlin = MSPCTimeZone::named("Europe/Berlin").value();
    EXPECT_EQ(berlin.steadySpanAt(utcInstant(1000, 1, 1)).start.secondsSince1970, -INFINITY);
}

TEST(MSPCTimeZoneSpans, spansFarAhead_areThoseOfTheCycle) {
    const auto berlin = MSPCTimeZone::named("Europe/Berlin").value();
    // The last Sundays of March and October 2812 are those of 2412, the 25th and the 28th.
    const auto span = berlin.steadySpanAt(utcInstant(2812, 7, 1));
    EXPECT_EQ(span.start, utcInstant(2812, 3, 25, 1));
    EXPECT_EQ(span.end, utcInstant(2812, 10, 28, 1));
}

TEST(MSPCTimeZoneSpans, offsetsRepeatWithTheCycle) {
    const auto start = MSPCTimeZone::startOfCycles();
    for (const auto* name : {"Europe/Berlin", "Africa/Casablanca", "Australia/Lord_Howe", "Asia/Tehran"}) {
        const auto zone = MSPCTimeZone::named(name).value();
        for (int day = 0; day < 146'097; ++day) {
            const auto instant = start + day * 86'400.0;
            ASSERT_EQ(zone.secondsFromGMT(instant), zone.secondsFromGMT(instant + MSPCTimeZone::GregorianCycle))
                << name << " on day " << day;
        }
    }
}

// Around the end of the years that stand for later ones, around centuries without a leap day, and much later.
TEST(MSPCTimeZoneSpans, offsetsFarAheadAreThoseOfTheCLibrary) {
    for (const auto* name : {"Europe/Berlin", "America/Santiago", "Australia/Lord_Howe", "Asia/Beirut", "Africa/Cairo",
                             "Africa/Casablanca", "America/Havana", "Europe/Dublin", "Asia/Gaza"}) {
        const auto zone = MSPCTimeZone::named(name).value();
        const ScopedEnvironment environment("TZ", name);
        ::tzset();
        for (const int year : {2099, 2127, 2200, 2299, 2303, 2399, 2500, 2999, 9998}) {
            const auto begin = utcInstant(year, 1, 1);
            for (int half = 0; half < 3 * 366 * 2; ++half) {
                const auto instant = begin + half * 43'200.0;
                const auto time = static_cast<std::time_t>(instant.secondsSince1970);
                std::tm local{};
                ::localtime_r(&time, &local);
                ASSERT_EQ(zone.secondsFromGMT(instant), local.tm_gmtoff) << name << " at " << time;
                const auto span = zone.steadySpanAt(instant);
                ASSERT_TRUE(span.start <= instant && instant < span.end) << name << " at " << time;
            }
        }
    }
    ::tzset();
}

TEST(MSPCTimeZoneSpans, offsetIsTheSameThroughoutASpan) {
    for (const auto* name : {"Europe/Berlin", "America/St_Johns", "Pacific/Apia"}) {
        const auto zone = MSPCTimeZone::named(name).value();
        auto instant = utcInstant(1900, 1, 1);
        for (int spans = 0; spans < 300 && std::isfinite(instant.secondsSince1970); ++spans) {
            const auto span = zone.steadySpanAt(instant);
            ASSERT_LE(span.start, instant);
            ASSERT_GT(span.end, instant);
            for (auto inside = instant; inside < span.end && inside < instant + 1e8; inside = inside + 86'400.0) {
                ASSERT_EQ(zone.secondsFromGMT(inside), zone.secondsFromGMT(instant)) << name;
            }
            instant = span.end;
        }
    }
}
