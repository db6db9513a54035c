#include "MSPDIAccountOfPlan.h"

#include <gtest/gtest.h>

#include "AccountOfPlan.h"

TEST(MSPDIAccountTest, givesEveryLeafOneFateAndAddsThemUp) {
    const AccountOfPlan plan(tasksOf(taskOf(7,
                                            "<Name>Paint</Name><Deadline>2012-02-01T17:00:00</Deadline>"
                                            "<Critical>1</Critical><Manual>0</Manual>")));
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Name[1]"), "carried");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/UID[1]"), "shaping");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Deadline[1]"), "lost");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Critical[1]"), "derived");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Manual[1]"), "default");
    EXPECT_EQ(plan.account.total(), 11U);
    EXPECT_EQ(plan.fates.size(), 11U);
}

TEST(MSPDIAccountTest, tellsPlacesByTaskAndValue) {
    const AccountOfPlan plan(tasksOf(taskOf(1) + taskOf(12,
                                                        "<Name>Paint</Name><PredecessorLink><PredecessorUID>1"
                                                        "</PredecessorUID><LinkLag>9600</LinkLag></PredecessorLink>")));
    const auto& loss = plan.loss("link-lag");
    EXPECT_EQ(loss.count, 1U);
    EXPECT_EQ(loss.element, "Tasks/Task/PredecessorLink/LinkLag");
    EXPECT_EQ(loss.what, "the lag of links");
    ASSERT_EQ(loss.where.size(), 1U);
    EXPECT_EQ(loss.where[0].path, "/Project/Tasks[1]/Task[2]/PredecessorLink[1]/LinkLag[1]");
    EXPECT_EQ(loss.where[0].uid, "12");
    EXPECT_EQ(loss.where[0].name, "Paint");
    EXPECT_EQ(loss.where[0].value, "9600");
}

TEST(MSPDIAccountTest, tellsAnAssignmentByItsTask) {
    const AccountOfPlan plan(tasksOf(taskOf(4, "<Name>Paint</Name>")) +
                             "<Assignments><Assignment><UID>9</UID><TaskUID>4</TaskUID><ResourceUID>1</ResourceUID>"
                             "<Units>0.5</Units></Assignment></Assignments>");
    ASSERT_EQ(plan.loss("assignment-units").where.size(), 1U);
    EXPECT_EQ(plan.loss("assignment-units").where[0].uid, "4");
    EXPECT_EQ(plan.loss("assignment-units").where[0].name, "Paint");
}

TEST(MSPDIAccountTest, limitsThePlacesButNotTheCount) {
    ServicesInMemory world;
    std::string tasks;
    for (int uid = 1; uid <= 5; ++uid) {
        tasks += taskOf(uid, "<Deadline>2012-02-01T17:00:00</Deadline>");
    }
    world.machine.addFile("/p.xml",
                          R"(<Project xmlns="http://schemas.microsoft.com/project">)" + tasksOf(tasks) + "</Project>");
    const auto account = MSPDIAccountOfPlan("/p.xml", world.services);
    ASSERT_EQ(account.losses.size(), 1U);
    EXPECT_EQ(account.losses[0].count, 5U);
    EXPECT_EQ(account.losses[0].where.size(), 3U);
}

TEST(MSPDIAccountTest, tellsTheReasonOfARefusalAndTheLossesAsWell) {
    ServicesInMemory world;
    world.machine.addFile("/p.xml", R"(<Project xmlns="http://schemas.microsoft.com/project">)" +
                                        tasksOf(taskOf(1, "<Deadline>2012-02-01T17:00:00</Deadline>")) + "</Project>");
    const auto account = MSPDIAccountOfPlan("/p.xml", world.services);
    ASSERT_TRUE(account.refusal);
    EXPECT_EQ(account.refusal->reason, "MS Project 'Standard' Calendar not found.");
    ASSERT_EQ(account.losses.size(), 1U);
    EXPECT_EQ(account.losses[0].kind, "deadline");
}

TEST(MSPDIAccountTest, saysWhyItCouldNotLook) {
    ServicesInMemory world;
    world.machine.addFile("/plans/other.xml", "<html/>");
    world.machine.addFile("/plans/cut.xml", "");
    const auto obstacle = [&world](const std::string& path) {
        const auto account = MSPDIAccountOfPlan(path, world.services);
        EXPECT_EQ(account.total(), 0U);
        return account.obstacle.value_or("(none)");
    };
    EXPECT_EQ(obstacle("/plans/none.xml"), "no such file");
    EXPECT_EQ(obstacle("/plans"), "a folder, not a plan");
    EXPECT_EQ(obstacle("/plans/other.xml"), "MSPIMapper.map: Source XML DOM is not a valid MSPDI document.");
    EXPECT_EQ(obstacle("/plans/cut.xml"),
              "MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.");
}

TEST(MSPDIAccountTest, knowsNoElementThatTheTableDoesNotKnow) {
    const AccountOfPlan plan(tasksOf(taskOf(1,
                                            "<Zebra>1</Zebra><PredecessorLink><Zebra/></PredecessorLink>"
                                            "<Name>Pa<Zebra>in</Zebra>t</Name>")) +
                             "<Zebra><Task><Zebra>2</Zebra></Task></Zebra>");
    EXPECT_EQ(plan.count("unknown-element"), 4U);
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Zebra[1]"), "lost");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/PredecessorLink[1]/Zebra[1]"), "lost");
    // Its text is part of the name that arrives.
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Name[1]/Zebra[1]"), "changed");
    EXPECT_EQ(plan.at("Zebra[1]/Task[1]/Zebra[1]"), "lost");
}

TEST(MSPDIAccountTest, countsElementsOfOneNameWhateverTheirPrefix) {
    const AccountOfPlan plan(tasksOf(taskOf(1, R"(<x:Name xmlns:x="urn:x">a</x:Name><Name>b</Name>)")));
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Name[1]"), "lost");  // another element for the importer
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Name[2]"), "carried");
}

TEST(MSPDIAccountTest, tellsThatTheFileWasMended) {
    const AccountOfPlan plan(tasksOf(taskOf(1, "<Name>Paint & dry</Name>")));
    EXPECT_EQ(plan.count("overwritten-by-repair"), 1U);
    EXPECT_EQ(plan.account.losses.front().kind, "overwritten-by-repair");
}
