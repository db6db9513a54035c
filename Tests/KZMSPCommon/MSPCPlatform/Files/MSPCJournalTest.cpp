#include "MSPCJournal.h"

#include <gtest/gtest.h>

#include "ScopedTempFolder.h"

TEST(MSPCJournal, growsByWholeLines) {
    const ScopedTempFolder folder;
    std::string failure;
    for (const auto* line : {"one", "", "two"}) {
        const auto journal = MSPCJournal::open(folder / "journal", failure);
        ASSERT_NE(journal, nullptr);
        EXPECT_EQ(journal->append(line), std::nullopt);
    }
    EXPECT_EQ(folder.contents("journal"), "one\n\ntwo\n");
}

TEST(MSPCJournal, endsALineThatWasCutOff) {
    const ScopedTempFolder folder;
    folder.addFile("journal", "one\ntw");
    std::string failure;
    EXPECT_EQ(MSPCJournal::open(folder / "journal", failure)->append("three"), std::nullopt);
    EXPECT_EQ(folder.contents("journal"), "one\ntw\nthree\n");
}

TEST(MSPCJournal, saysWhyItCannotBeHad) {
    const ScopedTempFolder folder;
    std::string failure;
    EXPECT_EQ(MSPCJournal::open(folder / "none/journal", failure), nullptr);
    EXPECT_EQ(failure, "No such file or directory");
    EXPECT_EQ(MSPCJournal::open(folder.path(), failure), nullptr);
    EXPECT_EQ(failure, "Is a directory");
    EXPECT_EQ(MSPCJournal::open(folder / std::string("a\0b", 3), failure), nullptr);
    const auto full = MSPCJournal::open("/dev/full", failure);
    ASSERT_NE(full, nullptr);
    EXPECT_EQ(full->append("line"), "No space left on device");
}
