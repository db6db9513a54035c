#include "MSPCFileStamp.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fcntl.h>
#include <unistd.h>

#include "ScopedTempFolder.h"

TEST(MSPCFileStamp, tellsSizeAndTime) {
    const ScopedTempFolder folder;
    const auto path = folder.addFile("file", "12345");
    const timespec times[2] = {{0, 0}, {3, 7}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    const auto before = MSPCStampOf(path);
    ASSERT_TRUE(before);
    EXPECT_EQ(before->size, 5U);
    EXPECT_EQ(before->nanoseconds, 3'000'000'007);
    EXPECT_EQ(MSPCStampOf(path), before);
    // Who sets the time back after a change is found out.
    ::usleep(20'000);
    folder.addFile("file", "54321");
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    const auto after = MSPCStampOf(path);
    ASSERT_TRUE(after);
    EXPECT_EQ(after->nanoseconds, before->nanoseconds);
    EXPECT_GT(after->systemNanoseconds, before->systemNanoseconds);
    EXPECT_NE(after, before);
    EXPECT_EQ(MSPCStampOf(folder / "none"), std::nullopt);
    EXPECT_EQ(MSPCStampOf(std::string("/\0", 2)), std::nullopt);
}
