#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "MSPDIInWords.h"
#include "MSPDIRefusal.h"
#include "RunInMemory.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string planOf(const std::string& content) {
    return R"(<Project xmlns="http://schemas.microsoft.com/project"><StartDate>2012-01-09T08:00:00</StartDate><Calendars>)"
           R"(<Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>)" +
           content + "</Project>";
}

class LossesCommandTest : public RunInMemory {
protected:
    LossesCommandTest() {
        std::string tasks;
        for (int uid = 1; uid <= 4; ++uid) {
            tasks +=
                "<Task><UID>" + std::to_string(uid) +
                "</UID><Name>Paint</Name><OutlineLevel>1</OutlineLevel><Deadline>2012-02-01T17:00:00</Deadline></Task>";
        }
        world.machine.addFile("/home/me/Lossy.xml", planOf("<Tasks>" + tasks + "</Tasks>"));
        world.machine.addFile("/home/me/Lossless.xml", planOf(""));
        world.machine.addFile("/home/me/Other.xml", "<html/>");
        world.machine.addFile("/home/me/Empty.xml", "");
        world.machine.addFile("/home/me/Plan.txt", planOf(""));
    }
};

}  // namespace

TEST_F(LossesCommandTest, tellsKindsWithTheirFirstPlaces) {
    EXPECT_EQ(run({"losses", "Lossy.xml"}), 1);
    EXPECT_EQ(out.str(),
              "4 x deadline: deadlines\n"
              "    Paint (UID 1): Wed 1 Feb 2012 17:00  /Project/Tasks[1]/Task[1]/Deadline[1]\n"
              "    Paint (UID 2): Wed 1 Feb 2012 17:00  /Project/Tasks[1]/Task[2]/Deadline[1]\n"
              "    Paint (UID 3): Wed 1 Feb 2012 17:00  /Project/Tasks[1]/Task[3]/Deadline[1]\n"
              "    ... and 1 more (--all shows them)\n"
              "    mspdi mend --only deadline-to-field saves what it can of it in a copy\n"
              "Lossy.xml: 20 leaves, 5 carried, 0 changed, 10 shaping, 1 default, 0 derived, 4 lost\n");
    EXPECT_EQ(err.str(), "");
}

TEST_F(LossesCommandTest, hasNothingToTellOfALosslessPlan) {
    EXPECT_EQ(run({"losses", "Lossless.xml"}), 0);
    EXPECT_EQ(out.str(), "Lossless.xml: 4 leaves, 1 carried, 0 changed, 2 shaping, 1 default, 0 derived, 0 lost\n");
}

TEST_F(LossesCommandTest, showsANumberAloneWhereThereIsNoName) {
    world.machine.addFile(
        "/home/me/Nameless.xml",
        planOf("<Tasks><Task><UID>7</UID><OutlineLevel>1</OutlineLevel><Manual>1</Manual></Task></Tasks>"));
    EXPECT_EQ(run({"losses", "Nameless.xml"}), 1);
    EXPECT_THAT(out.str(), HasSubstr("\n    (no name) (UID 7): 1  /Project/Tasks[1]/Task[1]/Manual[1]\n"));
}

TEST_F(LossesCommandTest, showsEveryPlaceWithAll) {
    EXPECT_EQ(run({"losses", "--all", "Lossy.xml"}), 1);
    EXPECT_THAT(out.str(), HasSubstr("/Project/Tasks[1]/Task[4]/Deadline[1]"));
}

TEST_F(LossesCommandTest, tellsItAsJSON) {
    EXPECT_EQ(run({"losses", "Lossy.xml", "--json"}), 1);
    EXPECT_EQ(told()["plan"], "Lossy.xml");
    EXPECT_EQ(told()["importable"], true);
    EXPECT_EQ(told()["reason"], nullptr);
    EXPECT_EQ(told()["leaves"]["lost"], 4);
    EXPECT_EQ(told()["losses"][0]["kind"], "deadline");
    EXPECT_EQ(told()["losses"][0]["count"], 4);
    EXPECT_EQ(told()["losses"][0]["step"], "deadline-to-field");
    EXPECT_EQ(told()["losses"][0]["where"].size(), 3U);
    EXPECT_FALSE(told().contains("fates"));
    EXPECT_EQ(run({"losses", "Lossy.xml", "--json", "--all"}), 1);
    EXPECT_EQ(told()["losses"][0]["where"].size(), 4U);
    EXPECT_EQ(told()["fates"].size(), 20U);
    EXPECT_EQ(told()["fates"]["/Project/Tasks[1]/Task[4]/Deadline[1]"], "lost");
}

