#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "MSPDIImportReport.h"
#include "RunInMemory.h"
#include "ScopedTempFolder.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string planOf(const std::string& content) {
    return R"(<Project xmlns="http://schemas.microsoft.com/project"><StartDate>2012-01-09T08:00:00</StartDate><Calendars>)"
           R"(<Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>)" +
           content + "</Project>";
}

std::string taskOf(const std::string& more) {
    return "<Tasks><Task><UID>1</UID><Name>Paint</Name><OutlineLevel>1</OutlineLevel>" + more + "</Task></Tasks>";
}

class ImportCommandTest : public RunInMemory {
protected:
    ImportCommandTest() {
        world.machine.addFile("/home/me/Plan.xml", planOf(taskOf("")));
        world.machine.addFile("/home/me/Lossy.xml", planOf(taskOf("<Deadline>2012-02-01T17:00:00</Deadline>")));
        world.machine.addFile("/home/me/Refused.xml", planOf(taskOf("<Type>9</Type>")));
        world.machine.addFile("/home/me/Other.xml", "<html/>");
    }

    // With an empty document beside the program.
    int runInstalled(const std::vector<std::string>& arguments, const std::string& installedTemplate) {
        out.str("");
        err.str("");
        MSPDIOutput output{out, err};
        output.installedTemplate = installedTemplate;
        return MSPDIProgram(arguments, world.services, output);
    }
};

}  // namespace

TEST_F(ImportCommandTest, tellsInAFewLinesWhatItMade) {
    EXPECT_EQ(run({"import", "Lossy.xml"}), 0);
    EXPECT_EQ(out.str(),
              "Lossy.xml: the document is Lossy.kdzx\n"
              "    1 task, 0 resources, 1 scenario, 0 custom fields\n"
              "    Lost or changed: 1 x deadline; all of it: mspdi losses Lossy.xml\n");
    EXPECT_EQ(err.str(), "");
    EXPECT_TRUE(world.machine.exists("/home/me/Lossy.kdzx/__TOC.xml"));
}

TEST_F(ImportCommandTest, tellsTheFolderAsItWasNamed) {
    EXPECT_EQ(run({"import", "./Plan.xml", "-o", "new/inner"}), 0);
    EXPECT_THAT(out.str(), StartsWith("./Plan.xml: the document is new/inner/Plan.kdzx\n"));
    EXPECT_TRUE(world.machine.exists("/home/me/new/inner/Plan.kdzx"));
    EXPECT_EQ(run({"import", "/home/me/Plan.xml", "--output", "new/inner"}), 0);
    EXPECT_THAT(out.str(), StartsWith("/home/me/Plan.xml: the document is new/inner/Plan-1.kdzx (its own name was "
                                      "taken)\n"));
    EXPECT_EQ(run({"import", "/home/me/Plan.xml"}), 0);
    EXPECT_THAT(out.str(), StartsWith("/home/me/Plan.xml: the document is /home/me/Plan.kdzx\n"));
}

