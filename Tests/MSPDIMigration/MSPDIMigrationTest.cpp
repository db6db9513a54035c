#include "MSPDIMigration.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "MSPCJournal.h"
#include "MSPCRunLock.h"
#include "MSPDIMigrationJob.h"
#include "MigrationFixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

}  // namespace

TEST_F(MigrationTest, importsEachPlanOnceAndKeepsWhatBecameOfIt) {
    addPlan("A.xml", planNamed("Paint"));
    addPlan("B.xml", refusedPlan);
    addPath(folder / "in/None.xml");
    const std::vector<std::string> expected = {"A.xml imported A.kdzx", "B.xml refused ", "None.xml unreadable "};
    EXPECT_EQ(migrate(), expected);
    EXPECT_EQ(imported, 1U);
    EXPECT_EQ(missing, 2U);
    EXPECT_THAT(reasons[1], StartsWith("a task is of an unknown type ("));
    EXPECT_EQ(reasons[2], "no such file");
    EXPECT_EQ(folder.listing("out"), ".mspdi-migrate A.kdzx ");
    EXPECT_EQ(folder.listing("out/A.kdzx"), "Actual.xml __TOC.xml ");
    EXPECT_EQ(folder.listing("out/.mspdi-migrate/run"), "");
    EXPECT_EQ(migrate(), expected) << "nothing is imported twice";
    EXPECT_EQ(imported, 0U);
    EXPECT_EQ(folder.listing("out"), ".mspdi-migrate A.kdzx ");
}

TEST_F(MigrationTest, takesUpWhatIsNewChangedFailedOrGone) {
    addPlan("A.xml", planNamed("Paint"));
    addPlan("B.xml", refusedPlan);
    addPlan("C.xml", planNamed("Roof"));
    migrate();
    folder.addFile("in/A.xml", planNamed("Paint it"));
    folder.addFile("in/B.xml", planNamed("Wall"));
    std::filesystem::remove_all(folder / "out/C.kdzx");
    addPlan("D.xml", planNamed("Door"));
    MSPDIMigration dry(services, options, found);
    ASSERT_EQ(dry.readRecords(), std::nullopt);
    EXPECT_EQ(dry.plans().fresh, 1U);
    EXPECT_EQ(dry.plans().changed, 1U);
    EXPECT_EQ(dry.plans().withoutDocument, 1U);
    EXPECT_EQ(dry.plans().failed, 1U);
    EXPECT_EQ(dry.plans().done, 0U);
    EXPECT_THAT(migrate(), ElementsAre("A.xml imported A-1.kdzx", "B.xml imported B.kdzx", "C.xml imported C.kdzx",
                                       "D.xml imported D.kdzx"));
    EXPECT_THAT(folder.contents("out/A.kdzx/Actual.xml"), HasSubstr("<title>Paint</title>"))
        << "nothing is overwritten";
    EXPECT_EQ(missing, 0U);
}

TEST_F(MigrationTest, countsNoDocumentWithoutATableOfContents) {
    for (const auto* name : {"A.xml", "B.xml", "C.xml"}) {
        addPlan(name, planNamed("Paint"));
    }
    migrate();
    std::filesystem::remove_all(folder / "out/A.kdzx");
    folder.addFolder("out/A.kdzx");
    folder.addFile("out/B.kdzx/__TOC.xml", "");
    MSPDIMigration dry(services, options, found);
    ASSERT_EQ(dry.readRecords(), std::nullopt);
    EXPECT_EQ(dry.missing(), 2U);
    EXPECT_THAT(migrate(), ElementsAre("A.xml imported A-1.kdzx", "B.xml imported B-1.kdzx", "C.xml imported C.kdzx"));
    EXPECT_EQ(missing, 0U);
    EXPECT_EQ(folder.listing("out/A.kdzx"), "") << "nothing is overwritten";
    EXPECT_EQ(folder.contents("out/B.kdzx/__TOC.xml"), "");
    const std::string told = " holds no table of contents any more, and was left as it is";
    EXPECT_THAT(warnings, ElementsAre("A.kdzx" + told, "B.kdzx" + told));
    migrate();
    EXPECT_EQ(imported, 0U) << "the new ones count";
}

