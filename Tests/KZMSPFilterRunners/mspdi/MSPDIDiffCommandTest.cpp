#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MSPDIEmptyDocument.h"
#include "MSPDIMemoryImport.h"
#include "RunInMemory.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string planOf(const std::string& task) {
    return R"(<Project xmlns="http://schemas.microsoft.com/project"><StartDate>2026-05-04T08:00:00</StartDate><Calendars>)"
           R"(<Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars><Tasks>)"
           "<Task><UID>12</UID><OutlineLevel>1</OutlineLevel><Duration>PT8H0M0S</Duration>" +
           task + "</Task></Tasks></Project>";
}

class DiffCommandTest : public RunInMemory {
protected:
    DiffCommandTest() {
        addPlan("Old.xml", "<Name>Paint</Name><Start>2026-05-04T08:00:00</Start>");
        addPlan("New.xml", "<Name>Paint</Name><Start>2026-05-07T08:00:00</Start>");
        addPlan("Odd.xml", "<Name>a&#x9B;31m&#x202E;</Name><Start>2026-05-04T08:00:00</Start>");
        world.machine.addFile("/home/me/Other.xml", "<html/>");
        world.machine.addFolder("/home/me/Folder");
    }

    void addPlan(const std::string& name, const std::string& task) {
        world.machine.addFile("/home/me/" + name, planOf(task));
        auto import = MSPDIImportInMemory("/home/me/" + name, world.services);
        for (const auto& [file, content] : import.bundle) {
            world.machine.addFile("/home/me/" + name.substr(0, name.size() - 4) + ".kdzx/" + file, content);
        }
    }
};

}  // namespace

TEST_F(DiffCommandTest, tellsWhatDiffersBetweenPlansAndDocuments) {
    for (const auto& [old, now] : {std::pair<std::string, std::string>("Old.xml", "New.xml"),
                                   {"Old.kdzx", "New.kdzx"},
                                   {"Old.xml", "New.kdzx"},
                                   {"Old.kdzx/", "New.xml"}}) {
        EXPECT_EQ(run({"diff", old, now}), 1);
        EXPECT_EQ(out.str(), "Paint (t12): starts 3 days later, Mon 4 May 08:00 -> Thu 7 May 08:00\n" + old + " -> " +
                                 now + ": 1 difference\n");
        EXPECT_EQ(err.str(), "");
    }
}

TEST_F(DiffCommandTest, tellsNothingWhereNothingDiffers) {
    EXPECT_EQ(run({"diff", "Old.xml", "Old.xml"}), 0);
    EXPECT_EQ(run({"diff", "Old.xml", "Old.kdzx"}), 0);
    EXPECT_EQ(out.str() + err.str(), "");
    EXPECT_EQ(run({"diff", "--json", "Old.xml", "Old.kdzx"}), 0);
    EXPECT_TRUE(told()["differences"].empty());
}

TEST_F(DiffCommandTest, tellsItAsJSON) {
    EXPECT_EQ(run({"diff", "--json", "Old.xml", "New.xml"}), 1);
    EXPECT_EQ(told()["old"], "Old.xml");
    EXPECT_EQ(told()["new"], "New.xml");
    EXPECT_EQ(told()["scenario"], "Actual");
    ASSERT_EQ(told()["differences"].size(), 1U);
    const auto difference = told()["differences"][0];
    EXPECT_EQ(difference["kind"], "date");
    EXPECT_EQ(difference["subject"], "task");
    EXPECT_EQ(difference["id"], "t12");
    EXPECT_EQ(difference["name"], "Paint (t12)");
    EXPECT_EQ(difference["before"], "2026-05-04T08:00:00Z");
    EXPECT_EQ(difference["after"], "2026-05-07T08:00:00Z");
}

TEST_F(DiffCommandTest, tellsNothingWhenQuiet) {
    EXPECT_EQ(run({"diff", "-q", "Old.xml", "New.xml"}), 1);
    EXPECT_EQ(run({"diff", "-q", "--json", "Old.xml", "Old.xml"}), 0);
    EXPECT_EQ(out.str() + err.str(), "");
}

TEST_F(DiffCommandTest, comparesTheScenarioThatIsAskedFor) {
    EXPECT_EQ(run({"diff", "--scenario", "Actual", "Old.xml", "New.xml"}), 1);
    EXPECT_EQ(run({"diff", "--scenario", "Baseline3", "Old.xml", "New.xml"}), 2);
    EXPECT_EQ(err.str(), "mspdi: Old.xml: it has no scenario 'Baseline3'\n");
}

TEST_F(DiffCommandTest, needsTheNameOfTheScenario) {
    for (const auto& arguments : {std::vector<std::string>{"diff", "--scenario", "", "Old.xml", "New.xml"},
                                  {"diff", "--scenario=", "Old.xml", "New.xml"},
                                  {"diff", "Old.xml", "New.xml", "--scenario"}}) {
        EXPECT_EQ(run(arguments), 2);
        EXPECT_EQ(out.str(), "");
        EXPECT_THAT(err.str(), HasSubstr("--scenario"));
    }
    EXPECT_EQ(run({"diff", "--scenario=Actual", "Old.xml", "New.xml"}), 1);
}

