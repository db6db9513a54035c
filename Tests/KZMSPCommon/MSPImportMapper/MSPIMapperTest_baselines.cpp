#include "MSPIMapper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "ExpectRaises.h"
#include "ProjectImport.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST(MSPIMapper, MapsABaselineOfTheSamePlanAndRestoresTheSource) {
    ProjectImport import(framed(std::string(smallPlan)));
    const auto before = import.plan.document().serialized();
    EXPECT_EQ(import.mapBaseline(1),
              "<scenario xmlns=\"urn:kadenza:document:2\" id=\"baaaaaaaaaa\">"
              "<!--  2012-01-10 11:00:00 +0000: Kadenza 2.x MSPDI Importer.  -->"
              "<!--  Imported MS Project 2007: 'Plan' (Baseline 1)  -->"
              "<start-date>2012-01-09T08:00:00+01:00</start-date><granularity>hours</granularity>"
              "<!--  Resources  --><top-resource idref=\"r-1\"/>"
              "<resource id=\"r-1\"><type>Group</type><!--  Project Schedule  -->" +
                  standardWeek() +
                  "</resource><!--  Tasks  --><top-task idref=\"t-1\"/>"
                  "<task id=\"t-1\"><type>group</type><child-task idref=\"t7\"/></task>"
                  "<task id=\"t7\"><title>Dig</title><type>task</type><schedule-type>asap</schedule-type>"
                  "<effort>43200</effort><start-date>2012-01-10T08:00:00+01:00</start-date>"
                  "<end-date>2012-01-11T17:00:00+01:00</end-date>"
                  "<user-data><key>Region</key><string>North</string></user-data></task>"
                  "<!--  Critical Path  --><critical-path slack=\"0\"/></scenario>");
    EXPECT_EQ(import.plan.document().serialized(), before);
    EXPECT_EQ(markupOf(import.toc),
              "<toc xmlns=\"urn:kadenza:document:2\"><!-- kept -->"
              "<window><editing-scenario>template</editing-scenario>"
              "<comparison-scenario>baaaaaaaaaa</comparison-scenario></window>"
              "<project><next-task-id>8</next-task-id><next-resource-id>1</next-resource-id>"
              "<scenario id=\"template\" name=\"Actual\" filename=\"Actual.xml\"/>"
              "<scenario id=\"baaaaaaaaaa\" name=\"Baseline1\" filename=\"Baseline1.xml\"/>"
              "<date-display/><duration-format/><effort-format/><named-styles/></project></toc>");
    EXPECT_THAT(import.log.takeLines(),
                ElementsAre("Searching for data for baseline 1", "  Baseline Tasks: 1", "  Baseline Resources: 0",
                            "  Baseline Assignments: 0", "  Mapping Calendar UID='1' name='Standard' ...",
                            "Mapping 0 Resources ...", "Mapping 1 Tasks ...", "  Mapping Task UID='7' name='Dig' ..."));
}

TEST(MSPIMapper, ProducesNothingForABaselineWithoutData) {
    ProjectImport import(framed(tasks(task(1, baseline(1)))));
    EXPECT_EQ(import.mapBaseline(0), "(none)");
    EXPECT_EQ(import.mapBaseline(10), "(none)");
    EXPECT_EQ(markupOf(import.toc), emptyTOC);
    EXPECT_THAT(import.log.takeLines(), IsEmpty());
}

TEST(MSPIMapper, LeavesTheTasksOfARemovedSummaryTaskToTheNextCandidate) {
    for (const std::string version : {"9", "12"}) {
        ProjectImport import(framed(
            "<SaveVersion>" + version +
            "</SaveVersion><Tasks>"
            "<Task><UID>1</UID><OutlineLevel>1</OutlineLevel><Summary>1</Summary>" +
            baseline(0) +
            "</Task>"
            "<Task><UID>2</UID><OutlineLevel>2</OutlineLevel><Summary>1</Summary></Task>"
            "<Task><UID>3</UID><OutlineLevel>3</OutlineLevel>" +
            baseline(0) + "<PredecessorLink><PredecessorUID>2</PredecessorUID></PredecessorLink></Task></Tasks>"));
        const auto scenario = import.mapBaseline(0);
        EXPECT_THAT(scenario, HasSubstr("<child-task idref=\"t3\"/></task><task id=\"t3\">")) << version;
        EXPECT_THAT(scenario, Not(HasSubstr("t2"))) << version;
        import.log.ignoreLines();
    }
}

