#include "MSPIBundleNaming.h"

#include <gtest/gtest.h>

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

TEST(MSPIBundleNaming, numbersAreCountedAndHaveNoBound) {
    MSPIBundleNaming naming("/out/Plan.kdzx");
    EXPECT_EQ(naming.number(), 0U);
    for (int number = 1; number <= 1234; ++number) {
        naming.advance();
    }
    EXPECT_EQ(naming.number(), 1234U);
    EXPECT_EQ(naming.path(), "/out/Plan-1234.kdzx");
}

TEST(MSPIBundleNaming, advancingNeverGoesBackNorStays) {
    MSPIBundleNaming naming("/out/Plan.kdzx");
    naming.advanceTo(7);
    EXPECT_EQ(naming.path(), "/out/Plan-7.kdzx");
    naming.advanceTo(7);
    EXPECT_EQ(naming.path(), "/out/Plan-8.kdzx");
    naming.advanceTo(3);
    EXPECT_EQ(naming.path(), "/out/Plan-9.kdzx");
}
