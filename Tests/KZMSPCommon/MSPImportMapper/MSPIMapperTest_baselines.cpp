#include "MSPIMapper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
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
    const auto before = import.project.serialized();
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
    EXPECT_EQ(import.project.serialized(), before);
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

TEST(MSPIMapper, UsesTheBaselinesItIsGiven) {
    ProjectImport import(framed(tasks(task(1, baseline(1)))));
    import.info.baselines = std::make_shared<const MSPIBaselineIndex>(import.project);
    EXPECT_EQ(import.mapBaseline(0), "(none)");
    EXPECT_THAT(import.mapBaseline(1), HasSubstr("<task id=\"t1\">"));
    // What is given counts, even where it is that of a project without baselines.
    const auto empty = documentFromXML("<Project/>");
    import.info.baselines = std::make_shared<const MSPIBaselineIndex>(empty);
    EXPECT_EQ(import.mapBaseline(1), "(none)");
    import.log.ignoreLines();
}

TEST(MSPIMapper, LeavesTheTasksOfARemovedSummaryTaskToTheNextCandidate) {
    for (const std::string version : {"9", "12"}) {
        ProjectImport import(framed(
            "<SaveVersion>" + version + "</SaveVersion><Tasks>"
            "<Task><UID>1</UID><OutlineLevel>1</OutlineLevel><Summary>1</Summary>" + baseline(0) + "</Task>"
            "<Task><UID>2</UID><OutlineLevel>2</OutlineLevel><Summary>1</Summary></Task>"
            "<Task><UID>3</UID><OutlineLevel>3</OutlineLevel>" + baseline(0) +
            "<PredecessorLink><PredecessorUID>2</PredecessorUID></PredecessorLink></Task></Tasks>"));
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
    const auto before = import.project.serialized();
    const auto scenario = import.mapBaseline(0);
    EXPECT_THAT(scenario, HasSubstr("<task id=\"t-1\"><type>group</type></task><!--  Critical Path  -->"));
    EXPECT_THAT(scenario, Not(HasSubstr("<resource id=\"r3\"")));
    EXPECT_EQ(import.project.serialized(), before);
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
    const auto before = import.project.serialized();
    const auto actual = import.mapActual();
    const auto first = import.mapBaseline(0);
    EXPECT_EQ(import.project.serialized(), before);
    const auto second = import.mapBaseline(2);
    EXPECT_EQ(import.project.serialized(), before);
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

}  // namespace
