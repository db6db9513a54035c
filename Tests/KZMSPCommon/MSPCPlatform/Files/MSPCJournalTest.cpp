#include "MSPCJournal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "ScopedTempFolder.h"

TEST(MSPCJournal, growsByWholeLines) {
    const ScopedTempFolder folder;
    std::string failure;
    for (const auto* line : {"one", "", "two"}) {
        const auto journal = MSPCJournal::open(AT_FDCWD, folder / "journal", failure);
        ASSERT_NE(journal, nullptr);
        EXPECT_EQ(journal->append(line), std::nullopt);
    }
    EXPECT_EQ(folder.contents("journal"), "one\n\ntwo\n");
}

TEST(MSPCJournal, endsALineThatWasCutOff) {
    const ScopedTempFolder folder;
    folder.addFile("journal", "one\ntw");
    std::string failure;
    EXPECT_EQ(MSPCJournal::open(AT_FDCWD, folder / "journal", failure)->append("three"), std::nullopt);
    EXPECT_EQ(folder.contents("journal"), "one\ntw\nthree\n");
}

TEST(MSPCJournal, saysWhyItCannotBeHad) {
    const ScopedTempFolder folder;
    std::string failure;
    EXPECT_EQ(MSPCJournal::open(AT_FDCWD, folder / "none/journal", failure), nullptr);
    EXPECT_EQ(failure, "No such file or directory");
    EXPECT_EQ(MSPCJournal::open(AT_FDCWD, folder.path(), failure), nullptr);
    EXPECT_EQ(failure, "Is a directory");
    EXPECT_EQ(MSPCJournal::open(AT_FDCWD, folder / std::string("a\0b", 3), failure), nullptr);
    MSPCJournal full(MSPCFileDescriptor(::open("/dev/full", O_WRONLY)));
    EXPECT_EQ(full.append("line"), "No space left on device");
}

TEST(MSPCJournal, writesThroughNoLink) {
    const ScopedTempFolder folder;
    folder.addFile("foreign", "text of others");
    ASSERT_EQ(::symlink("foreign", (folder / "journal").c_str()), 0);
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    std::string failure;
    EXPECT_EQ(MSPCJournal::open(AT_FDCWD, folder / "journal", failure), nullptr);
    EXPECT_EQ(failure, "Too many levels of symbolic links");
    EXPECT_EQ(MSPCJournal::open(AT_FDCWD, folder / "pipe", failure), nullptr);
    EXPECT_EQ(failure, "Invalid argument");
    EXPECT_EQ(folder.contents("foreign"), "text of others");
}

TEST(MSPCJournal, givesItsLinesByTheirPlaces) {
    const ScopedTempFolder folder;
    std::string failure;
    EXPECT_EQ(MSPCJournal::openToRead(folder / "journal", failure), nullptr);
    EXPECT_EQ(failure, "No such file or directory");
    EXPECT_EQ(folder.listing(""), "") << "nothing is made";
    const auto journal = MSPCJournal::open(AT_FDCWD, folder / "journal", failure);
    ASSERT_NE(journal, nullptr);
    const std::vector<std::string> lines = {
        "one", "", std::string(200'000, 'x'), std::string(1023, 'y'), std::string(1024, 'z'), "last"};
    std::vector<std::pair<MSPCJournal::Place, std::string>> expected;
    for (const auto& line : lines) {
        expected.emplace_back(journal->end(), line);
        EXPECT_EQ(journal->append(line), std::nullopt);
    }
    for (const auto& [place, line] : expected) {
        EXPECT_EQ(journal->lineAt(place), line);
    }
    EXPECT_EQ(journal->lineAt(journal->end()), "");
    folder.addFile("journal", folder.contents("journal") + "cut o");
    const auto read = MSPCJournal::openToRead(folder / "journal", failure);
    ASSERT_NE(read, nullptr);
    expected.emplace_back(read->end() - 5, "cut o");
    std::vector<std::pair<MSPCJournal::Place, std::string>> told;
    EXPECT_EQ(read->forEachLine([&](auto place, auto line) { told.emplace_back(place, line); }), std::nullopt);
    EXPECT_EQ(told, expected);
    EXPECT_TRUE(folder.contents("journal").ends_with("\ncut o")) << "it is only read";
}
