#include "MSPCDigest.h"

#include <gtest/gtest.h>

TEST(MSPCDigestTest, isThatOfTheStandardInBase64) {
    // FIPS 180-4's own examples.
    EXPECT_EQ(MSPCSHA256InBase64("abc"), "ungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0=");
    EXPECT_EQ(MSPCSHA256InBase64(""), "47DEQpj8HBSa+/TImW+5JCeuQeRkm5NMpJWZG3hSuFU=");
}

TEST(MSPCDigestTest, isTheSameWhetherTheBytesComeInPiecesOrNot) {
    MSPCSHA256 digest;
    digest.add("");
    digest.add("a");
    digest.add("bc");
    EXPECT_EQ(digest.inBase64(), "ungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0=");
    EXPECT_EQ(MSPCSHA256().inBase64(), "47DEQpj8HBSa+/TImW+5JCeuQeRkm5NMpJWZG3hSuFU=");
}

TEST(MSPCDigestTest, beginsWithItsFirstBytesWhereItIsShort) {
    // ba7816bf 8f01cfea 414140de 5dae2223, of "abc"
    const auto numbers = MSPCShortSHA256("abc");
    const auto* const bytes = reinterpret_cast<const unsigned char*>(numbers.data());
    EXPECT_EQ(bytes[0], 0xBA);
    EXPECT_EQ(bytes[7], 0xEA);
    EXPECT_EQ(bytes[8], 0x41);
    EXPECT_EQ(bytes[15], 0x23);
}
