#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MSPDIEmptyDocument.h"
#include "RunInMemory.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class CheckCommandTest : public RunInMemory {
protected:
    CheckCommandTest() {
        addDocument("Sound.kdzx", "", "");
        addDocument("Broken.kdzx", "<type>group</type>", "<type>a&#x9B;31m</type>");
        addDocument("Odd.kdzx", "</task>", "<assignment/></task>");
        world.machine.addFile("/home/me/Plan.xml", "<Project/>");
        world.machine.addFolder("/home/me/Empty");
    }

    // The empty document, with a piece of its scenario replaced.
    void addDocument(const std::string& name, const std::string& piece, const std::string& other) {
        for (const auto& [file, content] : MSPDIEmptyDocument()) {
            std::string text(content);
            if (file == "Actual.xml" && !piece.empty()) {
                text.replace(text.find(piece), piece.size(), other);
            }
            world.machine.addFile("/home/me/" + name + "/" + std::string(file), text);
        }
    }
};

}  // namespace

TEST_F(CheckCommandTest, hasNothingToTellOfASoundDocument) {
    EXPECT_EQ(run({"check", "Sound.kdzx"}), 0);
    EXPECT_EQ(out.str(), "Sound.kdzx: sound\n");
    EXPECT_EQ(err.str(), "");
}

TEST_F(CheckCommandTest, namesFileLineAndElementOfEachFault) {
    EXPECT_EQ(run({"check", "/home/me/Broken.kdzx"}), 1);
    EXPECT_THAT(out.str(), HasSubstr("/Actual.xml:"));
    EXPECT_THAT(out.str(), HasSubstr(": fault: scenario/task[@id='t-1']: the type is 'a\\u009b31m' instead of 'group' "
                                     "[top-task]\n"));
    EXPECT_THAT(out.str(), HasSubstr("is none of group task milestone [word]\n"));
    EXPECT_THAT(out.str(), EndsWith("/home/me/Broken.kdzx: not sound, 2 faults\n"));
    EXPECT_THAT(out.str(), Not(HasSubstr("\xC2\x9B")));
    EXPECT_EQ(err.str(), "");
}

TEST_F(CheckCommandTest, isContentWithNotes) {
    EXPECT_EQ(run({"check", "Odd.kdzx"}, true), 0);
    EXPECT_THAT(out.str(), HasSubstr(": \x1B[1mnote\x1B[0m: "));
    EXPECT_THAT(out.str(), EndsWith("Odd.kdzx: sound, 1 note\n"));
}

TEST_F(CheckCommandTest, tellsOnlyTheFirstOnesOfARule) {
    std::string assignments;
    for (int i = 0; i < 25; ++i) {
        assignments += "<assignment idref='r" + std::to_string(i + 7) + "'/>";
    }
    addDocument("Many.kdzx", "</task>", assignments + "</task>");
    EXPECT_EQ(run({"check", "Many.kdzx"}), 1);
    EXPECT_THAT(out.str(), EndsWith("Many.kdzx: ... and 5 more [unresolved-idref] (--json tells all)\n"
                                    "Many.kdzx: not sound, 25 faults\n"));
    EXPECT_EQ(run({"check", "Many.kdzx", "--json"}), 1);
    EXPECT_EQ(told()["documents"][0]["findings"].size(), 25U);
}

TEST_F(CheckCommandTest, tellsItAsJSON) {
    EXPECT_EQ(run({"check", "--json", "Sound.kdzx", "Broken.kdzx"}), 1);
    ASSERT_EQ(told()["documents"].size(), 2U);
    EXPECT_EQ(told()["documents"][0]["document"], "Sound.kdzx");
    EXPECT_EQ(told()["documents"][0]["sound"], true);
    const auto broken = told()["documents"][1];
    EXPECT_EQ(broken["sound"], false);
    EXPECT_EQ(broken["faults"], 2);
    EXPECT_EQ(broken["notes"], 0);
    EXPECT_EQ(broken["findings"][0]["rule"], "top-task");
    EXPECT_EQ(broken["findings"][0]["severity"], "fault");
    EXPECT_EQ(broken["findings"][0]["file"], "Actual.xml");
    EXPECT_GT(broken["findings"][0]["line"], 1);
    EXPECT_EQ(broken["findings"][0]["element"], "scenario/task[@id='t-1']");
}

TEST_F(CheckCommandTest, tellsNothingWhenQuiet) {
    EXPECT_EQ(run({"check", "-q", "Broken.kdzx"}), 1);
    EXPECT_EQ(run({"check", "-q", "--json", "Odd.kdzx"}), 0);
    EXPECT_EQ(out.str() + err.str(), "");
}

TEST_F(CheckCommandTest, tellsInOneLineWhatItCouldNotLookAt) {
    for (const auto& [file, reason] : {std::pair<std::string, std::string>("None.kdzx", "no such file"),
                                       {"Plan.xml", "no document: a file instead of a folder"},
                                       {"Empty", "no bundle: it holds no __TOC.xml"}}) {
        EXPECT_EQ(run({"check", file}), 2);
        EXPECT_EQ(out.str(), "");
        EXPECT_EQ(err.str(), "mspdi: " + file + ": " + reason + "\n");
        EXPECT_EQ(run({"check", "--json", file}), 2);
        EXPECT_EQ(told()["documents"][0]["document"], file);
        EXPECT_EQ(told()["documents"][0]["obstacle"], reason);
        EXPECT_EQ(told()["documents"][0]["sound"], nullptr);
        EXPECT_EQ(err.str(), "mspdi: " + file + ": " + reason + "\n");
        EXPECT_EQ(run({"check", "--json", "--quiet", file}), 2);
        EXPECT_EQ(out.str(), "");
    }
}

TEST_F(CheckCommandTest, looksAtTheOthersAllTheSame) {
    EXPECT_EQ(run({"check", "None.kdzx", "Broken.kdzx", "Sound.kdzx"}), 2);
    EXPECT_THAT(out.str(), HasSubstr("Broken.kdzx: not sound"));
    EXPECT_THAT(out.str(), EndsWith("Sound.kdzx: sound\n"));
    EXPECT_THAT(out.str(), Not(HasSubstr("None.kdzx")));
}

TEST_F(CheckCommandTest, namesTheTaskOfAFinding) {
    addDocument("Named.kdzx", "</task>",
                "</task><task id='t1'><type>task</type><title>Paint&#xA;it</title><effort>much</effort></task>");
    EXPECT_EQ(run({"check", "Named.kdzx"}), 1);
    EXPECT_THAT(out.str(),
                HasSubstr(": scenario/task[@id='t1']/effort (\"Paint\\nit\"): 'much' is no number [number]\n"));
    EXPECT_EQ(run({"check", "--json", "Named.kdzx"}), 1);
    EXPECT_EQ(told()["documents"][0]["findings"][0]["name"], "Paint\nit");
    EXPECT_EQ(run({"check", "--json", "Broken.kdzx"}), 1);
    EXPECT_EQ(told()["documents"][0]["findings"][0]["name"], "");
}

TEST_F(CheckCommandTest, onlyReads) {
    run({"check", "Sound.kdzx", "Broken.kdzx"});
    for (const auto& call : world.machine.calls()) {
        EXPECT_TRUE(call.starts_with("readFile ")) << call;
    }
}

TEST_F(CheckCommandTest, refusesWrongArguments) {
    EXPECT_EQ(run({"check"}), 2);
    EXPECT_EQ(run({"check", "--all", "Sound.kdzx"}), 2);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(run({"check", "--help"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("DOCUMENT"));
}