TEST(MSPIMapper, MapsABaselineThatOnlyAssignmentsHave) {
    ProjectImport import(framed(tasks(task(1)) +
                                "<Resources><Resource><UID>3</UID></Resource></Resources><Assignments>"
                                "<Assignment><TaskUID>1</TaskUID><ResourceUID>3</ResourceUID>" +
                                baseline(0) + "</Assignment></Assignments>"));
    const auto before = import.plan.document().serialized();
    const auto scenario = import.mapBaseline(0);
    EXPECT_THAT(scenario, HasSubstr("<task id=\"t-1\"><type>group</type></task><!--  Critical Path  -->"));
    EXPECT_THAT(scenario, Not(HasSubstr("<resource id=\"r3\"")));
    EXPECT_EQ(import.plan.document().serialized(), before);
    EXPECT_EQ(import.inTOC("project/scenario[@name='Baseline']"),
              "<scenario id=\"baaaaaaaaaa\" name=\"Baseline\" filename=\"Baseline.xml\"/>");
    EXPECT_THAT(import.log.takeLines(),
                ElementsAre("Searching for data for baseline 0", "  Baseline Tasks: 0", "  Baseline Resources: 0",
                            "  Baseline Assignments: 1", "  Mapping Calendar UID='1' name='Standard' ...",
                            "Mapping 0 Resources ...", "Mapping 0 Tasks ..."));
}

TEST(MSPIMapper, NamesTheLastBaselineAsComparisonScenario) {
    ProjectImport import(framed(tasks(task(1, baseline(0) + baseline(4)))));
    import.mapActual();
    import.mapBaseline(0);
    import.mapBaseline(4);
    import.log.ignoreLines();
    EXPECT_EQ(import.inTOC("window"),
              "<window><editing-scenario>baaaaaaaaaa</editing-scenario>"
              "<comparison-scenario>daaaaaaaaaa</comparison-scenario></window>");
    const auto toc = markupOf(import.toc);
    EXPECT_THAT(toc, HasSubstr("<scenario id=\"baaaaaaaaaa\" name=\"Actual\" filename=\"Actual.xml\"/>"
                               "<scenario id=\"caaaaaaaaaa\" name=\"Baseline\" filename=\"Baseline.xml\"/>"
                               "<scenario id=\"daaaaaaaaaa\" name=\"Baseline4\" filename=\"Baseline4.xml\"/>"));
}

TEST(MSPIMapper, MapsEveryBaselineFromTheSameSource) {
    const auto content =
        framed(tasks(task(1, "<Start>2012-01-09T08:00:00</Start>" + baseline(0, "<Start>2012-01-10T08:00:00</Start>") +
                                 baseline(2, "<Start>2012-01-12T08:00:00</Start>")) +
                     task(2, baseline(2)) + task(3, baseline(0)) + task(4)));
    ProjectImport import(content);
    const auto before = import.plan.document().serialized();
    const auto actual = import.mapActual();
    const auto first = import.mapBaseline(0);
    EXPECT_EQ(import.plan.document().serialized(), before);
    const auto second = import.mapBaseline(2);
    EXPECT_EQ(import.plan.document().serialized(), before);
    EXPECT_THAT(actual, HasSubstr("<child-task idref=\"t1\"/><child-task idref=\"t2\"/><child-task idref=\"t3\"/>"
                                  "<child-task idref=\"t4\"/></task>"));
    EXPECT_THAT(actual, HasSubstr("<effort>0</effort><start-date>2012-01-09T08:00:00+01:00</start-date>"));
    EXPECT_THAT(first, HasSubstr("<type>group</type><child-task idref=\"t1\"/><child-task idref=\"t3\"/></task>"));
    EXPECT_THAT(first, HasSubstr("<effort>0</effort><start-date>2012-01-10T08:00:00+01:00</start-date>"));
    EXPECT_THAT(second, HasSubstr("<type>group</type><child-task idref=\"t1\"/><child-task idref=\"t2\"/></task>"));
    EXPECT_THAT(second, HasSubstr("<effort>0</effort><start-date>2012-01-12T08:00:00+01:00</start-date>"));
    import.log.ignoreLines();
}

TEST(MSPIMapper, RefusesNumbersThatNoBaselineHas) {
    ProjectImport import(framed(""));
    EXPECT_RAISES(import.mapBaseline(11), MSPCInternalInconsistency,
                  "Unexpected baseline number in info dictionary: 11");
    EXPECT_RAISES(import.mapBaseline(-1), MSPCInternalInconsistency,
                  "Unexpected baseline number in info dictionary: -1");
}

// One after the other from one loaded plan.
std::vector<std::string> mappedTogether(const std::string& plan, const std::vector<std::optional<int>>& numbers) {
    ProjectImport import(plan);
    std::vector<std::string> scenarios;
    for (const auto& number : numbers) {
        import.randomSource = ListedRandomSource{0x0100000000000000};
        scenarios.push_back(number ? import.mapBaseline(*number) : import.mapActual());
    }
    import.log.ignoreLines();
    return scenarios;
}

