#include "MSPIIdentifiers.h"

#include <gtest/gtest.h>

#include <string_view>

#include "ExpectRaises.h"
#include "ListedRandomSource.h"

namespace {

constexpr std::string_view Alphabet = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_";

// Gives one number for ever, or fails for ever.
class StuckRandomSource final : public MSPCRandomSource {
public:
    explicit StuckRandomSource(std::optional<std::uint64_t> number) : _number(number) {}
    [[nodiscard]] std::optional<std::uint64_t> draw64Bits() override {
        ++_draws;
        return _number;
    }
    [[nodiscard]] int draws() const { return _draws; }

private:
    std::optional<std::uint64_t> _number;
    int _draws = 0;
};

constexpr const char* Failure = "MSPIUtilities VFXMLCreateID: Failed to generate random Big Number.";

}  // namespace

TEST(VFXMLCreateID, hasElevenCharactersOfTheAlphabetTheFirstFromAToP) {
    MSPCCryptoRandomSource random;
    for (int i = 0; i < 10'000; ++i) {
        const auto identifier = VFXMLCreateID(random);
        ASSERT_EQ(identifier.size(), 11U);
        ASSERT_TRUE(identifier[0] >= 'a' && identifier[0] <= 'p') << identifier;
        ASSERT_EQ(identifier.find_first_not_of(Alphabet), std::string::npos) << identifier;
        ASSERT_TRUE(VFXMLIsValidID(identifier)) << identifier;
    }
}

TEST(VFXMLCreateID, twoInARowDiffer) {
    MSPCCryptoRandomSource random;
    EXPECT_NE(VFXMLCreateID(random), VFXMLCreateID(random));
}

TEST(VFXMLCreateID, numbersBytesAreReadFromTheMostSignificantOne) {
    // The bytes 01 00 ... 00 read the other way round are 1: the first character's four bits.
    ListedRandomSource random{0x0100000000000000, 0x1000000000000001, 0xFFFFFFFFFFFFFFFF};
    EXPECT_EQ(VFXMLCreateID(random), "baaaaaaaaaa");
    // 10 00 ... 01: 0x0100000000000010, that is 16 + 2^56: the second character is 1, and bit 56 is bit 4 of the
    // tenth (4 + 8 * 6 = 52).
    EXPECT_EQ(VFXMLCreateID(random), "abaaaaaaaqa");
    EXPECT_EQ(VFXMLCreateID(random), "p__________");
}

TEST(VFXMLCreateID, numbersBelow57BitsAndFailedDrawsAreDrawnAgain) {
    ListedRandomSource random{0, 0x00FFFFFFFFFFFFFF, 0x0100000000000000};
    EXPECT_EQ(VFXMLCreateID(random), "baaaaaaaaaa");
}

TEST(VFXMLCreateID, raisesAfterAThousandAttempts) {
    StuckRandomSource small(0x00FFFFFFFFFFFFFF);
    EXPECT_RAISES(VFXMLCreateID(small), MSPCInternalInconsistency, Failure);
    EXPECT_EQ(small.draws(), 1000);
    StuckRandomSource broken(std::nullopt);
    EXPECT_RAISES(VFXMLCreateID(broken), MSPCInternalInconsistency, Failure);
    EXPECT_EQ(broken.draws(), 1000);
}

TEST(VFXMLIsValidID, acceptsALetterColonOrUnderscoreAndThenDigitsPointsAndHyphensToo) {
    for (const char* text : {"a1.b-c_d:e", "_x", ":x", "a", "_", ":", "\xC3\xA4\xC3\xB6", "\xE4\xB8\xAD\xE6\x96\x87",
                             "\xD0\x96\xD9\xA3"}) {
        EXPECT_TRUE(VFXMLIsValidID(text)) << text;
    }
}

TEST(VFXMLIsValidID, rejectsEverythingElse) {
    for (const char* text : {"", "1abc", "-x", ".x", "a b", "a/b", " a", "a\xE2\x82\xAC", "\xD9\xA3x", "a\xFF"}) {
        EXPECT_FALSE(VFXMLIsValidID(text)) << text;
    }
    EXPECT_FALSE(VFXMLIsValidID(std::string_view("a\0", 2)));
}
