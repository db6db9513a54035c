// Each kind of loss is told where it is, as often as it is there.
#include "MSPDIKinds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "AccountOfPlan.h"
#include "KindPlans.h"

namespace {

class Kinds : public testing::TestWithParam<KindCase> {};

}  // namespace

TEST_P(Kinds, areToldWhereTheyAreOnly) {
    const auto& [kind, count, lossy, other, settings] = GetParam();
    EXPECT_EQ(AccountOfPlan(lossy, settings).count(kind), count);
    EXPECT_EQ(AccountOfPlan(other, settings).count(kind), 0U);
}

INSTANTIATE_TEST_SUITE_P(All, Kinds, testing::ValuesIn(kindCases()), [](const auto& one) {
    auto name = one.param.kind;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

// The season of the import, and what a document type does, are told of in tests of their own.
TEST(MSPDIKindsTest, areAllTested) {
    std::set<std::string_view> untested;
    for (const auto& kind : MSPDIKinds()) {
        untested.insert(kind.name);
    }
    for (const auto& one : kindCases()) {
        EXPECT_EQ(untested.erase(one.kind), 1U) << one.kind;
    }
    EXPECT_EQ(untested, (std::set<std::string_view>{"external-text", "summer-time"}));
}

// Nothing arrives of a text in another file, which is never opened; those that the plan itself holds arrive.
TEST(MSPDIKindsTest, tellsTextsThatStandInOtherFiles) {
    const auto accountOf = [](const std::string& declarations) {
        ServicesInMemory world;
        world.machine.addFile(
            "/p.xml",
            "<?xml version=\"1.0\"?><!DOCTYPE Project [" + declarations + "]>" +
                planWith(tasksOf(taskOf(1, "<Name>&a;</Name>") + taskOf(2, "<Name>Dig &b; more</Name>")), ""));
        world.machine.addFile("/secret.txt", "secret");
        const auto account = MSPDIAccountOfPlan("/p.xml", world.services);
        for (const auto& call : world.machine.calls()) {
            EXPECT_EQ(call.find("secret"), std::string::npos) << call;
        }
        return account;
    };
    const auto outside = accountOf(
        "<!ENTITY % m SYSTEM 'file:///m'><!ENTITY a SYSTEM \"file:///secret.txt\"><!ENTITY b PUBLIC '-//x' "
        "'/secret>.txt' >");
    ASSERT_EQ(outside.losses.size(), 1U);
    EXPECT_EQ(outside.losses[0].kind, "external-text");
    EXPECT_EQ(outside.losses[0].count, 2U);
    EXPECT_EQ(outside.losses[0].where[0].uid, "1");
    EXPECT_EQ(outside.losses[0].where[1].path, "/Project/Tasks[1]/Task[2]/Name[1]");
    EXPECT_EQ(outside.losses[0].where[1].value, "Dig  more");
    const auto inside = accountOf("<!ENTITY a \"Paint\"><!ENTITY b 'SYSTEM'>");
    EXPECT_TRUE(inside.losses.empty());
    EXPECT_EQ(inside.leaves, accountOf("<!ENTITY a 'x'><!ENTITY b '&a;'>").leaves);
}

// What a baseline's scenario keeps of such a link is no comfort: the document of the plan itself has none.
TEST(MSPDIKindsTest, tellsALinkThatIsGoneWhateverABaselineKeepsOfIt) {
    const std::string baseline = "<Baseline><Number>0</Number><Start>2012-01-11T08:00:00</Start></Baseline>";
    const std::string link = "<PredecessorLink><PredecessorUID>1</PredecessorUID><Type>1</Type></PredecessorLink>";
    const AccountOfPlan sharedUID(tasksOf(taskOf(1) + taskOf(1) + taskOf(3, link + baseline)));
    EXPECT_EQ(sharedUID.count("dropped-link"), 1U);
    EXPECT_EQ(sharedUID.at("Tasks[1]/Task[3]/PredecessorLink[1]/PredecessorUID[1]"), "shaping");
    const std::string twoNumbers =
        "<PredecessorLink><PredecessorUID>1</PredecessorUID><PredecessorUID>2</PredecessorUID></PredecessorLink>";
    EXPECT_EQ(AccountOfPlan(tasksOf(taskOf(1) + taskOf(2) + taskOf(3, twoNumbers))).count("dropped-link"), 1U);
}

// The reference to a task that does not become one of the document stands there, but leads nowhere.
TEST(MSPDIKindsTest, tellsALinkToAnEmptyRowOrTheSummaryTaskOfTheProject) {
    const AccountOfPlan plan(
        tasksOf("<Task><UID>0</UID><Summary>1</Summary></Task><Task><UID>1</UID><IsNull>1</IsNull></Task>" +
                taskOf(2,
                       "<PredecessorLink><PredecessorUID>1</PredecessorUID><Type>1</Type><LinkLag>4800</LinkLag>"
                       "</PredecessorLink><PredecessorLink><PredecessorUID>0</PredecessorUID></PredecessorLink>")));
    EXPECT_EQ(plan.count("dropped-link"), 2U);
    EXPECT_EQ(plan.at("Tasks[1]/Task[3]/PredecessorLink[1]/PredecessorUID[1]"), "changed");
    EXPECT_EQ(plan.at("Tasks[1]/Task[3]/PredecessorLink[1]/Type[1]"), "carried");
    EXPECT_EQ(plan.at("Tasks[1]/Task[3]/PredecessorLink[1]/LinkLag[1]"), "lost");
    EXPECT_EQ(plan.at("Tasks[1]/Task[3]/PredecessorLink[2]/PredecessorUID[1]"), "changed");
}

TEST(MSPDIKindsTest, tellsAnAssignmentToAResourceThatDoesNotArrive) {
    const auto assignment = [](const std::string& resource) {
        return "<Assignment><TaskUID>1</TaskUID><ResourceUID>" + resource + "</ResourceUID></Assignment>";
    };
    const AccountOfPlan plan(tasksOf(taskOf(1)) +
                             "<Resources><Resource><UID>0</UID></Resource><Resource><UID>2</UID></Resource></Resources>"
                             "<Assignments>" +
                             assignment("0") + assignment("2") + assignment("3") + "</Assignments>");
    EXPECT_EQ(plan.count("dropped-assignment"), 2U);
    EXPECT_EQ(plan.at("Assignments[1]/Assignment[1]/ResourceUID[1]"), "changed");
    EXPECT_EQ(plan.at("Assignments[1]/Assignment[2]/ResourceUID[1]"), "carried");
    EXPECT_EQ(plan.at("Assignments[1]/Assignment[3]/ResourceUID[1]"), "changed");
}

TEST(MSPDIKindsTest, namesEachElementOfALossOnceHoweverManyOfItsLeavesAreLost) {
    const AccountOfPlan plan(
        "<Resources><Resource><UID>1</UID><Rates><Rate><RateTable>1</RateTable><StandardRate>5</"
        "StandardRate><OvertimeRate>6</OvertimeRate></Rate>"
        "<Rate><RateTable>2</RateTable><CostPerUse>7</CostPerUse></Rate></Rates></Resource></Resources>");
    const auto& loss = plan.loss("further-rates");
    ASSERT_EQ(loss.where.size(), 2U);
    EXPECT_EQ(loss.where[0].path, "/Project/Resources[1]/Resource[1]/Rates[1]/Rate[1]/StandardRate[1]");
    EXPECT_EQ(loss.where[1].path, "/Project/Resources[1]/Resource[1]/Rates[1]/Rate[2]/CostPerUse[1]");
    EXPECT_EQ(plan.at("Resources[1]/Resource[1]/Rates[1]/Rate[1]/OvertimeRate[1]"), "lost");
}
