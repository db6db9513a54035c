#include "MSPCLineBreak.h"

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
