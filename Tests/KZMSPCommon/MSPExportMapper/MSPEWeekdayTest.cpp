#include "MSPEWeekday.h"

#include <gtest/gtest.h>

TEST(MSPEWeekday, namesCountFromSunday) {
    EXPECT_EQ(MSPEWeekdayNamed("sunday"), MSPCWeekday::Sunday);
    EXPECT_EQ(MSPEWeekdayNamed("monday"), MSPCWeekday::Monday);
    EXPECT_EQ(MSPEWeekdayNamed("tuesday"), MSPCWeekday::Tuesday);
    EXPECT_EQ(MSPEWeekdayNamed("wednesday"), MSPCWeekday::Wednesday);
    EXPECT_EQ(MSPEWeekdayNamed("thursday"), MSPCWeekday::Thursday);
    EXPECT_EQ(MSPEWeekdayNamed("friday"), MSPCWeekday::Friday);
    EXPECT_EQ(MSPEWeekdayNamed("saturday"), MSPCWeekday::Saturday);
}

TEST(MSPEWeekday, otherTexts_nameNoWeekday) {
    for (const auto* text : {"", "Monday", "MONDAY", "monday ", "mon", "(null)"}) {
        EXPECT_EQ(MSPEWeekdayNamed(text), std::nullopt) << text;
    }
}
