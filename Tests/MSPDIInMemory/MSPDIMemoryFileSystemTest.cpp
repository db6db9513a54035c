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
    const auto write = [](MSPCByteSink& sink) { sink.write("new"); };
    EXPECT_EQ(files.writeAtomically("/plans/Plan.xml", write), "Read-only file system");
    EXPECT_EQ(files.remove("/plans/Plan.xml"), "Read-only file system");
    EXPECT_EQ(files.createFolder("/plans/more"), "Read-only file system");
    EXPECT_EQ(files.copyFolder("/plans", "/copy"), "Read-only file system");
    EXPECT_EQ(machine.contents("/plans/Plan.xml"), "<Project/>");
    EXPECT_FALSE(machine.exists("/plans/more"));
    EXPECT_FALSE(machine.exists("/copy"));
}

TEST_F(MemoryFileSystemTest, keepsWhatIsWrittenInMemory) {
    EXPECT_EQ(files.writeAtomically(std::string(folder) + "/Actual.xml", [](auto& sink) { sink.write("text"); }),
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

TEST_F(MemoryFileSystemTest, copiesAFolderOnceUnderAName) {
    files.addFile("/(in memory)/Empty.kdzx/Actual.xml", "a");
    files.addFile("/(in memory)/Empty.kdzx/__TOC.xml", "t");
    bool existed = true;
    EXPECT_EQ(files.copyFolder("/(in memory)/Empty.kdzx", folder, &existed), std::nullopt);
    EXPECT_FALSE(existed);
    EXPECT_EQ(files.copyFolder("/(in memory)/Empty.kdzx", folder, &existed), "File exists");
    EXPECT_TRUE(existed);
    EXPECT_EQ(files.readFile(std::string(folder) + "/__TOC.xml"), "t");
    EXPECT_EQ(files.remove(folder), std::nullopt);
    EXPECT_EQ(files.remove(folder), "No such file or directory");
    EXPECT_TRUE(files.exists("/(in memory)/Empty.kdzx/Actual.xml"));
}
