#include "ScenarioMapping.h"

namespace {

// A whole working day of March 2012; the 5th is a Monday.
std::string record(int day) {
    return fmt::format(
        "<TimephasedData><Type>1</Type><Start>2012-03-{0:02}T08:00:00</Start><Finish>2012-03-{0:02}T17:00:00</Finish>"
        "<Value>PT8H0M0S</Value></TimephasedData>",
        day);
}

// An assignment that is worked on Monday and Wednesday only.
std::string interrupted(int taskUID, std::string_view resource = "<ResourceUID>1</ResourceUID>") {
    return fmt::format("<Assignment><TaskUID>{}</TaskUID>{}{}{}</Assignment>", taskUID, resource, record(5), record(7));
}

std::string project(std::string_view tasks, std::string_view assignments) {
    return mspTasks(tasks) + fmt::format("<Assignments>{}</Assignments>", assignments);
}

std::string piece(std::string_view id, std::string_view day) {
    return fmt::format(
        "<task id=\"{0}\"><title>Dig</title><effort>28800.00</effort>"
        "<start-constraint-date>2012-03-{1}T08:00:00+01:00</start-constraint-date>"
        "<start-date>2012-03-{1}T08:00:00+01:00</start-date><end-date>2012-03-{1}T17:00:00+01:00</end-date>"
        "<duration>28800.00</duration></task>",
        id, day);
}

std::string tasksOf(std::string_view content, std::int64_t saveVersion = 9) {
    const auto markup = ScenarioMapping(content, saveVersion).markup();
    const auto from = markup.find("<task id=\"t-1\">");
    return markup.substr(from, markup.find("<!--  Critical Path  -->") - from);
}

}  // namespace

TEST(MSPIProjectMapperSplits, ownTheirPiecesWhichComeAfterAllTasks) {
    const auto dig = mspTask(1, 1,
                             "<Name>Dig</Name><Duration>PT24H0M0S</Duration><Start>2012-03-05T08:00:00</Start>"
                             "<Finish>2012-03-09T17:00:00</Finish>");
    EXPECT_EQ(tasksOf(project(dig + mspTask(2, 1), interrupted(1))),
              "<task id=\"t-1\"><type>group</type><child-task idref=\"t1\"/><child-task idref=\"t2\"/></task>"
              "<task id=\"t1\"><title>Dig</title><split/><schedule-type>asap</schedule-type><effort>57600.00</effort>"
              "<start-date>2012-03-05T08:00:00+01:00</start-date><end-date>2012-03-07T17:00:00+01:00</end-date>"
              "<child-task idref=\"t3\"/><child-task idref=\"t4\"/><assignment idref=\"r1\"/></task>"
              "<task id=\"t2\"><type>milestone</type><schedule-type>asap</schedule-type><effort>0</effort></task>" +
                  piece("t3", "05") + piece("t4", "07"));
}

TEST(MSPIProjectMapperSplits, giveTheirPiecesTheIdsAfterTheHighestUID) {
    ScenarioMapping mapping(project(mspTask(40, 1) + mspTask(3, 1) + mspTask(7, 1), interrupted(7) + interrupted(40)));
    EXPECT_EQ(mapping.tree(), "t-1(t40 t3 t7) t40(t41 t42) t3 t7(t43 t44) t41 t42 t43 t44");
    EXPECT_EQ(mapping.taskMaxId, 44);
}

TEST(MSPIProjectMapperSplits, writeTheirEndWhereTheyHaveOne) {
    const std::string finish =
        "<Finish>2012-03-20T17:00:00</Finish>"
        "<ConstraintDate>2012-03-21T17:00:00</ConstraintDate>";
    const std::string end = "2012-03-07T17:00:00+01:00";
    const struct {
        std::string task;
        std::string element;
    } table[] = {
        {finish + "<ConstraintType>3</ConstraintType>", "locked-end-date"},
        {finish + "<ConstraintType>7</ConstraintType>", "end-constraint-date"},
        {"", "end-date"},
    };
    for (const auto& [task, element] : table) {
        ScenarioMapping mapping(project(mspTask(1, 1, task), interrupted(1)));
        const auto owner = mapping.map().nodesForXPath("task[@id='t1']")->front();
        EXPECT_EQ(owner.firstChildElement(element).stringValue(), end) << task;
        EXPECT_EQ(owner.firstChildElement("end-date").stringValue(), end) << task;
        EXPECT_EQ(owner.nodesForXPath("*[starts-with(name(),'locked-') or starts-with(name(),'end-con')]")->size(),
                  task.empty() ? 0u : 1u);
    }
}

TEST(MSPIProjectMapperSplits, areSummaryTasksWithAssignmentsToo) {
    const auto summary = mspTask(1, 1, "<Summary>1</Summary>");
    EXPECT_EQ(ScenarioMapping(project(summary, interrupted(1))).assignments(), "t1[r1] t2 t3");
}

TEST(MSPIProjectMapperSplits, takeNoTasksBelowThem) {
    for (const std::int64_t saveVersion : {9, 12}) {
        EXPECT_RAISES(
            ScenarioMapping(project(mspTask(1, 1, "<Summary>1</Summary>") + mspTask(2, 2), interrupted(1)), saveVersion)
                .map(),
            MSPCInternalInconsistency, "Parent task was not assigned a type.");
    }
}

TEST(MSPIProjectMapperSplits, canLieBelowAGroup) {
    EXPECT_EQ(
        ScenarioMapping(project(mspTask(1, 1) + mspTask(2, 2) + mspTask(3, 2), interrupted(2) + interrupted(3))).tree(),
        "t-1(t1) t1(t2 t3) t2(t4 t5) t3(t6 t7) t4 t5 t6 t7");
}

TEST(MSPIProjectMapperSplits, ofTheRootTaskAreNotLookedFor) {
    ScenarioMapping mapping(project(mspTask(0, 0, "<Summary>1</Summary>") + mspTask(1, 1), interrupted(0)));
    EXPECT_EQ(mapping.tree(), "t-1(t1) t1");
    EXPECT_EQ(mapping.taskMaxId, 1);
}

TEST(MSPIProjectMapperSplits, countWorkOfNobodyButDoNotAssignIt) {
    const auto nobody = interrupted(1, "<ResourceUID>-65535</ResourceUID>");
    ScenarioMapping mapping(project(mspTask(1, 1), nobody));
    EXPECT_EQ(mapping.tree(), "t-1(t1) t1(t2 t3) t2 t3");
    EXPECT_EQ(ScenarioMapping(project(mspTask(1, 1), nobody)).assignments(), "t1 t2 t3");
}

// The largest UID leaves no number for a piece.
TEST(MSPIProjectMapperSplits, endTheImportWhenThereAreNoIdsLeft) {
    EXPECT_RAISES(ScenarioMapping(project("<Task><UID>9223372036854775807</UID><OutlineLevel>1</OutlineLevel></Task>" +
                                              mspTask(1, 1),
                                          interrupted(1)))
                      .map(),
                  MSPCInternalInconsistency,
                  "Invalid format of MSPDI Task ID (can not be negative number): -9223372036854775808");
}
