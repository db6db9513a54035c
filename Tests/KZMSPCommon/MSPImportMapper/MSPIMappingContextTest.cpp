#include "MSPIMappingContext.h"

#include <gtest/gtest.h>

#include "MappingFixture.h"

namespace {

TEST(MSPIMappingContext, BeginsAsTheActualScenarioOfAnEmptyProject) {
    MappingServices services;
    const MSPIMappingContext context(services.services);
    EXPECT_FALSE(context.mspProject());
    EXPECT_FALSE(context.kdzxTemplateRoot());
    EXPECT_EQ(context.mspSaveVersion(), 9);
    EXPECT_EQ(context.baselineNumber(), -1);
    EXPECT_FALSE(context.isBaselineScenario());
    EXPECT_EQ(context.mspStandardCalendarUID(), -1);
    EXPECT_FALSE(context.mspScheduleFromStart());
    EXPECT_EQ(context.scheduleCalendar(), nullptr);
    EXPECT_EQ(context.importedProjectName(), "");
}

TEST(MSPIMappingContext, AppliesTheRulesOf2007FromSaveVersion12On) {
    MappingServices services;
    MSPIMappingContext context(services.services);
    for (const auto& [version, is2007] : {std::pair(9, false), {11, false}, {12, true}, {14, true}, {-1, false}}) {
        context.setMspSaveVersion(version);
        EXPECT_EQ(context.isSavedBy2007OrLater(), is2007) << version;
    }
}

TEST(MSPIMappingContext, TakesNumberZeroForABaseline) {
    MappingServices services;
    MSPIMappingContext context(services.services);
    for (const auto& [number, isBaseline] : {std::pair(-1, false), {0, true}, {10, true}}) {
        context.setBaselineNumber(number);
        EXPECT_EQ(context.isBaselineScenario(), isBaseline) << number;
    }
}

TEST(MSPIMappingContext, NumbersProvisionalPieceIdsFromOne) {
    MappingServices services;
    MSPIMappingContext context(services.services);
    EXPECT_EQ(context.getTempSplitTaskID(), "split-1");
    EXPECT_EQ(context.getTempSplitTaskID(), "split-2");
    EXPECT_EQ(MSPIMappingContext(services.services).getTempSplitTaskID(), "split-1");
}

TEST(MSPIMappingContext, LooksUpTheProjectItWasGivenLast) {
    MappingFixture fixture("<Tasks><Task><UID>1</UID></Task></Tasks>");
    EXPECT_TRUE(fixture.context.index().tasksByUID().singleNodeWithKey(1));
    const auto other = documentFromXML("<Project><Tasks><Task><UID>2</UID></Task></Tasks></Project>");
    fixture.context.setMspProject(other.root());
    EXPECT_FALSE(fixture.context.index().tasksByUID().singleNodeWithKey(1));
    EXPECT_TRUE(fixture.context.index().tasksByUID().singleNodeWithKey(2));
}

}  // namespace
