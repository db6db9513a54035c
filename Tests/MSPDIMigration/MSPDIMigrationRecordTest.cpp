#include "MSPDIMigrationRecord.h"

#include <gtest/gtest.h>

namespace {

MSPDIMigrationRecord fullRecord() {
    MSPDIMigrationRecord record;
    record.plan = "/in/a\tb\nc\\n\xFF.xml";
    record.stamp = {123, -5, 77};
    record.verdict = "imported";
    record.reason = "";
    record.mending = {{"root-task", 1}, {"outline", 12}};
    record.document = "/out/a b/{=a=}.kdzx";
    record.tasks = 30;
    record.resources = 4;
    record.scenarios = 2;
    record.customFields = 1;
    record.warnings = {"the first", "the\tsecond \\ with all"};
    record.losses = {{"link-lag", 18}};
    record.milliseconds = 1234;
    record.digest = "47DEQpj8=";
    record.folder = "/out/a b";
    record.log = "/logs/a.log";
    return record;
}

}  // namespace

TEST(MSPDIMigrationRecord, isOneLineAndComesBackAsItWas) {
    const auto line = MSPDILineOf(fullRecord(), "/out");
    EXPECT_EQ(line,
              "/in/a\\tb\\nc\\\\n\xFF.xml\t123\t-5\timported\t\t1 root-task\\n12 outline\ta b/{=a=}.kdzx\t30\t4\t2\t1\t"
              "the first\\nthe\\tsecond \\\\ with all\t18 link-lag\t1234\t77\t47DEQpj8=\ta b\t/logs/a.log\t.");
    const auto record = MSPDIRecordFrom(line, "/out");
    ASSERT_TRUE(record);
    EXPECT_EQ(record->plan, fullRecord().plan);
    EXPECT_EQ(record->stamp, fullRecord().stamp);
    EXPECT_TRUE(record->isImported());
    EXPECT_EQ(record->reason, "");
    EXPECT_EQ(record->mending, fullRecord().mending);
    EXPECT_EQ(record->document, fullRecord().document);
    EXPECT_EQ(record->tasks, 30U);
    EXPECT_EQ(record->resources, 4U);
    EXPECT_EQ(record->scenarios, 2U);
    EXPECT_EQ(record->customFields, 1U);
    EXPECT_EQ(record->warnings, fullRecord().warnings);
    EXPECT_EQ(record->losses, fullRecord().losses);
    EXPECT_EQ(record->milliseconds, 1234U);
    EXPECT_EQ(record->digest, "47DEQpj8=");
    EXPECT_EQ(record->folder, "/out/a b");
    EXPECT_EQ(record->log, "/logs/a.log");
}

TEST(MSPDIMigrationRecord, ofARefusedPlanHasEmptyLists) {
    MSPDIMigrationRecord refused;
    refused.plan = "/in/P.xml";
    refused.verdict = "refused";
    refused.reason = "a task is of an unknown type";
    const auto record = MSPDIRecordFrom(MSPDILineOf(refused, "/out"), "/out");
    ASSERT_TRUE(record);
    EXPECT_FALSE(record->isImported());
    EXPECT_EQ(record->reason, "a task is of an unknown type");
    EXPECT_TRUE(record->mending.empty());
    EXPECT_TRUE(record->warnings.empty());
    EXPECT_TRUE(record->losses.empty());
    EXPECT_EQ(record->document, "");
}

TEST(MSPDIMigrationRecord, isNoneWhereTheLineWasCutOff) {
    const auto line = MSPDILineOf(fullRecord(), "/out");
    for (std::size_t size = 0; size < line.size(); ++size) {
        EXPECT_FALSE(MSPDIRecordFrom(line.substr(0, size), "/out")) << size;
    }
    EXPECT_FALSE(MSPDIRecordFrom(line + "\t.", "/out"));
    EXPECT_FALSE(MSPDIRecordFrom("/in/P.xml\tx\t0\timported\t\t\t\t0\t0\t0\t0\t\t\t0\t.", "/out")) << "no number";
    EXPECT_FALSE(MSPDIRecordFrom("/in/P.xml\t1\t0\timported\t\tstep\t\t0\t0\t0\t0\t\t\t0\t.", "/out")) << "no count";
}

TEST(MSPDIMigrationRecord, movesWithItsOutputFolder) {
    auto record = fullRecord();
    record.log = "/out/logs/a.log";
    auto moved = MSPDIRecordFrom(MSPDILineOf(record, "/out"), "/mnt/share");
    ASSERT_TRUE(moved);
    EXPECT_EQ(moved->document, "/mnt/share/a b/{=a=}.kdzx");
    EXPECT_EQ(moved->folder, "/mnt/share/a b");
    EXPECT_EQ(moved->log, "/mnt/share/logs/a.log");
    EXPECT_EQ(moved->plan, record.plan);
    record.folder = "/out";
    record.document = "/outside/P.kdzx";
    moved = MSPDIRecordFrom(MSPDILineOf(record, "/out"), "/mnt/share");
    ASSERT_TRUE(moved);
    EXPECT_EQ(moved->folder, "/mnt/share");
    EXPECT_EQ(moved->document, "/outside/P.kdzx") << "it did not lie below the folder";
}

TEST(MSPDIMigrationRecord, ofTheFirstFormIsUnderstood) {
    const auto record = MSPDIRecordFrom(
        "/in/P.xml\t123\t-5\timported\t\t\t/out/sub/P.kdzx\t30\t4\t2\t1\t\t18 link-lag\t1234\t.", "/out");
    ASSERT_TRUE(record);
    EXPECT_EQ(record->stamp, (MSPCFileStamp{123, -5, 0}));
    EXPECT_EQ(record->document, "/out/sub/P.kdzx");
    EXPECT_EQ(record->folder, "/out/sub");
    EXPECT_EQ(record->milliseconds, 1234U);
    EXPECT_EQ(record->digest, "");
    EXPECT_EQ(record->log, "");
}
