#include "MSPDIPlanImporter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MSPDIKinds.h"
#include "PlanTexts.h"
#include "RecordingProgress.h"
#include "ServicesInMemory.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class PlanImporterTest : public testing::Test {
protected:
    PlanImporterTest() {
        world.machine.addFile("/in/Plan.xml", planWith("<Tasks>" + taskNamed("Paint", "1") + "</Tasks>"));
        world.machine.addFile("/in/Refused.xml", refusedPlan());
        world.machine.addFolder("/out");
        options.outputFolder = "/out";
        world.log.ignoreLines();
    }
    ~PlanImporterTest() override { world.log.ignoreLines(); }

    MSPDIImportedPlan import(const std::string& plan) {
        MSPDIPlanImporter importer(world.services, options);
        auto result = importer.import(plan);
        EXPECT_EQ(importer.finish(), std::nullopt);
        return result;
    }
    // Nothing but the folder itself.
    void expectNothingIn(const std::string& folder) {
        EXPECT_THAT(world.machine.pathsBelow(folder), ElementsAre(folder));
        EXPECT_THAT(world.machine.pathsBelow("/hidden"), IsEmpty());
    }

    // "root-task 1, outline 3"
    static std::string stepsOf(const MSPDIImportedPlan& plan) {
        std::string text;
        for (const auto& done : plan.mending) {
            text += (text.empty() ? "" : ", ") + std::string(done.step) + " " + std::to_string(done.count);
        }
        return text;
    }

    ServicesInMemory world;
    MSPDIPlanImportOptions options;
};

}  // namespace

TEST_F(PlanImporterTest, makesADocumentAndSaysWhereItIs) {
    const auto result = import("/in/Plan.xml");
    EXPECT_EQ(result.verdict, MSPDIVerdict::Imported);
    EXPECT_EQ(result.reason, "");
    EXPECT_FALSE(result.refusal);
    EXPECT_EQ(result.document, "/out/Plan.kdzx");
    EXPECT_FALSE(result.isNumbered);
    EXPECT_THAT(world.machine.contents("/out/Plan.kdzx/Actual.xml"), HasSubstr("<title>Paint</title>"));
    EXPECT_THAT(world.machine.contents("/out/Plan.kdzx/__TOC.xml"), HasSubstr("<title>Plan</title>"));
    EXPECT_THAT(world.machine.synchronized(), ElementsAre(ElementsAre("/out")));
}

TEST_F(PlanImporterTest, writesBesideThePlanWhereNoFolderIsNamed) {
    options.outputFolder.reset();
    EXPECT_EQ(import("/in/Plan.xml").document, "/in/Plan.kdzx");
}

TEST_F(PlanImporterTest, countsWhatTheDocumentHolds) {
    const std::string baseline =
        "<Baseline><Number>3</Number><Start>2012-01-09T08:00:00</Start>"
        "<Finish>2012-01-10T17:00:00</Finish></Baseline>";
    const std::string field =
        "<ExtendedAttributes><ExtendedAttribute><FieldID>188743731</FieldID><Alias>Region</Alias>"
        "</ExtendedAttribute></ExtendedAttributes>";
    const std::string value = "<ExtendedAttribute><FieldID>188743731</FieldID><Value>North</Value></ExtendedAttribute>";
    world.machine.addFile(
        "/in/Full.xml",
        planWith(field + "<Tasks>" + taskNamed("House", "1", "<Summary>1</Summary>") +
                 taskNamed("Paint", "2", baseline) + taskNamed("Roof", "3", value) +
                 "</Tasks><Resources><Resource><UID>0</UID></Resource><Resource>" +
                 "<UID>4</UID><Name>Ann</Name></Resource><Resource><UID>5</UID></Resource></Resources>"));
    const auto counts = import("/in/Full.xml").counts;
    EXPECT_EQ(counts.tasks, 3U);
    EXPECT_EQ(counts.resources, 2U);
    EXPECT_EQ(counts.scenarios, 2U);
    EXPECT_EQ(counts.customFields, 1U);
}

