#include "MSPIMappingContext.h"

#include <gtest/gtest.h>

#include "MappingFixture.h"

namespace {

// The context of a plan that holds nothing.
struct BareContext : MappingServices {
    MSPIPlan plan{MSPCXMLLoaded()};
    MSPIMappingContext context{plan, services};
};

TEST(MSPIMappingContext, BeginsAsTheActualScenarioOfAnEmptyProject) {
    BareContext bare;
    const auto& context = bare.context;
    EXPECT_FALSE(context.mspProject());
    EXPECT_FALSE(context.kdzxTemplateRoot());
    EXPECT_EQ(context.mspSaveVersion(), 9);
    EXPECT_EQ(context.baselineNumber(), -1);
    EXPECT_FALSE(context.isBaselineScenario());
    EXPECT_EQ(context.mspStandardCalendarUID(), MSPCCalendarUID{-1});
    EXPECT_FALSE(context.mspScheduleFromStart());
    EXPECT_EQ(context.scheduleCalendar(), nullptr);
    EXPECT_EQ(context.importedProjectName(), "");
}

TEST(MSPIMappingContext, AppliesTheRulesOf2007FromSaveVersion12On) {
    BareContext bare;
    auto& context = bare.context;
    for (const auto& [version, is2007] : {std::pair(9, false), {11, false}, {12, true}, {14, true}, {-1, false}}) {
        context.setMspSaveVersion(version);
        EXPECT_EQ(context.isSavedBy2007OrLater(), is2007) << version;
    }
}

TEST(MSPIMappingContext, TakesNumberZeroForABaseline) {
    BareContext bare;
    auto& context = bare.context;
    for (const auto& [number, isBaseline] : {std::pair(-1, false), {0, true}, {10, true}}) {
        context.setBaselineNumber(number);
        EXPECT_EQ(context.isBaselineScenario(), isBaseline) << number;
    }
}

TEST(MSPIMappingContext, NumbersProvisionalPieceIdsFromOne) {
    BareContext bare;
    auto& context = bare.context;
    EXPECT_EQ(context.getTempSplitTaskID(), "split-1");
    EXPECT_EQ(context.getTempSplitTaskID(), "split-2");
    EXPECT_EQ(BareContext().context.getTempSplitTaskID(), "split-1");
}

}  // namespace