TEST(MSPIMapper, LooksUpByTheNumbersThatABaselineShows) {
    // Task 1 is 5 in baseline 1, its assignment belongs to task 2 there, and the resource of it is another one.
    const auto plan =
        framed(tasks(task(1, baseline(0) + baseline(1, "<UID>5</UID>")) +
                     task(2, "<PredecessorLink><PredecessorUID>1</PredecessorUID></PredecessorLink>" + baseline(0) +
                                 baseline(1)) +
                     task(3, "<PredecessorLink><PredecessorUID>5</PredecessorUID></PredecessorLink>" + baseline(0) +
                                 baseline(1))) +
               "<Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID>1</ResourceUID>" + baseline(0) +
               baseline(1, "<TaskUID>2</TaskUID><ResourceUID>2</ResourceUID>") + "</Assignment></Assignments>");
    const auto scenarios = mappedTogether(plan, {std::nullopt, 0, 1, 0});
    for (const std::size_t asLoaded : {0U, 1U, 3U}) {
        EXPECT_THAT(scenarios[asLoaded], HasSubstr("<task id=\"t1\">"));
        EXPECT_THAT(scenarios[asLoaded], HasSubstr("<assignment idref=\"r1\"/></task><task id=\"t2\">"));
        EXPECT_THAT(scenarios[asLoaded], HasSubstr("<prerequisite-task idref=\"t1\"/></task><task id=\"t3\">"));
        EXPECT_THAT(scenarios[asLoaded], Not(HasSubstr("idref=\"t5\"")));
    }
    EXPECT_THAT(scenarios[2], HasSubstr("<task id=\"t5\">"));
    EXPECT_THAT(scenarios[2], HasSubstr("<assignment idref=\"r2\"/></task><task id=\"t3\">"));
    EXPECT_THAT(scenarios[2], HasSubstr("<prerequisite-task idref=\"t5\"/></task><!--  Critical Path  -->"));
    EXPECT_THAT(scenarios[2], Not(HasSubstr("idref=\"t1\"")));
}

TEST(MSPIMapper, LooksNothingUpThatABaselineRemoves) {
    const auto plan =
        framed(tasks(task(1) +
                     task(2, "<PredecessorLink><PredecessorUID>1</PredecessorUID></PredecessorLink>" + baseline(0))) +
               "<Assignments><Assignment><TaskUID>2</TaskUID><ResourceUID>1</ResourceUID></Assignment></Assignments>");
    for (const auto& numbers : {std::vector<std::optional<int>>{std::nullopt, 0, std::nullopt}, {0, std::nullopt, 0}}) {
        const auto scenarios = mappedTogether(plan, numbers);
        for (std::size_t at = 0; at < numbers.size(); ++at) {
            for (const std::string reference : {"<prerequisite-task idref=\"t1\"/>", "<assignment idref=\"r1\"/>"}) {
                EXPECT_EQ(scenarios[at].find(reference) == std::string::npos, numbers[at].has_value()) << at;
            }
        }
    }
}

// Plans whose baselines change any number and leave out any element.
std::string randomPlan(std::mt19937& random) {
    const auto some = [&](std::size_t count) { return random() % count; };
    const auto number = [&](const std::string& name) {
        return "<" + name + ">" + std::to_string(1 + some(6)) + "</" + name + ">";
    };
    const auto baselines = [&](std::initializer_list<std::string> keys) {
        std::string content;
        for (int n = 0; n < 4; ++n) {
            std::string values;
            for (const auto& key : keys) {
                values += n == 3 && some(3) == 0 ? number(key) : "";
            }
            content += n > 0 && some(4) == 0 ? "" : baseline(n, values);
        }
        return content;
    };
    std::string tasksOfPlan;
    std::string assignments;
    for (int uid = 1; uid <= 6; ++uid) {
        tasksOfPlan += task(uid, "<PredecessorLink>" + number("PredecessorUID") + "</PredecessorLink>" +
                                     (some(2) == 0 ? baselines({"UID"}) : baselines({})));
        assignments += "<Assignment>" + number("TaskUID") + number("ResourceUID") + "<Units>0.5</Units>" +
                       baselines({"TaskUID", "ResourceUID"}) + "</Assignment>";
    }
    return framed(tasks(tasksOfPlan) + "<Resources><Resource>" + number("UID") + "<Name>r</Name><Type>1</Type>" +
                  baselines({}) + "</Resource></Resources><Assignments>" + assignments + "</Assignments>");
}

TEST(MSPIMapper, GivesForScenariosOfOnePlanTogetherWhatEachGivesAlone) {
    for (unsigned seed = 0; seed < 200 && !testing::Test::HasFailure(); ++seed) {
        std::mt19937 random(seed);
        const auto plan = randomPlan(random);
        std::vector<std::optional<int>> numbers = {std::nullopt, 0, 1, 2, 3, std::nullopt};
        std::shuffle(numbers.begin(), numbers.end(), random);
        const auto together = mappedTogether(plan, numbers);
        for (std::size_t at = 0; at < numbers.size(); ++at) {
            ProjectImport alone(plan);
            EXPECT_EQ(together[at], numbers[at] ? alone.mapBaseline(*numbers[at]) : alone.mapActual())
                << "seed " << seed << " " << plan;
            alone.log.ignoreLines();
        }
    }
}

}  // namespace
