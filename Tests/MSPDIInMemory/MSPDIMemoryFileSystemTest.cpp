#include "MSPDIMemoryFileSystem.h"

#include <gtest/gtest.h>

#include <string>

#include "InMemoryFileSystem.h"

namespace {

constexpr const char* folder = "/(in memory)/Plan.kdzx";

class MemoryFileSystemTest : public testing::Test {
protected:
    MemoryFileSystemTest() { machine.addFile("/plans/Plan.xml", "<Project/>"); }

    InMemoryFileSystem machine;  // stands for the machine's own
    MSPDIMemoryFileSystem files{machine, MSPDIMemoryKeeping::Content};
};

}  // namespace

TEST_F(MemoryFileSystemTest, readsWhatTheMachineHas) {
    EXPECT_EQ(files.readFile("/plans/Plan.xml"), "<Project/>");
    EXPECT_TRUE(files.exists("/plans/Plan.xml"));
    EXPECT_TRUE(files.isDirectory("/plans"));
    EXPECT_NE(files.openFile("/plans/Plan.xml"), nullptr);
    EXPECT_EQ(files.standardizedPath("/plans/../plans/Plan.xml"), "/plans/Plan.xml");
}

TEST_F(MemoryFileSystemTest, writesNothingToTheMachine) {
    const auto write = [](MSPCByteWriter& writer) { writer.write("new"); };
    EXPECT_EQ(files.writeAtomically("/plans/Plan.xml", write), "Read-only file system");
    EXPECT_EQ(files.createFolder("/plans/more"), "Read-only file system");
    EXPECT_EQ(files.newFolder("/copy", false)->copyContent("/plans"), "Read-only file system");
    EXPECT_EQ(machine.contents("/plans/Plan.xml"), "<Project/>");
    EXPECT_FALSE(machine.exists("/plans/more"));
    EXPECT_FALSE(machine.exists("/copy"));
}

TEST_F(MemoryFileSystemTest, keepsWhatIsWrittenInMemory) {
    EXPECT_EQ(files.writeAtomically(std::string(folder) + "/Actual.xml", [](auto& writer) { writer.write("text"); }),
              std::nullopt);
    EXPECT_EQ(files.readFile(std::string(folder) + "/Actual.xml"), "text");
    EXPECT_TRUE(files.isDirectory(folder));
    EXPECT_FALSE(machine.exists(folder));
    EXPECT_EQ(files.takeFilesBelow(folder), (std::map<std::string, std::string>{{"Actual.xml", "text"}}));
    EXPECT_FALSE(files.exists(folder));
}

TEST_F(MemoryFileSystemTest, makesNoContentWhereNamesAreEnough) {
    MSPDIMemoryFileSystem names(machine, MSPDIMemoryKeeping::Names);
    bool isAsked = false;
    EXPECT_EQ(names.writeAtomically(std::string(folder) + "/Actual.xml", [&](auto&) { isAsked = true; }), std::nullopt);
    EXPECT_FALSE(isAsked);
    EXPECT_TRUE(names.exists(std::string(folder) + "/Actual.xml"));
}

TEST_F(MemoryFileSystemTest, aCopyAppearsOnceUnderItsName) {
    files.addFile("/(in memory)/Empty.kdzx/Actual.xml", "a");
    files.addFile("/(in memory)/Empty.kdzx/__TOC.xml", "t");
    const auto copy = files.newFolder(folder, false);
    EXPECT_EQ(copy->copyContent("/(in memory)/Empty.kdzx"), std::nullopt);
    const auto toc = std::string(folder) + "/__TOC.xml";
    EXPECT_EQ(copy->writeAtomically(toc, [](auto& writer) { writer.write("new"); }), std::nullopt);
    EXPECT_EQ(copy->readFile(toc), "new");
    EXPECT_FALSE(files.exists(folder));
    bool isTaken = true;
    EXPECT_EQ(copy->appear(isTaken), std::nullopt);
    EXPECT_FALSE(isTaken);
    EXPECT_EQ(files.newFolder(folder, false), nullptr);
    EXPECT_EQ(files.readFile(toc), "new");
    EXPECT_EQ(files.readFile("/(in memory)/Empty.kdzx/__TOC.xml"), "t");
}

TEST_F(MemoryFileSystemTest, aCopyThatFindsItsNameTakenMayGetAnother) {
    files.addFile("/(in memory)/Empty.kdzx/Actual.xml", "a");
    const auto copy = files.newFolder(folder, false);
    EXPECT_EQ(copy->copyContent("/(in memory)/Empty.kdzx"), std::nullopt);
    files.addFile(std::string(folder) + "/Actual.xml", "other");
    bool isTaken = false;
    EXPECT_EQ(copy->appear(isTaken), "File exists");
    EXPECT_TRUE(isTaken);
    copy->setPath("/(in memory)/Plan-1.kdzx");
    EXPECT_EQ(copy->appear(isTaken), std::nullopt);
    EXPECT_EQ(files.readFile("/(in memory)/Plan-1.kdzx/Actual.xml"), "a");
    EXPECT_EQ(files.readFile(std::string(folder) + "/Actual.xml"), "other");
    EXPECT_EQ(files.readFile("/(in memory)/Empty.kdzx/Actual.xml"), "a");
}

TEST_F(MemoryFileSystemTest, aCopyReplacesWhatIsThereWhereAskedTo) {
    files.addFile("/(in memory)/Empty.kdzx/Actual.xml", "a");
    files.addFile(std::string(folder) + "/old.xml", "old");
    const auto copy = files.newFolder(folder, true);
    EXPECT_EQ(copy->copyContent("/(in memory)/Empty.kdzx"), std::nullopt);
    bool isTaken = true;
    EXPECT_EQ(copy->appear(isTaken), std::nullopt);
    EXPECT_EQ(files.takeFilesBelow(folder), (std::map<std::string, std::string>{{"Actual.xml", "a"}}));
}

TEST_F(MemoryFileSystemTest, namesWhatAFolderHolds) {
    EXPECT_EQ(files.namesIn("/plans"), std::vector<std::string>{"Plan.xml"});
    files.addFile(std::string(folder) + "/sub/b.xml", "");
    files.addFile(std::string(folder) + "/sub/c.xml", "");
    files.addFile(std::string(folder) + "/a.xml", "");
    EXPECT_EQ(files.namesIn(folder), (std::vector<std::string>{"a.xml", "sub"}));
    std::string failure;
    EXPECT_EQ(files.namesIn(std::string(folder) + "/none", &failure), std::nullopt);
    EXPECT_EQ(failure, "No such file or directory");
}
