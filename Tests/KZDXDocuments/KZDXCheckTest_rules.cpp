#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "KZDXCheck.h"
#include "KZDXRules.h"
#include "SoundBundle.h"

// Each rule, broken by hand.

namespace {

// "fault date Actual.xml:5 scenario/start-date: '...' is no date ..."
std::string lineOf(const KZDXFinding& finding) {
    const auto* const severity = finding.severity == KZDXSeverity::Fault ? "fault " : "note ";
    return severity + std::string(finding.rule) + " " + finding.file + ":" + std::to_string(finding.line) + " " +
           finding.element + ": " + finding.text;
}

std::vector<std::string> findingsOf(BundleFiles files) {
    const auto check = KZDXCheckBundle(*KZDXFilesInMemory(std::move(files)));
    EXPECT_FALSE(check.obstacle) << *check.obstacle;
    std::vector<std::string> lines;
    for (const auto& finding : check.findings) {
        lines.push_back(lineOf(finding));
    }
    return lines;
}

using Lines = std::vector<std::string>;

void expectActual(std::string_view piece, std::string_view other, const Lines& expected) {
    EXPECT_EQ(findingsOf(brokenBundle("Actual.xml", piece, other)), expected) << piece << " -> " << other;
}
void expectContents(std::string_view piece, std::string_view other, const Lines& expected) {
    EXPECT_EQ(findingsOf(brokenBundle("__TOC.xml", piece, other)), expected) << piece << " -> " << other;
}

std::string withoutComments(std::string document) {
    for (auto start = document.find("<!--"); start != std::string::npos; start = document.find("<!--")) {
        document.erase(start, document.find("-->") + 3 - start);
    }
    return document;
}

}  // namespace

TEST(KZDXRules, findNothingInASoundDocument) {
    EXPECT_EQ(findingsOf(soundBundle()), Lines());
}

TEST(KZDXRules, haveNamesOfTheirOwn) {
    std::set<std::string_view> names;
    for (const auto& rule : KZDXRules()) {
        EXPECT_TRUE(names.insert(rule.name).second) << rule.name;
        EXPECT_FALSE(rule.what.empty());
    }
    EXPECT_EQ(names.size(), 51U);
}

TEST(KZDXRules, xml) {
    expectActual("</schedule>", "",
                 {"fault xml Actual.xml:24 : Opening and ending tag mismatch: schedule line 12 and resource"});
    expectActual("Mind the pipes", "Mind & dig", {"fault xml Actual.xml:69 : an & that is not written as &amp;"});
    expectContents("<null/>", "<null", {"fault xml __TOC.xml:21 : error parsing attribute name"});
}

TEST(KZDXRules, xmlOfOtherBytes) {
    auto files = soundBundle();
    files["Actual.xml"] += std::string("\0 and more", 10);
    EXPECT_EQ(findingsOf(files), Lines{"fault xml Actual.xml:118 : a NUL byte, which XML cannot hold"});
    files["Actual.xml"].clear();
    EXPECT_EQ(findingsOf(files), Lines{"fault xml Actual.xml:1 : the file is empty"});
    files["Actual.xml"] = "   ";
    EXPECT_EQ(findingsOf(files).front().substr(0, 23), "fault xml Actual.xml:1 ");
}

TEST(KZDXRules, missingFile) {
    auto files = soundBundle();
    files.erase("Baseline.xml");
    EXPECT_EQ(findingsOf(files),
              (Lines{"fault missing-file __TOC.xml:12 table-of-contents/project/scenario[@id='aBaseline01']: there is "
                     "no file 'Baseline.xml'"}));
    files.erase("__TOC.xml");
    EXPECT_EQ(findingsOf(files), (Lines{"fault missing-file __TOC.xml:0 : the table of contents is missing"}));
}

TEST(KZDXRules, unnamedFile) {
    auto files = soundBundle();
    files["Baseline3.xml"] = files["Baseline.xml"];
    files["Baseline4.xml"] = "cut";
    files["Other.xml"] = files["Baseline.xml"];
    files["Notes.xml"] = "<notes/>";
    files["logo.png"] = "\x89PNG";
    EXPECT_EQ(findingsOf(files),
              (Lines{"fault unnamed-file Baseline3.xml:2 scenario: the table of contents does not name this scenario",
                     "fault unnamed-file Baseline4.xml:0 : the table of contents does not name this scenario",
                     "fault unnamed-file Other.xml:2 scenario: the table of contents does not name this scenario"}));
}

// A scenario is one whatever its file is called.
TEST(KZDXRules, unnamedFileOfAnotherExtension) {
    auto files = soundBundle();
    files["Baseline3.XML"] = files["Baseline.xml"];
    files["Copy"] = "\xEF\xBB\xBF\n" + files["Baseline.xml"].substr(files["Baseline.xml"].find("<scenario"));
    files["Notes.txt"] = "<notes/>";
    files["Page.html"] = "<html><br></html>";
    files["Readme"] = "Read <scenario> first";
    EXPECT_EQ(findingsOf(files),
              (Lines{"fault unnamed-file Baseline3.XML:2 scenario: the table of contents does not name this scenario",
                     "fault unnamed-file Copy:2 scenario: the table of contents does not name this scenario"}));
}

TEST(KZDXRules, unreadableFile) {
    auto files = soundBundle();
    files["Draft.xml"] = "<dra";
    files["Empty.Xml"] = "";
    EXPECT_EQ(
        findingsOf(files),
        (Lines{"note unreadable-file Draft.xml:1 : it may be a scenario that the table of contents does not name: "
               "Couldn't find end of Start Tag dra line 1",
               "note unreadable-file Empty.Xml:1 : it may be a scenario that the table of contents does not name: "
               "the file is empty"}));
}

TEST(KZDXRules, contentsFrame) {
    expectContents("<editing-scenario>aActual0001</editing-scenario>", "",
                   {"fault contents-frame __TOC.xml:3 table-of-contents/window: there is no 'editing-scenario'"});
    expectContents("    <window>", "<window><editing-scenario>aActual0001</editing-scenario></window><window>",
                   {"fault contents-frame __TOC.xml:3 table-of-contents/window: there are 2 of 'window'"});
    auto files = soundBundle();
    files["__TOC.xml"] = "<contents/>";
    EXPECT_EQ(findingsOf(files),
              (Lines{"fault contents-frame __TOC.xml:1 contents: there is no 'window'",
                     "fault contents-frame __TOC.xml:1 contents: there is no 'project'",
                     "fault unnamed-file Actual.xml:2 scenario: the table of contents does not name this scenario",
                     "fault unnamed-file Baseline.xml:2 scenario: the table of contents does not name this scenario"}));
}