TEST_F(DiffCommandTest, tellsWhichOtherScenariosDiffer) {
    const auto baseline = [](const std::string& start) {
        return "<Name>Paint</Name><Start>2026-05-04T08:00:00</Start><Baseline><Number>1</Number><Start>" + start +
               "</Start><Finish>2026-05-12T17:00:00</Finish><Work>PT8H0M0S</Work></Baseline>";
    };
    addPlan("OldBaseline.xml", baseline("2026-05-04T08:00:00"));
    addPlan("NewBaseline.xml", baseline("2026-05-05T08:00:00"));
    for (const std::string extension : {".xml", ".kdzx"}) {
        EXPECT_EQ(run({"diff", "OldBaseline" + extension, "NewBaseline" + extension}), 1);
        EXPECT_THAT(out.str(),
                    StartsWith("Project: the scenario \"Baseline1\" differs, 1 difference: --scenario Baseline1 "
                               "tells\n"));
        EXPECT_EQ(err.str(), "");
    }
    EXPECT_EQ(run({"diff", "--json", "OldBaseline.xml", "NewBaseline.xml"}), 1);
    EXPECT_EQ(told()["differences"][0]["kind"], "scenario");
    EXPECT_EQ(told()["differences"][0]["subject"], "scenario");
    EXPECT_EQ(run({"diff", "--scenario", "Actual", "OldBaseline.xml", "NewBaseline.xml"}), 0);
    EXPECT_EQ(run({"diff", "--scenario", "Baseline1", "OldBaseline.xml", "NewBaseline.xml"}), 1);
    EXPECT_EQ(run({"diff", "OldBaseline.xml", "OldBaseline.kdzx"}), 0);

    world.machine.addFile("/home/me/NewBaseline.kdzx/Baseline1.xml", "<scenario");
    EXPECT_EQ(run({"diff", "OldBaseline.xml", "NewBaseline.kdzx"}), 2);
    EXPECT_THAT(err.str(), StartsWith("mspdi: NewBaseline.kdzx: Baseline1.xml: line 1: "));
    EXPECT_EQ(run({"diff", "--scenario", "Actual", "OldBaseline.xml", "NewBaseline.kdzx"}), 0);
}

// What was mended may differ for that reason alone.
TEST_F(DiffCommandTest, tellsThatAPlanWasDamaged) {
    auto damaged = world.machine.contents("/home/me/Old.xml");
    damaged.erase(damaged.find("</Tasks>"), std::string("</Tasks>").size());
    world.machine.addFile("/home/me/Damaged.xml", damaged);
    run({"diff", "Old.xml", "Damaged.xml"});
    EXPECT_THAT(err.str(), StartsWith("mspdi: Damaged.xml: Repaired malformed XML in '/home/me/Damaged.xml' at line "));
    EXPECT_EQ(err.str().find('\n'), err.str().size() - 1);
    run({"diff", "--quiet", "Old.xml", "Damaged.xml"});
    EXPECT_EQ(err.str(), "");
}

// The plan of the new week lost its end: what is not there would be told as gone.
TEST_F(DiffCommandTest, comparesNoPlanThatIsCutOff) {
    const auto whole = world.machine.contents("/home/me/Old.xml");
    world.machine.addFile("/home/me/Cut.xml", whole.substr(0, whole.find("</Tasks>")));
    for (const auto& arguments :
         {std::vector<std::string>{"diff", "Old.xml", "Cut.xml"}, {"diff", "Cut.xml", "Old.xml"}}) {
        EXPECT_EQ(run(arguments), 2);
        EXPECT_EQ(err.str(), "mspdi: Cut.xml: the file is cut off\n");
        EXPECT_EQ(out.str(), "");
    }
}

TEST_F(DiffCommandTest, showsNothingThatDrivesATerminal) {
    EXPECT_EQ(run({"diff", "Old.xml", "Odd.xml"}), 1);
    EXPECT_EQ(out.str(), "a\\u009b31m\\u202e (t12): renamed, was \"Paint\"\nOld.xml -> Odd.xml: 1 difference\n");
    EXPECT_EQ(run({"diff", "Old.xml", "Odd.xml"}, true), 1);
    EXPECT_THAT(out.str(), StartsWith("\x1B[1ma\\u009b31m"));
}

TEST_F(DiffCommandTest, tellsInOneLineWhatItCouldNotLookAt) {
    const auto cut = world.machine.contents("/home/me/Old.kdzx/Actual.xml");
    world.machine.addFile("/home/me/Cut.kdzx/Actual.xml", cut.substr(0, cut.size() / 2));
    world.machine.addFile("/home/me/Cut.kdzx/__TOC.xml", world.machine.contents("/home/me/Old.kdzx/__TOC.xml"));
    for (const auto& [file, reason] : {std::pair<std::string, std::string>("None.xml", "no such file"),
                                       {"Folder", "no bundle: it holds no __TOC.xml"},
                                       {"Other.xml", "XML, but no plan of Microsoft Project (MSPIMapper.map: "},
                                       {"Cut.kdzx", "Actual.xml: line "}}) {
        for (const auto& arguments :
             {std::vector<std::string>{"diff", "--json", file, "New.xml"}, {"diff", "New.xml", file}}) {
            EXPECT_EQ(run(arguments), 2);
            EXPECT_EQ(out.str(), "");
            EXPECT_THAT(err.str(), StartsWith("mspdi: " + file + ": " + reason));
            EXPECT_EQ(err.str().find('\n'), err.str().size() - 1);
        }
    }
}

TEST_F(DiffCommandTest, onlyReads) {
    run({"diff", "Old.xml", "New.kdzx"});
    for (const auto& call : world.machine.calls()) {
        EXPECT_THAT(call, StartsWith("readFile "));
    }
}

TEST_F(DiffCommandTest, refusesWrongArguments) {
    EXPECT_EQ(run({"diff", "Old.xml"}), 2);
    EXPECT_EQ(run({"diff", "Old.xml", "New.xml", "New.xml"}), 2);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(run({"diff", "--help"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("--scenario"));
}
