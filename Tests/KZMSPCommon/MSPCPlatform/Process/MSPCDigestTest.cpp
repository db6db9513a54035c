#include "MSPCDigest.h"

#include <gtest/gtest.h>

TEST(MSPCDigestTest, isThatOfTheStandardInBase64) {
    // FIPS 180-4's own examples.
    EXPECT_EQ(MSPCSHA256InBase64("abc"), "ungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0=");
    EXPECT_EQ(MSPCSHA256InBase64(""), "47DEQpj8HBSa+/TImW+5JCeuQeRkm5NMpJWZG3hSuFU=");
}
