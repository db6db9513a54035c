#include "MSPCMessage.h"

#include <gtest/gtest.h>

#include "MSPCException.h"

namespace {

std::string shown(std::string_view text) {
    return std::string(MSPCShownText(text).view());
}

}  // namespace

TEST(MSPCShownText, leavesOrdinaryTextsAsTheyAre) {
    for (const std::string_view text :
         {"", "a plan", "quote\"and'more", "100 %", "{} {0}", "~", " ", "H\u00e4user \u2013 \u6c34 \U0001F3E0",
          "\u00a0", "\u200b\u200d", "\ufeff", "\u0627\u0644"}) {
        EXPECT_EQ(shown(text), text);
    }
}

TEST(MSPCShownText, leavesABackslashAsItIs) {
    EXPECT_EQ(shown("C:\\new\\table"), "C:\\new\\table");
    EXPECT_EQ(shown("\\\n"), "\\\\n");
}

TEST(MSPCShownText, escapesControlCharacters) {
    using namespace std::string_view_literals;
    EXPECT_EQ(shown("a\nb\rc\td"), "a\\nb\\rc\\td");
    EXPECT_EQ(shown("\x1b[2J\x07"), "\\x1b[2J\\x07");
    EXPECT_EQ(shown("\0\x01\x1f\x7f"sv), "\\x00\\x01\\x1f\\x7f");
    EXPECT_EQ(shown("\u0080\u0085\u009b\u009f"), "\\u0080\\u0085\\u009b\\u009f");
}

TEST(MSPCShownText, escapesWhatTurnsTheOrderAroundOrEndsALine) {
    EXPECT_EQ(shown("\u061c\u200e\u200f"), "\\u061c\\u200e\\u200f");
    EXPECT_EQ(shown("\u202a\u202b\u202c\u202d\u202e"), "\\u202a\\u202b\\u202c\\u202d\\u202e");
    EXPECT_EQ(shown("\u2066\u2067\u2068\u2069"), "\\u2066\\u2067\\u2068\\u2069");
    EXPECT_EQ(shown("\u2028\u2029"), "\\u2028\\u2029");
    EXPECT_EQ(shown("\u061b\u2027\u202f\u2065\u206a\u00a0"), "\u061b\u2027\u202f\u2065\u206a\u00a0") << "the next ones";
}

TEST(MSPCShownText, escapesBytesThatAreNoUTF8) {
    EXPECT_EQ(shown("\xff\xfe"), "\\xff\\xfe");
    EXPECT_EQ(shown("\x9b[2J"), "\\x9b[2J") << "drives a terminal of eight bits";
    EXPECT_EQ(shown("a\xc3"), "a\\xc3") << "cut off";
    EXPECT_EQ(shown("\xe2\x80x"), "\\xe2\\x80x");
    EXPECT_EQ(shown("\xc0\x8a"), "\\xc0\\x8a") << "a line feed in two bytes";
    EXPECT_EQ(shown("\xe0\x80\x8a"), "\\xe0\\x80\\x8a") << "and in three";
    EXPECT_EQ(shown("\xed\xa0\x80"), "\\xed\\xa0\\x80") << "half of a pair";
    EXPECT_EQ(shown("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80") << "beyond the last character";
    EXPECT_EQ(shown("\xf4\x8f\xbf\xbf"), "\xf4\x8f\xbf\xbf") << "the last character";
}

TEST(MSPCMessage, escapesValuesOfEveryKindOfText) {
    const std::string text = "a\nb";
    EXPECT_EQ(MSPCMessage("{}{}{}", text, std::string_view(text), text.c_str()).text(), "a\\nba\\nba\\nb");
    EXPECT_EQ(MSPCMessage("{} {}", -3, 4.5).text(), "-3 4.5");
}

TEST(MSPCMessage, keepsTheLineEndsOfItsOwn) {
    EXPECT_EQ(MSPCMessage("first\n  {}", "\r").text(), "first\n  \\r");
}

TEST(MSPCMessage, takesInOtherMessagesAsTheyAre) {
    const MSPCMessage usage("Usage:\n  {}", "x\ny");
    EXPECT_EQ(MSPCMessage("Wrong. {}", usage).text(), "Wrong. Usage:\n  x\\ny");
}

TEST(MSPCException, itsReasonIsOneLineUnlessItIsAMessage) {
    const FileNotFoundException oneLine("not found: a\nb");
    EXPECT_EQ(oneLine.reason(), "not found: a\nb");
    EXPECT_EQ(oneLine.message().text(), "not found: a\\nb");
    const CommandLineArgumentException twoLines(MSPCMessage("Usage:\n  {}", "a\nb"));
    EXPECT_EQ(twoLines.reason(), "Usage:\n  a\\nb");
    EXPECT_EQ(twoLines.message().text(), "Usage:\n  a\\nb");
}