TEST_F(PlanImporterTest, leavesNothingOfARefusedPlan) {
    const auto result = import("/in/Refused.xml");
    EXPECT_EQ(result.verdict, MSPDIVerdict::Refused);
    EXPECT_EQ(result.reason,
              "a task is of an unknown type (Unexpected MSPDI Task Type: 9 (Task UID='1' name='Paint'))");
    ASSERT_TRUE(result.refusal);
    EXPECT_EQ(result.refusal->reason, "Unexpected MSPDI Task Type: 9");
    EXPECT_EQ(result.document, "");
    EXPECT_EQ(result.counts.tasks, 0U);
    EXPECT_FALSE(result.account);
    expectNothingIn("/out");
    EXPECT_THAT(world.machine.synchronized(), IsEmpty());
}

TEST_F(PlanImporterTest, leavesNothingWhereTheDiskFails) {
    world.machine.failAlways("writeAtomically", "No space left on device");
    const auto result = import("/in/Plan.xml");
    EXPECT_EQ(result.verdict, MSPDIVerdict::Failed);
    EXPECT_THAT(result.reason, HasSubstr("No space left on device"));
    expectNothingIn("/out");
}

TEST_F(PlanImporterTest, tellsWhatCannotBeRead) {
    world.machine.addFile("/in/Other.xml", "<html/>");
    world.machine.addFile("/in/Text.xml", "just a text");
    world.machine.addFile("/in/Plan.mpp", "\xD0\xCF\x11\xE0");
    const std::pair<const char*, const char*> table[] = {
        {"/in/None.xml", "no such file"},
        {"", "no such file"},
        {"/in", "a folder, not a plan"},
        {"/in/Other.xml", "XML, but no plan of Microsoft Project"},
        {"/in/Text.xml", "it cannot be read as XML, even after repair"},
        {"/in/Plan.mpp", "neither .xml nor .mspxml; in Microsoft Project, save it as XML"},
    };
    for (const auto& [plan, reason] : table) {
        const auto result = import(plan);
        EXPECT_EQ(result.verdict, MSPDIVerdict::Unreadable) << plan;
        EXPECT_THAT(result.reason, StartsWith(reason)) << plan;
    }
    expectNothingIn("/out");
}

TEST_F(PlanImporterTest, tellsWhyAFileCannotBeRead) {
    world.machine.failAlways("readFile", "Permission denied");
    const auto result = import("/in/Plan.xml");
    EXPECT_EQ(result.verdict, MSPDIVerdict::Unreadable);
    EXPECT_EQ(result.reason, "it cannot be read: Permission denied");
    EXPECT_TRUE(result.mending.empty());
    EXPECT_EQ(result.mendingObstacle, "");
    expectNothingIn("/out");
}

TEST_F(PlanImporterTest, putsNothingIntoADocument) {
    world.machine.addFile("/in/Old.kdzx/__TOC.xml", "<table-of-contents/>");
    world.machine.addFile("/in/Old.kdzx/sub/picture.png", "png");
    world.machine.addLink("/in/link", "/in/Old.kdzx/sub");
    world.machine.addFile("/in/No.kdzx/picture.png", "png");
    const std::string told = ": what is put there would become a part of the document /in/Old.kdzx";
    for (const auto* const folder :
         {"/in/Old.kdzx", "/in/Old.kdzx/sub", "/in/Old.kdzx/new/er", "/in/link", "/in/link/new"}) {
        options.outputFolder = folder;
        EXPECT_EQ(MSPDIPlanImporter(world.services, options).obstacle(), folder + told);
    }
    for (const auto* const folder : {"/in", "/in/No.kdzx", "/in/new.kdzx", "/new"}) {
        options.outputFolder = folder;
        EXPECT_EQ(MSPDIPlanImporter(world.services, options).obstacle(), std::nullopt) << folder;
    }
}

TEST_F(PlanImporterTest, blamesTheTemplateAndNotThePlan) {
    world.machine.addFile("/t.kdzx/Actual.xml", "<scenario/>");
    world.machine.addFile("/t.kdzx/__TOC.xml", "no XML");
    options.templateFolder = "/t.kdzx";
    EXPECT_EQ(import("/in/Plan.xml").verdict, MSPDIVerdict::Failed);
    world.machine.addFile("/t.kdzx/__TOC.xml", "<table-of-contents/>");
    const auto result = import("/in/Plan.xml");
    EXPECT_EQ(result.verdict, MSPDIVerdict::Failed);
    EXPECT_THAT(result.reason, StartsWith("the template is incomplete ("));
    expectNothingIn("/out");
}

