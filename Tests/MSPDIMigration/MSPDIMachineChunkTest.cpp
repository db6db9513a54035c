#include "MSPDIMachineChunk.h"

#include <gtest/gtest.h>

namespace {

MSPDIMachineChunk chunk() {
    MSPDIMachineChunk result;
    result.version = "mspdi 1.2";
    result.zone = "0 3600 ";
    result.each.templateFolder = "/a template.kdzx";
    result.each.mending = MSPDIMending::All;
    result.each.tellsLosses = false;
    result.isAsInWinter = true;
    result.bounds = {3, 600, 64'000'000};
    result.outputFolder = "/out {}";
    result.plans = {{7, {"/a\tb\nc.xml", "/out {}/sub", "/logs/c.log"}},
                    {0, {"/\xFF\\.xml", "/out {}"}},
                    {1'000'000, {"/x", "/out {}"}}};
    return result;
}

}  // namespace

TEST(MachineChunk, comesBackAsItWas) {
    const auto back = MSPDIChunkFrom(MSPDITextOf(chunk()));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->version, "mspdi 1.2");
    EXPECT_EQ(back->zone, "0 3600 ");
    EXPECT_EQ(back->each.templateFolder, "/a template.kdzx");
    EXPECT_EQ(back->each.mending, MSPDIMending::All);
    EXPECT_FALSE(back->each.tellsLosses);
    EXPECT_TRUE(back->isAsInWinter);
    EXPECT_EQ(back->bounds.processes, 3U);
    EXPECT_EQ(back->bounds.seconds, 600U);
    EXPECT_EQ(back->bounds.bytes, 64'000'000U);
    ASSERT_EQ(back->plans.size(), 3U);
    EXPECT_EQ(back->plans[0].number, 7U);
    EXPECT_EQ(back->plans[0].plan.path, "/a\tb\nc.xml");
    EXPECT_EQ(back->plans[0].plan.folder, "/out {}/sub");
    EXPECT_EQ(back->plans[0].plan.log, "/logs/c.log");
    EXPECT_EQ(back->plans[1].plan.path, "/\xFF\\.xml");
    EXPECT_EQ(back->plans[1].plan.log, "");
    EXPECT_EQ(back->outputFolder, "/out {}");
    EXPECT_EQ(back->plans[2].number, 1'000'000U);
}

TEST(MachineChunk, isWithoutATemplateWhereNobodyNamedOne) {
    auto other = chunk();
    other.each.templateFolder.reset();
    EXPECT_EQ(MSPDIChunkFrom(MSPDITextOf(other))->each.templateFolder, std::nullopt);
}

TEST(MachineChunk, isNoneWhereverItIsCutOff) {
    const auto text = MSPDITextOf(chunk());
    for (std::size_t size = 0; size < text.size(); ++size) {
        EXPECT_FALSE(MSPDIChunkFrom(text.substr(0, size))) << size;
    }
    EXPECT_FALSE(MSPDIChunkFrom(text + "x"));
    EXPECT_FALSE(MSPDIChunkFrom("a list of plans\n"));
}

TEST(MachineChunk, tellsItsVersionWhateverComesBehindIt) {
    EXPECT_EQ(MSPDIVersionOfChunk(MSPDITextOf(chunk())), "mspdi 1.2");
    EXPECT_EQ(MSPDIVersionOfChunk(std::string("mspdi 9\0?", 9)), "mspdi 9");
    EXPECT_EQ(MSPDIVersionOfChunk("mspdi 9"), "");
}

TEST(MachineChunk, comparesTimeZonesByTheirOffsets) {
    const auto berlin = MSPDIOffsetsOf(*MSPCTimeZone::named("Europe/Berlin"));
    EXPECT_NE(berlin.find("3600 7200 "), std::string::npos);
    EXPECT_EQ(MSPDIOffsetsOf(*MSPCTimeZone::named("Europe/Vienna")), berlin);
    EXPECT_NE(MSPDIOffsetsOf(MSPCTimeZone::fixed(3600)), berlin);
    EXPECT_NE(MSPDIOffsetsOf(*MSPCTimeZone::named("Europe/London")), berlin);
}

TEST(MigrationBounds, areThoseOfTheMachineWhereNobodyNamesThem) {
    const MSPDIMigrationBounds none;
    EXPECT_EQ(none.processesHere(), MSPCWorkers::processors());
    EXPECT_EQ(none.boundsHere().time.count(), 0);
    EXPECT_EQ(none.boundsHere().memory, MSPCWorkers::memoryOfMachine() / 5 * 4 / MSPCWorkers::processors());
    const MSPDIMigrationBounds some{3, 7, 100};
    EXPECT_EQ(some.processesHere(), 3U);
    EXPECT_EQ(some.boundsHere().time, std::chrono::seconds(7));
    EXPECT_EQ(some.boundsHere().memory, 100U);
}
