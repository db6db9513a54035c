#include "MSPCFileStamp.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fcntl.h>

#include "ScopedTempFolder.h"

TEST(MSPCFileStamp, tellsSizeAndTime) {
    const ScopedTempFolder folder;
    const auto path = folder.addFile("file", "12345");
    const timespec times[2] = {{0, 0}, {3, 7}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    const MSPCFileStamp expected{5, 3'000'000'007};
    EXPECT_EQ(MSPCStampOf(path), expected);
    folder.addFile("file", "54321");
    EXPECT_NE(MSPCStampOf(path), expected);
    EXPECT_EQ(MSPCStampOf(folder / "none"), std::nullopt);
    EXPECT_EQ(MSPCStampOf(std::string("/\0", 2)), std::nullopt);
}
