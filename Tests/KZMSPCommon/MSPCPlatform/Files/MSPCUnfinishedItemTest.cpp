#include "MSPCUnfinishedItem.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "MSPCFileDescriptor.h"
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

TEST_F(MSPCUnfinishedItemTest, takesTheNextHiddenNameWhereOneIsTaken) {
    const MSPCFileDescriptor open(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto name = [](int number) { return MSPCHiddenName(fmt::format("{}-{}", ::getpid(), number)); };
    folder.addFile(name(1), "of somebody else");
    const auto make = [&open](const char* hidden) {
        const int file = ::openat(open.number(), hidden, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        return file >= 0 ? ::close(file) : errno;
    };
    {
        MSPCUnfinishedItem second;
        MSPCUnfinishedItem third;
        EXPECT_EQ(second.createUnderTemporaryName(open.number(), make), 0);
        EXPECT_EQ(third.createUnderTemporaryName(open.number(), make), 0);
        EXPECT_EQ(second.path(), name(2));
        EXPECT_EQ(third.path(), name(3));
        EXPECT_TRUE(MSPCIsTemporaryName(third.path()));
    }
    EXPECT_EQ(folder.contents(name(1)), "of somebody else");
    EXPECT_EQ(folder.listing(), name(1) + " ");
}

TEST_F(MSPCUnfinishedItemTest, triesNoOtherNameAfterAnotherFailure) {
    int attempts = 0;
    MSPCUnfinishedItem item;
    EXPECT_EQ(item.createUnderTemporaryName(AT_FDCWD,
                                            [&attempts](const char*) {
                                                ++attempts;
                                                return EACCES;
                                            }),
              EACCES);
    EXPECT_EQ(attempts, 1);
    EXPECT_EQ(item.path(), "");
}

TEST(MSPCTemporaryName, isToldFromOtherNames) {
    for (const auto* name : {".MSPDIImport-1-1.tmp", ".MSPDIImport-4194304-10000.tmp"}) {
        EXPECT_TRUE(MSPCIsTemporaryName(name)) << name;
    }
    for (const auto* name : {"", ".MSPDIImport-", ".MSPDIImport-.tmp", ".MSPDIImport-1.tmp", ".MSPDIImport-1-.tmp",
                             ".MSPDIImport--1.tmp", ".MSPDIImport-1-1-1.tmp", ".MSPDIImport-1-1", "MSPDIImport-1-1.tmp",
                             ".MSPDIImport-Plan.kdzx.tmp", ".MSPDIImport-1-1.tmp ", ".MSPDIImport-1-x.tmp"}) {
        EXPECT_FALSE(MSPCIsTemporaryName(name)) << name;
    }
}
