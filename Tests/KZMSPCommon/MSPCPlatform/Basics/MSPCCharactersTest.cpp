#include "MSPCCharacters.h"

#include <gtest/gtest.h>

TEST(MSPCCharacters, charactersOfAllLengthsAreDecoded) {
    EXPECT_EQ(MSPCCharactersOf("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), U"a\u00E4\u20AC\U0001F600");
    EXPECT_EQ(MSPCCharactersOf(""), U"");
}

TEST(MSPCCharacters, bytesThatAreNoUTF8GiveNone) {
    for (const char* bytes : {"\xFF", "a\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80"}) {
        EXPECT_EQ(MSPCCharactersOf(bytes), std::nullopt) << bytes;
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
