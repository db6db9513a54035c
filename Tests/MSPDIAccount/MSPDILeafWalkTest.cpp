// A plan is gone through in three ways, and tells the same each time.
#include <gtest/gtest.h>

#include <algorithm>

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
        tasksOf(repeated(taskOf(1,
                                "<WBS>1</WBS><Zebra>1</Zebra><x:Zebra xmlns:x=\"u\">2</x:Zebra><WBS>1 &amp; 2</WBS>"
                                "<WBS>3</WBS><Contact>me</Contact><Name>A</Name><Contact>you</Contact>"),
                         9)),
        tasksOf(repeated(taskOf(1,
                                "<PredecessorLink><LagFormat>7</LagFormat><LinkLag>4800</LinkLag><PredecessorUID>1"
                                "</PredecessorUID></PredecessorLink><Zoo><WBS>1</WBS><Zoo>2</Zoo></Zoo>"
                                "<Baseline><Number>0</Number><Cost>5</Cost></Baseline><CalendarUID>1</CalendarUID>"),
                         9)),
        "<Views>" + repeated("<View><Name>Gantt</Name><Zebra/><IsCustomized>1</IsCustomized></View>", 9) + "</Views>",
        "paint" + tasksOf(" and " + taskOf(1) + "<![CDATA[dry]]>" + taskOf(2) + "<!-- no --> &amp; wait") +
            " twice <Tasks>a</Tasks><Zebra>b<Tail/>c</Zebra>",
        "<Title>Pa<Zebra>in</Zebra>t<Zoo><Tail>s</Tail></Zoo></Title><Subject><Zebra/>dry</Subject>" +
            tasksOf(taskOf(1)) + "<Title><Tasks/></Title>",
        // An own rate says what the resource itself says.
        "<Resources>" +
            repeated("<Resource><UID>1</UID><OvertimeRate>9</OvertimeRate><Rates><Rate><OvertimeRate>9</OvertimeRate>"
                     "</Rate></Rates></Resource>",
                     9) +
            "</Resources>",
    };
    for (const auto& content : contents) {
        SCOPED_TRACE(content);
        expectOneAccount(planOf(content));
    }
}

TEST(MSPDILeafWalkTest, tellsTextRightInTheProjectAndInListsWithTheirPlaces) {
    const AccountOfPlan plan("paint" + tasksOf("and" + taskOf(1) + " &lt;dry&gt; " + taskOf(2)));
    const auto& where = plan.loss("stray-text").where;
    ASSERT_EQ(where.size(), 2U);
    EXPECT_EQ(where[0].path, "/Project");
    EXPECT_EQ(where[0].value, "paint");
    EXPECT_EQ(where[1].path, "/Project/Tasks[1]");
    EXPECT_EQ(where[1].value, "and <dry>");
}

TEST(MSPDILeafWalkTest, tellsTextWhereElementsBelong) {
    const AccountOfPlan plan("<Views>a</Views><Views> </Views><Resources><Resource>b</Resource></Resources>" +
                             tasksOf("<Task>c</Task>" + taskOf(1, "<PredecessorLink>d</PredecessorLink><Baseline/>")));
    EXPECT_EQ(plan.count("stray-text"), 4U);
    EXPECT_EQ(plan.at("Views[1]"), "lost");
    EXPECT_EQ(plan.at("Views[2]"), "default");
    EXPECT_EQ(plan.at("Resources[1]/Resource[1]"), "lost");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]"), "shaping");  // an empty task shapes the document
    EXPECT_EQ(plan.at("Tasks[1]/Task[2]/PredecessorLink[1]"), "lost");
    EXPECT_EQ(plan.at("Tasks[1]/Task[2]/Baseline[1]"), "default");
}

// What stands in a value of the project is part of it, as it is in a value of a task.
TEST(MSPDILeafWalkTest, tellsElementsWithinValuesOfTheProject) {
    const AccountOfPlan plan("<Title>Pa<Zebra>in</Zebra>t</Title><Subject>Pa<Zebra>in</Zebra>t</Subject>");
    EXPECT_EQ(plan.at("Title[1]/Zebra[1]"), "changed");
    EXPECT_EQ(plan.at("Subject[1]/Zebra[1]"), "lost");
    EXPECT_EQ(plan.count("unknown-element"), 2U);
    EXPECT_EQ(plan.count("document-properties"), 1U);
    EXPECT_EQ(plan.count("stray-text"), 0U);
}

TEST(MSPDILeafWalkTest, countsTheProjectsOwnChildrenBeforeItsLists) {
    const AccountOfPlan plan("<Tasks></Tasks>" + tasksOf(taskOf(1)) + "<Tasks/>");
    EXPECT_EQ(plan.at("Tasks[1]"), "default");
    EXPECT_EQ(plan.at("Tasks[2]/Task[1]/UID[1]"), "shaping");
    EXPECT_EQ(plan.at("Tasks[3]"), "default");
}

// What a resource says itself is compared with its rates where no more places are to be told as well.
TEST(MSPDILeafWalkTest, comparesRatesBeyondTheFirstPlaces) {
    const auto resource = [](const std::string& rate) {
        return "<Resource><UID>1</UID><OvertimeRate>9</OvertimeRate><Rates><Rate>" + rate +
               "</Rate></Rates></Resource>";
    };
    const auto further = resource("<RateTable>1</RateTable><OvertimeRate>7</OvertimeRate>");
    const auto own = resource("<OvertimeRate>9</OvertimeRate>");
    ServicesInMemory world;
    world.machine.addFile("/p.xml", planOf("<Resources>" + repeated(further, 3) + repeated(own, 9) + "</Resources>"));
    const auto account = MSPDIAccountOfPlan("/p.xml", world.services);
    const auto rates = std::find_if(account.losses.begin(), account.losses.end(),
                                    [](const auto& loss) { return loss.kind == "further-rates"; });
    ASSERT_NE(rates, account.losses.end());
    EXPECT_EQ(rates->count, 3U);
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
    const auto contact = std::find_if(account.losses.begin(), account.losses.end(),
                                      [](const auto& loss) { return loss.kind == "contact"; });
    ASSERT_NE(contact, account.losses.end());
    ASSERT_EQ(contact->where.size(), 1U);
    EXPECT_EQ(contact->where[0].path, "/Project/Tasks[1]/Task[51]/Contact[2]");
    EXPECT_EQ(contact->where[0].name, "Paint");
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