TEST_F(PlanImporterTest, beginsWithTheTemplateThatIsNamed) {
    world.machine.addFile("/t.kdzx/extra/notes.txt", "kept");
    for (const auto* name : {"Actual.xml", "__TOC.xml"}) {
        import("/in/Plan.xml");
        world.machine.addFile(std::string("/t.kdzx/") + name,
                              world.machine.contents(std::string("/out/Plan.kdzx/") + name));
    }
    options.templateFolder = "/t.kdzx";
    EXPECT_EQ(import("/in/Plan.xml").document, "/out/Plan-2.kdzx");
    EXPECT_EQ(world.machine.contents("/out/Plan-2.kdzx/extra/notes.txt"), "kept");
}

TEST_F(PlanImporterTest, overwritesNothingUnlessAsked) {
    world.machine.addFile("/out/Plan.kdzx/old.txt", "old");
    world.machine.addFile("/out/Plan.kdzx/__TOC.xml", "old");
    const auto result = import("/in/Plan.xml");
    EXPECT_EQ(result.document, "/out/Plan-1.kdzx");
    EXPECT_TRUE(result.isNumbered);
    options.overwrites = true;
    EXPECT_EQ(import("/in/Plan.xml").document, "/out/Plan.kdzx");
    EXPECT_FALSE(world.machine.exists("/out/Plan.kdzx/old.txt"));
}

TEST_F(PlanImporterTest, overwritesNothingThatIsNoDocument) {
    options.overwrites = true;
    world.machine.addFile("/out/Plan.kdzx/precious/notes.txt", "months of work");
    const auto result = import("/in/Plan.xml");
    EXPECT_EQ(result.document, "/out/Plan-1.kdzx");
    EXPECT_TRUE(result.isNumbered);
    EXPECT_THAT(result.warnings, ElementsAre("Plan.kdzx is no document, so it was not replaced"));
    EXPECT_EQ(world.machine.contents("/out/Plan.kdzx/precious/notes.txt"), "months of work");
    world.machine.addFile("/in/File.xml", planWith(""));
    world.machine.addFile("/out/File.kdzx", "a file");
    EXPECT_EQ(import("/in/File.xml").document, "/out/File-1.kdzx");
    EXPECT_EQ(world.machine.contents("/out/File.kdzx"), "a file");
}

TEST_F(PlanImporterTest, overwritesAnEmptyFolder) {
    options.overwrites = true;
    world.machine.addFolder("/out/Plan.kdzx");
    const auto result = import("/in/Plan.xml");
    EXPECT_EQ(result.document, "/out/Plan.kdzx");
    EXPECT_THAT(result.warnings, IsEmpty());
}

TEST_F(PlanImporterTest, keepsWhatARefusedPlanWasToReplace) {
    world.machine.addFile("/out/Refused.kdzx/old.txt", "old");
    world.machine.addFile("/out/Refused.kdzx/__TOC.xml", "old");
    options.overwrites = true;
    EXPECT_EQ(import("/in/Refused.xml").verdict, MSPDIVerdict::Refused);
    EXPECT_EQ(world.machine.contents("/out/Refused.kdzx/old.txt"), "old");
}

TEST_F(PlanImporterTest, neverReplacesADocumentOfTheSameRun) {
    world.machine.addFile("/other/Plan.xml", planWith("<Tasks>" + taskNamed("Roof", "1") + "</Tasks>"));
    options.overwrites = true;
    MSPDIPlanImporter importer(world.services, options);
    EXPECT_EQ(importer.import("/in/Plan.xml").document, "/out/Plan.kdzx");
    EXPECT_EQ(importer.import("/other/Plan.xml").document, "/out/Plan-1.kdzx");
    EXPECT_THAT(world.machine.contents("/out/Plan.kdzx/Actual.xml"), HasSubstr("<title>Paint</title>"));
}

