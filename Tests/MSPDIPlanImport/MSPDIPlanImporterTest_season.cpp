// Daylight saving time: what an import in summer does to dates, and how it is done as in winter.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "MSPCStandardTimeClock.h"
#include "MSPDIPlanImporter.h"
#include "PlanTexts.h"
#include "ServicesInMemory.h"

namespace {

using testing::HasSubstr;

class SeasonTest : public testing::Test {
protected:
    SeasonTest() {
        const std::string dates = "<Start>2012-07-02T08:00:00</Start><Finish>2012-12-03T17:00:00</Finish>";
        world.machine.addFile("/Plan.xml", planWith("<Tasks>" + taskNamed("Paint", "1", dates) + "</Tasks>"));
        world.log.ignoreLines();
    }
    ~SeasonTest() override { world.log.ignoreLines(); }

    // Imports in Europe/Berlin at that time and gives the document.
    std::string importAt(MSPCInstant present, bool isAsInWinter) {
        world.clock.set(present);
        const auto zone = *MSPCTimeZone::named("Europe/Berlin");
        const MSPCStandardTimeClock winter(world.clock, zone);
        const MSPCServices services{
            world.clock,      zone,
            world.log,        world.settings,
            world.machine,    world.randomSource,
            MSPCNoProgress(), isAsInWinter ? static_cast<const MSPCClock&>(winter) : world.clock};
        MSPDIPlanImporter importer(services, {});
        result = importer.import("/Plan.xml");
        return world.machine.contents(result.document + "/Actual.xml");
    }
    [[nodiscard]] std::size_t summerDates() const {
        const auto& losses = result.account->losses;
        const auto found = std::ranges::find(losses, "summer-time", &MSPDILoss::kind);
        return found == losses.end() ? 0 : found->count;
    }

    const MSPCInstant july = utcInstant(2012, 7, 9, 8);
    const MSPCInstant january = utcInstant(2012, 1, 9, 8);
    ServicesInMemory world;
    MSPDIImportedPlan result;
};

}  // namespace

TEST_F(SeasonTest, anImportInSummerCountsItTwice) {
    const auto document = importAt(july, false);
    EXPECT_THAT(document, HasSubstr("<start-date>2012-07-02T08:00:00+03:00</start-date>"));
    EXPECT_THAT(document, HasSubstr("<end-date>2012-12-03T17:00:00+02:00</end-date>"));
    EXPECT_EQ(summerDates(), 3U) << "the start of the project is the third";
}

TEST_F(SeasonTest, anImportAsInWinterGivesTheOffsetsOfWinter) {
    const auto document = importAt(july, true);
    EXPECT_THAT(document, HasSubstr("<start-date>2012-07-02T08:00:00+02:00</start-date>"));
    EXPECT_THAT(document, HasSubstr("<end-date>2012-12-03T17:00:00+01:00</end-date>"));
    EXPECT_EQ(summerDates(), 0U);
}

TEST_F(SeasonTest, theDayOfTheImportStaysThatOfTheClock) {
    EXPECT_THAT(importAt(july, true), HasSubstr("<!--  2012-07-09 08:00:00 +0000: "));
}

TEST_F(SeasonTest, inWinterItChangesNothing) {
    const auto withoutIds = [](std::string text) { return text.substr(text.find("<start-date>")); };
    EXPECT_EQ(withoutIds(importAt(january, false)), withoutIds(importAt(january, true)));
    EXPECT_EQ(summerDates(), 0U);
}
