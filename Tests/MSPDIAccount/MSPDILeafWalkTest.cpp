// A plan is gone through in three ways, and tells the same each time.
#include <gtest/gtest.h>

#include "AccountOfPlan.h"
#include "AccountsOfPlan.h"
#include "ExpectRaises.h"
#include "MSPDILeafWalk.h"

namespace {

std::string planOf(const std::string& content) {
    return R"(<Project xmlns="http://schemas.microsoft.com/project"><SaveVersion>14</SaveVersion>)"
           R"(<StartDate>2012-01-09T08:00:00</StartDate><Calendars><Calendar><UID>1</UID><Name>Standard</Name>)"
           R"(<IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>)" +
           content + "</Project>";
}

std::string repeated(const std::string& piece, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) {
        text += piece;
    }
    return text;
}

}  // namespace

TEST(MSPDILeafWalkTest, tellsTheSameInPiecesAndAsAWhole) {
    const std::string contents[] = {
        "",
        "<Tasks/>",
        "<Tasks></Tasks><Tasks><Task><UID>1</UID></Task></Tasks>",
        tasksOf(taskOf(1, "<Deadline>2012-02-01T17:00:00</Deadline><Cost>1</Cost>") + "<Task/>" + taskOf(2)),
        tasksOf(repeated(taskOf(1, "<Deadline>2012-02-01T17:00:00</Deadline>"), 9)),
        tasksOf(taskOf(1, "<Hyperlink/><Hyperlink>a</Hyperlink><x:Hyperlink xmlns:x=\"u\">b</x:Hyperlink>")),
        tasksOf(taskOf(
            1, "<OutlineCode><FieldID>1</FieldID><UID>2</UID></OutlineCode><Baseline><Cost>0</Cost></Baseline>")),
        tasksOf(taskOf(
            1, "<Name>Paint &amp; dry</Name><Notes><![CDATA[<b>]]></Notes><!-- no --><Contact>A&#x2028;</Contact>")),
        tasksOf(taskOf(1, "<Name>Pa<Zebra>in</Zebra>t</Name><Zebra><WBS>1</WBS></Zebra>")),
        "<Views><View><Name>Gantt</Name><IsCustomized>1</IsCustomized></View><View/></Views>",
        "<Resources><Resource><UID>1</UID><Rates><Rate><RateTable>1</RateTable><StandardRate>5</StandardRate></Rate>"
        "</Rates></Resource></Resources>",
        tasksOf(taskOf(1, "<WBS>1.1</WBS><OutlineNumber>1.1</OutlineNumber>")),
        "<Views><View></View></Views><Resources><Resource> </Resource></Resources>" + tasksOf("<Task></Task>"),
    };
    for (const auto& content : contents) {
        SCOPED_TRACE(content);
        expectOneAccount(planOf(content));
    }
}

TEST(MSPDILeafWalkTest, countsTheProjectsOwnChildrenBeforeItsLists) {
    const AccountOfPlan plan("<Tasks></Tasks>" + tasksOf(taskOf(1)) + "<Tasks/>");
    EXPECT_EQ(plan.at("Tasks[1]"), "default");
    EXPECT_EQ(plan.at("Tasks[2]/Task[1]/UID[1]"), "shaping");
    EXPECT_EQ(plan.at("Tasks[3]"), "default");
}

// More names than the counts have room for at first, some of them again, and in elements that follow each other.
TEST(MSPDILeafWalkTest, countsEachNameOfAnElementApart) {
    std::string names;
    for (int name = 0; name < 100; ++name) {
        names += "<n" + std::to_string(name) + ">a</n" + std::to_string(name) + ">";
    }
    const auto others = "<Other>" + names + "<n7>b</n7></Other>";
    const AccountOfPlan plan(tasksOf(taskOf(1, others + others)));
    EXPECT_EQ(plan.count("unknown-element"), 202U);
    const auto& fates = plan.fates;
    for (const std::string other : {"Tasks[1]/Task[1]/Other[1]/", "Tasks[1]/Task[1]/Other[2]/"}) {
        EXPECT_EQ(plan.at(other + "n0[1]"), "lost");
        EXPECT_EQ(plan.at(other + "n99[1]"), "lost");
        EXPECT_EQ(plan.at(other + "n7[2]"), "lost");
        EXPECT_FALSE(fates.contains(other + "n8[2]"));
    }
}

TEST(MSPDILeafWalkTest, findsThePlacesThatComeLate) {
    ServicesInMemory world;
    world.machine.addFile("/p.xml", planOf(tasksOf(repeated(taskOf(1, "<Cost>1</Cost>"), 50) +
                                                   taskOf(7, "<Name>Paint</Name><Contact/><Contact>me</Contact>"))));
    const auto account = MSPDIAccountOfPlan("/p.xml", world.services);
    ASSERT_EQ(account.losses.size(), 1U);
    ASSERT_EQ(account.losses[0].where.size(), 1U);
    EXPECT_EQ(account.losses[0].where[0].path, "/Project/Tasks[1]/Task[51]/Contact[2]");
    EXPECT_EQ(account.losses[0].where[0].name, "Paint");
}

TEST(MSPDILeafWalkTest, looksAtNoPlanThatHasChangedMeanwhile) {
    ServicesInMemory world;
    for (const std::string item : {"<Tasks><Task><UID>1</UID></Task></Tasks>", "<Resources><Resource/></Resources>",
                                   "<Assignments><Assignment/></Assignments>", "<Calendars><Calendar/></Calendars>",
                                   "<ExtendedAttributes><ExtendedAttribute/></ExtendedAttributes>"}) {
        const MSPDIPlanFacts ofNoPlan(world.services);
        const auto plan =
            MSPCXMLDocument::read("<Project>" + item + "</Project>", {.content = MSPCXMLContent::DataOnly});
        MSPDIAccount account;
        const MSPDIAccountOptions options;
        MSPDILeafWalk walk(ofNoPlan, options, account);
        EXPECT_RAISES(walk.walk(plan->root()), MSPCInternalInconsistency, "The plan has changed while it was read.");
    }
}
