#include "MSPCCharacters.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        const auto lineBreak = nextLineBreak(text, at);
        lines.emplace_back(text.substr(at, lineBreak.start - at));
        at = lineBreak.end;
    }
    return lines;
}

}  // namespace

TEST(MSPCCharacters, charactersOfAllLengthsAreDecoded) {
    EXPECT_EQ(MSPCCharactersOf("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), U"a\u00E4\u20AC\U0001F600");
    EXPECT_EQ(MSPCCharactersOf(""), U"");
    EXPECT_TRUE(MSPCIsUTF8("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"));
    EXPECT_TRUE(MSPCIsUTF8(""));
}

TEST(MSPCCharacters, bytesThatAreNoUTF8GiveNone) {
    for (const char* bytes : {"\xFF", "a\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80"}) {
        EXPECT_EQ(MSPCCharactersOf(bytes), std::nullopt) << bytes;
        EXPECT_FALSE(MSPCIsUTF8(bytes)) << bytes;
    }
}

TEST(MSPCCharacters, lettersOfAllScriptsAreLetters) {
    for (const char32_t letter : U"aZ\u00E4\u03B1\u0416\u05D0\u4E2D\U00010400") {
        EXPECT_EQ(MSPCIsLetter(letter), letter != 0) << static_cast<unsigned>(letter);
        EXPECT_EQ(MSPCIsLetterOrDigit(letter), letter != 0) << static_cast<unsigned>(letter);
    }
}

TEST(MSPCCharacters, digitsOfAllScriptsAreDigitsAndNoLetters) {
    for (const char32_t digit : {U'0', U'9', U'\u0663', U'\u096B'}) {
        EXPECT_FALSE(MSPCIsLetter(digit)) << static_cast<unsigned>(digit);
        EXPECT_TRUE(MSPCIsLetterOrDigit(digit)) << static_cast<unsigned>(digit);
    }
}

TEST(MSPCCharacters, signsAndBlanksAreNeither) {
    for (const char32_t sign : {U' ', U'-', U'_', U':', U'.', U'\u00D7', U'\u20AC', U'\U0001F600'}) {
        EXPECT_FALSE(MSPCIsLetterOrDigit(sign)) << static_cast<unsigned>(sign);
    }
}

TEST(MSPCLineBreak, standsAtEachOfTheSixTerminators) {
    const std::string_view terminators[] = {"\n", "\r", "\r\n", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};
    for (const auto terminator : terminators) {
        const auto text = "ab" + std::string(terminator) + "c";
        const auto lineBreak = nextLineBreak(text, 0);
        EXPECT_EQ(lineBreak.start, 2u) << testing::PrintToString(terminator);
        EXPECT_EQ(lineBreak.end, 2 + terminator.size()) << testing::PrintToString(terminator);
    }
}

TEST(MSPCLineBreak, ofALastLineIsTheTextsSize) {
    EXPECT_EQ(nextLineBreak("abc", 0).start, 3u);
    EXPECT_EQ(nextLineBreak("abc", 0).end, 3u);
    EXPECT_EQ(nextLineBreak("", 0).start, 0u);
    EXPECT_EQ(nextLineBreak("a\n", 2).start, 2u);
    EXPECT_EQ(nextLineBreak("a\n", 2).end, 2u);
}

TEST(MSPCLineBreak, isLookedForFromThePositionOn) {
    EXPECT_EQ(nextLineBreak("a\nb\nc", 2).start, 3u);
    EXPECT_EQ(nextLineBreak("a\nb\nc", 1).start, 1u);
}

TEST(MSPCLineBreak, takesALineFeedBeforeACarriageReturnAsTwo) {
    EXPECT_EQ(linesOf("a\n\rb"), (std::vector<std::string>{"a", "", "b"}));
    EXPECT_EQ(linesOf("a\r\r\nb"), (std::vector<std::string>{"a", "", "b"}));
}

// Their first bytes are those of terminators: a copyright sign, an en dash, a euro sign, a vertical tab, a form feed.
TEST(MSPCLineBreak, isNoOtherCharacter) {
    const std::string text = "\xC2\xA9 \xE2\x80\x93 \xE2\x82\xAC \v \f \xE2";
    EXPECT_EQ(linesOf(text), std::vector<std::string>{text});
}