// Broken markup may have them. One character for all bytes that cannot be shown would make their paths alike.
TEST_F(LossesCommandTest, keepsElementsApartWhoseNamesAreNoUTF8) {
    world.machine.addFile("/home/me/Bytes.xml", planOf("<A><a\xE8/><a\xE9/><a\xE9/></A>"));
    EXPECT_EQ(run({"losses", "--json", "--all", "Bytes.xml"}), 1);
    EXPECT_EQ(told()["leaves"]["total"], told()["fates"].size());
    EXPECT_EQ(told()["losses"][0]["where"][0]["path"], "/Project/A[1]/a\\xe8[1]");
    EXPECT_EQ(told()["losses"][0]["where"][2]["path"], "/Project/A[1]/a\\xe9[2]");
    EXPECT_EQ(told()["losses"][0]["element"], "A/a\\xe8");
}

TEST_F(LossesCommandTest, tellsNothingWhenQuiet) {
    EXPECT_EQ(run({"losses", "--quiet", "Lossy.xml"}), 1);
    EXPECT_EQ(run({"losses", "-q", "--json", "Lossy.xml"}), 1);
    EXPECT_EQ(run({"losses", "-q", "Lossless.xml"}), 0);
    EXPECT_EQ(out.str() + err.str(), "");
}

TEST_F(LossesCommandTest, tellsInOneLineWhatItCouldNotLookAt) {
    for (const auto& [file, reason] :
         {std::pair<std::string, std::string>("None.xml", "no such file"),
          {"/home/me", "a folder, not a plan"},
          {"Other.xml",
           "XML, but no plan of Microsoft Project (MSPIMapper.map: Source XML DOM is not a valid MSPDI document.)"},
          {"Empty.xml",
           "it cannot be read as XML, even after repair (MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM "
           "from "
           "source data.)"},
          {"Plan.txt",
           "neither .xml nor .mspxml; in Microsoft Project, save it as XML (MSPIXMLImporter.importMSPDIData: Source "
           "must "
           "be a MS Project XML document.)"}}) {
        EXPECT_EQ(run({"losses", "--json", file}), 2);
        EXPECT_EQ(out.str(), "");
        EXPECT_EQ(err.str(), "mspdi: " + file + ": " + reason + "\n");
    }
}

TEST_F(LossesCommandTest, tellsOfAPlanThatIsCutOffOnlyThat) {
    const auto whole = world.machine.contents("/home/me/Lossy.xml");
    for (const auto size : {whole.find("<Tasks>"), whole.find("</Task>") + 3, whole.size() - 1}) {
        world.machine.addFile("/home/me/Cut.xml", whole.substr(0, size));
        for (const std::string option : {"--all", "--json", "--quiet"}) {
            EXPECT_EQ(run({"losses", option, "Cut.xml"}), 2);
            EXPECT_EQ(err.str(), "mspdi: Cut.xml: the file is cut off\n");
            EXPECT_EQ(out.str(), "");
        }
    }
    world.machine.addFile("/home/me/Longer.xml", whole + "<more");
    EXPECT_EQ(run({"losses", "Longer.xml"}), 1);
}

TEST_F(LossesCommandTest, refusesWrongArguments) {
    for (const auto& arguments : {std::vector<std::string>{"losses"},
                                  {"losses", "--every", "Lossy.xml"},
                                  {"losses", "Lossy.xml", "Lossless.xml"}}) {
        EXPECT_EQ(run(arguments), 2);
        EXPECT_EQ(out.str(), "");
        EXPECT_THAT(err.str(), StartsWith("mspdi: "));
    }
}