TEST(KZDXRules, neededSetting) {
    const std::string project = "fault needed-setting __TOC.xml:7 table-of-contents/project: ";
    expectContents("<title>House</title>", "", {project + "there is no 'title'"});
    expectContents("<title>House</title>", "<title/>", {});
    expectContents("<next-task-id>7</next-task-id>", "", {project + "there is no 'next-task-id'"});
    expectContents("<next-resource-id>3</next-resource-id>", "", {project + "there is no 'next-resource-id'"});
    expectContents("<currency-format>$1,234.56</currency-format>", "", {project + "there is no 'currency-format'"});
    expectContents("<title>House</title>", "<title/><title/>",
                   {"fault needed-setting __TOC.xml:8 table-of-contents/project/title: there are 2 of 'title'"});
    expectContents(
        "<next-task-id>7</next-task-id>", "<next-task-id>seven</next-task-id>",
        {"fault needed-setting __TOC.xml:9 table-of-contents/project/next-task-id: 'seven' is no number from 1 on"});
    expectContents(
        "<next-task-id>7</next-task-id>", "<next-task-id>99999999999999999999</next-task-id>",
        {"fault needed-setting __TOC.xml:9 table-of-contents/project/next-task-id: '99999999999999999999' is "
         "too large"});
    expectContents(
        "<next-task-id>7</next-task-id>", "<next-task-id>00</next-task-id>",
        {"fault needed-setting __TOC.xml:9 table-of-contents/project/next-task-id: '00' is no number from 1 on",
         "fault next-id Actual.xml:108 scenario/task[@id='t6']: the next free id in the table of contents is not above "
         "this one"});
    expectContents(
        " hours-per-year=\"1920\"", "",
        {"fault needed-setting __TOC.xml:15 table-of-contents/project/duration-format: 'hours-per-year' is missing"});
    expectContents("hours-per-year=\"1921\"", "hours-per-year=\"many\"",
                   {"fault needed-setting __TOC.xml:16 table-of-contents/project/effort-format: 'hours-per-year' is "
                    "'many', which is no whole number"});
    expectContents("hours-per-year=\"1921\"", "hours-per-year=\"0\"", {});
    expectContents("hours-per-year=\"1921\"", "hours-per-year=\"-1\"",
                   {"fault needed-setting __TOC.xml:16 table-of-contents/project/effort-format: 'hours-per-year' is "
                    "'-1', which is below 0"});
}

// Its symbol and its decimals may be any, or none; in other documents its separators as well.
TEST(KZDXRules, sampleOfAnAmount) {
    const std::string before = "<currency-format>$1,234.56</currency-format>";
    for (const std::string sample : {"1,234", "1,234.56789 Fr.", "1.234,56 \xE2\x82\xAC", " kr1,234"}) {
        expectContents(before, "<currency-format>" + sample + "</currency-format>", {});
    }
    const std::string format = "fault needed-setting __TOC.xml:14 table-of-contents/project/currency-format: ";
    expectContents(before, "<currency-format/>", {format + "'' is no sample of an amount"});
    expectContents(before, "<currency-format>Euro</currency-format>", {format + "'Euro' is no sample of an amount"});
}

TEST(KZDXRules, settingOrder) {
    expectContents(
        "    </project>", "<auto-level/></project>",
        {"fault setting-order __TOC.xml:23 table-of-contents/project/auto-level: stands behind 'task-user-data-keys'"});
    expectContents("    </project>", "<any-other/></project>", {});
    auto files = brokenBundle("__TOC.xml", "        <title>House</title>\n", "");
    files["__TOC.xml"] = withReplaced(files["__TOC.xml"], "</next-task-id>", "</next-task-id><title>House</title>");
    EXPECT_EQ(findingsOf(files),
              Lines{"fault setting-order __TOC.xml:8 table-of-contents/project/title: stands behind 'next-task-id'"});
    files = brokenBundle("__TOC.xml", "        <next-resource-id>3</next-resource-id>\n", "");
    files["__TOC.xml"] =
        withReplaced(files["__TOC.xml"], "<next-task-id>", "<next-resource-id>3</next-resource-id><next-task-id>");
    EXPECT_EQ(findingsOf(files), Lines{"fault setting-order __TOC.xml:9 table-of-contents/project/next-task-id: stands "
                                       "behind 'next-resource-id'"});
}

TEST(KZDXRules, scenarioEntry) {
    const std::string entry =
        "fault scenario-entry __TOC.xml:12 table-of-contents/project/scenario[@id='aBaseline01']: ";
    const std::string unnamed =
        "fault unnamed-file Baseline.xml:2 scenario: the table of contents does not name this scenario";
    expectContents("name=\"Baseline\" ", "", {entry + "'name' is missing"});
    expectContents("filename=\"Baseline.xml\"", "", {entry + "'filename' is missing", unnamed});
    for (const std::string outside : {"../Baseline.xml", "/etc/passwd", "..", "."}) {
        expectContents("filename=\"Baseline.xml\"", "filename=\"" + outside + "\"",
                       {entry + "'" + outside + "' is no file of the bundle", unnamed});
    }
}

TEST(KZDXRules, repeatedScenario) {
    const std::string entry =
        "fault repeated-scenario __TOC.xml:12 table-of-contents/project/scenario[@id='aBaseline01']: ";
    expectContents("name=\"Baseline\"", "name=\"Actual\"", {entry + "another scenario has the name 'Actual', too"});
    expectContents("filename=\"Baseline.xml\"", "filename=\"Actual.xml\"",
                   {entry + "another scenario has the filename 'Actual.xml', too",
                    "fault unnamed-file Baseline.xml:2 scenario: the table of contents does not name this scenario"});
}

TEST(KZDXRules, windowScenario) {
    expectContents("<comparison-scenario>aBaseline01", "<comparison-scenario>aBaseline99",
                   {"fault window-scenario __TOC.xml:5 table-of-contents/window/comparison-scenario: no scenario has "
                    "the id 'aBaseline99'"});
    expectContents("<comparison-scenario>aBaseline01</comparison-scenario>", "", {});
}

