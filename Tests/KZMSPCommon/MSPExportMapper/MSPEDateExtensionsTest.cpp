#include "MSPEDateExtensions.h"

#include <gtest/gtest.h>

#include "RecordingLog.h"
#include "WallClock.h"

// 2012-03-05 is a Monday.

namespace {

constexpr auto Forward = MSPEDirection::Forward;

class MSPEDateExtensionsTest : public ::testing::Test {
protected:
    MSPCInstant at(const char* text) const { return instantAt(text, gregorian); }

    RecordingLog log;
    const MSPCGregorianCalendar gregorian = gregorianIn("UTC");
    const MSPEScheduleCalendar standard = MSPEScheduleCalendar::standardCalendar(gregorian);
    const MSPEScheduleCalendar custom{gregorian};
};

}  // namespace

TEST_F(MSPEDateExtensionsTest, advance_usesTheStandardCalendar) {
    EXPECT_EQ(dateAdvancedByDurationForwardCalendar(at("2012-03-05T08:00:00"), 28800, Forward, nullptr, standard, log),
              at("2012-03-05T17:00:00"));
    EXPECT_EQ(dateAdvancedByDurationForwardAllowEdgeTimeCalendar(at("2012-03-05T08:00:00"), 28800, Forward,
                                                                 MSPEEdgeTime::NotAllowed, nullptr, standard, log),
              at("2012-03-06T08:00:00"));
}

TEST_F(MSPEDateExtensionsTest, advanceWithACalendar_logsAndIgnoresIt) {
    EXPECT_EQ(dateAdvancedByDurationForwardCalendar(at("2012-03-05T08:00:00"), 3600, Forward, &custom, standard, log),
              at("2012-03-05T09:00:00"));
    EXPECT_EQ(log.takeLines(), std::vector<std::string>{
                                   "Custom Calendars not supported to advance date by duration yet. Standard propject "
                                   "Calendar will be used instead."});
}

TEST_F(MSPEDateExtensionsTest, advanceWithoutAResult_givesTheDateItself) {
    const auto date = at("2012-03-05T08:00:00");
    EXPECT_EQ(dateAdvancedByDurationForwardCalendar(date, 3600, Forward, nullptr, custom, log), date);
}

TEST_F(MSPEDateExtensionsTest, workingDay_isThatOfTheStandardCalendar) {
    EXPECT_TRUE(isWorkingDayInCalendar(at("2012-03-05T00:00:00"), nullptr, standard, log));
    EXPECT_FALSE(isWorkingDayInCalendar(at("2012-03-10T00:00:00"), nullptr, standard, log));
}

TEST_F(MSPEDateExtensionsTest, workingDayWithACalendar_logsAndIgnoresIt) {
    EXPECT_TRUE(isWorkingDayInCalendar(at("2012-03-05T00:00:00"), &custom, standard, log));
    EXPECT_EQ(log.takeLines(), std::vector<std::string>{
                                   "Custom Calendars not supported to determine working days yet. Standard propject "
                                   "Calendar will be used instead."});
}
