#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

#include "KZDXCheck.h"
#include "KZDXRules.h"
#include "SoundBundle.h"

// For each rule a bundle that was broken by hand, and no rule without one.

namespace {

struct BrokenBundle {
    std::string rule;
    BundleFiles files;

    friend std::ostream& operator<<(std::ostream& stream, const BrokenBundle& one) { return stream << one.rule; }
};

BundleFiles contents(std::string_view piece, std::string_view other) {
    return brokenBundle("__TOC.xml", piece, other);
}
BundleFiles actual(std::string_view piece, std::string_view other) {
    return brokenBundle("Actual.xml", piece, other);
}
BundleFiles baseline(std::string_view piece, std::string_view other) {
    return brokenBundle("Baseline.xml", piece, other);
}

std::vector<BrokenBundle> brokenFiles() {
    auto missing = soundBundle();
    missing.erase("Baseline.xml");
    auto unnamed = soundBundle();
    unnamed["Baseline7.xml"] = unnamed["Baseline.xml"];
    auto unreadable = soundBundle();
    unreadable["Draft.xml"] = "<scen";
    return {{"xml", actual("</schedule>", "")},
            {"missing-file", missing},
            {"unnamed-file", unnamed},
            {"unreadable-file", unreadable},
            {"contents-frame", contents("<editing-scenario>aActual0001</editing-scenario>", "")},
            {"needed-setting", contents("<title>House</title>", "")},
            {"setting-order", contents("<title>House</title>\n        <next-task-id>7</next-task-id>",
                                       "<next-task-id>7</next-task-id><title>House</title>")},
            {"scenario-entry", contents(" filename=\"Baseline.xml\"", " filename=\"../Baseline.xml\"")},
            {"repeated-scenario", contents("name=\"Baseline\"", "name=\"Actual\"")},
            {"window-scenario", contents("<comparison-scenario>aBaseline01<", "<comparison-scenario>aBaseline02<")},
            {"scenario-root", actual("version=\"1.0\" encoding=\"UTF-8\"?>\n<scenario xmlns=",
                                     "version=\"1.0\"?><scenario xmlns:o=\"urn:other\" xmlns=")},
            {"namespace", baseline("urn:kadenza:document:2", "urn:other")},
            {"scenario-id", actual("id=\"aActual0001\"", "id=\"aActual0002\"")},
            {"import-comment", actual("Kadenza 2.x MSPDI Importer.", "")}};
}

std::vector<BrokenBundle> brokenReferences() {
    return {{"top-resource", actual("<top-resource idref=\"r-1\"/>", "")},
            {"top-task", actual("<top-task idref=\"t-1\"/>", "")},
            {"missing-id", actual("<task id=\"t6\">", "<task>")},
            {"repeated-id", actual("<task id=\"t6\">", "<task id=\"t5\">")},
            {"unresolved-idref", actual("<assignment idref=\"r2\"/>", "<assignment idref=\"r9\"/>")},
            {"next-id", contents("<next-task-id>7<", "<next-task-id>6<")},
            {"left-out", baseline("<type>group</type>", "<type>group</type><child-task idref=\"t2\"/>")},
            {"bare-assignment", actual("<assignment idref=\"r2\"/>", "<assignment/>")},
            {"link-kind", actual("idref=\"t3\" kind=\"SS\"", "idref=\"t3\"")},
            {"repeated-reference",
             actual("<assignment idref=\"r2\"/>", "<assignment idref=\"r2\"/><assignment idref=\"r2\"/>")},
            {"several-groups",
             actual("<child-task idref=\"t4\"/>", "<child-task idref=\"t4\"/><child-task idref=\"t2\"/>")},
            {"resource-group", actual("<child-resource idref=\"r2\"/>", "")},
            {"no-group-parent", actual("<split/>", "<type>task</type>")},
            {"outline-circle", actual("<child-task idref=\"t2\"/>", "<child-task idref=\"t1\"/>")},
            {"link-circle", actual("<prerequisite-task idref=\"t2\"", "<prerequisite-task idref=\"t4\"")},
            {"no-group", actual("<child-task idref=\"t4\"/>", "")},
            {"group-circle", actual("<prerequisite-task idref=\"t2\"", "<prerequisite-task idref=\"t1\"")}};
}

std::vector<BrokenBundle> brokenValues() {
    return {
        {"date", actual("<leveled-start>2026-05-29T", "<leveled-start>2026-05-32T")},
        {"reversed-dates", actual("<start-date>2026-05-04T08:00:00+02:00</start-date>\n        "
                                  "<end-date>2026-05-05T17:00:00+02:00<",
                                  "<start-date>2026-05-11T17:00:00+02:00</start-date>"
                                  "<end-date>2026-05-05T17:00:00+02:00<")},
        {"project-dates", actual("    <granularity>", "<end-date>2026-05-03T08:00:00+02:00</end-date><granularity>")},
        {"number", actual("<effort>57600</effort>", "<effort>-1</effort>")},
        {"word", actual("<type>Staff<", "<type>Stuff<")},
        {"missing-value", actual("<type>Staff</type>", "")},
        {"repeated-value", actual("<type>Staff</type>", "<type>Staff</type><type>Staff</type>")},
        {"user-data", actual("<string>North</string>", "")},
        {"unlisted-field", actual("<key>Region</key>", "<key>Colour</key>")},
        {"reversed-in-plan", actual("<end-date>2026-05-29T17:00:00+02:00</end-date>\n        <child-task",
                                    "<end-date>2026-05-01T17:00:00+02:00</end-date><child-task")},
        {"reversed-offsets", actual("<end-date>2026-05-29T17:00:00+02:00</end-date>\n        <prerequisite-task",
                                    "<end-date>2026-05-29T17:00:00+03:00</end-date><prerequisite-task")},
        {"number-in-plan", actual("<cost-per-hour>50<", "<cost-per-hour>lots<")},
        {"done-above-effort", actual("<effort-done>28800<", "<effort-done>57601<")},
        {"day-times", actual("start-time=\"46800\"", "start-time=\"43199\"")},
        {"weekday", actual("day-of-week=\"tuesday\"", "day-of-week=\"Tuesday\"")},
        {"event", actual("start=\"2026-12-24T00:00:00+01:00\"", "start=\"Christmas\"")},
        {"midnight", actual("end-time=\"61200\"", "end-time=\"0\"")},
        {"overnight", actual("start-time=\"46800\" end-time=\"61200\"", "start-time=\"79200\" end-time=\"21600\"")},
        {"empty-span", actual("start-time=\"46800\" end-time=\"61200\"", "start-time=\"\" end-time=\"\"")},
        {"repeated-day", actual("day-of-week=\"tuesday\"", "day-of-week=\"monday\"")}};
}

std::vector<BrokenBundle> brokenBundles() {
    auto bundles = brokenFiles();
    for (const auto& more : {brokenReferences(), brokenValues()}) {
        bundles.insert(bundles.end(), more.begin(), more.end());
    }
    return bundles;
}

bool isToldOf(const BundleFiles& files, std::string_view rule) {
    const auto check = KZDXCheckBundle(*KZDXFilesInMemory(BundleFiles(files)));
    return std::any_of(check.findings.begin(), check.findings.end(),
                       [rule](const KZDXFinding& finding) { return finding.rule == rule; });
}

class BrokenBundles : public testing::TestWithParam<BrokenBundle> {};

}  // namespace

TEST_P(BrokenBundles, areToldOf) {
    EXPECT_TRUE(isToldOf(GetParam().files, GetParam().rule));
    EXPECT_FALSE(isToldOf(soundBundle(), GetParam().rule));
}

INSTANTIATE_TEST_SUITE_P(Rules, BrokenBundles, testing::ValuesIn(brokenBundles()), [](const auto& one) {
    auto name = one.param.rule;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST(KZDXRules, eachBreaksWithABundleOfItsOwn) {
    std::multiset<std::string_view> broken;
    const auto bundles = brokenBundles();
    for (const auto& bundle : bundles) {
        broken.insert(bundle.rule);
    }
    std::multiset<std::string_view> rules;
    for (const auto& rule : KZDXRules()) {
        rules.insert(rule.name);
    }
    EXPECT_EQ(broken, rules);
}
