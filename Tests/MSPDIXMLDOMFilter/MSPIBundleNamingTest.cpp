#include "MSPIBundleNaming.h"

#include <gtest/gtest.h>

#include "InMemoryFileSystem.h"

TEST(MSPIBundleNaming, scenariosAreNamedAfterTheirBaseline) {
    EXPECT_EQ(MSPIScenarioName(std::nullopt), "Actual");
    EXPECT_EQ(MSPIScenarioName(0), "Baseline");
    EXPECT_EQ(MSPIScenarioName(1), "Baseline1");
    EXPECT_EQ(MSPIScenarioName(10), "Baseline10");
}

TEST(MSPIBundleNaming, aScenarioIsFiledUnderItsName) {
    EXPECT_EQ(MSPIScenarioFileName("Actual"), MSPIActualScenarioFileName);
    EXPECT_EQ(MSPIScenarioFileName("Baseline3"), "Baseline3.xml");
}

TEST(MSPIBundleNaming, numbersStandBeforeTheLastExtension) {
    const struct {
        const char* wanted;
        const char* second;
        const char* third;
    } table[] = {
        {"/out/Plan.kdzx", "/out/Plan-1.kdzx", "/out/Plan-2.kdzx"},
        {"/out/Plan.xml.kdzx", "/out/Plan.xml-1.kdzx", "/out/Plan.xml-2.kdzx"},
        {"/out.kdzx/Plan-1.kdzx", "/out.kdzx/Plan-1-1.kdzx", "/out.kdzx/Plan-1-2.kdzx"},
    };
    for (const auto& row : table) {
        MSPIBundleNaming naming(row.wanted);
        EXPECT_EQ(naming.path(), row.wanted);
        naming.advance();
        EXPECT_EQ(naming.path(), row.second);
        naming.advance();
        EXPECT_EQ(naming.path(), row.third);
    }
}

TEST(MSPIBundleNaming, aFreeNameIsTakenAsItIs) {
    InMemoryFileSystem fileSystem;
    fileSystem.addFolder("/out");
    MSPIBundleNaming naming("/out/Plan.kdzx");
    naming.advanceToFreePath(fileSystem);
    EXPECT_EQ(naming.path(), "/out/Plan.kdzx");
}

TEST(MSPIBundleNaming, foldersFilesAndDanglingLinksAllTakeAName) {
    InMemoryFileSystem fileSystem;
    fileSystem.addFolder("/out/Plan.kdzx");
    fileSystem.addFile("/out/Plan-1.kdzx");
    fileSystem.addLink("/out/Plan-2.kdzx", "/nowhere");
    MSPIBundleNaming naming("/out/Plan.kdzx");
    naming.advanceToFreePath(fileSystem);
    EXPECT_EQ(naming.path(), "/out/Plan-3.kdzx");
}

TEST(MSPIBundleNaming, numbersHaveNoBound) {
    InMemoryFileSystem fileSystem;
    fileSystem.addFolder("/out/Plan.kdzx");
    for (int number = 1; number <= 1234; ++number) {
        fileSystem.addFolder("/out/Plan-" + std::to_string(number) + ".kdzx");
    }
    MSPIBundleNaming naming("/out/Plan.kdzx");
    naming.advanceToFreePath(fileSystem);
    EXPECT_EQ(naming.path(), "/out/Plan-1235.kdzx");
}
