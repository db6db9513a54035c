#include "MSPCSettingsFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

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
    EXPECT_EQ(log.takeLines(), Lines{"WARNING: Settings file could not be read: '" + path() + "': Is a directory"});
}

TEST_F(MSPCSettingsFileTest, warnsOfNestingThatTheLibraryCouldNotBear) {
    const auto repeated = [](std::string_view piece, std::size_t count) {
        std::string text;
        for (std::size_t i = 0; i < count; ++i) {
            text += piece;
        }
        return text;
    };
    const std::string begin = "a = true\n";
    EXPECT_EQ(settings(begin + "b = " + repeated("[", 16) + repeated("]", 16)).boolForKey("a"), true);
    EXPECT_EQ(log.takeLines(), Lines{"WARNING: Setting 'b' in '" + path() + "' is not a boolean."});
    const Lines refusal{"WARNING: Settings file could not be read: '" + path() +
                        "' line 2: more than 16 levels of nesting"};
    for (const std::size_t count : {17U, 100'000U}) {
        for (const auto& text : {"b = " + repeated("[", count) + repeated("]", count),
                                 "b = " + repeated("{c = ", count) + "1" + repeated("}", count),
                                 "b" + repeated(".c", count) + " = 1", "[b" + repeated(".c", count) + "]"}) {
            EXPECT_EQ(settings(begin + text).boolForKey("a"), std::nullopt) << text.substr(0, 100);
            EXPECT_EQ(log.takeLines(), refusal) << text.substr(0, 100);
        }
    }
}

TEST_F(MSPCSettingsFileTest, warnsOfAFileThatIsTooLarge) {
    const std::string setting = "a = true\n#";
    constexpr std::size_t largest = 1'048'576;
    EXPECT_EQ(settings(setting + std::string(largest - setting.size(), 'x')).boolForKey("a"), true);
    EXPECT_EQ(settings(setting + std::string(largest - setting.size() + 1, 'x')).boolForKey("a"), std::nullopt);
    const Lines refusal{"WARNING: Settings file could not be read: '" + path() + "': more than 1048576 bytes"};
    EXPECT_EQ(log.takeLines(), refusal);
    std::filesystem::resize_file(path(), 8'000'000'000);  // without taking room on the disk
    const MSPCSettingsFile huge(folder.path(), "org.example.App", log);
    EXPECT_EQ(huge.boolForKey("a"), std::nullopt);
    EXPECT_EQ(log.takeLines(), refusal);
}

TEST_F(MSPCSettingsFileTest, waitsForNoPipeAndReadsNoDevice) {
    const Lines refusal{"WARNING: Settings file could not be read: '" + path() + "': Not a regular file"};
    ASSERT_EQ(::mkfifo(path().c_str(), 0600), 0);
    const MSPCSettingsFile pipe(folder.path(), "org.example.App", log);
    EXPECT_EQ(pipe.boolForKey("a"), std::nullopt);
    EXPECT_EQ(log.takeLines(), refusal);
    std::filesystem::remove(path());
    std::filesystem::create_symlink("/dev/zero", path());
    const MSPCSettingsFile device(folder.path(), "org.example.App", log);
    EXPECT_EQ(device.boolForKey("a"), std::nullopt);
    EXPECT_EQ(log.takeLines(), refusal);
}

TEST_F(MSPCSettingsFileTest, leavesOutWhatIsNoBoolean) {
    const auto read = settings("a = 'true'\nb = true\nc = 1.0\n");
    EXPECT_EQ(read.boolForKey("a"), std::nullopt);
    EXPECT_EQ(read.boolForKey("b"), true);
    EXPECT_EQ(read.boolForKey("c"), std::nullopt);
    EXPECT_EQ(log.takeLines(), (Lines{"WARNING: Setting 'a' in '" + path() + "' is not a boolean.",
                                      "WARNING: Setting 'c' in '" + path() + "' is not a boolean."}));
}

TEST_F(MSPCSettingsFileTest, takesNumbersAsBooleans) {
    const auto read = settings("a = 1\nb = 0\nc = -2\n");
    EXPECT_EQ(read.boolForKey("a"), true);
    EXPECT_EQ(read.boolForKey("b"), false);
    EXPECT_EQ(read.boolForKey("c"), true);
    EXPECT_EQ(log.takeLines(), Lines{});
}

TEST_F(MSPCSettingsFileTest, warnsTenTimesAtMost) {
    std::string text;
    for (int i = 100; i < 1'000; ++i) {
        text += "[table" + std::to_string(i) + "]\n";
    }
    const auto read = settings(text);
    const auto lines = log.takeLines();
    ASSERT_EQ(lines.size(), 10U);
    EXPECT_EQ(lines.front(), "WARNING: Setting 'table100' in '" + path() + "' is not a boolean.");
}

TEST(MSPCSettingsFolder, isTheConfiguredOneOrThatOfTheHomeFolder) {
    EXPECT_EQ(MSPCSettingsFolder("/cfg", "/home/mara"), "/cfg");
    EXPECT_EQ(MSPCSettingsFolder(nullptr, "/home/mara"), "/home/mara/.config");
    EXPECT_EQ(MSPCSettingsFolder("", "/home/mara"), "/home/mara/.config");
    EXPECT_EQ(MSPCSettingsFolder("relative", "/home/mara"), "/home/mara/.config");
    EXPECT_EQ(MSPCSettingsFolder(nullptr, nullptr), "");
    EXPECT_EQ(MSPCSettingsFolder(nullptr, ""), "");
}