TEST_F(PlanImporterTest, neverReplacesThePlanItself) {
    world.machine.addFile("/out/Plan.kdzx/Plan.xml", planWith(""));
    world.machine.addFile("/out/Plan.kdzx/__TOC.xml", "old");
    options.overwrites = true;
    EXPECT_EQ(import("/out/Plan.kdzx/Plan.xml").document, "/out/Plan-1.kdzx");
    EXPECT_TRUE(world.machine.exists("/out/Plan.kdzx/Plan.xml"));
}

TEST_F(PlanImporterTest, namesTheDocumentAsAsked) {
    options.documentName = "My house";
    EXPECT_EQ(import("/in/Plan.xml").document, "/out/My house.kdzx");
    EXPECT_THAT(world.machine.contents("/out/My house.kdzx/__TOC.xml"), HasSubstr("<title>Plan</title>"));
}

TEST_F(PlanImporterTest, tellsWhatIsWrongWithTheOptions) {
    const auto obstacle = [this] { return MSPDIPlanImporter(world.services, options).obstacle(); };
    EXPECT_EQ(obstacle(), std::nullopt);
    for (const auto* name : {".", "..", "a/b"}) {
        options.documentName = name;
        EXPECT_EQ(obstacle(), std::string(name) + ": a document cannot have this name");
    }
    options.documentName = "";
    EXPECT_EQ(obstacle(), ".kdzx: a document cannot have this name");
    options.documentName.reset();
    for (const auto* folder : {"", "/in/Plan.xml"}) {
        options.outputFolder = folder;
        EXPECT_EQ(obstacle(), std::string(folder) + ": no folder");
    }
    options.outputFolder = "/none";
    EXPECT_EQ(obstacle(), std::nullopt) << "it is made";
    options.templateFolder = "/in";
    EXPECT_EQ(obstacle(), "/in: no document to import into");
}

TEST_F(PlanImporterTest, makesTheFolderAndTakesItAwayWhereNothingCameOfIt) {
    options.outputFolder = "/new/inner";
    import("/in/Refused.xml");
    EXPECT_FALSE(world.machine.exists("/new"));
    EXPECT_EQ(import("/in/Plan.xml").document, "/new/inner/Plan.kdzx");
    import("/in/Refused.xml");
    EXPECT_TRUE(world.machine.exists("/new/inner/Plan.kdzx"));
}

TEST_F(PlanImporterTest, tellsWhyAFolderCannotBeMade) {
    options.outputFolder = "/new";
    world.machine.failAlways("createFolder", "Permission denied");
    const auto result = import("/in/Plan.xml");
    EXPECT_EQ(result.verdict, MSPDIVerdict::Failed);
    EXPECT_EQ(result.reason, "the folder /new could not be made: Permission denied");
}

TEST_F(PlanImporterTest, tellsWarningsInWordsAndOnce) {
    const std::string baseline = "<Baseline><Number>0</Number><Start>2012-01-09T08:00:00</Start></Baseline>";
    world.machine.addFile("/in/Euro.xml",
                          planWith("<SaveVersion>14</SaveVersion><CurrencyCode>EUR</CurrencyCode><Tasks>" +
                                   taskNamed("Paint", "1", baseline) + "</Tasks>"));
    EXPECT_THAT(import("/in/Euro.xml").warnings, ElementsAre("the currency code EUR is ignored"));
}

TEST_F(PlanImporterTest, tellsTheLossesOfAnImportedPlan) {
    world.machine.addFile(
        "/in/Lossy.xml",
        planWith("<Tasks>" + taskNamed("Paint", "1", "<Deadline>2012-02-01T17:00:00</Deadline>") + "</Tasks>"));
    const auto result = import("/in/Lossy.xml");
    ASSERT_TRUE(result.account);
    ASSERT_EQ(result.account->losses.size(), 1U);
    EXPECT_EQ(result.account->losses[0].kind, "deadline");
    EXPECT_EQ(result.account->losses[0].count, 1U);
    options.tellsLosses = false;
    EXPECT_FALSE(import("/in/Lossy.xml").account);
}

TEST_F(PlanImporterTest, ignoresTheSettingsOfTheOtherProgram) {
    world.settings.set("IncludeInputExtension", true);
    world.settings.set("OverwriteFilterTarget", true);
    world.machine.addFile("/out/Plan.kdzx/old.txt", "old");
    EXPECT_EQ(import("/in/Plan.xml").document, "/out/Plan-1.kdzx");
}

