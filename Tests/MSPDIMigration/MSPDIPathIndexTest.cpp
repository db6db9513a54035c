#include "MSPDIPathIndex.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string pathOf(std::uint64_t number) {
    return std::string("/").append(std::to_string(number));
}

}  // namespace

TEST(MSPDIPathIndex, keepsANumberForEachPath) {
    MSPDIPathIndex index;
    EXPECT_EQ(index.find("/0"), nullptr);
    constexpr std::uint64_t count = 20'000;
    for (std::uint64_t number = 0; number < count; ++number) {
        index.set(pathOf(number), number);
    }
    for (std::uint64_t number = 0; number < count; number += 3) {
        index.set(pathOf(number), number + count);
    }
    EXPECT_EQ(index.size(), count);
    for (std::uint64_t number = 0; number < count; ++number) {
        auto* const found = index.find(pathOf(number));
        ASSERT_NE(found, nullptr) << number;
        EXPECT_EQ(*found, number % 3 == 0 ? number + count : number);
    }
    *index.find("/7") = 1;
    EXPECT_EQ(*index.find("/7"), 1U);
    EXPECT_EQ(index.find("/20000"), nullptr);
    EXPECT_EQ(index.find(""), nullptr);
    index.set("", 3);
    EXPECT_EQ(*index.find(""), 3U);
}