TEST_F(ImportCommandTest, tellsTheMostImportantLossesAndTheNumberOfTheOthers) {
    world.machine.addFile(
        "/home/me/Lossy.xml",
        planOf("<Author>Ann</Author>" + taskOf("<Deadline>2012-02-01T17:00:00</Deadline><Manual>1</Manual>"
                                               "<WBS>A.1</WBS><Contact>Bo</Contact>"
                                               "<FixedCostAccrual>2</FixedCostAccrual><Hyperlink>h</Hyperlink><Odd>1</"
                                               "Odd><ActualStart>2012-01-10T08:00:00</ActualStart>")));
    EXPECT_EQ(run({"import", "Lossy.xml"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("    Lost or changed: 1 x deadline, 1 x manual-task, "));
    EXPECT_THAT(out.str(), HasSubstr(" more kind"));
    EXPECT_THAT(out.str(), Not(HasSubstr("document-properties")));
}

TEST_F(ImportCommandTest, saysWhereNothingOfThePlanIsLost) {
    EXPECT_EQ(run({"import", "Plan.xml"}), 0);
    EXPECT_THAT(out.str(), EndsWith("    Lost or changed: nothing\n"));
    world.machine.addFile("/home/me/Plan.xml", planOf("<Author>Ann</Author>" + taskOf("")));
    EXPECT_EQ(run({"import", "Plan.xml"}), 0);
    EXPECT_THAT(out.str(),
                EndsWith("    Lost or changed: only what belongs to the file, not to the plan; all of it: mspdi losses "
                         "Plan.xml\n"));
}

TEST_F(ImportCommandTest, tellsWhyAPlanIsRefusedAndLeavesNothing) {
    EXPECT_EQ(run({"import", "Refused.xml", "-o", "out"}), 1);
    EXPECT_EQ(
        out.str(),
        "Refused.xml: refused: a task is of an unknown type (Unexpected MSPDI Task Type: 9 "
        "(Task UID='1' name='Paint'))\n"
        "    mspdi import --mend imports it: 1 x unreadable-value (mspdi mend --dry-run Refused.xml tells more)\n");
    EXPECT_FALSE(world.machine.exists("/home/me/out"));
}

TEST_F(ImportCommandTest, tellsThatARefusedPlanIsDamaged) {
    auto damaged = world.machine.contents("/home/me/Refused.xml");
    damaged.replace(damaged.find("Paint"), 5, "R & D");
    world.machine.addFile("/home/me/Damaged.xml", damaged);
    EXPECT_EQ(run({"import", "Damaged.xml"}), 1);
    EXPECT_THAT(out.str(), HasSubstr("(Task UID='1' name='R & D'))\n    Warning: the file is damaged and was mended on "
                                     "reading, values may be missing (at line 1: "));
}

// All of its losses are told by no command.
TEST_F(ImportCommandTest, tellsThatAPlanIsCutOff) {
    const auto plan = world.machine.contents("/home/me/Lossy.xml");
    world.machine.addFile("/home/me/Cut.xml", plan.substr(0, plan.find("</Tasks>")));
    EXPECT_EQ(run({"import", "Cut.xml"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("    Warning: the file is cut off: what stood behind that place is missing\n"));
    EXPECT_THAT(out.str(), HasSubstr("    Lost or changed: 1 x overwritten-by-repair"));
    EXPECT_THAT(out.str(), EndsWith(", and what is cut off\n"));
    EXPECT_THAT(out.str(), Not(HasSubstr("mspdi losses")));
}

TEST_F(ImportCommandTest, tellsWhatItCouldNotReadInOneLine) {
    for (const auto& [plan, reason] : {std::pair("None.xml", "no such file"),
                                       {"/home/me", "a folder, not a plan"},
                                       {"Other.xml", "XML, but no plan of Microsoft Project"}}) {
        EXPECT_EQ(run({"import", plan}), 2);
        EXPECT_EQ(out.str(), "");
        EXPECT_THAT(err.str(), StartsWith(std::string("mspdi: ") + plan + ": " + reason));
        EXPECT_EQ(err.str().find('\n'), err.str().size() - 1);
        EXPECT_THAT(err.str(), Not(HasSubstr("--mend")));
    }
}

TEST_F(ImportCommandTest, mendsRefusedPlansAndTellsTheSteps) {
    EXPECT_EQ(run({"import", "--mend", "Refused.xml", "Plan.xml"}), 0);
    EXPECT_EQ(out.str(),
              "Refused.xml: the document is Refused.kdzx\n"
              "    1 task, 0 resources, 1 scenario, 0 custom fields\n"
              "    Mended: 1 x unreadable-value: values that the importer cannot take, and stops at, leave the copy\n"
              "    Lost or changed: nothing\n"
              "Plan.xml: the document is Plan.kdzx\n"
              "    1 task, 0 resources, 1 scenario, 0 custom fields\n"
              "    Lost or changed: nothing\n");
    EXPECT_EQ(run({"import", "--mend", "--json", "Refused.xml"}), 0);
    const auto plan = told()["plans"][0];
    EXPECT_EQ(plan["verdict"], "imported");
    EXPECT_EQ(plan["mending"][0]["step"], "unreadable-value");
    EXPECT_EQ(plan["mending"][0]["count"], 1);
    EXPECT_EQ(plan["mendingObstacle"], nullptr);
}

TEST_F(ImportCommandTest, improvesAllPlansOnlyWhenAsked) {
    world.machine.addFile(
        "/home/me/Lossy.xml",
        planOf(taskOf("<Deadline>2012-02-01T17:00:00</Deadline><OutlineCode><ValueID>3</ValueID></OutlineCode>")));
    EXPECT_EQ(run({"import", "--mend=all", "Lossy.xml"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("1 custom field\n    Mended: 1 x deadline-to-field: deadlines become a custom "
                                     "field of their tasks\n"));
    EXPECT_THAT(
        out.str(),
        HasSubstr("; all of it: mspdi mend --all Lossy.xml -o Lossy.mended.xml && mspdi losses Lossy.mended.xml\n"));
    EXPECT_EQ(run({"import", "--mend", "Lossy.xml"}), 0);
    EXPECT_THAT(out.str(), Not(HasSubstr("Mended")));
    for (const auto* wrong : {"--mend=some", "--mend=", "--mend=false"}) {
        EXPECT_EQ(run({"import", wrong, "Plan.xml"}), 2) << wrong;
        EXPECT_THAT(err.str(), StartsWith("mspdi: --mend"));
    }
}

TEST_F(ImportCommandTest, saysWhatMendingDoesForPlansThatCannotBeRead) {
    world.machine.addFile("/home/me/Plan.pod", "head" + planOf(taskOf("")) + "tail");
    EXPECT_EQ(run({"import", "Plan.pod"}), 2);
    EXPECT_THAT(err.str(), EndsWith("; mspdi import --mend imports it\n"));
    EXPECT_EQ(run({"import", "--mend", "Plan.pod"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("    Mended: 1 x embedded: "));
    EXPECT_EQ(run({"import", "--json", "--mend", "Other.xml"}), 2);
    EXPECT_EQ(told()["plans"][0]["mending"], nullptr);
    EXPECT_EQ(told()["plans"][0]["mendingObstacle"],
              "It is an XML document, but no plan that Microsoft Project saved (MSPDI).");
}

TEST_F(ImportCommandTest, importsEachOfSeveralPlans) {
    EXPECT_EQ(run({"import", "None.xml", "Plan.xml", "Refused.xml", "Lossy.xml"}), 2);
    EXPECT_TRUE(world.machine.exists("/home/me/Plan.kdzx"));
    EXPECT_TRUE(world.machine.exists("/home/me/Lossy.kdzx"));
    EXPECT_EQ(err.str(), "mspdi: None.xml: no such file\n");
    EXPECT_EQ(run({"import", "Refused.xml", "Plan.xml"}), 1);
    EXPECT_EQ(run({"import", "Plan.xml", "Lossy.xml"}), 0);
}

TEST_F(ImportCommandTest, namesTheDocumentOfOnePlan) {
    for (const auto* name : {"House", "House.kdzx"}) {
        EXPECT_EQ(run({"import", "Plan.xml", "--name", name, "--overwrite"}), 0);
        EXPECT_THAT(out.str(), StartsWith("Plan.xml: the document is House.kdzx\n"));
    }
    EXPECT_EQ(run({"import", "Plan.xml", "Lossy.xml", "--name", "House"}), 2);
    EXPECT_EQ(err.str(), "mspdi: --name is for one plan, not for several\n");
    for (const auto* name : {"a/b", "..", ".kdzx"}) {
        EXPECT_EQ(run({"import", "Plan.xml", "--name", name}), 2);
        EXPECT_EQ(err.str(), std::string("mspdi: ") + name + ": a document cannot have this name\n");
    }
}

TEST_F(ImportCommandTest, overwritesOnlyWhenAsked) {
    world.machine.addFile("/home/me/Plan.kdzx/old.txt", "old");
    world.machine.addFile("/home/me/Plan.kdzx/__TOC.xml", "old");
    EXPECT_EQ(run({"import", "Plan.xml"}), 0);
    EXPECT_TRUE(world.machine.exists("/home/me/Plan-1.kdzx"));
    EXPECT_EQ(run({"import", "Plan.xml", "--overwrite"}), 0);
    EXPECT_FALSE(world.machine.exists("/home/me/Plan.kdzx/old.txt"));
}

TEST_F(ImportCommandTest, saysWhyItDoesNotOverwrite) {
    world.machine.addFile("/home/me/Plan.kdzx/precious/notes.txt", "months of work");
    EXPECT_EQ(run({"import", "Plan.xml", "--overwrite"}), 0);
    EXPECT_EQ(out.str(),
              "Plan.xml: the document is Plan-1.kdzx (its own name was taken)\n"
              "    1 task, 0 resources, 1 scenario, 0 custom fields\n"
              "    Warning: Plan.kdzx is no document, so it was not replaced\n"
              "    Lost or changed: nothing\n");
    EXPECT_TRUE(world.machine.exists("/home/me/Plan.kdzx/precious/notes.txt"));
}

TEST_F(ImportCommandTest, beginsWithTheInstalledDocumentUnlessToldOtherwise) {
    EXPECT_EQ(run({"import", "Plan.xml", "--name", "Plain"}), 0);
    for (const auto* folder : {"/usr/share/Empty.kdzx", "/home/me/Mine.kdzx"}) {
        for (const auto* file : {"/Actual.xml", "/__TOC.xml"}) {
            world.machine.addFile(std::string(folder) + file,
                                  world.machine.contents(std::string("/home/me/Plain.kdzx") + file));
        }
        world.machine.addFile(std::string(folder) + "/from.txt", folder);
    }
    EXPECT_EQ(runInstalled({"import", "Plan.xml"}, "/usr/share/Empty.kdzx"), 0);
    EXPECT_EQ(world.machine.contents("/home/me/Plan.kdzx/from.txt"), "/usr/share/Empty.kdzx");
    EXPECT_EQ(runInstalled({"import", "Plan.xml", "--overwrite", "--template", "Mine.kdzx"}, "/usr/share/Empty.kdzx"),
              0);
    EXPECT_EQ(world.machine.contents("/home/me/Plan.kdzx/from.txt"), "/home/me/Mine.kdzx");
    EXPECT_EQ(runInstalled({"import", "Plan.xml"}, "/nowhere/Empty.kdzx"), 0) << "the one that is part of the program";
    EXPECT_EQ(run({"import", "Plan.xml", "--template", "None.kdzx"}), 2);
    EXPECT_EQ(err.str(), "mspdi: None.kdzx: no document to import into\n");
}

TEST_F(ImportCommandTest, tellsItAsJSON) {
    EXPECT_EQ(run({"import", "--json", "Lossy.xml", "Refused.xml", "None.xml"}), 2);
    const auto json = told();
    EXPECT_EQ(json["imported"], 1);
    ASSERT_EQ(json["plans"].size(), 3U);
    const auto& lossy = json["plans"][0];
    EXPECT_EQ(lossy["plan"], "Lossy.xml");
    EXPECT_EQ(lossy["verdict"], "imported");
    EXPECT_EQ(lossy["reason"], nullptr);
    EXPECT_EQ(lossy["document"], "/home/me/Lossy.kdzx");
    EXPECT_EQ(lossy["tasks"], 1);
    EXPECT_EQ(lossy["resources"], 0);
    EXPECT_EQ(lossy["scenarios"], 1);
    EXPECT_EQ(lossy["customFields"], 0);
    EXPECT_EQ(lossy["losses"].dump(), R"([{"count":1,"kind":"deadline","what":"deadlines"}])");
    EXPECT_EQ(lossy["summerDates"], 0);
    EXPECT_EQ(json["plans"][1]["verdict"], "refused");
    EXPECT_THAT(json["plans"][1]["reason"], HasSubstr("Unexpected MSPDI Task Type: 9"));
    EXPECT_EQ(json["plans"][1]["document"], nullptr);
    EXPECT_EQ(json["plans"][1]["tasks"], nullptr);
    EXPECT_EQ(json["plans"][2]["verdict"], "unreadable");
    EXPECT_EQ(err.str(), "mspdi: None.xml: no such file\n");
}

TEST_F(ImportCommandTest, tellsNothingWhenQuiet) {
    EXPECT_EQ(run({"import", "--quiet", "Lossy.xml"}), 0);
    EXPECT_EQ(run({"import", "-q", "--json", "Refused.xml"}), 1);
    EXPECT_EQ(out.str() + err.str(), "");
    EXPECT_TRUE(world.machine.exists("/home/me/Lossy.kdzx"));
}

TEST_F(ImportCommandTest, writesTheImportersLogWhereItIsTold) {
    const ScopedTempFolder folder;
    EXPECT_EQ(run({"import", "Plan.xml", "--log", folder / "log"}), 0);
    EXPECT_EQ(run({"import", "Refused.xml", "--log", folder / "log"}), 1);
    EXPECT_THAT(folder.contents("log"), HasSubstr("] Output: '/home/me/Plan.kdzx'\n"));
    EXPECT_THAT(folder.contents("log"), HasSubstr("] Exception: "));
    EXPECT_THAT(out.str() + err.str(), Not(HasSubstr("Exception")));
    EXPECT_EQ(run({"import", "Plan.xml", "--log", folder.path()}), 2);
    EXPECT_EQ(err.str(), "mspdi: " + folder.path() + ": Is a directory\n");
}

TEST_F(ImportCommandTest, neverTakesAPlanForTheLog) {
    EXPECT_EQ(run({"import", "Plan.xml", "--log", "./Plan.xml"}), 2);
    EXPECT_EQ(err.str(), "mspdi: ./Plan.xml: a plan cannot be the log\n");
}

// Whatever leads there: what a log is added to must be no part of a document.
TEST_F(ImportCommandTest, neverMakesTheLogAPartOfADocument) {
    world.machine.addFile("/home/me/Old.kdzx/__TOC.xml", "<toc/>");
    world.machine.addFile("/home/me/Old.kdzx/notes.txt", "notes");
    world.machine.addFile("/home/me/Template/__TOC.xml", "<toc/>");
    world.machine.addFile("/home/me/Template/sub/picture.png", "png");
    world.machine.addLink("/home/me/link", "/home/me/Template/sub");
    world.machine.addLink("/home/me/file.log", "/home/me/Old.kdzx/notes.txt");
    const std::string part = ": the log would become a part of the document ";
    for (const auto& [log, document] :
         std::vector<std::pair<std::string, std::string>>{{"Old.kdzx/notes.txt", "Old.kdzx"},
                                                          {"Old.kdzx/new.log", "Old.kdzx"},
                                                          {"/home/me/../me/Old.kdzx/new.log", "Old.kdzx"},
                                                          {"file.log", "Old.kdzx"},
                                                          {"Template/new.log", "Template"},
                                                          {"Template/sub/picture.png", "Template"},
                                                          {"link/new.log", "Template"}}) {
        EXPECT_EQ(run({"import", "Plan.xml", "--log", log}), 2);
        EXPECT_EQ(err.str(), "mspdi: " + log + part + "/home/me/" + document + "\n");
        EXPECT_EQ(out.str(), "");
        EXPECT_FALSE(world.machine.exists("/home/me/Plan.kdzx")) << "it is told before anything is written";
    }
    EXPECT_EQ(world.machine.contents("/home/me/Old.kdzx/notes.txt"), "notes");
}

TEST_F(ImportCommandTest, neverSpoilsXMLWithTheLog) {
    const std::string reason = ": it holds XML, which a log would spoil\n";
    for (const auto* const content : {"<Project/>", "\xEF\xBB\xBF <Project/>", "\xFF\xFE<"}) {
        world.machine.addFile("/home/me/log", content);
        EXPECT_EQ(run({"import", "Plan.xml", "--log", "log"}), 2) << content;
        EXPECT_EQ(err.str(), "mspdi: log" + reason);
    }
    world.machine.addLink("/home/me/off", "/home/me/nowhere");
    EXPECT_EQ(run({"import", "Plan.xml", "--log", "off"}), 2);
    EXPECT_EQ(err.str(), "mspdi: off: a link that leads nowhere\n");
    EXPECT_FALSE(world.machine.exists("/home/me/Plan.kdzx"));
}

TEST_F(ImportCommandTest, beginsNoLogWhereItCannotImport) {
    const ScopedTempFolder folder;
    EXPECT_EQ(run({"import", "Plan.xml", "--log", folder / "log", "--template", "None"}), 2);
    EXPECT_EQ(err.str(), "mspdi: None: no document to import into\n");
    EXPECT_EQ(folder.listing(), "");
}

TEST_F(ImportCommandTest, tellsThatTheLogCouldNotBeWritten) {
    if (::access("/dev/full", W_OK) != 0) {
        GTEST_SKIP() << "no /dev/full on this machine";
    }
    EXPECT_EQ(run({"import", "Plan.xml", "--log", "/dev/full"}), 2);
    EXPECT_EQ(err.str(),
              "mspdi: /dev/full: No space left on device; the log is not complete, what was imported stands\n");
    EXPECT_TRUE(world.machine.exists("/home/me/Plan.kdzx/__TOC.xml"));
    EXPECT_THAT(out.str(), StartsWith("Plan.xml: the document is Plan.kdzx\n"));
    EXPECT_EQ(run({"import", "Plan.xml", "--log", "/dev/full", "--json"}), 2);
    EXPECT_EQ(told().at("imported"), 1);
}

TEST_F(ImportCommandTest, waitsForNoReaderOfTheLog) {
    const ScopedTempFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(run({"import", "Plan.xml", "--log", folder / "pipe"}), 2);
    EXPECT_EQ(err.str(), "mspdi: " + (folder / "pipe") + ": a pipe that nobody reads\n");
    EXPECT_FALSE(world.machine.exists("/home/me/Plan.kdzx"));
}

TEST_F(ImportCommandTest, saysThatTheDiskFailsInTheEnd) {
    world.machine.failAlways("synchronize", "'/home/me': Input/output error");
    EXPECT_EQ(run({"import", "Plan.xml"}), 2);
    EXPECT_EQ(err.str(), "mspdi: failed to bring the documents to the disk: '/home/me': Input/output error\n");
}

TEST_F(ImportCommandTest, tellsOfDaylightSavingTimeAndImportsAsInWinter) {
    world.clock.set(utcInstant(2012, 7, 9, 8));
    const MSPCServices summer{world.clock,   *MSPCTimeZone::named("Europe/Berlin"),
                              world.log,     world.settings,
                              world.machine, world.randomSource};
    EXPECT_EQ(MSPDIProgram({"import", "Plan.xml"}, summer, {out, err}), 0);
    EXPECT_EQ(
        out.str(),
        "Plan.xml: the document is Plan.kdzx\n"
        "    1 task, 0 resources, 1 scenario, 0 custom fields\n"
        "    Daylight saving time: 1 date gets it once more than in winter (--as-in-winter imports as in winter)\n"
        "    Lost or changed: nothing\n");
    EXPECT_THAT(world.machine.contents("/home/me/Plan.kdzx/Actual.xml"),
                HasSubstr("<start-date>2012-01-09T08:00:00+02:00</start-date>"));
    out.str("");
    EXPECT_EQ(MSPDIProgram({"import", "--as-in-winter", "--overwrite", "Plan.xml"}, summer, {out, err}), 0);
    EXPECT_THAT(out.str(), Not(HasSubstr("Daylight")));
    EXPECT_THAT(world.machine.contents("/home/me/Plan.kdzx/Actual.xml"),
                HasSubstr("<start-date>2012-01-09T08:00:00+01:00</start-date>"));
}

TEST_F(ImportCommandTest, refusesWrongArguments) {
    for (const auto& arguments : {std::vector<std::string>{"import"},
                                  {"import", "--every", "Plan.xml"},
                                  {"import", "Plan.xml", "-o", ""},
                                  {"import", "Plan.xml", "--template", ""},
                                  {"import", "Plan.xml", "--name", ""},
                                  {"import", "Plan.xml", "--log", ""}}) {
        EXPECT_EQ(run(arguments), 2);
        EXPECT_EQ(out.str(), "");
        EXPECT_THAT(err.str(), StartsWith("mspdi: "));
    }
}

TEST_F(ImportCommandTest, helpsAndTellsItsVersion) {
    EXPECT_EQ(run({"import", "--help"}), 0);
    for (const auto* option :
         {"--output", "--template", "--name", "--overwrite", "--mend", "--log", "--as-in-winter", "--json"}) {
        EXPECT_THAT(out.str(), HasSubstr(option));
    }
    EXPECT_EQ(run({"import", "--version"}), 0);
    EXPECT_EQ(out.str(), "mspdi " KZMSP_VERSION "\n");
}

TEST_F(ImportCommandTest, writesNoControlCharactersOfNames) {
    world.machine.addFile("/home/me/a\x1B[31m.xml", planOf(""));
    EXPECT_EQ(run({"import", "a\x1B[31m.xml"}), 0);
    EXPECT_EQ(out.str().find('\x1B'), std::string::npos) << out.str();
}

TEST_F(ImportCommandTest, tellsCommandsThatWorkForOddNames) {
    const std::string lossy =
        planOf(taskOf("<Deadline>2012-02-01T17:00:00</Deadline><OutlineCode><ValueID>3</ValueID></OutlineCode>"));
    world.machine.addFile("/home/me/a\nb.xml", lossy);
    EXPECT_EQ(run({"import", "a\nb.xml"}), 0);
    EXPECT_THAT(out.str(), EndsWith("; all of it: mspdi losses $'a\\012b.xml'\n"));
    EXPECT_EQ(run({"import", "--mend=all", "a\nb.xml", "--overwrite"}), 0);
    EXPECT_THAT(out.str(), EndsWith("; all of it: mspdi mend --all $'a\\012b.xml' -o $'a\\012b.mended.xml' && "
                                    "mspdi losses $'a\\012b.mended.xml'\n"));
    world.machine.addFile("/home/me/a\xFF.xml", planOf(taskOf("<Type>9</Type>")));
    EXPECT_EQ(run({"import", "a\xFF.xml"}), 1);
    EXPECT_THAT(out.str(), EndsWith(" (mspdi mend --dry-run $'a\\377.xml' tells more)\n"));
}

TEST(MSPDIShellWord, isQuotedWhereItNeedsQuotes) {
    EXPECT_EQ(MSPDIShellWord("plans/House-1.xml"), "plans/House-1.xml");
    EXPECT_EQ(MSPDIShellWord("My house.xml"), "'My house.xml'");
    EXPECT_EQ(MSPDIShellWord("Ann's.xml"), "'Ann'\\''s.xml'");
    EXPECT_EQ(MSPDIShellWord("-x.xml"), "./-x.xml");
    EXPECT_EQ(MSPDIShellWord("$(id).xml"), "'$(id).xml'");
    EXPECT_EQ(MSPDIShellWord(""), "''");
    EXPECT_EQ(MSPDIShellWord("B\xC3\xA4\\r.xml"), "'B\xC3\xA4\\r.xml'");
}

TEST(MSPDIShellWord, hasEscapesOfTheShellForWhatMustNotBeShown) {
    EXPECT_EQ(MSPDIShellWord("a\nb.xml"), "$'a\\012b.xml'");
    EXPECT_EQ(MSPDIShellWord("\x1B"
                             "1\x7F"),
              "$'\\0331\\177'")
        << "the digit behind an escape is none of it";
    EXPECT_EQ(MSPDIShellWord("B\xC3\xA4r \xFF.xml"), "$'B\xC3\xA4r \\377.xml'") << "what is UTF-8 stays";
    EXPECT_EQ(MSPDIShellWord("\xC3"), "$'\\303'") << "half a character";
    EXPECT_EQ(MSPDIShellWord("\xE2\x80\xAEx"), "$'\\342\\200\\256x'") << "turns the direction of text";
    EXPECT_EQ(MSPDIShellWord("it's\\\t"), "$'it\\'s\\\\\\011'");
    EXPECT_EQ(MSPDIShellWord("-\n"), "$'./-\\012'");
}
