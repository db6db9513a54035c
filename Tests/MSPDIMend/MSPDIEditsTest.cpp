#include "MSPDIEdits.h"

#include <gtest/gtest.h>

TEST(MSPDIEditsTest, leavesAllElseAsItIs) {
    MSPDIEdits edits;
    EXPECT_TRUE(edits.isEmpty());
    EXPECT_EQ(edits.appliedTo("abc"), "abc");
    edits.replace(1, 2, "XYZ");
    EXPECT_FALSE(edits.isEmpty());
    EXPECT_EQ(edits.appliedTo("abc"), "aXYZc");
}

TEST(MSPDIEditsTest, makesEditsInTheOrderOfTheText) {
    MSPDIEdits edits;
    edits.replace(3, 3, "2");
    edits.replace(0, 0, "0");
    edits.replace(1, 3, "1");
    edits.replace(3, 3, "3");
    EXPECT_EQ(edits.appliedTo("abcd"), "0a123d");
}

TEST(MSPDIEditsTest, putsInBeforeItTakesAwayFromTheSamePlace) {
    MSPDIEdits edits;
    edits.replace(1, 3, "");
    edits.replace(1, 1, "new");
    EXPECT_EQ(edits.appliedTo("abcd"), "anewd");
}

TEST(MSPDIEditsTest, forgetsWhatIsWithinWhatGoes) {
    MSPDIEdits edits;
    edits.replace(2, 3, "X");
    edits.replace(1, 4, "");
    edits.replace(1, 2, "Y");
    EXPECT_EQ(edits.appliedTo("abcde"), "ae");
}

// Whatever comes first: what grows, what shrinks, or what stays as long.
TEST(MSPDIEditsTest, makesThemInTheTextsOwnPlace) {
    std::string text = "0123456789";
    text.reserve(1000);
    const auto* place = text.data();
    MSPDIEdits edits;
    edits.replace(1, 2, "abcd");
    edits.replace(3, 7, "");
    edits.replace(8, 9, "xyz");
    edits.replace(10, 10, "end");
    const auto edited = edits.appliedTo(std::move(text));
    EXPECT_EQ(edited, "0abcd27xyz9end");
    EXPECT_EQ(edited.data(), place);
}

TEST(MSPDIEditsTest, givesAnEditAnotherText) {
    MSPDIEdits edits;
    const auto edit = edits.replace(0, 1, "x");
    edits.setText(edit, "y");
    EXPECT_EQ(edits.appliedTo("ab"), "yb");
}