TEST_F(MigrationTest, takesOnlyWhatFailedWhereThatIsWanted) {
    addPlan("A.xml", planNamed("Paint"));
    addPlan("B.xml", refusedPlan);
    migrate();
    folder.addFile("in/A.xml", planNamed("Paint it"));
    addPlan("D.xml", planNamed("Door"));
    options.isOnlyFailed = true;
    options.each.mending = MSPDIMending::OfRefused;
    MSPDIMigration dry(services, options, found);
    ASSERT_EQ(dry.readRecords(), std::nullopt);
    EXPECT_EQ(dry.plans().leftOut, 2U);
    EXPECT_THAT(migrate(), ElementsAre("A.xml imported A.kdzx", "B.xml imported B.kdzx"));
    EXPECT_EQ(missing, 2U) << "one has changed, one is new";
}

TEST_F(MigrationTest, givesEachPlanOfTheSameNameADocumentOfItsOwn) {
    for (int number = 0; number < 20; ++number) {
        addPlan(std::to_string(number) + "/P.xml", planNamed("Paint"));
    }
    folder.addFile("out/P.kdzx/old.txt", "old");
    migrate();
    EXPECT_EQ(missing, 0U);
    for (int number = 1; number <= 20; ++number) {
        EXPECT_NE(folder.contents("out/P-" + std::to_string(number) + ".kdzx/__TOC.xml"), "(no file)") << number;
    }
    EXPECT_EQ(folder.listing("out/P.kdzx"), "old.txt ");
}

TEST_F(MigrationTest, endsAPlanThatTakesTooLongAndGoesOn) {
    ASSERT_EQ(::mkfifo((folder.addFolder("in") + "/Slow.xml").c_str(), 0600), 0);
    const int held = ::open((folder / "in/Slow.xml").c_str(), O_RDWR);  // its reader waits for bytes
    addPath(folder / "in/Slow.xml");
    for (const auto* name : {"A.xml", "B.xml", "C.xml"}) {
        addPlan(name, planNamed("Paint"));
    }
    options.processes = 1;
    options.bounds.time = std::chrono::seconds(3);  // less than anybody waits for a pipe
    EXPECT_THAT(migrate(), ElementsAre("Slow.xml failed ", "A.xml imported A.kdzx", "B.xml imported B.kdzx",
                                       "C.xml imported C.kdzx"));
    EXPECT_EQ(reasons[0], "it took longer than 3 s, and was ended");
    ::close(held);
}

TEST_F(MigrationTest, findsWhatADeadRunHasMade) {
    addPlan("A.xml", planNamed("Paint"));
    addPlan("B.xml", planNamed("Roof"));
    const auto work = folder.addFolder("out/.mspdi-migrate/run");
    MSPDIMigrationJob job(services, options.each, options.outputFolder, work);
    EXPECT_TRUE(job.migrate(plans[0], 7).isImported()) << "it was killed before its record was kept";
    EXPECT_EQ(folder.listing("out"), ".mspdi-migrate A.kdzx ");
    // And one that was killed before the document appeared.
    EXPECT_TRUE(job.migrate(plans[1], 8).isImported());
    std::filesystem::rename(folder / "out/B.kdzx", work + "/8/B.kdzx");
    folder.addFile("out/.mspdi-migrate/run/9/.MSPDIImport-half/Actual.xml", "half");
    EXPECT_THAT(migrate(), ElementsAre("A.xml imported A.kdzx", "B.xml imported B.kdzx"));
    EXPECT_EQ(imported, 1U);
    EXPECT_EQ(folder.listing("out"), ".mspdi-migrate A.kdzx B.kdzx ");
    EXPECT_EQ(folder.listing("out/.mspdi-migrate/run"), "");
}

// One process makes the document, another gives it its place; what was made and has none is void.
TEST_F(MigrationTest, findsWhatADeadRunHasPublishedOfAnother) {
    addPlan("A.xml", planNamed("Paint"));
    addPlan("B.xml", planNamed("Roof"));
    const auto work = folder.addFolder("out/.mspdi-migrate/run");
    MSPDIMigrationJob job(services, options.each, options.outputFolder, work);
    auto record = job.make(plans[0], work + "/0f-1-0");
    EXPECT_EQ(record.document, work + "/0f-1-0/A.kdzx");
    EXPECT_EQ(folder.listing("out"), ".mspdi-migrate ");
    job.publish(record, work + "/0f-1-0");
    EXPECT_EQ(record.document, folder / "out/A.kdzx");
    EXPECT_TRUE(job.make(plans[1], work + "/0f-1-1").isImported()) << "it was killed before it was published";
    folder.addFile("out/.mspdi-migrate/run/0f-1", "the chunk");
    EXPECT_THAT(migrate(), ElementsAre("A.xml imported A.kdzx", "B.xml imported B.kdzx"));
    EXPECT_EQ(imported, 1U);
    EXPECT_EQ(folder.listing("out"), ".mspdi-migrate A.kdzx B.kdzx ");
    EXPECT_EQ(folder.listing("out/.mspdi-migrate/run"), "");
}

