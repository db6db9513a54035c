#include "MSPDIShellWord.h"

#include <gtest/gtest.h>

#include <optional>

TEST(ShellWord, holdsNothingThatAnybodyExpands) {
    EXPECT_EQ(MSPDIShellWordOf("/home/anna/Plan-2_b.xml"), "/home/anna/Plan-2_b.xml");
    EXPECT_EQ(MSPDIShellWordOf("a b'{=$"), "a%040b%047%173%075%044");
    EXPECT_EQ(MSPDIShellWordOf("%040\\"), "%045040%134");
    EXPECT_EQ(MSPDIShellWordOf("\n\xC3\xA9\xFF"), "%012%303%251%377");
    EXPECT_EQ(MSPDIShellWordOf(""), "%");
}

TEST(ShellWord, comesBackAsItWas) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    EXPECT_EQ(MSPDITextOfShellWord(MSPDIShellWordOf(all)), all);
    EXPECT_EQ(MSPDITextOfShellWord("%"), "");
    EXPECT_EQ(MSPDITextOfShellWord("a%040b"), "a b");
}

TEST(ShellWord, isNothingElse) {
    for (const auto* const text : {"", "a b", "%4", "%04", "%08x", "%400", "%+40", "a%", "%%", "~", "a\n"}) {
        EXPECT_EQ(MSPDITextOfShellWord(text), std::nullopt) << text;
    }
}
