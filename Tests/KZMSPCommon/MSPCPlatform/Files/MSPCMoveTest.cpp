#include "MSPCMove.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "ScopedTempFolder.h"

namespace {

class MoveTest : public testing::Test {
protected:
    MoveTest() { folder.addFile("from/file", "content"); }
    // The failure, or "".
    std::string moveTo(const std::string& name) {
        return MSPCMoveToFreeName(folder / "from", folder / name, isTaken).value_or("");
    }

    ScopedTempFolder folder;
    bool isTaken = true;
};

}  // namespace

TEST_F(MoveTest, givesAFreeName) {
    EXPECT_EQ(moveTo("to"), "");
    EXPECT_FALSE(isTaken);
    EXPECT_EQ(folder.listing(), "to ");
    EXPECT_EQ(folder.contents("to/file"), "content");
}

TEST_F(MoveTest, replacesNothing) {
    folder.addFolder("empty");
    folder.addFile("full/other");
    folder.addFile("plain");
    ASSERT_EQ(::symlink("nowhere", (folder / "link").c_str()), 0);
    for (const auto* name : {"empty", "full", "plain", "link"}) {
        isTaken = false;
        EXPECT_EQ(moveTo(name), "File exists") << name;
        EXPECT_TRUE(isTaken) << name;
    }
    EXPECT_EQ(folder.listing(), "empty from full link plain ");
    EXPECT_EQ(folder.listing("empty"), "");
}

TEST_F(MoveTest, saysWhatElseIsWrong) {
    EXPECT_EQ(moveTo("none/to"), "No such file or directory");
    EXPECT_FALSE(isTaken);
    EXPECT_EQ(moveTo(std::string("a\0b", 3)), "No such file or directory");
    EXPECT_EQ(folder.listing(), "from ");
}
