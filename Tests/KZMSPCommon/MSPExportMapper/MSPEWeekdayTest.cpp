#include "MSPEWeekday.h"

#include <gtest/gtest.h>

TEST(MSPEWeekday, namesCountFromSunday) {
    EXPECT_EQ(MSPEWeekdayNamed("sunday"), 1);
    EXPECT_EQ(MSPEWeekdayNamed("monday"), 2);
    EXPECT_EQ(MSPEWeekdayNamed("tuesday"), 3);
    EXPECT_EQ(MSPEWeekdayNamed("wednesday"), 4);
    EXPECT_EQ(MSPEWeekdayNamed("thursday"), 5);
    EXPECT_EQ(MSPEWeekdayNamed("friday"), 6);
    EXPECT_EQ(MSPEWeekdayNamed("saturday"), 7);
}

TEST(MSPEWeekday, otherTexts_nameNoWeekday) {
    for (const auto* text : {"", "Monday", "MONDAY", "monday ", "mon", "(null)"}) {
        EXPECT_EQ(MSPEWeekdayNamed(text), std::nullopt) << text;
    }
}

TEST(MSPEWeekday, numbers1To7_areWeekdays) {
    EXPECT_FALSE(MSPEIsWeekday(0));
    EXPECT_TRUE(MSPEIsWeekday(1));
    EXPECT_TRUE(MSPEIsWeekday(7));
    EXPECT_FALSE(MSPEIsWeekday(8));
}
