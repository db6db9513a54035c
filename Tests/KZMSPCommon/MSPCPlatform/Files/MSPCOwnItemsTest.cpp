#include "MSPCOwnItems.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "ScopedTempFolder.h"

namespace fs = std::filesystem;

TEST(MSPCOwnItemsTest, writeAFileAnewWhateverItsNameHad) {
    const ScopedTempFolder folder;
    const auto path = folder / "record";
    EXPECT_EQ(MSPCWriteOwnFile(path, "first and long"), 0);
    fs::create_hard_link(path, folder / "other name");
    EXPECT_EQ(MSPCWriteOwnFile(path, "second"), 0);
    EXPECT_EQ(folder.contents("record"), "second");
    EXPECT_EQ(folder.contents("other name"), "first and long");
    for (const auto* target : {"other name", "nowhere"}) {
        fs::remove(path);
        fs::create_symlink(folder / target, path);
        EXPECT_EQ(MSPCWriteOwnFile(path, "third"), 0);
        EXPECT_FALSE(fs::is_symlink(path));
    }
    EXPECT_EQ(folder.contents("record"), "third");
    EXPECT_EQ(folder.listing(), "other name record ");
    EXPECT_EQ(folder.contents("other name"), "first and long");
}

TEST(MSPCOwnItemsTest, tellWhyAFileCannotBeWritten) {
    const ScopedTempFolder folder;
    EXPECT_EQ(MSPCWriteOwnFile(folder / "none/record", "x"), ENOENT);
    EXPECT_EQ(MSPCWriteOwnFile(folder / std::string("rec\0ord", 7), "x"), ENOENT);
    EXPECT_EQ(folder.listing(), "");
}