TEST(KZDXRules, scenarioRoot) {
    const std::string plan = "fault scenario-root Actual.xml:2 plan: ";
    auto files = soundBundle();
    files["Actual.xml"] =
        withReplaced(withReplaced(files["Actual.xml"], "<scenario ", "<plan "), "</scenario>", "</plan>");
    EXPECT_EQ(findingsOf(files), (Lines{plan + "the root element is 'plan' instead of 'scenario'"}));
    const std::string scenario = "fault scenario-root Actual.xml:2 scenario: ";
    expectActual(" xmlns=\"urn:kadenza:document:2\"", "", {scenario + "0 namespaces are declared instead of one"});
    expectActual(" xmlns=\"urn:kadenza:document:2\"", " xmlns=\"urn:a\" xmlns:b=\"urn:b\"",
                 {scenario + "2 namespaces are declared instead of one"});
}

TEST(KZDXRules, scenarioId) {
    expectActual("id=\"aActual0001\"", "id=\"aActual0002\"",
                 {"fault scenario-id Actual.xml:2 scenario: the id is 'aActual0002' here and 'aActual0001' in the "
                  "table of contents"});
    expectActual("id=\"aActual0001\"", "", {"fault scenario-id Actual.xml:2 scenario: the scenario has no id"});
}

TEST(KZDXRules, importComment) {
    expectActual("<!--  Imported MS Project 2010: 'House'  -->", "",
                 {"fault import-comment Actual.xml:2 scenario: no comment tells the plan that was imported"});
    expectActual(
        "Kadenza 2.x MSPDI Importer.", "",
        {"fault import-comment Actual.xml:2 scenario: no comment tells the importer and the time of the import"});
}

// Of an import all scenarios are.
TEST(KZDXRules, importCommentOfEveryScenario) {
    const std::string importer = "    <!--  2026-11-21 20:00:00 +0000: Kadenza 2.x MSPDI Importer.  -->\n";
    const std::string plan = "    <!--  Imported MS Project 2010: 'House'  -->\n";
    const auto without = [&](const std::vector<std::string>& names) {
        auto files = soundBundle();
        for (const auto& name : names) {
            files[name] = withReplaced(files[name], importer + plan, "");
        }
        return findingsOf(files);
    };
    const std::string finding =
        ":2 scenario: no comments tell the importer and the plan, as those of other scenarios do";
    EXPECT_EQ(without({"Baseline.xml"}), Lines{"fault import-comment Baseline.xml" + finding});
    EXPECT_EQ(without({"Actual.xml"}), Lines{"fault import-comment Actual.xml" + finding});
}

// An import that tells in no scenario who made it is known by how it names its sections; who has drawn a document
// himself has no such comments.
TEST(KZDXRules, importCommentOfNoScenario) {
    const auto findingsWith = [](const std::string& section) {
        auto files = soundBundle();
        for (const std::string name : {"Actual.xml", "Baseline.xml"}) {
            files[name] = withoutComments(files[name]);
        }
        files["Baseline.xml"] = withReplaced(files["Baseline.xml"], "<top-task", section + "<top-task");
        return findingsOf(files);
    };
    const std::string finding =
        ":2 scenario: no comments tell the importer and the plan, though sections are named as imports name them";
    for (const std::string section : {"<!--  Resources  -->", "<!--  Tasks  -->", "<!--  Critical Path  -->"}) {
        EXPECT_EQ(findingsWith(section),
                  (Lines{"fault import-comment Actual.xml" + finding, "fault import-comment Baseline.xml" + finding}));
    }
    EXPECT_EQ(findingsWith(""), Lines());
    EXPECT_EQ(findingsWith("<!-- Tasks of mine -->"), Lines());
}

// Among what else is found, it stands where the file begins.
TEST(KZDXRules, importCommentStandsWithItsFile) {
    auto files = brokenBundle("Actual.xml",
                              "    <!--  2026-11-21 20:00:00 +0000: Kadenza 2.x MSPDI Importer.  -->\n"
                              "    <!--  Imported MS Project 2010: 'House'  -->\n",
                              "");
    files["Actual.xml"] = withReplaced(files["Actual.xml"], "<type>Staff</type>", "");
    files["Baseline.xml"] = withReplaced(files["Baseline.xml"], "<type>Group</type>", "");
    const auto lines = findingsOf(files);
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0].substr(0, 33), "fault import-comment Actual.xml:2");
    EXPECT_EQ(lines[1].substr(0, 34), "fault missing-value Actual.xml:23 ");
    EXPECT_EQ(lines[2].substr(0, 31), "fault top-resource Baseline.xml");
}

TEST(KZDXRules, topResource) {
    expectActual("<top-resource idref=\"r-1\"/>", "",
                 {"fault top-resource Actual.xml:2 scenario: there is no 'top-resource'",
                  "fault resource-group Actual.xml:9 scenario/resource[@id='r-1']: the resource is in 0 groups"});
    expectActual(
        "<top-resource idref=\"r-1\"/>", "<top-resource idref=\"r1\"/>",
        {"fault top-resource Actual.xml:8 scenario/top-resource[@idref='r1']: 'idref' is 'r1' instead of 'r-1'",
         "fault resource-group Actual.xml:9 scenario/resource[@id='r-1']: the resource is in 0 groups"});
    expectActual(
        "<type>Group</type>", "<type>group</type>",
        {"fault top-resource Actual.xml:9 scenario/resource[@id='r-1']: the type is 'group' instead of 'Group'",
         "fault word Actual.xml:10 scenario/resource[@id='r-1']/type: 'group' is none of Group Staff Material"});
}

TEST(KZDXRules, topTask) {
    expectActual("    <top-task idref=\"t-1\"/>", "",
                 {"fault top-task Actual.xml:2 scenario: there is no 'top-task'",
                  "fault missing-value Actual.xml:39 scenario/task[@id='t-1']: there is no effort"});
    auto files = soundBundle();
    files["Baseline.xml"] = withReplaced(files["Baseline.xml"], "<type>group</type>", "<type>Group</type>");
    EXPECT_EQ(
        findingsOf(files),
        (Lines{"fault top-task Baseline.xml:11 scenario/task[@id='t-1']: the type is 'Group' instead of 'group'",
               "fault word Baseline.xml:12 scenario/task[@id='t-1']/type: 'Group' is none of group task milestone"}));
}

