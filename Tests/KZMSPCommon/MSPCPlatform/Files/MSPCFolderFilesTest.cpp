#include "MSPCFolderFiles.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "ScopedTempFolder.h"

namespace {

class FolderFilesTest : public testing::Test {
protected:
    FolderFilesTest() {
        folder.addFile("Doc/a.xml", "<a/>");
        folder.addFolder("Doc/sub");
        folder.addFile("Doc/sub/b.xml", "<b/>");
        folder.addFile("secret", "secret");
    }
    // What is read, or why not.
    std::string read(const std::string& name, const std::string& document = "Doc") const {
        std::string failure;
        const auto content = MSPCFolderFiles(folder / document).read(name, failure);
        return content ? "read: " + *content : failure;
    }
    std::string beginning(const std::string& name, std::size_t size) const {
        return MSPCFolderFiles(folder / "Doc").beginning(name, size);
    }

    ScopedTempFolder folder;
};

}  // namespace

TEST_F(FolderFilesTest, areReadByTheirNames) {
    EXPECT_EQ(read("a.xml"), "read: <a/>");
    EXPECT_EQ(beginning("a.xml", 2), "<a");
    EXPECT_EQ(beginning("a.xml", 100), "<a/>");
    EXPECT_EQ(read("none"), "No such file or directory");
    EXPECT_EQ(beginning("none", 100), "");
    EXPECT_EQ(read("a.xml", "None"), "No such file or directory");
    EXPECT_EQ(read("a.xml", "secret"), "Not a directory");
}

TEST_F(FolderFilesTest, areNoLinksWhereverThoseLead) {
    ASSERT_EQ(::symlink("../secret", (folder / "Doc/out").c_str()), 0);
    ASSERT_EQ(::symlink("a.xml", (folder / "Doc/in").c_str()), 0);
    ASSERT_EQ(::symlink("nowhere", (folder / "Doc/off").c_str()), 0);
    for (const auto* const name : {"out", "in", "off"}) {
        EXPECT_EQ(read(name), "a link, which is not followed") << name;
        EXPECT_EQ(beginning(name, 100), "") << name;
    }
}

TEST_F(FolderFilesTest, areNothingOutsideOfIt) {
    for (const auto& name : {std::string("../secret"), folder / "secret", std::string("sub/b.xml"),
                             std::string("a.xml\0", 6), std::string()}) {
        EXPECT_EQ(read(name), "No such file or directory") << name;
        EXPECT_EQ(beginning(name, 100), "") << name;
    }
    for (const auto* const name : {"..", ".", "sub"}) {
        EXPECT_EQ(read(name), "Is a directory") << name;
        EXPECT_EQ(beginning(name, 100), "") << name;
    }
}

TEST_F(FolderFilesTest, areNoPipesNorDevices) {
    ASSERT_EQ(::mkfifo((folder / "Doc/pipe").c_str(), 0600), 0);
    EXPECT_EQ(read("pipe"), "no regular file");
    EXPECT_EQ(beginning("pipe", 100), "");
    EXPECT_EQ(MSPCFolderFiles("/dev").beginning("zero", 100), "");
}

TEST_F(FolderFilesTest, areThoseOfTheFolderThatWasOpened) {
    ASSERT_EQ(::symlink("Doc", (folder / "link").c_str()), 0);
    const MSPCFolderFiles files(folder / "link");
    std::filesystem::rename(folder / "Doc", folder / "Moved");
    folder.addFile("Doc/a.xml", "another");
    std::string failure;
    EXPECT_EQ(files.read("a.xml", failure), "<a/>");
}