TEST_F(PlanImporterTest, handsTheImportersLogOn) {
    world.log.ignoreLines();
    import("/in/Plan.xml");
    EXPECT_THAT(world.log.takeLines(), testing::Contains("Output: '/out/Plan.kdzx'"));
}

TEST_F(PlanImporterTest, tellsTheProgressOfReadingMappingAndLooking) {
    RecordingProgress progress;
    const MSPCServices watched{world.clock,   world.services.timeZone, world.log, world.settings,
                               world.machine, world.randomSource,      progress};
    MSPDIPlanImporter importer(watched, options);
    static_cast<void>(importer.import("/in/Plan.xml"));
    const auto size = std::to_string(world.machine.contents("/in/Plan.xml").size());
    const auto& told = progress.told();
    ASSERT_FALSE(told.empty());
    EXPECT_EQ(told.front(), "Reading " + size + " of " + size);
    EXPECT_THAT(told, testing::Contains("begin Actual"));
    EXPECT_THAT(told, testing::Contains("Looking for losses " + size + " of " + size));
    EXPECT_EQ(told.back(), "end");
}

TEST_F(PlanImporterTest, namesEachVerdict) {
    EXPECT_EQ(MSPDIVerdictName(MSPDIVerdict::Imported), "imported");
    EXPECT_EQ(MSPDIVerdictName(MSPDIVerdict::Refused), "refused");
    EXPECT_EQ(MSPDIVerdictName(MSPDIVerdict::Unreadable), "unreadable");
    EXPECT_EQ(MSPDIVerdictName(MSPDIVerdict::Failed), "failed");
}

TEST_F(PlanImporterTest, tellsWhatMendingWouldDoToARefusedPlan) {
    const auto result = import("/in/Refused.xml");
    EXPECT_EQ(result.verdict, MSPDIVerdict::Refused);
    EXPECT_EQ(stepsOf(result), "unreadable-value 1");
    EXPECT_EQ(result.mendingObstacle, "");
    expectNothingIn("/out");
    options.tellsMending = false;
    EXPECT_EQ(stepsOf(import("/in/Refused.xml")), "");
    EXPECT_EQ(stepsOf(import("/in/Plan.xml")), "") << "it imports";
}

TEST_F(PlanImporterTest, tellsWhyMendingDoesNotHelp) {
    world.machine.addFile("/in/Other.xml", "<html/>");
    for (const auto mending : {MSPDIMending::None, MSPDIMending::OfRefused, MSPDIMending::All}) {
        options.mending = mending;
        const auto result = import("/in/Other.xml");
        EXPECT_EQ(result.verdict, MSPDIVerdict::Unreadable);
        EXPECT_EQ(stepsOf(result), "");
        EXPECT_EQ(result.mendingObstacle, "It is an XML document, but no plan that Microsoft Project saved (MSPDI).");
    }
    expectNothingIn("/out");
}

TEST_F(PlanImporterTest, mendsARefusedPlanInMemoryAndImportsIt) {
    options.mending = MSPDIMending::OfRefused;
    const auto result = import("/in/Refused.xml");
    EXPECT_EQ(result.verdict, MSPDIVerdict::Imported);
    EXPECT_EQ(result.reason, "");
    EXPECT_FALSE(result.refusal);
    EXPECT_EQ(result.document, "/out/Refused.kdzx");
    EXPECT_FALSE(result.isNumbered);
    EXPECT_EQ(result.counts.tasks, 1U);
    EXPECT_EQ(result.counts.scenarios, 1U);
    EXPECT_EQ(stepsOf(result), "unreadable-value 1");
    ASSERT_TRUE(result.account) << "that of the mended plan";
    EXPECT_FALSE(result.account->refusal);
    EXPECT_THAT(world.machine.contents("/out/Refused.kdzx/__TOC.xml"), HasSubstr("<title>Refused</title>"));
    EXPECT_EQ(world.machine.contents("/in/Refused.xml"), refusedPlan());
    EXPECT_THAT(world.machine.pathsBelow("/in"), ElementsAre("/in", "/in/Plan.xml", "/in/Refused.xml"));
}