TEST(KZDXRules, missingId) {
    expectActual("<task id=\"t6\">", "<task>",
                 {"fault unresolved-idref Actual.xml:88 scenario/task[@id='t3']/child-task[@idref='t6']: no task has "
                  "the id 't6'",
                  "fault missing-id Actual.xml:108 scenario/task: there is no id",
                  "fault missing-value Actual.xml:108 scenario/task: there is neither a type nor a split"});
}

TEST(KZDXRules, repeatedId) {
    expectActual("<task id=\"t6\">", "<task id=\"t5\">",
                 {"fault unresolved-idref Actual.xml:88 scenario/task[@id='t3']/child-task[@idref='t6']: no task has "
                  "the id 't6'",
                  "fault repeated-id Actual.xml:108 scenario/task[@id='t5']: the id 't5' is taken",
                  "fault missing-value Actual.xml:108 scenario/task[@id='t5']: there is neither a type nor a split"});
    auto files = brokenBundle("Actual.xml", "<resource id=\"r2\">", "<resource id=\"t4\">");
    files["Actual.xml"] =
        withReplaced(files["Actual.xml"], "<child-resource idref=\"r2\"/>", "<child-resource idref=\"t4\"/>");
    files["Actual.xml"] = withReplaced(files["Actual.xml"], "<assignment idref=\"r2\"/>", "");
    EXPECT_EQ(findingsOf(files),
              (Lines{"fault repeated-id Actual.xml:32 scenario/resource[@id='t4']: the id 't4' is taken"}));
}

TEST(KZDXRules, unresolvedIdref) {
    const std::string scenario = "scenario/";
    expectActual("<prerequisite-task idref=\"t3\"", "<prerequisite-task idref=\"t99\"",
                 {"fault unresolved-idref Actual.xml:98 " + scenario +
                  "task[@id='t4']/prerequisite-task[@idref='t99']: no task has the id 't99'"});
    expectActual(
        "<prerequisite-task idref=\"t3\"", "<prerequisite-task",
        {"fault unresolved-idref Actual.xml:98 " + scenario + "task[@id='t4']/prerequisite-task: 'idref' is missing"});
    expectActual("<assignment idref=\"r2\"/>", "<assignment idref=\"t2\"/>",
                 {"fault unresolved-idref Actual.xml:89 " + scenario +
                  "task[@id='t3']/assignment[@idref='t2']: no resource has the id 't2'"});
    expectActual(
        "<child-resource idref=\"r2\"/>", "<child-resource idref=\"r9\"/>",
        {"fault unresolved-idref Actual.xml:23 " + scenario +
             "resource[@id='r-1']/child-resource[@idref='r9']: no resource has the id 'r9'",
         "fault resource-group Actual.xml:32 " + scenario + "resource[@id='r2']: the resource is in 0 groups"});
}

TEST(KZDXRules, nextId) {
    expectContents("<next-task-id>7<", "<next-task-id>6<",
                   {"fault next-id Actual.xml:108 scenario/task[@id='t6']: the next free id in the table of contents "
                    "is not above this one"});
    expectContents("<next-resource-id>3<", "<next-resource-id>2<",
                   {"fault next-id Actual.xml:32 scenario/resource[@id='r2']: the next free id in the table of "
                    "contents is not above this one"});
}

// No number is above one of so many digits.
TEST(KZDXRules, nextIdOfHugeNumbers) {
    for (const std::string id : {"t9223372036854775807", "t9223372036854775808", "t99999999999999999999999"}) {
        auto files = soundBundle();
        auto& actual = files["Actual.xml"];
        actual = withReplaced(actual, "<task id=\"t6\">", "<task id=\"" + id + "\">");
        actual = withReplaced(actual, "<child-task idref=\"t6\"/>", "<child-task idref=\"" + id + "\"/>");
        EXPECT_EQ(findingsOf(files), Lines{"fault next-id Actual.xml:108 scenario/task[@id='" + id +
                                           "']: the next free id in the table of contents is not above this one"});
    }
}

TEST(KZDXRules, leftOut) {
    auto files = soundBundle();
    files["Baseline.xml"] =
        withReplaced(files["Baseline.xml"], "<task id=\"t-1\">\n        <type>group</type>\n    </task>",
                     "<task id=\"t-1\"><type>group</type><child-task idref=\"t2\"/></task>\n"
                     "<task id=\"t2\"><type>task</type><effort>0</effort>\n"
                     "<assignment idref=\"r1\"/><assignment idref=\"r7\"/></task>");
    EXPECT_EQ(
        findingsOf(files),
        (Lines{"fault unresolved-idref Baseline.xml:13 scenario/task[@id='t2']/assignment[@idref='r7']: no resource "
               "has the id 'r7'",
               "note left-out Baseline.xml:13 scenario/task[@id='t2']/assignment[@idref='r1']: 'r1' has no such "
               "baseline, and is left out here"}));
}

// What a baseline leaves out is a resource where one is named, and a task where a task is.
TEST(KZDXRules, leftOutIsOfTheKindThatIsNamed) {
    auto files = soundBundle();
    files["Baseline.xml"] =
        withReplaced(files["Baseline.xml"], "<task id=\"t-1\">\n        <type>group</type>\n    </task>",
                     "<task id=\"t-1\"><type>group</type><child-task idref=\"t2\"/></task>\n"
                     "<task id=\"t2\"><type>task</type><effort>0</effort>\n"
                     "<prerequisite-task idref=\"r1\" kind=\"FS\"/><assignment idref=\"t3\"/></task>");
    EXPECT_EQ(
        findingsOf(files),
        (Lines{"fault unresolved-idref Baseline.xml:13 scenario/task[@id='t2']/prerequisite-task[@idref='r1']: no "
               "task has the id 'r1'",
               "fault unresolved-idref Baseline.xml:13 scenario/task[@id='t2']/assignment[@idref='t3']: no "
               "resource has the id 't3'"}));
}

