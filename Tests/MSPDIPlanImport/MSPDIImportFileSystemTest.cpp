#include "MSPDIImportFileSystem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InMemoryFileSystem.h"
#include "RecordingProgress.h"

namespace {

using testing::ElementsAre;

class ImportFileSystemTest : public testing::Test {
protected:
    ImportFileSystemTest() {
        machine.addFile("/in/Plan.xml", "<Project/>");
        machine.addFolder("/out");
        memory.addFile("/(in memory)/Empty.kdzx/Actual.xml", "<scenario/>");
        memory.addFile("/(in memory)/Mended.xml", "<mended/>");
    }

    InMemoryFileSystem machine;
    RecordingProgress progress;
    MSPDIMemoryFileSystem memory{machine, MSPDIMemoryKeeping::Content};
    MSPDIImportFileSystem files{machine, memory, progress};
};

}  // namespace

TEST_F(ImportFileSystemTest, readsTheMachinesFilesAndThoseInMemory) {
    EXPECT_EQ(files.readFile("/in/Plan.xml"), "<Project/>");
    EXPECT_EQ(files.readFile("/(in memory)/Mended.xml"), "<mended/>");
    EXPECT_TRUE(files.isDirectory("/(in memory)/Empty.kdzx"));
    EXPECT_TRUE(files.leadsToAnything("/in"));
    EXPECT_EQ(files.openFile("/in/None.xml"), nullptr);
    EXPECT_EQ(files.absolutePath("Plan.xml"), "/home/me/Plan.xml");
    EXPECT_FALSE(machine.exists("/(in memory)"));
}

TEST_F(ImportFileSystemTest, tellsHowFarAFileIsRead) {
    const auto source = files.openFile("/in/Plan.xml");
    char buffer[6];
    EXPECT_EQ(source->read(buffer, sizeof buffer), 6U);
    files.setDoing("Looking for losses");
    EXPECT_EQ(source->read(buffer, sizeof buffer), 4U);
    EXPECT_THAT(progress.told(), ElementsAre("Reading 6 of 10", "Reading 10 of 10"));
    EXPECT_EQ(files.openFile("/(in memory)/Mended.xml")->read(buffer, 1), 1U);
    EXPECT_EQ(progress.told().back(), "Looking for losses 1 of 9");
}

TEST_F(ImportFileSystemTest, fillsANewFolderOfTheMachineFromMemory) {
    const auto folder = files.newFolder("/out/Plan.kdzx", false);
    EXPECT_EQ(folder->copyContent("/(in memory)/Empty.kdzx"), std::nullopt);
    EXPECT_FALSE(files.hasReadTemplate());
    EXPECT_EQ(folder->readFile("/out/Plan.kdzx/Actual.xml"), "<scenario/>");
    EXPECT_TRUE(files.hasReadTemplate());
    EXPECT_EQ(files.newDocument(), "");
    bool isTaken = false;
    EXPECT_EQ(folder->appear(isTaken), std::nullopt);
    EXPECT_EQ(files.newDocument(), "/out/Plan.kdzx");
    EXPECT_EQ(machine.contents("/out/Plan.kdzx/Actual.xml"), "<scenario/>");
}

TEST_F(ImportFileSystemTest, knowsTheNameThatADocumentTookInTheEnd) {
    const auto folder = files.newFolder("/out/Plan.kdzx", false);
    EXPECT_EQ(folder->copyContent("/(in memory)/Empty.kdzx"), std::nullopt);
    machine.addFolder("/out/Plan.kdzx");
    bool isTaken = false;
    EXPECT_NE(folder->appear(isTaken), std::nullopt);
    EXPECT_TRUE(isTaken);
    EXPECT_EQ(files.newDocument(), "");
    folder->setPath("/out/Plan-1.kdzx");
    EXPECT_EQ(folder->appear(isTaken), std::nullopt);
    EXPECT_EQ(files.newDocument(), "/out/Plan-1.kdzx");
}

TEST_F(ImportFileSystemTest, tellsWhyAFolderCannotBeFilled) {
    const auto folder = files.newFolder("/out/Plan.kdzx", false);
    EXPECT_EQ(folder->copyContent("/(in memory)/None.kdzx"), "No such file or directory");
    machine.failAlways("writeAtomically", "No space left on device");
    EXPECT_EQ(folder->copyContent("/(in memory)/Empty.kdzx"), "'/out/Plan.kdzx/Actual.xml': No space left on device");
    EXPECT_EQ(files.newFolder("/in", false), nullptr) << "the name is taken";
}
