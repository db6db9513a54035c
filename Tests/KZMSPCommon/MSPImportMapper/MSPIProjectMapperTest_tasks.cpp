#include "ScenarioMapping.h"

namespace {

const std::string summary = "<Summary>1</Summary>";

std::string treeOf(std::string_view tasks, std::int64_t saveVersion = 9) {
    return ScenarioMapping(mspTasks(tasks), saveVersion).tree();
}

// The types of the tasks with UID 1, 2 and so on.
std::string typesOf(std::string_view tasks, std::int64_t saveVersion = 9) {
    ScenarioMapping mapping(mspTasks(tasks), saveVersion);
    std::vector<std::string> types;
    for (const auto& type : nodesForXQuery(mapping.map(), "task[@id!='t-1']/type")) {
        types.push_back(type.stringValue());
    }
    return fmt::format("{}", fmt::join(types, " "));
}

std::string assignment(std::string_view taskUID, std::string_view resourceUID) {
    return fmt::format("<Assignment><TaskUID>{}</TaskUID><ResourceUID>{}</ResourceUID></Assignment>", taskUID,
                       resourceUID);
}

std::string assignmentsOf(std::string_view tasks, std::string_view assignments) {
    return ScenarioMapping(mspTasks(tasks) + fmt::format("<Assignments>{}</Assignments>", assignments)).assignments();
}

const std::string rootTask = mspTask(0, 0, summary);

}  // namespace

TEST(MSPIProjectMapperTasks, formATreeByOutlineLevel) {
    EXPECT_EQ(treeOf(rootTask + mspTask(1, 1, summary) + mspTask(2, 2, summary) + mspTask(3, 3) + mspTask(4, 2) +
                         mspTask(5, 1),
                     12),
              "t-1(t1 t5) t1(t2 t4) t2(t3) t3 t4 t5");
}

TEST(MSPIProjectMapperTasks, ofOlderFilesBecomeGroupsWhenTheyGetChildren) {
    const auto tasks = mspTask(1, 1) + mspTask(2, 2) + mspTask(3, 3) + mspTask(4, 2);
    for (const std::int64_t saveVersion : {9, 11}) {
        EXPECT_EQ(treeOf(tasks, saveVersion), "t-1(t1) t1(t2 t4) t2(t3) t3 t4");
        EXPECT_EQ(typesOf(tasks, saveVersion), "group group milestone milestone");
    }
}

TEST(MSPIProjectMapperTasks, ofNewerFilesBelongToSummaryTasksOnly) {
    const auto tasks = mspTask(1, 1) + mspTask(2, 2) + mspTask(3, 3) + mspTask(4, 2);
    EXPECT_EQ(treeOf(tasks, 12), "t-1(t1) t1 t2 t3 t4");
    EXPECT_EQ(typesOf(tasks, 12), "milestone milestone milestone milestone");
    // Other tasks in between do not close a Summary task.
    const auto afterOthers = mspTask(1, 1, summary) + mspTask(2, 1) + mspTask(3, 2) + mspTask(4, 4) + mspTask(5, 3);
    EXPECT_EQ(treeOf(afterOthers, 14), "t-1(t1 t2) t1(t3 t4 t5) t2 t3 t4 t5");
    EXPECT_EQ(treeOf(afterOthers, 9), "t-1(t1 t2) t1 t2(t3) t3(t4 t5) t4 t5");
}

TEST(MSPIProjectMapperTasks, withoutAParentAreKeptOutsideTheTree) {
    EXPECT_EQ(treeOf(rootTask + mspTask(1, 2) + mspTask(2, 1) + mspTask(3, 0) + mspTask(4, 2)),
              "t-1(t2) t1 t2 t3(t4) t4");
}

TEST(MSPIProjectMapperTasks, withoutALevelAreTakenAsLevel0) {
    EXPECT_EQ(treeOf("<Task><UID>1</UID></Task>" + mspTask(2, 1) + mspTask(3, 2)), "t-1(t2) t1 t2(t3) t3");
}

TEST(MSPIProjectMapperTasks, withOneUIDShareLevelAndKindOfTheLaterOne) {
    // Both tasks 2 count as level 4 after the second: the last task belongs to task 1.
    EXPECT_EQ(treeOf(mspTask(1, 1) + mspTask(2, 2) + mspTask(3, 3) + mspTask(2, 4) + mspTask(4, 3)),
              "t-1(t1) t1(t2 t4) t2(t3) t3(t2) t2 t4");
    EXPECT_EQ(treeOf(mspTask(1, 1) + mspTask(2, 1) + mspTask(2, 2)), "t-1(t1 t2) t1(t2) t2 t2");
}

