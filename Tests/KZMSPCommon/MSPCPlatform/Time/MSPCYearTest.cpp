#include "MSPCYear.h"

#include <gtest/gtest.h>

TEST(MSPCYearTest, YearsBeginAfterAllDaysOfTheYearsBefore) {
    EXPECT_EQ(MSPCSecondsAtStartOfYear(1970), 0);
    EXPECT_EQ(MSPCSecondsAtStartOfYear(1971), 365 * 86'400);
    EXPECT_EQ(MSPCSecondsAtStartOfYear(1969), -365 * 86'400);
    EXPECT_EQ(MSPCSecondsAtStartOfYear(2000), 946'684'800);
    EXPECT_EQ(MSPCSecondsAtStartOfYear(2001) - MSPCSecondsAtStartOfYear(2000), 366 * 86'400);
    EXPECT_EQ(MSPCSecondsAtStartOfYear(2101) - MSPCSecondsAtStartOfYear(2100), 365 * 86'400);
}

TEST(MSPCYearTest, TheLastSecondOfAYearBelongsToItAlsoBefore1970) {
    EXPECT_EQ(MSPCYearOfSeconds(0), 1970);
    EXPECT_EQ(MSPCYearOfSeconds(-1), 1969);
    EXPECT_EQ(MSPCYearOfSeconds(946'684'799), 1999);
    EXPECT_EQ(MSPCYearOfSeconds(946'684'800), 2000);
    EXPECT_EQ(MSPCYearOfSeconds(-62'135'596'801), 0);
}