TEST(KZDXRules, bareAssignment) {
    expectActual("<assignment idref=\"r2\"/>", "<assignment/>",
                 {"note bare-assignment Actual.xml:89 scenario/task[@id='t3']/assignment: the assignment names no "
                  "resource: the plan does not tell it"});
}

TEST(KZDXRules, severalGroups) {
    expectActual("<child-task idref=\"t4\"/>", "<child-task idref=\"t4\"/><child-task idref=\"t2\"/>",
                 {"fault several-groups Actual.xml:50 scenario/task[@id='t1']/child-task[@idref='t2']: the task 't2' "
                  "is in another group, too"});
}

TEST(KZDXRules, resourceGroup) {
    expectActual("<child-resource idref=\"r2\"/>", "",
                 {"fault resource-group Actual.xml:32 scenario/resource[@id='r2']: the resource is in 0 groups"});
}

TEST(KZDXRules, noGroupParent) {
    expectActual("<split/>", "<type>task</type>",
                 {"fault no-group-parent Actual.xml:87 scenario/task[@id='t3']/child-task[@idref='t5']: the task has "
                  "child tasks, but is neither a group nor split",
                  "fault missing-value Actual.xml:100 scenario/task[@id='t5']: there is neither a type nor a split",
                  "fault missing-value Actual.xml:108 scenario/task[@id='t6']: there is neither a type nor a split"});
}

TEST(KZDXRules, outlineCircle) {
    expectActual("<child-task idref=\"t2\"/>", "<child-task idref=\"t1\"/>",
                 {"fault several-groups Actual.xml:50 scenario/task[@id='t1']/child-task[@idref='t1']: the task 't1' "
                  "is in another group, too",
                  "fault outline-circle Actual.xml:50 scenario/task[@id='t1']/child-task[@idref='t1']: Building (t1) "
                  "is below itself",
                  "note no-group Actual.xml:53 scenario/task[@id='t2']: the task is in no group: the plan's outline "
                  "does not lead to it"});
}

TEST(KZDXRules, linkCircle) {
    expectActual("<assignment idref=\"r1\"/>", "<prerequisite-task idref=\"t4\" kind=\"FS\"/>",
                 {"fault link-circle Actual.xml:86 scenario/task[@id='t3']/prerequisite-task[@idref='t2']: Dig (t2) "
                  "waits for itself, over Done (t4), Paint (t3)"});
    expectActual("<prerequisite-task idref=\"t3\"", "<prerequisite-task idref=\"t4\"",
                 {"fault link-circle Actual.xml:98 scenario/task[@id='t4']/prerequisite-task[@idref='t4']: Done (t4) "
                  "waits for itself"});
}

TEST(KZDXRules, linkCircleNamesTheFirstOnes) {
    std::string tasks;
    std::string children;
    for (int i = 11; i <= 30; ++i) {
        tasks += "<task id='t" + std::to_string(i) +
                 "'><type>task</type><effort>0</effort><prerequisite-task idref='t" +
                 std::to_string(i == 30 ? 11 : i + 1) + "' kind='FS'/></task>";
        children += "<child-task idref='t" + std::to_string(i) + "'/>";
    }
    auto files = brokenBundle("Actual.xml", "<child-task idref=\"t4\"/>", "<child-task idref=\"t4\"/>" + children);
    files["Actual.xml"] = withReplaced(files["Actual.xml"], "<!--  Critical Path  -->", tasks);
    files["__TOC.xml"] = withReplaced(files["__TOC.xml"], "task-id>7<", "task-id>31<");
    EXPECT_EQ(
        findingsOf(files),
        Lines{"fault link-circle Actual.xml:115 scenario/task[@id='t30']/prerequisite-task[@idref='t11']: (no name) "
              "(t11) waits for itself, over (no name) (t12), (no name) (t13), (no name) (t14), (no name) (t15), (no "
              "name) (t16), ..."});
}

// A group waits with all of its tasks, and ends with the last of them.
TEST(KZDXRules, groupCircle) {
    const auto linked = [](const std::string& from, const std::string& to, const std::string& kind) {
        return brokenBundle("Actual.xml", from,
                            from + "<prerequisite-task idref=\"" + to + "\" kind=\"" + kind + "\"/>");
    };
    const std::string ofDig = "<assignment idref=\"r1\"/>";
    const std::string ofBuilding = "<effort>144000</effort>";
    const std::string ofDone = "<effort>0</effort>";
    EXPECT_EQ(
        findingsOf(linked(ofDig, "t1", "FS")),
        Lines{"note group-circle Actual.xml:78 scenario/task[@id='t2']/prerequisite-task[@idref='t1']: Building (t1) "
              "waits for itself through the groups, over Dig (t2)"});
    EXPECT_EQ(
        findingsOf(linked(ofBuilding, "t2", "FS")),
        Lines{"note group-circle Actual.xml:49 scenario/task[@id='t1']/prerequisite-task[@idref='t2']: Building (t1) "
              "waits for itself through the groups, over Dig (t2)"});
    // Building waits for Done, and Done waits for Paint, which is in it and waits for Dig, which is in it, too.
    EXPECT_EQ(
        findingsOf(linked(ofBuilding, "t4", "FS")),
        (Lines{"note group-circle Actual.xml:86 scenario/task[@id='t3']/prerequisite-task[@idref='t2']: Building (t1) "
               "waits for itself through the groups, over Done (t4), Paint (t3), Dig (t2)",
               "note group-circle Actual.xml:98 scenario/task[@id='t4']/prerequisite-task[@idref='t3']: Building (t1) "
               "waits for itself through the groups, over Done (t4), Paint (t3)"}));
    // A task may begin with its group, and end with it.
    EXPECT_EQ(findingsOf(linked(ofDig, "t1", "SS")), Lines());
    EXPECT_EQ(findingsOf(linked(ofBuilding, "t2", "FF")), Lines());
    EXPECT_EQ(findingsOf(linked(ofDone, "t1", "FS")), Lines());
}

TEST(KZDXRules, noGroup) {
    expectActual("<child-task idref=\"t4\"/>", "",
                 {"note no-group Actual.xml:91 scenario/task[@id='t4']: the task is in no group: the plan's outline "
                  "does not lead to it"});
}

