#include "MSPCRegex.h"

#include <gtest/gtest.h>

#include "ExpectRaises.h"

TEST(MSPCRegex, firstMatchIsTheLeftmostAndThereTheLongest) {
    const MSPCRegex pattern("a|ab|abc");
    EXPECT_EQ(pattern.firstMatch("xxabcabcd", 1)->at(0), "abc");
}

TEST(MSPCRegex, earlierGroupsAreAsLongAsTheWholeAllows) {
    const MSPCRegex pattern("(.[0-9]*)?(\\+[0-9]*:[0-9]*)?");
    const auto groups = pattern.firstMatch("+01:00", 3).value();
    EXPECT_EQ(groups[0], "+01:00");
    EXPECT_EQ(groups[1], std::nullopt);
    EXPECT_EQ(groups[2], "+01:00");
}

TEST(MSPCRegex, groupWithoutMatchIsNoneAndAnEmptyOneIsEmpty) {
    const auto groups = MSPCRegex("(a)?(b*)c").firstMatch("c", 8).value();
    ASSERT_EQ(groups.size(), 8U);
    EXPECT_EQ(groups[1], std::nullopt);
    EXPECT_EQ(groups[2], "");
    EXPECT_EQ(groups[7], std::nullopt);
}

TEST(MSPCRegex, viewsPointIntoTheSearchedText) {
    const std::string_view text = "__abc";
    const auto groups = MSPCRegex("b").firstMatch(text, 1).value();
    EXPECT_EQ(groups[0]->data(), text.data() + 3);
}

TEST(MSPCRegex, textEndsWhereTheViewEndsAndAtANulCharacter) {
    const MSPCRegex pattern("ab*");
    EXPECT_EQ(pattern.firstMatch(std::string_view("abbb", 2), 1)->at(0), "ab");
    EXPECT_EQ(pattern.firstMatch(std::string_view("a\0b", 3), 1)->at(0), "a");
    EXPECT_EQ(pattern.firstMatch(std::string_view("\0ab", 3), 1), std::nullopt);
}

TEST(MSPCRegex, noMatchIsNoneAndTheEmptyPieceIsAMatch) {
    EXPECT_EQ(MSPCRegex("x").firstMatch("abc", 1), std::nullopt);
    EXPECT_EQ(MSPCRegex("x*").firstMatch("abc", 1)->at(0), "");
    EXPECT_EQ(MSPCRegex("x*").firstMatch(std::string_view(), 1)->at(0), "");
}

TEST(MSPCRegex, subexpressionsAreCounted) {
    EXPECT_EQ(MSPCRegex("a").subexpressionCount(), 0U);
    EXPECT_EQ(MSPCRegex("((a)|b)(c)?").subexpressionCount(), 3U);
}

TEST(MSPCRegex, patternThatDoesNotCompileRaises) {
    EXPECT_RAISES(MSPCRegex("(a"), MSPCInternalInconsistency,
                  "Failed to compile reqular expression '(a': Unmatched ( or \\(");
}
