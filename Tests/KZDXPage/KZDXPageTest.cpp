#include "KZDXPage.h"

#include <gmock/gmock.h>

#include "MSPCDigest.h"
#include "MSPDIAccount.h"
#include "PageData.h"
#include "SoundBundle.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using JSON = nlohmann::json;

constexpr int beginning = 1'777'881'600;  // 2026-05-04T08:00:00 on the clock

MSPDIPlace placeOf(const std::string& path, const std::string& uid, const std::string& name, const std::string& value) {
    MSPDIPlace place;
    place.path = path;
    place.uid = uid;
    place.name = name;
    place.value = value;
    return place;
}

}  // namespace

TEST(KZDXPageTest, holdsEverythingThatTheDocumentSaysOfTasks) {
    const auto page = pageOf(soundBundle());
    EXPECT_EQ(page.tasks, 4U);  // pieces of a split task are none of their own, nor is the group of all
    EXPECT_EQ(page.resources, 2U);
    EXPECT_EQ(page.baselines, 1U);
    EXPECT_TRUE(page.notes.empty());
    const auto data = dataOf(page);
    const auto tasks = data["scenario"]["tasks"];
    EXPECT_EQ(tasks["count"], 4);
    EXPECT_EQ(tasks["outside"], 4);
    EXPECT_EQ(tasks["level"], JSON::parse("[1, 2, 2, 1]"));
    EXPECT_EQ(tasks["id"], JSON::parse(R"(["t1", "t2", "t3", "t4"])"));
    EXPECT_EQ(tasks["title"], JSON::parse(R"(["Building", "Dig", "Paint", "Done"])"));
    EXPECT_EQ(tasks["kind"], JSON::parse(R"(["group", "task", "split", "milestone"])"));
    EXPECT_EQ(tasks["start-date"], (JSON{{"base", beginning},
                                         {"unit", 3600},
                                         {"at", JSON::parse("[null, 0, 48, 609]")},
                                         {"offset", JSON::parse("[null, 7200, 7200, 7200]")}}));
    EXPECT_EQ(tasks["effort"], JSON::parse("[144000, 57600, 86400, 0]"));
    EXPECT_EQ(tasks["effort-done"], JSON::parse("[null, 28800, null, null]"));
    EXPECT_EQ(tasks["completion-percentage"], JSON::parse("[null, 0.5, null, null]"));
    EXPECT_EQ(tasks["note"], JSON::parse(R"([null, "Mind the pipes", null, null])"));
    EXPECT_EQ(tasks["assigned"], JSON::parse("[null, [1], [2], null]"));
    EXPECT_EQ(tasks["fields"], JSON::parse(R"([["Region", [null, "North", null, null]]])"));
    EXPECT_THAT(tasks["facts"], testing::Contains(JSON::parse(R"(["priority", [null, "500", null, null]])")));
    const auto pieces = tasks["pieces"][2];
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(pieces[0], JSON::array({{beginning + 172'800, 7200}, {beginning + 205'200, 7200}, 28'800}));
    EXPECT_EQ(data["scenario"]["links"], JSON::parse(R"({"from": [1, 2], "to": [2, 3], "kind": "13"})"));
    EXPECT_EQ(data["comparison"], 0);
    EXPECT_EQ(data["title"], "House");
    EXPECT_TRUE(data["losses"].is_null());
}

TEST(KZDXPageTest, holdsWhatOnlyOtherProgramsSay) {
    const auto task = dataOf(pageOf(brokenBundle(
        "Actual.xml", "<priority>500</priority>",
        R"(<priority>500</priority><flag>a</flag><flag at="1">b</flag><start-date certain="no">2026</start-date>)")));
    const auto facts = task["scenario"]["tasks"]["facts"];
    EXPECT_THAT(facts, testing::Contains(JSON::parse(R"(["flag", [null, "a\n<flag at=\"1\">b</flag>", null, null]])")));
    EXPECT_THAT(facts, testing::Contains(JSON::parse(R"(["priority", [null, "500", null, null]])")));
    const auto owned =
        dataOf(pageOf(brokenBundle("Actual.xml", "<task id=\"t2\">", "<task id=\"t2\" owner=\"Anna\">")));
    EXPECT_THAT(owned["scenario"]["tasks"]["facts"],
                testing::Contains(JSON::parse(R"(["owner", [null, "Anna", null, null]])")));
}

TEST(KZDXPageTest, namesCalendarsThatHaveANameOfTheirOwn) {
    const auto data =
        dataOf(pageOf(brokenBundle("Actual.xml", "calendar name=\"Time Off\"", "calendar name=\"Feast\"")));
    EXPECT_EQ(data["scenario"]["schedule"]["off"][0][2], "Feast");
}

TEST(KZDXPageTest, holdsSchedulesAndResources) {
    const auto scenario = dataOf(pageOf(soundBundle()))["scenario"];
    EXPECT_EQ(scenario["schedule"]["days"],
              JSON::parse("[null, [[28800, 43200], [46800, 61200]], [], null, null, null, null]"));
    EXPECT_EQ(scenario["schedule"]["off"].size(), 1U);
    EXPECT_EQ(scenario["schedule"]["over"].size(), 0U);
    const auto resources = scenario["resources"];
    ASSERT_EQ(resources.size(), 3U);
    EXPECT_TRUE(resources[0].is_null());  // the group of all
    EXPECT_EQ(resources[1]["name"], "Anna");
    EXPECT_EQ(resources[1]["cost-per-hour"], "50");
    EXPECT_EQ(resources[2]["type"], "Material");
}

TEST(KZDXPageTest, matchesTasksOfABaselineByTheirIds) {
    auto files = soundBundle();
    files["Baseline.xml"] =
        R"(<scenario xmlns="urn:kadenza:document:2" id="aBaseline01"><top-task idref="t-1"/><task id="t-1">)"
        R"(<child-task idref="t3"/><child-task idref="t9"/></task><task id="t9"><title>Gone</title></task>)"
        R"(<task id="t3"><start-date>2026-05-04T08:00:00+02:00</start-date></task></scenario>)";
    const auto tasks = dataOf(pageOf(files))["baselines"][0]["tasks"];
    EXPECT_EQ(tasks["row"], JSON::parse("[2, -1]"));
    EXPECT_EQ(tasks["gone"], JSON::parse(R"([["t9", "Gone"]])"));
}

TEST(KZDXPageTest, showsTasksOutsideOfTheOutlineAndInCircles) {
    auto files = brokenBundle("Actual.xml", R"(        <child-task idref="t4"/>
)",
                              "");
    auto tasks = dataOf(pageOf(files))["scenario"]["tasks"];
    EXPECT_EQ(tasks["outside"], 3);
    EXPECT_EQ(tasks["id"], JSON::parse(R"(["t1", "t2", "t3", "t4"])"));
    // Two groups that hold each other.
    files["Actual.xml"] =
        R"(<scenario xmlns="urn:kadenza:document:2" id="a"><top-task idref="t-1"/><task id="t-1"/>)"
        R"(<task id="t1"><child-task idref="t2"/></task><task id="t2"><child-task idref="t1"/></task>)"
        "</scenario>";
    tasks = dataOf(pageOf(files))["scenario"]["tasks"];
    EXPECT_EQ(tasks["id"], JSON::parse(R"(["t1", "t2"])"));
    EXPECT_EQ(tasks["level"], JSON::parse("[1, 2]"));
}

TEST(KZDXPageTest, keepsTextsThatLookLikeMarkup) {
    const std::string hostile = "</script><!--<img src=x onerror=alert(1)>\"'&\xE2\x80\xA8";
    const auto files =
        brokenBundle("Actual.xml", "<title>Dig</title>",
                     "<title>&lt;/script>&lt;!--&lt;img src=x onerror=alert(1)>\"'&amp;&#x2028;</title>");
    const auto page = pageOf(files);
    EXPECT_EQ(dataOf(page)["scenario"]["tasks"]["title"][1], hostile);
    const auto data = between(page.html, "id=document>", "</script>");
    EXPECT_EQ(data.find('<'), std::string::npos);
    EXPECT_THAT(page.html, HasSubstr("<td>&lt;/script&gt;&lt;!--&lt;img src=x onerror=alert(1)&gt;&quot;'&amp;"));
    EXPECT_THAT(page.html, Not(HasSubstr("<img")));
}

TEST(KZDXPageTest, forbidsAllButItsOwnScriptAndStyle) {
    const auto html = pageOf(soundBundle()).html;
    const auto policy = between(html, "Content-Security-Policy content=\"", "\"");
    EXPECT_THAT(policy, HasSubstr("default-src 'none';"));
    EXPECT_THAT(policy,
                HasSubstr("script-src 'sha256-" + MSPCSHA256InBase64(between(html, "<script>", "</script>")) + "';"));
    EXPECT_THAT(policy,
                HasSubstr("style-src 'sha256-" + MSPCSHA256InBase64(between(html, "<style>", "</style>")) + "';"));
    EXPECT_THAT(policy, Not(HasSubstr("unsafe")));
    for (const std::string load : {"src=\"", "href=\"", "@import", "url("}) {
        EXPECT_THAT(between(html, "<style>", "</style>"), Not(HasSubstr(load)));
    }
}

TEST(KZDXPageTest, showsTheOutlineWithoutScripts) {
    const auto table = between(pageOf(soundBundle()).html, "<noscript>", "</noscript>");
    EXPECT_THAT(table, HasSubstr("<h1>House</h1>"));
    EXPECT_THAT(table, HasSubstr("<tr><td>1<td>Building<td><td><td>40 hours<td><td>\n"));
    EXPECT_THAT(table,
                HasSubstr("<tr><td>1.1<td>Dig<td>2026-05-04 08:00<td>2026-05-05 17:00<td>16 hours<td>50%<td>Anna\n"));
    EXPECT_THAT(table, HasSubstr("<tr><td>2<td>Done<td>2026-05-29 17:00"));
}

TEST(KZDXPageTest, leadsFromLossesToTasks) {
    MSPDIAccount account;
    account.losses.push_back({"deadline",
                              "deadlines",
                              "Tasks/Task/Deadline",
                              3,
                              {placeOf("/Project/Tasks[1]/Task[3]/Deadline[1]", "2", "Dig", "2026"),
                               placeOf("/Project/Assignments[1]/Assignment[1]/Units[1]", "3", "Paint", "0.5"),
                               placeOf("/Project/Calendars[1]/Calendar[1]/Name[1]", "1", "Standard", "x")}});
    const auto page = pageOf(soundBundle(), {"House.xml", "test", &account});
    const auto kinds = dataOf(page)["losses"]["kinds"];
    EXPECT_EQ(kinds[0]["count"], 3);
    EXPECT_EQ(kinds[0]["where"][0], JSON::parse(R"(["/Project/Tasks[1]/Task[3]/Deadline[1]", "Dig", "2026", "t2"])"));
    EXPECT_EQ(kinds[0]["where"][1][3], "t3");
    EXPECT_EQ(kinds[0]["where"][2][3], "");
}

// Names of resources stand there for each of their tasks; a character is never cut in two.
TEST(KZDXPageTest, beginsLongNamesOfResourcesInTheTable) {
    std::string name = "x";
    for (int count = 0; count < 150; ++count) {
        name += "\u00E9";
    }
    const auto page = pageOf(brokenBundle("Actual.xml", "<name>Anna</name>", "<name>" + name + "</name>"));
    const auto begun = name.substr(0, 199);
    EXPECT_THAT(page.html, HasSubstr("<td>" + begun + "\u2026\n"));
    EXPECT_NE(dataOf(page).dump().find(name), std::string::npos);
}

TEST(KZDXPageTest, leavesOutABaselineThatCannotBeRead) {
    const auto page = pageOf(brokenBundle("Baseline.xml", "</scenario>", ""));
    EXPECT_EQ(page.baselines, 0U);
    ASSERT_EQ(page.notes.size(), 1U);
    EXPECT_THAT(page.notes[0], testing::StartsWith("left out: Baseline.xml: line "));
    EXPECT_EQ(dataOf(page)["notes"][0], page.notes[0]);
    // A file outside of the bundle is never opened.
    const auto outside = pageOf(brokenBundle("__TOC.xml", "filename=\"Baseline.xml\"", "filename=\"../Baseline.xml\""));
    ASSERT_EQ(outside.notes.size(), 1U);
    EXPECT_THAT(outside.notes[0], HasSubstr("../Baseline.xml"));
}

TEST(KZDXPageTest, tellsWhyThereIsNoPage) {
    std::string failure;
    EXPECT_FALSE(KZDXPageOf(*KZDXFilesInMemory({}), {"x", "test"}, failure));
    EXPECT_EQ(failure, "no bundle: it holds no __TOC.xml");
    EXPECT_FALSE(KZDXPageOf(*KZDXFilesInMemory(brokenBundle("Actual.xml", "</scenario>", "")), {"x", "test"}, failure));
    EXPECT_THAT(failure, testing::StartsWith("Actual.xml: line "));
}
