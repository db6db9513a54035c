#include "MSPCUnfinishedItem.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "ScopedTempFolder.h"

namespace {

int makeFile(const char* path) {
    const int file = ::open(path, O_WRONLY | O_CREAT | O_EXCL, 0600);
    return file >= 0 ? ::close(file) : errno;
}

int makeFolder(const char* path) {
    return ::mkdir(path, 0700) == 0 ? 0 : errno;
}

class MSPCUnfinishedItemTest : public ::testing::Test {
protected:
    ScopedTempFolder folder;
};

}  // namespace

TEST_F(MSPCUnfinishedItemTest, goesWithItsObject) {
    {
        MSPCUnfinishedItem item;
        EXPECT_EQ(item.create(folder / "file", makeFile), 0);
        EXPECT_EQ(item.path(), folder / "file");
        EXPECT_EQ(folder.listing(), "file ");
    }
    EXPECT_EQ(folder.listing(), "");
}

TEST_F(MSPCUnfinishedItemTest, staysWhenItIsFinished) {
    {
        MSPCUnfinishedItem item;
        EXPECT_EQ(item.create(folder / "file", makeFile), 0);
        item.finish();
        EXPECT_EQ(item.path(), "");
    }
    EXPECT_EQ(folder.listing(), "file ");
}

TEST_F(MSPCUnfinishedItemTest, leavesAloneWhatItCouldNotMake) {
    folder.addFile("file", "of somebody else");
    {
        MSPCUnfinishedItem item;
        EXPECT_EQ(item.create(folder / "file", makeFile), EEXIST);
        EXPECT_EQ(item.path(), "");
    }
    EXPECT_EQ(folder.contents("file"), "of somebody else");
}

TEST_F(MSPCUnfinishedItemTest, aFolderGoesWithItsContentButNotWithWhatLinksLeadTo) {
    folder.addFile("kept/file", "kept");
    {
        MSPCUnfinishedItem item;
        ASSERT_EQ(item.create(folder / "stage", makeFolder), 0);
        for (int number = 0; number < 500; ++number) {  // more than the system lists at once
            folder.addFile("stage/sub/file with a long name " + std::to_string(number));
        }
        folder.addFolder("stage/sub/empty/empty");
        ASSERT_EQ(::symlink((folder / "kept").c_str(), (folder / "stage/link").c_str()), 0);
    }
    EXPECT_EQ(folder.listing(), "kept ");
    EXPECT_EQ(folder.contents("kept/file"), "kept");
}

TEST_F(MSPCUnfinishedItemTest, aFolderThatGoesOnlyWhenEmptyStaysWithItsContent) {
    for (const auto* name : {"empty", "full"}) {
        MSPCUnfinishedItem item(MSPCUnfinishedItem::Removal::OnlyWhenEmpty);
        ASSERT_EQ(item.create(folder / name, makeFolder), 0);
        if (std::string(name) == "full") {
            folder.addFile("full/file");
        }
    }
    EXPECT_EQ(folder.listing(), "full ");
}

TEST_F(MSPCUnfinishedItemTest, allThatAreUnfinishedGoTogether) {
    MSPCUnfinishedItem first;
    MSPCUnfinishedItem second;
    MSPCUnfinishedItem third;
    ASSERT_EQ(first.create(folder / "first", makeFile), 0);
    ASSERT_EQ(second.create(folder / "second", makeFolder), 0);
    ASSERT_EQ(third.create(folder / "third", makeFile), 0);
    second.finish();
    MSPCUnfinishedItem::removeAll();
    EXPECT_EQ(folder.listing(), "second ");
}
