#include "MSPCRunLock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <memory>

#include "ScopedTempFolder.h"

TEST(MSPCRunLock, isHadByOneAtATime) {
    const ScopedTempFolder folder;
    auto first = std::make_unique<MSPCRunLock>(AT_FDCWD, folder / "lock");
    MSPCRunLock second(AT_FDCWD, folder / "lock");
    EXPECT_EQ(first->failure(), std::nullopt);
    EXPECT_TRUE(first->tryToTake());
    first->sign();
    EXPECT_FALSE(second.tryToTake());
    EXPECT_EQ(second.holder().find("process " + std::to_string(::getpid()) + " on "), 0U) << second.holder();
    first.reset();
    EXPECT_TRUE(second.waitAndTake());
}

TEST(MSPCRunLock, isHeldAsLongAsAChildLives) {
    const ScopedTempFolder folder;
    auto first = std::make_unique<MSPCRunLock>(AT_FDCWD, folder / "lock");
    ASSERT_TRUE(first->tryToTake());
    const auto child = ::fork();
    if (child == 0) {
        ::pause();
        ::_exit(0);
    }
    first.reset();
    MSPCRunLock second(AT_FDCWD, folder / "lock");
    EXPECT_FALSE(second.tryToTake());
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(second.tryToTake());
}

TEST(MSPCRunLock, saysWhyItCannotBeHad) {
    const ScopedTempFolder folder;
    EXPECT_EQ(MSPCRunLock(AT_FDCWD, folder / "none/lock").failure(), "No such file or directory");
    EXPECT_EQ(MSPCRunLock(AT_FDCWD, folder.path()).failure(), "Is a directory");
}

TEST(MSPCRunLock, writesThroughNoLink) {
    const ScopedTempFolder folder;
    folder.addFile("foreign", "text of others");
    ASSERT_EQ(::symlink("foreign", (folder / "lock").c_str()), 0);
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(MSPCRunLock(AT_FDCWD, folder / "lock").failure(), "Too many levels of symbolic links");
    EXPECT_EQ(MSPCRunLock(AT_FDCWD, folder / "pipe").failure(), "Invalid argument");
    EXPECT_EQ(folder.contents("foreign"), "text of others");
}