TEST(MSPIProjectMapperTasks, thatAreNullLeaveNoTrace) {
    ScenarioMapping mapping(
        mspTasks(mspTask(1, 1, summary) + mspTask(90, 2, "<IsNull>1</IsNull><Type>7</Type>") + mspTask(2, 2)) +
            "<Assignments>" + assignment("90", "1") + "</Assignments>",
        12);
    EXPECT_EQ(mapping.tree(), "t-1(t1) t1(t2) t2");
    EXPECT_EQ(mapping.taskMaxId, 2);
    EXPECT_EQ(mapping.map().nodesForXPath("task/assignment")->size(), 0u);
}

TEST(MSPIProjectMapperTasks, withNegativeLevelsAreRefusedEvenWhenNull) {
    EXPECT_RAISES(treeOf(mspTask(7, -1)), MSPCInternalInconsistency,
                  "Unexpected outline level -1 found in task (UID=7)");
    EXPECT_RAISES(treeOf(mspTask(7, -2, "<IsNull>1</IsNull>")), MSPCInternalInconsistency,
                  "Unexpected outline level -2 found in task (UID=7)");
    EXPECT_RAISES(treeOf("<Task><OutlineLevel>-1</OutlineLevel></Task>"), MSPCInternalInconsistency,
                  "Unexpected outline level -1 found in task (UID=)");
}

TEST(MSPIProjectMapperTasks, mustBeReadable) {
    EXPECT_RAISES(treeOf("<Task><UID>1</UID><OutlineLevel/></Task>"), MSPCInternalInconsistency,
                  "Failed to get int value from XML node: <OutlineLevel/>");
    EXPECT_RAISES(treeOf(mspTask(1, 1, "<IsNull/>")), MSPCInternalInconsistency,
                  "Failed to get boolean value from XML node: <IsNull/>");
    EXPECT_RAISES(treeOf("<Task><OutlineLevel>1</OutlineLevel></Task>"), MSPCInternalInconsistency,
                  "Failed to get UID from Task.");
}

TEST(MSPIProjectMapperTasks, mustBeNodes) {
    ScenarioMapping mapping("");
    const auto scenario = mapping.fixture.context.newElement("scenario");
    const MSPCXMLNode nothing[] = {MSPCXMLNode()};
    const auto assignments = mapping.fixture.context.index().assignmentKeys();
    EXPECT_RAISES(mapping.mapper.buildMspTasksMspAssignmentsScenarioTopGroupTask(nothing, assignments, scenario.node(),
                                                                                 scenario.node()),
                  MSPCInternalInconsistency, "Expected NSXMLNodeProxy as a Task object.");
}

TEST(MSPIProjectMapperTasks, haveOneRootWhoseDatesTheGroupTaskTakes) {
    const std::string dates = "<Start>2012-03-05T08:00:00</Start><Finish>2012-03-06T17:00:00</Finish>";
    const struct {
        std::string tasks;
        const char* groupTask;
    } table[] = {
        {mspTask(0, 0, summary + dates) + mspTask(1, 1),
         "<task id=\"t-1\"><type>group</type><start-date>2012-03-05T08:00:00+01:00</start-date>"
         "<end-date>2012-03-06T17:00:00+01:00</end-date><child-task idref=\"t1\"/></task>"},
        {mspTask(1, 1) + mspTask(0, 0, summary + dates),
         "<task id=\"t-1\"><type>group</type><child-task idref=\"t1\"/>"
         "<start-date>2012-03-05T08:00:00+01:00</start-date><end-date>2012-03-06T17:00:00+01:00</end-date></task>"},
        {rootTask + mspTask(1, 1), "<task id=\"t-1\"><type>group</type><child-task idref=\"t1\"/></task>"},
        {mspTask(1, 1), "<task id=\"t-1\"><type>group</type><child-task idref=\"t1\"/></task>"},
    };
    for (const auto& [tasks, groupTask] : table) {
        ScenarioMapping mapping(mspTasks(tasks) + "<Assignments>" + assignment("0", "1") + "</Assignments>");
        const auto scenario = mapping.map();
        const auto group = scenario.nodesForXPath("task[@id='t-1']")->front();
        EXPECT_EQ(markupOf(group.newCopyOf(group)), groupTask);
        EXPECT_EQ(scenario.nodesForXPath("task")->size(), 2u);
        EXPECT_EQ(scenario.nodesForXPath("task/assignment")->size(), 0u);
    }
}