// Each task of a branch that hangs in the air, not only the one that it hangs on.
TEST(KZDXRules, noGroupFromTheGroupOfAllTasks) {
    const std::string top = "the task is in no group: the plan's outline does not lead to it";
    const std::string below = "the group of all tasks does not lead to the task's group";
    expectActual("<child-task idref=\"t1\"/>", "",
                 {"note no-group Actual.xml:46 scenario/task[@id='t1']: " + top,
                  "note no-group Actual.xml:53 scenario/task[@id='t2']: " + below,
                  "note no-group Actual.xml:80 scenario/task[@id='t3']: " + below,
                  "note no-group Actual.xml:100 scenario/task[@id='t5']: " + below,
                  "note no-group Actual.xml:108 scenario/task[@id='t6']: " + below});
}

// Without the group of all tasks there is one thing to tell, not one for each task.
TEST(KZDXRules, noGroupNeedsTheGroupOfAllTasks) {
    expectActual("<top-task idref=\"t-1\"/>", "<top-task idref=\"t9\"/>",
                 {"fault top-task Actual.xml:38 scenario/top-task[@idref='t9']: 'idref' is 't9' instead of 't-1'",
                  "fault missing-value Actual.xml:39 scenario/task[@id='t-1']: there is no effort"});
    expectActual("<top-task idref=\"t-1\"/>", "<top-task idref=\"t4\"/>",
                 {"fault top-task Actual.xml:38 scenario/top-task[@idref='t4']: 'idref' is 't4' instead of 't-1'",
                  "fault missing-value Actual.xml:39 scenario/task[@id='t-1']: there is no effort"});
}

TEST(KZDXRules, date) {
    const std::string leveled = "<leveled-start>2026-05-29T17:00:00+02:00<";
    for (const std::string wrong : {"2026-05-29", "2026-02-30T17:00:00Z", "", "tomorrow", "2026-05-29T17:00:00"}) {
        expectActual(leveled, "<leveled-start>" + wrong + "<",
                     {"fault date Actual.xml:95 scenario/task[@id='t4']/leveled-start: '" + wrong +
                      "' is no date with a time and an offset"});
    }
}

namespace {

constexpr std::string_view startOfDig =
    "<static-cost>0.000000</static-cost>\n        <start-date>2026-05-04T08:00:00+02:00<";

std::string startingAt(const std::string& time) {
    return "<static-cost>0.000000</static-cost>\n        <start-date>" + time + "<";
}

}  // namespace

// Work is on Mondays, from 8 to 12 and from 13 to 17 o'clock; the task ends on Tuesday.
TEST(KZDXRules, reversedDates) {
    expectActual(
        startOfDig, startingAt("2026-05-11T08:00:01+02:00"),
        {"fault reversed-dates Actual.xml:63 scenario/task[@id='t2']/start-date: the start is behind the end"});
    expectActual(
        startOfDig, startingAt("2027-05-11T08:00:00+02:00"),
        {"fault reversed-dates Actual.xml:63 scenario/task[@id='t2']/start-date: the start is behind the end"});
}

// On the clock on the wall the start comes first, but no two clocks of one place are twelve hours apart.
TEST(KZDXRules, reversedDatesOfOffsetsThatNoPlaceHas) {
    expectActual(
        "<end-date>2026-05-05T17:00:00+02:00<", "<end-date>2026-05-04T09:00:00+14:00<",
        {"fault reversed-dates Actual.xml:63 scenario/task[@id='t2']/start-date: the start is behind the end"});
    expectActual("<end-date>2026-05-05T17:00:00+02:00<", "<end-date>2026-05-04T08:30:00+04:00<",
                 {"note reversed-offsets Actual.xml:63 scenario/task[@id='t2']/start-date: the start is behind the end "
                  "by their offsets alone: the clocks change in between"});
}

TEST(KZDXRules, reversedInPlan) {
    expectActual(
        startOfDig, startingAt("2026-05-11T08:00:00+02:00"),
        {"note reversed-in-plan Actual.xml:63 scenario/task[@id='t2']/start-date: the start is behind the end: "
         "the plan says so"});
    expectActual(
        "2026-05-29T17:00:00+02:00</end-date>\n        <child-task",
        "2026-05-01T17:00:00+02:00</end-date>\n<child-task",
        {"note reversed-in-plan Actual.xml:41 scenario/task[@id='t-1']/start-date: the start is behind the end: "
         "the plan says so"});
    auto files = soundBundle();
    files["Baseline.xml"] =
        withReplaced(files["Baseline.xml"], "<task id=\"t-1\">\n        <type>group</type>\n    </task>",
                     "<task id=\"t-1\"><type>group</type><child-task idref=\"t2\"/></task>\n"
                     "<task id=\"t2\"><type>task</type><effort>0</effort>\n"
                     "<start-date>2026-05-12T08:00:00Z</start-date><end-date>2026-05-01T08:00:00Z</end-date></task>");
    EXPECT_EQ(findingsOf(files), (Lines{"note reversed-in-plan Baseline.xml:13 scenario/task[@id='t2']/start-date: the "
                                        "start is behind the end: the plan says so"}));
}

TEST(KZDXRules, reversedOffsets) {
    expectActual("<end-date>2026-05-05T17:00:00+02:00<", "<end-date>2026-05-04T08:30:00+03:00<",
                 {"note reversed-offsets Actual.xml:63 scenario/task[@id='t2']/start-date: the start is behind the end "
                  "by their offsets alone: the clocks change in between"});
}

TEST(KZDXRules, number) {
    const std::string task = "scenario/task[@id='t2']/";
    expectActual("<effort>57600<", "<effort>much<",
                 {"fault number Actual.xml:58 " + task + "effort: 'much' is no number"});
    expectActual("<effort-done>28800<", "<effort-done>-1<",
                 {"fault number Actual.xml:60 " + task + "effort-done: '-1' is out of range"});
    expectActual("<completion-percentage>0.50<", "<completion-percentage>1.01<",
                 {"fault number Actual.xml:59 " + task + "completion-percentage: '1.01' is out of range"});
    expectActual("<static-cost>0.000000<", "<static-cost>free<",
                 {"fault number Actual.xml:62 " + task + "static-cost: 'free' is no number"});
    expectActual("<units-available>5.000000<", "<units-available>nan<",
                 {"fault number Actual.xml:35 scenario/resource[@id='r2']/units-available: 'nan' is no number"});
}