TEST_F(LossesCommandTest, helpsAndTellsItsVersion) {
    EXPECT_EQ(run({"losses", "--help"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("--all"));
    EXPECT_EQ(run({"losses", "--version"}), 0);
    EXPECT_EQ(out.str(), "mspdi " KZMSP_VERSION "\n");
}

TEST_F(LossesCommandTest, writesNoControlCharactersOfAPlan) {
    world.machine.addFile("/home/me/Odd.xml", planOf("<Subject>a&#x9;b&#xA;c&#x202E;d&#x9B;e</Subject>"));
    EXPECT_EQ(run({"losses", "Odd.xml"}), 1);
    EXPECT_THAT(out.str(), HasSubstr("    a\\tb\\nc\\u202ed\\u009be  /Project/Subject[1]\n"));
    EXPECT_EQ(run({"losses", "Odd.xml"}, true), 1);
    EXPECT_THAT(out.str(), StartsWith("\x1B[1m1 x document-properties\x1B[0m: "));
}

TEST_F(LossesCommandTest, tellsTheReasonOfARefusalInOneSentence) {
    world.machine.addFile("/home/me/Refused.xml",
                          planOf("<Tasks><Task><UID>1</UID><Name>Paint</Name><Type>9</Type></Task></Tasks>"));
    EXPECT_EQ(run({"losses", "Refused.xml", "--json"}), 1);
    EXPECT_EQ(told()["importable"], false);
    EXPECT_EQ(told()["reason"], "Unexpected MSPDI Task Type: 9 (Task UID='1' name='Paint')");
    EXPECT_EQ(run({"losses", "Refused.xml"}), 1);
    EXPECT_THAT(out.str(),
                StartsWith("Refused by the importer: a task is of an unknown type (Unexpected MSPDI Task Type: 9 "
                           "(Task UID='1' name='Paint'))\n\n"));
}

TEST_F(LossesCommandTest, tellsNoPathsThatGrowWithTheSquareOfThePlan) {
    std::string open;
    std::string closed;
    for (int level = 0; level < 1000; ++level) {
        open += "<a>";
        closed += "</a>";
    }
    world.machine.addFile("/home/me/Deep.xml", planOf("<Other>" + open + closed + "</Other>"));
    EXPECT_EQ(run({"losses", "Deep.xml"}), 1);
    EXPECT_EQ(run({"losses", "--all", "Deep.xml"}), 2);
    EXPECT_EQ(err.str(), "mspdi: Deep.xml: Elements are nested too deeply to be told one by one.\n");
    world.machine.addFile("/home/me/Deep.xml",
                          planOf("<Tasks><Task><UID>1</UID><Notes>" + open + closed + "</Notes></Task></Tasks>"));
    EXPECT_EQ(run({"losses", "Deep.xml"}), 1);
    EXPECT_EQ(run({"losses", "--all", "Deep.xml"}), 2);
    EXPECT_EQ(err.str(), "mspdi: Deep.xml: Elements are nested too deeply to be told one by one.\n");
}

TEST_F(LossesCommandTest, givesTheFateOfAProjectWithoutAnything) {
    world.machine.addFile("/home/me/Empty.xml", R"(<Project xmlns="http://schemas.microsoft.com/project"/>)");
    EXPECT_EQ(run({"losses", "--all", "--json", "Empty.xml"}), 1);
    EXPECT_EQ(told()["leaves"]["total"], 1);
    EXPECT_EQ(told()["fates"].dump(), R"({"/Project":"default"})");
}

TEST_F(LossesCommandTest, tellsValuesInWords) {
    const auto link = [](const std::string& lag, const std::string& format) {
        return "<PredecessorLink><PredecessorUID>1</PredecessorUID><LinkLag>" + lag + "</LinkLag><LagFormat>" + format +
               "</LagFormat></PredecessorLink>";
    };
    world.machine.addFile(
        "/home/me/Words.xml",
        planOf("<Tasks><Task><UID>1</UID><Name>Dig</Name><OutlineLevel>1</OutlineLevel></Task>"
               "<Task><UID>2</UID><Name>Paint</Name><OutlineLevel>1</OutlineLevel>"
               "<ConstraintType>6</ConstraintType><CalendarUID>3</CalendarUID><Duration>PT40H0M0S</"
               "Duration><Work>PT8H0M0S</Work>" +
               link("9600", "7") + link("-600", "5") + link("50", "19") +
               "<PredecessorLink><PredecessorUID>9</PredecessorUID></PredecessorLink>"
               "</Task></Tasks><Resources><Resource><UID>1</UID></Resource></Resources><Assignments><Assignment>"
               "<TaskUID>2</TaskUID><ResourceUID>1</ResourceUID><Units>0.5</Units></Assignment></Assignments>"));
    EXPECT_EQ(run({"losses", "Words.xml"}), 1);
    for (const auto* const words : {"16 hours on the link to Dig (UID 1)  "
                                    "/Project/Tasks[1]/Task[2]/PredecessorLink[1]/LinkLag[1]\n",
                                    "-1 hour on the link to Dig (UID 1)  "
                                    "/Project/Tasks[1]/Task[2]/PredecessorLink[2]/LinkLag[1]\n",
                                    "50% on the link to Dig (UID 1)  "
                                    "/Project/Tasks[1]/Task[2]/PredecessorLink[3]/LinkLag[1]\n",
                                    "finish no earlier than  /Project/Tasks[1]/Task[2]/ConstraintType[1]\n",
                                    "calendar 3  /Project/Tasks[1]/Task[2]/CalendarUID[1]\n",
                                    "task 9  /Project/Tasks[1]/Task[2]/PredecessorLink[4]/PredecessorUID[1]\n",
                                    "40 hours  /Project/Tasks[1]/Task[2]/Duration[1]\n",
                                    "50%  /Project/Assignments[1]/Assignment[1]/Units[1]\n"}) {
        EXPECT_THAT(out.str(), HasSubstr(": " + std::string(words)));
    }
    EXPECT_EQ(run({"losses", "--json", "Words.xml"}), 1);
    EXPECT_EQ(told()["losses"][0]["where"][0]["value"], "9600");
    EXPECT_EQ(told()["losses"][0]["where"][0]["words"], "16 hours on the link to Dig (UID 1)");
}

TEST_F(LossesCommandTest, namesWhoIsMeantByANumber) {
    world.machine.addFile(
        "/home/me/Names.xml",
        planOf(
            "<Calendars><Calendar><UID>5</UID><Name>Night Shift</Name></Calendar></Calendars><Tasks><Task><UID>1</UID>"
            "<Summary>1</Summary><OutlineLevel>1</OutlineLevel><CalendarUID>5</CalendarUID><PredecessorLink>"
            "<PredecessorUID>2</PredecessorUID><LinkLag>12.5</LinkLag><LagFormat>19</LagFormat></PredecessorLink>"
            "</Task><Task><UID>2</UID><Name>Later</Name><OutlineLevel>1</OutlineLevel></Task></Tasks><Resources>"
            "<Resource><UID>3</UID><Name>Anna</Name></Resource></Resources><Assignments><Assignment><TaskUID>1"
            "</TaskUID><ResourceUID>3</ResourceUID></Assignment></Assignments>"));
    EXPECT_EQ(run({"losses", "Names.xml"}), 1);
    for (const auto* const words : {"12.5% on the link to Later (UID 2)  ", "Night Shift (UID 5)  /Project/Tasks",
                                    "Anna (UID 3)  /Project/Assignments"}) {
        EXPECT_THAT(out.str(), HasSubstr(": " + std::string(words)));
    }
}

// Each refusal that the README explains is told in words by the program.
TEST_F(LossesCommandTest, hasWordsForTheRefusalsThatTheReadmeExplains) {
    std::ifstream readme(KZMSP_SOURCE "/README.md");
    int count = 0;
    for (std::string line; std::getline(readme, line);) {
        const auto start = line.find(" | `");
        const auto end = line.find("` | ", start + 4);
        const bool isRefusal = line.starts_with("| ") && line.find_first_not_of("0123456789", 2) == start &&
                               start > 2 && end != std::string::npos;
        if (isRefusal) {
            auto reason = line.substr(start + 4, end - start - 4);
            reason.replace(std::min(reason.find("..."), reason.size()), 3, "0");
            EXPECT_NE(MSPDIReasonInWords(MSPDIRefusal{"", reason, ""}), reason);
            ++count;
        }
    }
    EXPECT_EQ(count, 6);
}

// What is odd about a value is to be seen; and nothing in it drives a terminal.
TEST_F(LossesCommandTest, showsOddValuesAsTheyAre) {
    world.machine.addFile("/home/me/Odd.xml",
                          planOf("<Tasks><Task><UID>1</UID><OutlineLevel>1</OutlineLevel><Work>-PT5H0M0S</Work>"
                                 "<Deadline>2012-02-01</Deadline></Task></Tasks><Resources><Resource><UID>1</UID>"
                                 "</Resource></Resources><Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID>1"
                                 "</ResourceUID><Units>5&#x9B;</Units></Assignment></Assignments>"));
    EXPECT_EQ(run({"losses", "Odd.xml"}), 1);
    EXPECT_THAT(out.str(), HasSubstr(": -PT5H0M0S  /Project/"));
    EXPECT_THAT(out.str(), HasSubstr(": 2012-02-01  /Project/"));
    EXPECT_THAT(out.str(), HasSubstr(": 5\\u009b  /Project/"));
}

TEST_F(LossesCommandTest, cutsLongPathsInTheirMiddle) {
    const std::string name(300, 'a');
    world.machine.addFile("/home/me/Long.xml", planOf("<" + name + ">1</" + name + ">"));
    EXPECT_EQ(run({"losses", "Long.xml"}), 1);
    EXPECT_THAT(out.str(), HasSubstr("  /Project/" + std::string(91, 'a') + "..." + std::string(97, 'a') + "[1]\n"));
}

TEST_F(LossesCommandTest, tellsAllThatWasMended) {
    world.machine.addFile("/home/me/Damaged.xml", planOf("<Title>a & b</Title>"));
    EXPECT_EQ(run({"losses", "Damaged.xml"}), 1);
    EXPECT_EQ(out.str().find("...  /Project"), std::string::npos) << out.str();
}

TEST_F(LossesCommandTest, explainsARefusal) {
    world.machine.addFile("/home/me/NoTasks.xml", planOf("<Tasks><Task><UID>0</UID></Task></Tasks>"));
    EXPECT_EQ(run({"losses", "NoTasks.xml"}), 1);
    EXPECT_THAT(out.str(),
                StartsWith("Refused by the importer: the task with the number 0 does not stand for the project; nearly "
                           "always the plan has no tasks of its own (This does not seem like a MS Project "));
}