TEST(MSPIProjectMapperTasks, withAUIDThatIsNoNumberAreTakenForTheRoot) {
    EXPECT_EQ(treeOf("<Task><UID>x</UID><Summary>1</Summary></Task>" + mspTask(1, 1)), "t-1(t1) t1");
}

TEST(MSPIProjectMapperTasks, haveNoSecondRoot) {
    EXPECT_RAISES(treeOf(rootTask + rootTask), MSPCInternalInconsistency,
                  "Duplicate tasks with UID=0 found in the source document.");
    EXPECT_EQ(treeOf(rootTask + mspTask(0, 0, "<IsNull>1</IsNull>") + mspTask(1, 1)), "t-1(t1) t1");
}

TEST(MSPIProjectMapperTasks, haveNoRootThatIsNoSummaryTaskOrNotAtTheTop) {
    for (const auto& root : {mspTask(0, 0), mspTask(0, 1, summary), mspTask(0, 1)}) {
        EXPECT_RAISES(treeOf(root), MSPCInternalInconsistency, "This does not seem like a MS Project root task.");
    }
}

TEST(MSPIProjectMapperTasks, takeTheirAssignmentsInDocumentOrder) {
    EXPECT_EQ(assignmentsOf(mspTask(1, 1) + mspTask(2, 1),
                            assignment("2", "1") + assignment("1", "2") + assignment("2", "0") + assignment("3", "1")),
              "t1[r2] t2[r1 r0]");
}

TEST(MSPIProjectMapperTasks, leaveWorkOfNobodyAlone) {
    EXPECT_EQ(assignmentsOf(mspTask(1, 1) + mspTask(2, 2) + mspTask(3, 1),
                            assignment("1", "-65535") + assignment("3", "-65535") + assignment("3", "4")),
              "t1 t2 t3[r4]");
}

TEST(MSPIProjectMapperTasks, withOneUIDShareNoAssignment) {
    EXPECT_EQ(assignmentsOf(mspTask(1, 1) + mspTask(1, 1), assignment("1", "1") + assignment("1", "2")),
              "t1[r1 r2] t1");
}

TEST(MSPIProjectMapperTasks, thatAreSummaryTasksTakeNoAssignments) {
    EXPECT_EQ(assignmentsOf(mspTask(1, 1, summary) + mspTask(1, 1), assignment("1", "1")), "t1 t1[r1]");
}

TEST(MSPIProjectMapperTasks, skipIncompleteAssignmentsUntilTheFirstNestedTaskWasMapped) {
    const auto without = [](int uid) { return fmt::format("<Assignment><TaskUID>{}</TaskUID></Assignment>", uid); };
    const std::string two = "<ResourceUID>8</ResourceUID><ResourceUID>9</ResourceUID></Assignment>";
    const auto assignments =
        without(1) + without(2) + without(3) + "<Assignment><TaskUID>2</TaskUID>" + two +
        "<Assignment><TaskUID>3</TaskUID>" + two +
        "<Assignment><TaskUID>1</TaskUID><TaskUID>3</TaskUID><ResourceUID>7</ResourceUID></Assignment>";
    EXPECT_EQ(assignmentsOf(mspTask(1, 1) + mspTask(2, 2) + mspTask(3, 1), assignments), "t1 t2 t3[- r9 r7]");
    // Tasks at the top, or without a parent, do not count as nested.
    EXPECT_EQ(assignmentsOf(mspTask(1, 2) + mspTask(2, 1) + mspTask(3, 1), assignments), "t1 t2 t3");
}

TEST(MSPIProjectMapperTasks, withSeveralUIDsTakeAssignmentsOnlyAfterTheFirstNestedTask) {
    const std::string twoUIDs = "<Task><UID>8</UID><UID>9</UID><OutlineLevel>1</OutlineLevel></Task>";
    EXPECT_EQ(assignmentsOf(twoUIDs + mspTask(1, 2), assignment("9", "1")), "t9 t1");
    EXPECT_EQ(assignmentsOf(mspTask(1, 1) + mspTask(2, 2) + twoUIDs, assignment("9", "1")), "t1 t2 t9[r1]");
}
