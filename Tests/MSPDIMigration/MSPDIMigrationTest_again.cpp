// What a later run takes up, and what it leaves alone.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>

#include "MSPDIMigration.h"
#include "MSPDIMigrationJob.h"
#include "MSPDIPlanLogs.h"
#include "MigrationFixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

namespace fs = std::filesystem;

void setTime(const std::string& path, time_t seconds) {
    const timespec times[2] = {{seconds, 0}, {seconds, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

}  // namespace

TEST_F(MigrationTest, knowsItsDocumentsInAFolderThatWasMoved) {
    addPlan("A.xml", planNamed("Paint"));
    addPlan("B.xml", refusedPlan);
    migrate();
    fs::rename(folder / "out", folder / "moved");
    options.outputFolder = folder / "moved";
    EXPECT_THAT(migrate(), ElementsAre("A.xml imported A.kdzx", "B.xml refused "));
    EXPECT_EQ(imported, 0U);
    EXPECT_EQ(documents[0], folder / "moved/A.kdzx");
    EXPECT_EQ(folder.listing("moved"), ".mspdi-migrate A.kdzx ");
    EXPECT_EQ(missing, 1U);
}

TEST_F(MigrationTest, understandsTheJournalOfTheFirstForm) {
    addPlan("A.xml", planNamed("Paint"));
    migrate();
    const auto stamp = MSPCStampOf(folder / "in/A.xml");
    ASSERT_TRUE(stamp);
    folder.addFile("out/.mspdi-migrate/journal", (folder / "in/A.xml") + "\t" + std::to_string(stamp->size) + "\t" +
                                                     std::to_string(stamp->nanoseconds) + "\timported\t\t\t" +
                                                     (folder / "out/A.kdzx") + "\t1\t0\t1\t0\t\t\t5\t.\n");
    EXPECT_THAT(migrate(), ElementsAre("A.xml imported A.kdzx"));
    EXPECT_EQ(imported, 0U);
    setTime(folder / "in/A.xml", 1'000'000'000);
    EXPECT_THAT(migrate(), ElementsAre("A.xml imported A.kdzx"));
    EXPECT_EQ(imported, 0U) << "its digest is known since the run before";
}

TEST_F(MigrationTest, importsWhatWasOnlyTouchedNotAgain) {
    addPlan("A.xml", planNamed("Paint"));
    migrate();
    setTime(folder / "in/A.xml", 1'000'000'000);
    MSPDIMigration dry(services, options, found);
    ASSERT_EQ(dry.readRecords(), std::nullopt);
    EXPECT_EQ(dry.plans().done, 1U);
    EXPECT_THAT(migrate(), ElementsAre("A.xml imported A.kdzx"));
    EXPECT_EQ(imported, 0U);
    EXPECT_EQ(missing, 0U);
    const auto journal = folder.contents("out/.mspdi-migrate/journal");
    migrate();
    EXPECT_EQ(folder.contents("out/.mspdi-migrate/journal"), journal) << "the new times are known from then on";
}

// It is read in one go, or not, or by the mending.
TEST_F(MigrationTest, knowsTheContentOfAPlanHoweverItIsRead) {
    addPlan("A.xml", planNamed("Paint"));
    addPlan("B.xml", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + planNamed("Pa\xEFnt"));
    addPlan("C.xml", "<!DOCTYPE Project [<!ENTITY what \"Paint\">]>" + planNamed("&what;"));
    options.each.mending = MSPDIMending::All;
    addPlan("D.xml", planNamed("Paint", "<Deadline>never</Deadline>"));
    EXPECT_THAT(migrate(), ElementsAre("A.xml imported A.kdzx", "B.xml imported B.kdzx", "C.xml imported C.kdzx",
                                       "D.xml imported D.kdzx"));
    for (const auto* name : {"A.xml", "B.xml", "C.xml", "D.xml"}) {
        setTime(folder / "in/" + name, 1'000'000'000);
    }
    migrate();
    EXPECT_EQ(imported, 0U);
}

TEST_F(MigrationTest, looksForWhatIsToldOncePerRun) {
    addPlan("A.xml", planNamed("Paint"));
    migrate();
    MSPDIMigration migration(services, options, found);
    ASSERT_EQ(migration.readRecords(), std::nullopt);
    std::vector<std::string> verdicts;
    const auto keep = [&verdicts](const MSPDIMigrationRecord& record) { verdicts.push_back(record.verdict); };
    migration.forEachRecord(keep);
    fs::remove_all(folder / "out/A.kdzx");
    migration.forEachRecord(keep);
    EXPECT_THAT(verdicts, ElementsAre("imported", "imported")) << "the reports of a run say the same";
    EXPECT_THAT(migrate(), ElementsAre("A.xml imported A.kdzx"));
    EXPECT_EQ(imported, 1U);
    fs::remove_all(folder / "out/A.kdzx");
    options.isOnlyFailed = true;
    EXPECT_THAT(migrate(), ElementsAre("A.xml failed ")) << "a later run looks anew";
}

TEST_F(MigrationTest, findsOtherContentOfTheSameSizeAndTime) {
    addPlan("A.xml", planNamed("Paint"));
    setTime(folder / "in/A.xml", 1'000'000'000);
    migrate();
    folder.addFile("in/A.xml", planNamed("Drill"));
    EXPECT_EQ(fs::file_size(folder / "in/A.xml"), planNamed("Paint").size());
    setTime(folder / "in/A.xml", 1'000'000'000);
    EXPECT_THAT(migrate(), ElementsAre("A.xml imported A-1.kdzx"));
    EXPECT_EQ(imported, 1U);
    EXPECT_THAT(folder.contents("out/A-1.kdzx/Actual.xml"), HasSubstr("<title>Drill</title>"));
}

TEST_F(MigrationTest, countsAPlanThatIsGoneSinceItWasImported) {
    addPlan("A.xml", planNamed("Paint"));
    addPlan("B.xml", planNamed("Roof"));
    migrate();
    fs::remove(folder / "in/A.xml");
    EXPECT_THAT(migrate(), ElementsAre("A.xml imported A.kdzx", "B.xml imported B.kdzx"));
    EXPECT_EQ(missing, 0U);
    EXPECT_EQ(gone, 1U);
    EXPECT_THAT(warnings, ElementsAre("the plan is gone since it was imported"));
    fs::remove_all(folder / "out/A.kdzx");
    EXPECT_THAT(migrate(), ElementsAre("A.xml unreadable ", "B.xml imported B.kdzx")) << "now nothing of it is left";
    EXPECT_EQ(missing, 1U);
    EXPECT_EQ(gone, 0U);
}

TEST_F(MigrationTest, putsWhatFailedWhereItWasToGo) {
    addPlan("A.xml", planNamed("Paint"));
    addPlan("sub/er/B.xml", refusedPlan);
    found.treeRoot = folder / "in";
    migrate();
    EXPECT_EQ(folder.listing("out"), ".mspdi-migrate A.kdzx ");
    found = {};
    plans.clear();
    found.isList = true;
    addPath(folder / "in/sub/er/B.xml");
    options.each.mending = MSPDIMending::OfRefused;
    migrate();
    EXPECT_EQ(missing, 0U);
    EXPECT_EQ(documents[0], folder / "out/sub/er/B.kdzx");
}

TEST_F(MigrationTest, putsWhatFailedWhereItWasToGoWhenOnlyThatIsTakenUp) {
    addPlan("sub/B.xml", refusedPlan);
    found.treeRoot = folder / "in";
    migrate();
    found.treeRoot = "";
    options.isOnlyFailed = true;
    options.each.mending = MSPDIMending::OfRefused;
    migrate();
    EXPECT_EQ(documents, std::vector<std::string>{folder / "out/sub/B.kdzx"});
}

TEST_F(MigrationTest, putsOtherPlansWhereItIsTold) {
    addPlan("sub/A.xml", planNamed("Paint"));
    found.treeRoot = folder / "in";
    migrate();
    EXPECT_EQ(documents[0], folder / "out/sub/A.kdzx");
    found.treeRoot = "";
    folder.addFile("in/sub/A.xml", planNamed("Paint it"));
    migrate();
    EXPECT_EQ(documents[0], folder / "out/A.kdzx");
    // A folder whose name only begins like that of the tree is not in it.
    found = {};
    found.treeRoot = folder / "in";
    folder.addFile("inside/C.xml", planNamed("Roof"));
    addPath(folder / "inside/C.xml");
    migrate();
    EXPECT_EQ(documents[0], folder / "out/C.kdzx");
}

TEST_F(MigrationTest, keepsALogOfEachPlanWhereThatIsWanted) {
    addPlan("A.xml", planNamed("Paint"));
    addPlan("sub/A.xml", refusedPlan);
    addPath(folder / "in/None.xml");
    migrate();
    EXPECT_EQ(folder.listing(), "in out ");
    EXPECT_EQ(logs, std::vector<std::string>(3));
    fs::remove_all(folder / "out");
    options.logsFolder = folder / "logs";
    migrate();
    EXPECT_EQ(folder.listing("logs"), "A-1.log A.log None.log ");
    EXPECT_EQ(logs,
              (std::vector<std::string>{folder / "logs/A.log", folder / "logs/A-1.log", folder / "logs/None.log"}));
    EXPECT_THAT(folder.contents("logs/A.log"), HasSubstr("name='Paint'"));
    EXPECT_THAT(folder.contents("logs/A.log"), HasSubstr("A.xml: imported: " + (folder / "out/A.kdzx")));
    EXPECT_THAT(folder.contents("logs/A-1.log"), HasSubstr("sub/A.xml: refused: a task is of an unknown type"));
    EXPECT_THAT(folder.contents("logs/None.log"), HasSubstr("None.xml: unreadable: no such file"));
    // Those that are tried again get no second one.
    options.each.mending = MSPDIMending::OfRefused;
    migrate();
    EXPECT_EQ(missing, 1U);
    EXPECT_EQ(folder.listing("logs"), "A-1.log A.log None.log ");
    EXPECT_THAT(folder.contents("logs/A-1.log"), Not(HasSubstr("refused")));
    EXPECT_THAT(folder.contents("logs/A-1.log"), HasSubstr("sub/A.xml: imported: "));
}

// Somebody may keep the earlier ones under other names.
TEST_F(MigrationTest, beginsLogsAnewWithoutTouchingWhatElseTheirNamesLeadTo) {
    addPlan("A.xml", refusedPlan);
    addPlan("B.xml", refusedPlan);
    options.logsFolder = folder / "logs";
    migrate();
    const auto earlier = folder.contents("logs/A.log");
    std::filesystem::create_hard_link(folder / "logs/A.log", folder / "kept");
    folder.addFile("foreign", "months of work");
    std::filesystem::remove(folder / "logs/B.log");
    std::filesystem::create_symlink(folder / "foreign", folder / "logs/B.log");
    migrate();
    EXPECT_EQ(folder.contents("kept"), earlier);
    EXPECT_EQ(folder.contents("foreign"), "months of work");
    for (const auto* const name : {"logs/A.log", "logs/B.log"}) {
        EXPECT_THAT(folder.contents(name), HasSubstr(".xml: refused: ")) << name;
        EXPECT_FALSE(std::filesystem::is_symlink(folder / name)) << name;
    }
    EXPECT_EQ(folder.listing("logs"), "A.log B.log ");
    EXPECT_EQ(logs, (std::vector<std::string>{folder / "logs/A.log", folder / "logs/B.log"}));
}

// A killed run has no record of the logs that it has begun; they say themselves whose they are.
TEST_F(MigrationTest, takesUpTheLogsThatADeadRunHasBegun) {
    const auto nextRun = [this](const std::string& plan, const std::string& output) {
        std::string failure;
        MSPDIPlanLogs planLogs(folder / "logs", folder / output, files);
        auto path = planLogs.logOf(plan, folder / output, "", failure);
        EXPECT_EQ(failure, "");
        return path;
    };
    const std::string plan = "/in/a\nb/A.xml";
    EXPECT_EQ(nextRun(plan, "out"), folder / "logs/A.log");
    EXPECT_EQ(nextRun(plan, "out"), folder / "logs/A.log") << "it was not even opened";
    std::string failure;
    MSPDIPlanLogs::open(folder / "logs/A.log", plan, folder / "out", failure)->log("Mapping");
    EXPECT_EQ(nextRun(plan, "out"), folder / "logs/A.log");
    EXPECT_EQ(folder.contents("logs/A.log"), "Migrating '/in/a\\nb/A.xml' into '" + (folder / "out") + "'\n");
    EXPECT_EQ(nextRun("/in/other/A.xml", "out"), folder / "logs/A-1.log") << "that of another plan";
    EXPECT_EQ(nextRun(plan, "elsewhere"), folder / "logs/A-2.log") << "that of another migration";
    folder.addFile("logs/B.log", "what Migrating '/in/B.xml' into '" + (folder / "out") + "' has taught me");
    folder.addFile("logs/B-1.log", "");
    EXPECT_EQ(nextRun("/in/B.xml", "out"), folder / "logs/B-2.log") << "those of people";
}

TEST_F(MigrationTest, makesTheFolderOfEarlierLogsWhereItIsGone) {
    addPlan("sub/A.xml", refusedPlan);
    found.treeRoot = folder / "in";
    options.logsFolder = folder / "logs";
    migrate();
    std::filesystem::remove_all(folder / "logs");
    migrate();
    EXPECT_THAT(folder.contents("logs/sub/A.log"), HasSubstr("A.xml: refused: "));
}

TEST_F(MigrationTest, warnsOfALogThatCouldNotBeWritten) {
    addPlan("A.xml", planNamed("Paint"));
    MSPDIMigrationJob job(services, options.each, options.outputFolder, folder.addFolder("run"));
    plans[0].log = folder / "none/A.log";
    const auto record = job.make(plans[0], folder / "run/0");
    EXPECT_TRUE(record.isImported());
    EXPECT_THAT(record.warnings,
                ElementsAre("its log " + plans[0].log + " could not be written: No such file or directory"));
}

TEST_F(MigrationTest, keepsTheLogOfAPlanWhoseProcessWasEnded) {
    ASSERT_EQ(::mkfifo((folder.addFolder("in") + "/Slow.xml").c_str(), 0600), 0);
    const int held = ::open((folder / "in/Slow.xml").c_str(), O_RDWR);  // its reader waits for bytes
    addPath(folder / "in/Slow.xml");
    options.bounds.time = std::chrono::seconds(3);  // less than anybody waits for a pipe
    options.logsFolder = folder / "logs";
    migrate();
    EXPECT_THAT(folder.contents("logs/Slow.log"),
                HasSubstr("Slow.xml: failed: it took longer than 3 s, and was ended"));
    EXPECT_EQ(logs, std::vector<std::string>{folder / "logs/Slow.log"});
    ::close(held);
}

TEST_F(MigrationTest, putsLogsIntoTheFoldersOfTheTree) {
    addPlan("sub/A.xml", planNamed("Paint"));
    found.treeRoot = folder / "in";
    options.logsFolder = folder / "logs";
    migrate();
    EXPECT_EQ(logs, std::vector<std::string>{folder / "logs/sub/A.log"});
    EXPECT_THAT(folder.contents("logs/sub/A.log"), HasSubstr("imported"));
}

TEST_F(MigrationTest, saysWhyALogCannotBeMade) {
    addPlan("A.xml", planNamed("Paint"));
    folder.addFile("logs", "a file");
    options.logsFolder = folder / "logs";
    MSPDIMigration migration(services, options, found);
    ASSERT_EQ(migration.takeLock([](const auto&) {}), std::nullopt);
    ASSERT_EQ(migration.readRecords(), std::nullopt);
    EXPECT_THAT(migration.run([](const auto&) {}).value_or(""), HasSubstr("logs: "));
    EXPECT_EQ(folder.listing("out"), ".mspdi-migrate ");
}
