#include "MSPCUserDefaults.h"

#include <gtest/gtest.h>

#include "RecordingLog.h"
#include "ScopedTempFolder.h"

namespace {

class MSPCSettingsFileTest : public ::testing::Test {
protected:
    MSPCSettingsFile settings(const std::string& text) {
        folder.addFile("org.example.App.toml", text);
        return {folder.path(), "org.example.App", log};
    }
    std::string path() const { return folder / "org.example.App.toml"; }

    ScopedTempFolder folder;
    RecordingLog log;
};

using Lines = std::vector<std::string>;

}  // namespace

TEST_F(MSPCSettingsFileTest, givesBooleansByKey) {
    const auto read = settings("IncludeInputExtension = true\nOverwriteFilterTarget = false # a comment\n");
    EXPECT_EQ(read.boolForKey("IncludeInputExtension"), true);
    EXPECT_EQ(read.boolForKey("OverwriteFilterTarget"), false);
    EXPECT_EQ(read.boolForKey("includeInputExtension"), std::nullopt);
    EXPECT_EQ(read.boolForKey(""), std::nullopt);
}

TEST_F(MSPCSettingsFileTest, takesIntegersAsBooleans) {
    const auto read = settings("one = 1\nzero = 0\nnegative = -1\n");
    EXPECT_EQ(read.boolForKey("one"), true);
    EXPECT_EQ(read.boolForKey("zero"), false);
    EXPECT_EQ(read.boolForKey("negative"), true);
}

TEST_F(MSPCSettingsFileTest, isEmptyWithoutAFile) {
    const MSPCSettingsFile read(folder.path(), "org.example.App", log);
    EXPECT_EQ(read.boolForKey("a"), std::nullopt);
    const MSPCSettingsFile nowhere("", "org.example.App", log);
    EXPECT_EQ(nowhere.boolForKey("a"), std::nullopt);
}

TEST_F(MSPCSettingsFileTest, warnsWithTheLineOfWhatDoesNotParse) {
    const auto read = settings("a = true\nb = = true\n");
    EXPECT_EQ(read.boolForKey("a"), std::nullopt);
    const auto lines = log.takeLines();
    ASSERT_EQ(lines.size(), 1U);
    const auto start = "WARNING: Settings file could not be read: '" + path() + "' line 2: ";
    EXPECT_TRUE(lines[0].starts_with(start)) << lines[0];
    EXPECT_GT(lines[0].size(), start.size());
}

TEST_F(MSPCSettingsFileTest, warnsOfAFileThatCannotBeOpened) {
    folder.addFolder("org.example.App.toml");
    const MSPCSettingsFile read(folder.path(), "org.example.App", log);
    EXPECT_EQ(read.boolForKey("a"), std::nullopt);
    EXPECT_EQ(log.takeLines(),
              Lines{"WARNING: Settings file could not be read: '" + path() + "' line 0: Is a directory"});
}

TEST_F(MSPCSettingsFileTest, leavesOutWhatIsNoBoolean) {
    const auto read = settings("a = 'true'\nb = true\nc = 1.0\n");
    EXPECT_EQ(read.boolForKey("a"), std::nullopt);
    EXPECT_EQ(read.boolForKey("b"), true);
    EXPECT_EQ(read.boolForKey("c"), std::nullopt);
    EXPECT_EQ(log.takeLines(), (Lines{"WARNING: Setting 'a' in '" + path() + "' is not a boolean.",
                                      "WARNING: Setting 'c' in '" + path() + "' is not a boolean."}));
}

TEST(MSPCSettingsFolder, isTheConfiguredOneOrThatOfTheHomeFolder) {
    EXPECT_EQ(MSPCSettingsFolder("/cfg", "/home/mara"), "/cfg");
    EXPECT_EQ(MSPCSettingsFolder(nullptr, "/home/mara"), "/home/mara/.config");
    EXPECT_EQ(MSPCSettingsFolder("", "/home/mara"), "/home/mara/.config");
    EXPECT_EQ(MSPCSettingsFolder("relative", "/home/mara"), "/home/mara/.config");
    EXPECT_EQ(MSPCSettingsFolder(nullptr, nullptr), "");
    EXPECT_EQ(MSPCSettingsFolder(nullptr, ""), "");
}