TEST(KZDXRules, numberInPlan) {
    for (const std::string rate : {"lots", "95,5", ""}) {
        expectActual(
            "<cost-per-hour>50<", "<cost-per-hour>" + rate + "<",
            {"note number-in-plan Actual.xml:29 scenario/resource[@id='r1']/cost-per-hour: the cost per hour '" + rate +
             "' is no number: the plan says so"});
    }
    expectActual("<cost-per-hour>50<", "<cost-per-hour>95.5<", {});
    for (const std::string priority : {"high", "-1", ""}) {
        expectActual("<priority>500<", "<priority>" + priority + "<",
                     {"note number-in-plan Actual.xml:57 scenario/task[@id='t2']/priority: the priority '" + priority +
                      "' is no number from 0 on: the plan says so"});
    }
    expectActual("<priority>500<", "<priority>0<", {});
    expectActual(
        "<units-available>5.000000<", "<units-available>-5.000000<",
        {"note number-in-plan Actual.xml:35 scenario/resource[@id='r2']/units-available: the units '-5.000000' "
         "are below 0: the plan says so"});
    expectActual("<units-available>5.000000<", "<units-available>0.000000<", {});
}

TEST(KZDXRules, doneAboveEffort) {
    expectActual(
        "<effort-done>28800<", "<effort-done>57600.5<",
        {"note done-above-effort Actual.xml:60 scenario/task[@id='t2']/effort-done: more is done than there is "
         "effort, 57600.5 of 57600 seconds: the plan says so"});
    expectActual("<effort-done>28800<", "<effort-done>57600<", {});
}

TEST(KZDXRules, repeatedValue) {
    expectActual(
        "<effort>57600</effort>", "<effort>57600</effort><effort>1</effort>",
        {"fault repeated-value Actual.xml:58 scenario/task[@id='t2']/effort: there is another 'effort' before it"});
    expectActual(
        "<leveled-start>", "<start-date>2026-05-29T17:00:00+02:00</start-date><leveled-start>",
        {"fault repeated-value Actual.xml:96 scenario/task[@id='t4']/start-date: there is another 'start-date' "
         "before it"});
    expectActual("<name>Anna</name>", "<name>Anna</name><name>Berta</name>",
                 {"fault repeated-value Actual.xml:26 scenario/resource[@id='r1']/name: there is another 'name' before "
                  "it"});
    expectActual("<priority>500</priority>", "<priority>500</priority><mine/><mine/>", {});
}

TEST(KZDXRules, namespaceOfTheContents) {
    expectActual("xmlns=\"urn:kadenza:document:2\"", "xmlns=\"urn:other\"",
                 {"fault namespace Actual.xml:2 scenario: the namespace is 'urn:other' here and "
                  "'urn:kadenza:document:2' in the table of contents"});
}

TEST(KZDXRules, linkKind) {
    expectActual(
        " kind=\"SS\"", "",
        {"note link-kind Actual.xml:98 scenario/task[@id='t4']/prerequisite-task[@idref='t3']: the link has no "
         "kind: the plan tells none, or one that nobody knows"});
}

TEST(KZDXRules, repeatedReference) {
    expectActual(
        "<assignment idref=\"r1\"/>",
        "<assignment idref=\"r1\"/><assignment idref=\"r2\"/><assignment "
        "idref=\"r1\"/>",
        {"note repeated-reference Actual.xml:78 scenario/task[@id='t2']/assignment[@idref='r1']: the task has the "
         "assignment of 'r1' twice"});
    expectActual(
        "<prerequisite-task idref=\"t3\" kind=\"SS\"/>",
        "<prerequisite-task idref=\"t3\" kind=\"SS\"/><prerequisite-task idref=\"t3\" kind=\"FS\"/>",
        {"note repeated-reference Actual.xml:98 scenario/task[@id='t4']/prerequisite-task[@idref='t3']: the task "
         "has the link to 't3' twice"});
}

TEST(KZDXRules, word) {
    const std::string task = "scenario/task[@id='t2']/";
    expectActual("<type>task<", "<type>tusk<",
                 {"fault word Actual.xml:55 " + task + "type: 'tusk' is none of group task milestone"});
    expectActual("<schedule-type>asap<", "<schedule-type>asap alap<",
                 {"fault word Actual.xml:56 " + task + "schedule-type: 'asap alap' is none of asap alap"});
    expectActual("<recalculate>duration<", "<recalculate><",
                 {"fault word Actual.xml:61 " + task + "recalculate: '' is none of duration effort"});
    expectActual("kind=\"SS\"", "kind=\"XX\"",
                 {"fault word Actual.xml:98 scenario/task[@id='t4']/prerequisite-task[@idref='t3']: 'XX' is none of FF "
                  "FS SF SS"});
    expectActual("<granularity>hours<", "<granularity>years<",
                 {"fault word Actual.xml:6 scenario/granularity: 'years' is none of hours days minutes"});
    expectActual(
        "<type>Staff<", "<type>Stuff<",
        {"fault word Actual.xml:27 scenario/resource[@id='r1']/type: 'Stuff' is none of Group Staff Material"});
}

TEST(KZDXRules, missingValue) {
    expectActual("<type>milestone</type>", "",
                 {"fault missing-value Actual.xml:91 scenario/task[@id='t4']: there is neither a type nor a split"});
    expectActual("<effort>57600</effort>", "",
                 {"fault missing-value Actual.xml:53 scenario/task[@id='t2']: there is no effort"});
    expectActual("<type>Staff</type>", "",
                 {"fault missing-value Actual.xml:25 scenario/resource[@id='r1']: there is no type"});
}

TEST(KZDXRules, missingStartOfAnImport) {
    expectActual("<start-date>2026-05-04T08:00:00+02:00</start-date>\n    <granularity>", "<granularity>",
                 {"fault missing-value Actual.xml:2 scenario: there is neither a start-date nor an end-date"});
    auto files = soundBundle();
    for (const auto* const name : {"Actual.xml", "Baseline.xml"}) {
        files[name] = withoutComments(files[name]);
    }
    files["Actual.xml"] = withReplaced(
        files["Actual.xml"], "<start-date>2026-05-04T08:00:00+02:00</start-date>\n    <granularity>", "<granularity>");
    EXPECT_EQ(findingsOf(files), Lines());
    // The names of sections tell an import as well.
    files["Actual.xml"] = withReplaced(files["Actual.xml"], "<top-task", "<!--  Tasks  --><top-task");
    const auto lines = findingsOf(files);
    EXPECT_EQ(std::count(lines.begin(), lines.end(),
                         "fault missing-value Actual.xml:2 scenario: there is neither a start-date nor an end-date"),
              1);
}

