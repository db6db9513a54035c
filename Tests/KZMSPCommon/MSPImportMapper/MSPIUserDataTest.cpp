#include "MSPIUserDataMapper.h"

#include <gtest/gtest.h>

namespace {

using Entry = MSPIUserData::Entry;

TEST(MSPIUserData, IsEmptyAtFirst) {
    EXPECT_TRUE(MSPIUserData().isEmpty());
    EXPECT_TRUE(MSPIUserData().entries().empty());
}

TEST(MSPIUserData, KeepsTheOrderInWhichNamesFirstAppeared) {
    MSPIUserData userData;
    userData.set("b", "1");
    userData.set("a", MSPINullValue{});
    userData.set("", "3");
    EXPECT_FALSE(userData.isEmpty());
    EXPECT_EQ(userData.entries(), (std::vector<Entry>{{"b", "1"}, {"a", MSPINullValue{}}, {"", "3"}}));
}

TEST(MSPIUserData, ReplacesAnEarlierValueInItsPlace) {
    MSPIUserData userData;
    userData.set("b", "1");
    userData.set("a", "2");
    userData.set("b", MSPINullValue{});
    userData.set("a", "4");
    EXPECT_EQ(userData.entries(), (std::vector<Entry>{{"b", MSPINullValue{}}, {"a", "4"}}));
}

TEST(MSPIUserData, TakesEachAbsentNameForAnEntryOfItsOwn) {
    MSPIUserData userData;
    userData.set(std::nullopt, "1");
    userData.set(std::nullopt, "2");
    EXPECT_EQ(userData.entries(), (std::vector<Entry>{{std::nullopt, "1"}, {std::nullopt, "2"}}));
}

}  // namespace