TEST_F(MigrationTest, takesTheJournalAsFarAsItIsWhole) {
    addPlan("A.xml", planNamed("Paint"));
    addPlan("B.xml", planNamed("Roof"));
    migrate();
    const auto journal = folder.contents("out/.mspdi-migrate/journal");
    folder.addFile("out/.mspdi-migrate/journal", journal.substr(0, journal.size() - 4));
    EXPECT_THAT(migrate(), ElementsAre(StartsWith("A.xml imported A"), StartsWith("B.xml imported B")));
    EXPECT_EQ(imported, 1U) << "the record that was cut off";
    EXPECT_EQ(migrate().size(), 2U);
    EXPECT_EQ(imported, 0U);
}

TEST_F(MigrationTest, waitsForAnotherRun) {
    addPlan("A.xml", planNamed("Paint"));
    folder.addFolder("out/.mspdi-migrate");
    auto other = std::make_unique<MSPCRunLock>(AT_FDCWD, folder / "out/.mspdi-migrate/lock");
    ASSERT_TRUE(other->tryToTake());
    other->sign();
    MSPDIMigration migration(services, options, found);
    std::string holder;
    EXPECT_EQ(migration.takeLock([&](const auto& text) {
        holder = text;
        other.reset();
    }),
              std::nullopt);
    EXPECT_THAT(holder, StartsWith("process " + std::to_string(::getpid()) + " on "));
}

TEST_F(MigrationTest, followsNoLinkAmongWhatItKeeps) {
    addPlan("A.xml", planNamed("Paint"));
    for (const std::string name : {"", "/lock", "/journal", "/run"}) {
        std::filesystem::remove_all(folder / "out");
        folder.addFile("foreign/run/letter.txt", "months of work");
        folder.addFile("foreign/text", "text of others");
        folder.addFolder(name.empty() ? "out" : "out/.mspdi-migrate");
        const auto* const target = name.empty() ? "foreign" : name == "/run" ? "foreign/run" : "foreign/text";
        const auto path = folder / ("out/.mspdi-migrate" + name);
        ASSERT_EQ(::symlink((folder / target).c_str(), path.c_str()), 0);
        MSPDIMigration migration(services, options, found);
        const auto reason = path + ": it is a link, which no migration follows";
        EXPECT_EQ(migration.takeLock([](const auto&) {}), reason);
        EXPECT_EQ(migration.readRecords(), reason) << "nor does a dry run";
        EXPECT_EQ(folder.listing("foreign"), "run text ") << name;
        EXPECT_EQ(folder.listing("foreign/run"), "letter.txt ") << name;
        EXPECT_EQ(folder.contents("foreign/text"), "text of others") << name;
    }
}

TEST_F(MigrationTest, removesNothingWhereALinkTakesThePlaceOfItsFolderMeanwhile) {
    addPlan("A.xml", planNamed("Paint"));
    folder.addFile("out/.mspdi-migrate/run/0/letter.txt", "of a dead run");
    folder.addFile("foreign/0/letter.txt", "months of work");
    MSPDIMigration migration(services, options, found);
    ASSERT_EQ(migration.takeLock([](const auto&) {}), std::nullopt);
    ASSERT_EQ(migration.readRecords(), std::nullopt);
    EXPECT_EQ(folder.listing("out/.mspdi-migrate/run"), "");
    std::filesystem::rename(folder / "out/.mspdi-migrate/run", folder / "out/.mspdi-migrate/moved");
    ASSERT_EQ(::symlink((folder / "foreign").c_str(), (folder / "out/.mspdi-migrate/run").c_str()), 0);
    EXPECT_EQ(migration.run([](const auto&) {}), std::nullopt);
    EXPECT_EQ(folder.contents("foreign/0/letter.txt"), "months of work");
}

TEST_F(MigrationTest, saysWhyItCannotKeepRecords) {
    addPlan("A.xml", planNamed("Paint"));
    folder.addFile("out", "a file");
    MSPDIMigration migration(services, options, found);
    EXPECT_THAT(migration.takeLock([](const auto&) {}).value_or(""), HasSubstr("Not a directory"));
}