TEST(KZDXRules, projectDates) {
    expectActual("    <granularity>", "    <end-date>2026-05-04T07:59:59+02:00</end-date><granularity>",
                 {"fault project-dates Actual.xml:5 scenario/start-date: the project starts behind its end"});
    expectActual("    <granularity>", "    <end-date>2026-05-04T08:00:00+02:00</end-date><granularity>", {});
    // As instants: in the afternoon further east.
    expectActual("    <granularity>", "    <end-date>2026-05-04T06:00:00Z</end-date><granularity>", {});
    expectActual("id=\"aActual0001\"", "id=\"aActual0001\" fixed-end=\"yes\"",
                 {"fault project-dates Actual.xml:2 scenario: the project is scheduled from its end, but has no "
                  "end-date"});
    expectActual("id=\"aActual0001\"", "id=\"aActual0001\" fixed-end=\"no\"", {});
}

TEST(KZDXRules, userData) {
    const std::string data = "scenario/task[@id='t2']/user-data/";
    expectActual("<string>North</string>", "", {"fault user-data Actual.xml:75 " + data + "key: the key has no value"});
    expectActual("<key>Region</key>", "",
                 {"fault user-data Actual.xml:76 " + data + "string: 'string' stands where a key belongs"});
    expectActual("<string>North</string>", "<null/>", {});
}

TEST(KZDXRules, unlistedField) {
    expectActual("<key>Region</key>", "<key>Colour</key>",
                 {"note unlisted-field Actual.xml:75 scenario/task[@id='t2']/user-data/key: custom fields that the "
                  "table of contents does not list: 'Colour'"});
}

TEST(KZDXRules, dayTimes) {
    const std::string day = "scenario/resource[@id='r-1']/schedule/schedule-day[@day-of-week='monday']/time-span: ";
    expectActual("start-time=\"28800\" end-time=\"43200\"", "start-time=\"79200\" end-time=\"21600\"",
                 {"note overnight Actual.xml:14 " + day +
                      "the span ends at second 21600, but begins at 79200: the plan's calendar says so",
                  "fault day-times Actual.xml:15 " + day +
                      "the span begins at second 46800, before the end of the one before it"});
    expectActual("start-time=\"46800\"", "start-time=\"43199\"",
                 {"fault day-times Actual.xml:15 " + day +
                  "the span begins at second 43199, before the end of the one before it"});
    for (const auto* const wrong : {"end-time=\"86401\"", "end-time=\"-1\"", "end-time=\"noon\"", ""}) {
        expectActual(
            "end-time=\"61200\"", wrong,
            {"fault day-times Actual.xml:15 " + day + "'start-time' and 'end-time' are not both seconds of a day"});
    }
    expectActual("end-time=\"61200\"", "end-time=\"86400\"", {});
}

// An import makes such spans of night shifts.
TEST(KZDXRules, overnight) {
    const std::string day = "scenario/resource[@id='r-1']/schedule/schedule-day[@day-of-week='monday']/time-span: ";
    for (const auto& [start, end] : {std::pair<std::string, std::string>("79200", "21600"), {"46800", "46800"}}) {
        expectActual("start-time=\"46800\" end-time=\"61200\"",
                     fmt::format("start-time=\"{}\" end-time=\"{}\"", start, end),
                     {fmt::format("note overnight Actual.xml:15 {}the span ends at second {}, but begins at {}: the "
                                  "plan's calendar says so",
                                  day, end, start)});
    }
}

TEST(KZDXRules, midnight) {
    expectActual("end-time=\"61200\"", "end-time=\"0\"",
                 {"note midnight Actual.xml:15 "
                  "scenario/resource[@id='r-1']/schedule/schedule-day[@day-of-week='monday']/time-span: the span ends "
                  "at midnight, which is taken for the beginning of the day: it counts no work"});
}

TEST(KZDXRules, emptySpan) {
    expectActual(
        "start-time=\"46800\" end-time=\"61200\"", "start-time=\"\" end-time=\"\"",
        {"note empty-span Actual.xml:15 scenario/resource[@id='r-1']/schedule/"
         "schedule-day[@day-of-week='monday']/time-span: the span has no times: the plan's calendar has none there"});
}

TEST(KZDXRules, weekday) {
    expectActual(
        "day-of-week=\"tuesday\"", "day-of-week=\"Tuesday\"",
        {"fault weekday Actual.xml:17 scenario/resource[@id='r-1']/schedule/schedule-day[@day-of-week='Tuesday']: "
         "'Tuesday' is no day of the week"});
}

TEST(KZDXRules, repeatedDay) {
    expectActual(
        "day-of-week=\"tuesday\"", "day-of-week=\"monday\"",
        {"note repeated-day Actual.xml:17 scenario/resource[@id='r-1']/schedule/schedule-day[@day-of-week='monday']: "
         "the day is there twice: the plan's calendar has it twice"});
}

TEST(KZDXRules, event) {
    const std::string event = "scenario/resource[@id='r-1']/schedule/calendar[@name='Time Off']/event: ";
    expectActual("end=\"2026-12-26T23:59:59+01:00\"", "end=\"2026-12-23T23:59:59+01:00\"",
                 {"fault event Actual.xml:19 " + event + "the start is behind the end"});
    expectActual("end=\"2026-12-26T23:59:59+01:00\"", "end=\"2026-12-24T05:00:00+14:00\"",
                 {"fault event Actual.xml:19 " + event + "the start is behind the end"});
    expectActual("end=\"2026-12-26T23:59:59+01:00\"", "end=\"2026-12-24T00:30:00+02:00\"", {});
    expectActual("end=\"2026-12-26T23:59:59+01:00\"", "",
                 {"fault event Actual.xml:19 " + event + "'' is no date with a time and an offset"});
    expectActual("start=\"2026-12-24T00:00:00+01:00\"", "start=\"Christmas\"",
                 {"fault event Actual.xml:19 " + event + "'Christmas' is no date with a time and an offset"});
}