TEST_F(PlanImporterTest, takesAPlanOutOfAnotherFile) {
    world.machine.addFile("/in/Plan.pod", "head" + planWith("<Tasks>" + taskNamed("Paint", "1") + "</Tasks>") + "tail");
    const auto unmended = import("/in/Plan.pod");
    EXPECT_EQ(unmended.verdict, MSPDIVerdict::Unreadable);
    EXPECT_EQ(stepsOf(unmended), "embedded 1");
    options.mending = MSPDIMending::OfRefused;
    const auto result = import("/in/Plan.pod");
    EXPECT_EQ(result.document, "/out/Plan.kdzx") << result.reason;
    EXPECT_EQ(stepsOf(result), "embedded 1");
}

TEST_F(PlanImporterTest, improvesOnlyWhereAllIsToBeMended) {
    world.machine.addFile(
        "/in/Lossy.xml",
        planWith("<Tasks>" + taskNamed("Paint", "1", "<Deadline>2012-02-01T17:00:00</Deadline>") + "</Tasks>"));
    options.mending = MSPDIMending::OfRefused;
    const auto plain = import("/in/Lossy.xml");
    EXPECT_EQ(stepsOf(plain), "");
    EXPECT_EQ(plain.counts.customFields, 0U);
    options.mending = MSPDIMending::All;
    const auto improved = import("/in/Lossy.xml");
    EXPECT_EQ(stepsOf(improved), "deadline-to-field 1");
    EXPECT_EQ(improved.counts.customFields, 1U);
    const auto mended = import("/in/Refused.xml");
    EXPECT_EQ(mended.verdict, MSPDIVerdict::Imported);
    EXPECT_EQ(stepsOf(mended), "unreadable-value 1");
    const auto asItIs = import("/in/Plan.xml");
    EXPECT_EQ(asItIs.verdict, MSPDIVerdict::Imported);
    EXPECT_EQ(stepsOf(asItIs), "");
}

TEST_F(PlanImporterTest, tellsThatAPlanIsCutOff) {
    const auto plan =
        planWith("<Tasks>" + taskNamed("Paint", "1", "<Deadline>2012-02-01T17:00:00</Deadline>") + "</Tasks>");
    const std::string told = "the file is cut off: what stood behind that place is missing";
    world.machine.addFile("/in/Cut.xml", plan.substr(0, plan.find("</Tasks>")));
    for (const auto mending : {MSPDIMending::None, MSPDIMending::OfRefused}) {
        options.mending = mending;
        const auto result = import("/in/Cut.xml");
        EXPECT_EQ(result.verdict, MSPDIVerdict::Imported);
        EXPECT_TRUE(result.isCutOff);
        EXPECT_THAT(result.warnings, ElementsAre(StartsWith("the file is damaged"), told));
    }
    options.mending = MSPDIMending::All;
    const auto improved = import("/in/Cut.xml");
    EXPECT_TRUE(improved.isCutOff);
    EXPECT_THAT(improved.warnings, ElementsAre(StartsWith("the markup of the plan was repaired"), told));
    world.machine.addFile("/in/Whole.xml", plan);
    EXPECT_FALSE(import("/in/Whole.xml").isCutOff);
    world.machine.addFile("/in/Damaged.xml", planWith("<Title>a & b</Title>"));
    EXPECT_FALSE(import("/in/Damaged.xml").isCutOff);
}

TEST_F(PlanImporterTest, keepsTheWarningsOfThePlanThatWasMended) {
    world.machine.addFile("/in/Damaged.xml", planWith("<Title>a & b</Title><Tasks>" +
                                                      taskNamed("Paint", "1", "<Type>9</Type>") + "</Tasks>"));
    options.mending = MSPDIMending::OfRefused;
    const auto result = import("/in/Damaged.xml");
    EXPECT_EQ(result.verdict, MSPDIVerdict::Imported);
    EXPECT_THAT(result.warnings, ElementsAre(StartsWith("the file is damaged and was mended on reading")));
    options.mending = MSPDIMending::All;
    EXPECT_THAT(import("/in/Damaged.xml").warnings,
                ElementsAre("the markup of the plan was repaired, or brought entities of its own"));
}
