#include "KZDXCheck.h"

#include <gtest/gtest.h>

#include "InMemoryFileSystem.h"
#include "KZDXRules.h"
#include "SoundBundle.h"

namespace {

KZDXCheck checkOf(BundleFiles files) {
    return KZDXCheckBundle(*KZDXFilesInMemory(std::move(files)));
}

}  // namespace

TEST(KZDXCheck, isSoundWithNotesOnly) {
    EXPECT_TRUE(checkOf(soundBundle()).isSound());
    const auto noted = checkOf(brokenBundle("Actual.xml", "<assignment idref=\"r2\"/>", "<assignment/>"));
    EXPECT_TRUE(noted.isSound());
    EXPECT_EQ(noted.count(KZDXSeverity::Note), 1U);
    const auto broken = checkOf(brokenBundle("Actual.xml", "<assignment idref=\"r2\"/>", "<assignment idref=\"r9\"/>"));
    EXPECT_FALSE(broken.isSound());
    EXPECT_EQ(broken.count(KZDXSeverity::Fault), 1U);
}

TEST(KZDXCheck, needsABundle) {
    EXPECT_EQ(checkOf({}).obstacle, "no bundle: it holds no __TOC.xml");
    EXPECT_EQ(checkOf({{"Plan.xml", "<Project/>"}}).obstacle, "no bundle: it holds no __TOC.xml");
    InMemoryFileSystem machine;
    EXPECT_EQ(KZDXCheckBundle(*KZDXFilesInFolder(machine, "/home/me/None.kdzx")).obstacle, "No such file or directory");
}

TEST(KZDXCheck, needsToReadWhatIsThere) {
    InMemoryFileSystem machine;
    for (const auto& [name, content] : soundBundle()) {
        machine.addFile("/home/me/Plan.kdzx/" + name, content);
    }
    const auto files = KZDXFilesInFolder(machine, "/home/me/Plan.kdzx");
    EXPECT_TRUE(KZDXCheckBundle(*files).isSound());
    machine.failAtCall(2, "Permission denied");
    const auto check = KZDXCheckBundle(*files);
    EXPECT_EQ(check.obstacle, "Actual.xml: Permission denied");
    EXPECT_TRUE(check.findings.empty());
}

TEST(KZDXCheck, opensNothingOutsideTheBundle) {
    InMemoryFileSystem machine;
    for (const auto& [name, content] : brokenBundle("__TOC.xml", "\"Baseline.xml\"", "\"../Secret.xml\"")) {
        machine.addFile("/home/me/Plan.kdzx/" + name, content);
    }
    machine.addFile("/home/me/Secret.xml", "<scenario/>");
    EXPECT_FALSE(KZDXCheckBundle(*KZDXFilesInFolder(machine, "/home/me/Plan.kdzx")).isSound());
    for (const auto& call : machine.calls()) {
        EXPECT_TRUE(call.starts_with("readFile /home/me/Plan.kdzx/")) << call;
    }
}

TEST(KZDXCheck, takesNoLinkForAFileOfTheBundle) {
    const auto checked = [](const std::string& link) {
        InMemoryFileSystem machine;
        for (const auto& [name, content] : soundBundle()) {
            machine.addFile((name == link ? "/home/me/" : "/home/me/Plan.kdzx/") + name, content);
        }
        machine.addLink("/home/me/Plan.kdzx/" + link, "/home/me/" + link);
        return KZDXCheckBundle(*KZDXFilesInFolder(machine, "/home/me/Plan.kdzx"));
    };
    const auto expectFinding = [](const KZDXCheck& check, std::size_t place, const char* rule, const char* text) {
        EXPECT_EQ(check.obstacle, std::nullopt);
        ASSERT_GT(check.findings.size(), place);
        EXPECT_EQ(check.findings[place].rule, rule);
        EXPECT_EQ(check.findings[place].text, text);
    };
    const auto scenario = checked("Actual.xml");
    expectFinding(scenario, 0, "missing-file", "'Actual.xml' is a link, which is not followed");
    EXPECT_FALSE(scenario.isSound());
    const auto contents = checked("__TOC.xml");
    expectFinding(contents, 0, "missing-file", "the table of contents is a link, which is not followed");
    EXPECT_EQ(contents.findings.size(), 1U);
    const auto note = checked("Notes.xml");
    expectFinding(note, 0, "unreadable-file",
                  "it may be a scenario that the table of contents does not name: a link, which is not followed");
    EXPECT_TRUE(note.isSound());
}

// The findings of many elements share the id of one: their paths show its beginning only.
TEST(KZDXCheck, doesNotMultiplyLongIds) {
    std::string children;
    for (int i = 0; i < 1000; ++i) {
        children += "<child-task idref='none'/>";
    }
    auto files =
        brokenBundle("Actual.xml", "<task id=\"t4\">", "<task id=\"" + std::string(100'000, 'x') + "\">" + children);
    const auto check = checkOf(std::move(files));
    ASSERT_GE(check.findings.size(), 1000U);
    for (const auto& finding : check.findings) {
        EXPECT_LT(finding.element.size(), 300U);
    }
}
