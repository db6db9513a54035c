#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>

// A defect in a sanitized program must never look like an import that failed.

namespace {

// Hidden from the compiler, which would see through them otherwise.
volatile std::size_t beyondTheEnd = 4;
volatile std::int64_t largest = std::numeric_limits<std::int64_t>::max();
volatile double tooLarge = 1e300;
volatile std::int64_t taken = 0;

void readBeyondTheEnd() {
    const auto bytes = std::make_unique<char[]>(4);
    taken = bytes[beyondTheEnd];
}

void overflow() {
    taken = largest + 1;
}

void castWhatDoesNotFit() {
    taken = static_cast<std::int64_t>(tooLarge);
}

}  // namespace

TEST(SanitizersDeathTest, readingBeyondTheEndAborts) {
    EXPECT_EXIT(readBeyondTheEnd(), testing::KilledBySignal(SIGABRT), "heap-buffer-overflow");
}

TEST(SanitizersDeathTest, anOverflowAborts) {
    EXPECT_EXIT(overflow(), testing::KilledBySignal(SIGABRT), "signed integer overflow");
}

TEST(SanitizersDeathTest, aNumberTooLargeForItsIntegerAborts) {
    EXPECT_EXIT(castWhatDoesNotFit(), testing::KilledBySignal(SIGABRT), "is outside the range");
}
