#include "MSPCRandomSource.h"

#include <gtest/gtest.h>

#include <set>

TEST(MSPCCryptoRandomSource, drawsAllBitsAndNoNumberTwice) {
    MSPCCryptoRandomSource source;
    std::set<std::uint64_t> numbers;
    std::uint64_t everSet = 0;
    std::uint64_t alwaysSet = ~std::uint64_t{0};
    for (int draw = 0; draw < 1'000; ++draw) {
        const auto number = source.draw64Bits();
        ASSERT_TRUE(number);
        numbers.insert(*number);
        everSet |= *number;
        alwaysSet &= *number;
    }
    EXPECT_EQ(numbers.size(), 1'000U);
    EXPECT_EQ(everSet, ~std::uint64_t{0});
    EXPECT_EQ(alwaysSet, 0U);
}
