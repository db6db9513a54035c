#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "InMemoryFileSystem.h"
#include "MSPCFileSystem.h"
#include "ScopedTempFolder.h"

namespace {

// The pieces of at most that many bytes that a source gives up to its end.
std::vector<std::string> piecesOf(MSPCByteSource& source, std::size_t capacity) {
    std::vector<std::string> pieces;
    std::string buffer(capacity, '\0');
    for (auto count = source.read(buffer.data(), capacity); count && *count > 0;
         count = source.read(buffer.data(), capacity)) {
        pieces.push_back(buffer.substr(0, *count));
    }
    EXPECT_EQ(source.read(buffer.data(), capacity), 0U) << "the end stays the end";
    return pieces;
}

const std::vector<std::string> threePieces = {"abc", "def", "g"};

}  // namespace

TEST(MSPCByteStreams, giveTheBytesOfAFileOnTheDiskInPieces) {
    const ScopedTempFolder folder;
    const auto source = MSPCDiskFileSystem().openFile(folder.addFile("plan.xml", "abcdefg"));
    ASSERT_TRUE(source);
    EXPECT_EQ(source->expectedSize(), 7U);
    EXPECT_EQ(piecesOf(*source, 3), threePieces);
}

TEST(MSPCByteStreams, giveTheContentOfOtherFileSystemsInPieces) {
    InMemoryFileSystem files;
    files.addFile("/plan.xml", "abcdefg");
    const auto source = files.openFile("/plan.xml");
    ASSERT_TRUE(source);
    EXPECT_EQ(source->expectedSize(), 7U);
    EXPECT_EQ(piecesOf(*source, 3), threePieces);
    EXPECT_FALSE(files.openFile("/none.xml"));
}

TEST(MSPCByteStreams, ofAnEmptyFileEndAtOnce) {
    const ScopedTempFolder folder;
    const auto source = MSPCDiskFileSystem().openFile(folder.addFile("plan.xml"));
    ASSERT_TRUE(source);
    EXPECT_EQ(source->expectedSize(), 0U);
    EXPECT_TRUE(piecesOf(*source, 3).empty());
}

TEST(MSPCByteStreams, followLinks) {
    const ScopedTempFolder folder;
    folder.addFile("plan.xml", "abc");
    std::filesystem::create_symlink("plan.xml", folder / "link.xml");
    const auto source = MSPCDiskFileSystem().openFile(folder / "link.xml");
    ASSERT_TRUE(source);
    EXPECT_EQ(piecesOf(*source, 3), std::vector<std::string>{"abc"});
}

TEST(MSPCByteStreams, areNotMadeOfWhatCannotBeReadTwice) {
    const ScopedTempFolder folder;
    const MSPCDiskFileSystem files;
    // Were the pipe opened, this would wait for its writer for ever.
    ASSERT_EQ(::mkfifo((folder / "pipe.xml").c_str(), 0600), 0);
    EXPECT_FALSE(files.openFile(folder / "pipe.xml"));
    EXPECT_FALSE(files.openFile(folder.path()));
    EXPECT_FALSE(files.openFile(folder / "none.xml"));
    EXPECT_FALSE(files.openFile(folder / std::string("a\0.xml", 6)));
    EXPECT_FALSE(files.openFile("/dev/null"));
}
