#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <stdexcept>

#include "MSPCFileSystem.h"
#include "ScopedTempFolder.h"

namespace {

class MSPCAtomicFileTest : public ::testing::Test {
protected:
    std::optional<std::string> write(const std::string& path, const std::string& bytes) {
        return files.writeAtomically(path, [&bytes](MSPCByteWriter& writer) { writer.write(bytes); });
    }

    ScopedTempFolder folder;
    MSPCDiskFileSystem files;
};

}  // namespace

TEST_F(MSPCAtomicFileTest, writesANewFile) {
    EXPECT_EQ(write(folder / "a.xml", "text"), std::nullopt);
    EXPECT_EQ(folder.contents("a.xml"), "text");
    EXPECT_EQ(folder.listing(), "a.xml ");
}

TEST_F(MSPCAtomicFileTest, writesPiecesOfAnySizeInOrder) {
    std::string expected;
    const auto failure = files.writeAtomically(folder / "a", [&expected](MSPCByteWriter& writer) {
        for (const std::size_t size : {0U, 1U, 65'535U, 1U, 65'536U, 3U, 200'000U, 65'537U, 5U}) {
            const std::string piece(size, static_cast<char>('a' + expected.size() % 26));
            writer.write(piece);
            expected += piece;
        }
    });
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_TRUE(folder.contents("a") == expected);
}

TEST_F(MSPCAtomicFileTest, showsTheOldContentUntilTheNewIsComplete) {
    folder.addFile("a", "old");
    const auto failure = files.writeAtomically(folder / "a", [this](MSPCByteWriter& writer) {
        writer.write(std::string(1'000'000, 'n'));
        EXPECT_EQ(folder.contents("a"), "old");
    });
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_EQ(folder.contents("a").size(), 1'000'000U);
}

TEST_F(MSPCAtomicFileTest, leavesNoTraceWhenTheContentCannotBeMade) {
    folder.addFile("a", "old");
    const auto produce = [](MSPCByteWriter& writer) {
        writer.write("half");
        throw std::runtime_error("no more");
    };
    EXPECT_THROW(static_cast<void>(files.writeAtomically(folder / "a", produce)), std::runtime_error);
    EXPECT_EQ(folder.contents("a"), "old");
    EXPECT_EQ(folder.listing(), "a ");
}

TEST_F(MSPCAtomicFileTest, replacesALinkAndNotItsTarget) {
    folder.addFile("target", "untouched");
    std::filesystem::create_symlink("target", folder / "link");
    EXPECT_EQ(write(folder / "link", "new"), std::nullopt);
    EXPECT_EQ(folder.contents("target"), "untouched");
    EXPECT_FALSE(std::filesystem::is_symlink(folder / "link"));
    EXPECT_EQ(folder.contents("link"), "new");
}

TEST_F(MSPCAtomicFileTest, takesThePlaceOfNoDeviceAndNoPipe) {
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/null", folder / "link");
    for (const std::string name : {"pipe", "link"}) {
        EXPECT_EQ(write(folder / name, "x"), "It is a device, a pipe or a socket, which no file replaces") << name;
    }
    EXPECT_TRUE(std::filesystem::is_fifo(folder / "pipe"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
}

TEST_F(MSPCAtomicFileTest, failsWhereTheFolderIsMissing) {
    EXPECT_EQ(write(folder / "none/a", "x"), "No such file or directory");
}

TEST_F(MSPCAtomicFileTest, failsOnAFolderAndLeavesNoTemporaryFile) {
    folder.addFile("a/inner");
    EXPECT_EQ(write(folder / "a", "x"), "Is a directory");
    EXPECT_EQ(folder.listing(), "a ");
}

TEST_F(MSPCAtomicFileTest, takesTheLongestNameThatTheFileSystemAllows) {
    const std::string name(255, 'n');
    EXPECT_EQ(write(folder / name, "x"), std::nullopt);
    EXPECT_EQ(folder.contents(name), "x");
}

TEST_F(MSPCAtomicFileTest, goesPastTheTemporaryFileOfAKilledRun) {
    const auto left = folder.addFile(".MSPDIImport-" + std::to_string(::getpid()) + "-1.tmp", "left");
    EXPECT_EQ(write(folder / "a", "x"), std::nullopt);
    EXPECT_EQ(folder.contents(std::filesystem::path(left).filename()), "left");
}

TEST_F(MSPCAtomicFileTest, obeysTheUsersFileMask) {
    const auto before = ::umask(0027);
    EXPECT_EQ(write(folder / "a", "x"), std::nullopt);
    ::umask(before);
    struct stat status {};
    ASSERT_EQ(::stat((folder / "a").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(MSPCAtomicFileTest, keepsTheOldFileWhenTheNewOneMayNotGrow) {
    folder.addFile("a", "old");
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{100'000, before.rlim_max};
    const auto signalBefore = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &small);
    const auto failure = write(folder / "a", std::string(200'000, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, signalBefore);
    EXPECT_EQ(failure, "File too large");
    EXPECT_EQ(folder.contents("a"), "old");
    EXPECT_EQ(folder.listing(), "a ");
}
