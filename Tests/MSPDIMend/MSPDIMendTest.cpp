#include <vector>

#include "MSPDIMemoryImport.h"
#include "MendFixture.h"

using testing::ElementsAre;
using testing::HasSubstr;

TEST_F(MendTest, leavesAPlanAloneThatImports) {
    const auto mended = mend(planOf(tasks(task(1, 1))));
    EXPECT_EQ(mended.verdict, MSPDIMendVerdict::ImportsAsIs);
    EXPECT_TRUE(mended.bytes.empty() && mended.steps.empty() && !mended.refusal);
}

TEST_F(MendTest, makesTheTaskWithUIDZeroTheRoot) {
    const auto plan = planOf(tasks(task(0, 0, "<Milestone>0</Milestone><Summary>0</Summary><Critical>0</Critical>")));
    expectMended(plan, with(plan, "<Summary>0<", "<Summary>1<"), "root-task 1");
}

TEST_F(MendTest, putsWhatTheRootLacksInWhereItBelongs) {
    const auto plan =
        planOf(tasks("\n    <Task>\r\n      <UID>0</UID>\r\n      <Name>P</Name>\r\n      <Start/>\r\n    </Task>"));
    expectMended(plan, with(plan, "<Start/>", "<Start/>\r\n      <Summary>1</Summary>"), "root-task 1");
}

TEST_F(MendTest, bringsTheRootUpWithTheTasksUnderIt) {
    const auto plan = planOf(tasks(task(0, 1, "<Summary>1</Summary>") + task(1, 2) + task(2, 2)));
    auto wanted = with(plan, "<OutlineLevel>1<", "<OutlineLevel>0<");
    wanted = with(wanted, "<OutlineLevel>2<", "<OutlineLevel>1<");
    wanted = with(wanted, "<OutlineLevel>2<", "<OutlineLevel>1<");
    expectMended(plan, wanted, "root-task 1, outline 2");
}

TEST_F(MendTest, keepsAttributesCommentsAndSectionsOfWhatItChanges) {
    const auto plan =
        planOf(tasks("<!-- first --><Task><UID>0</UID><Summary a='>'><!-- no --><![CDATA[0]]></Summary></Task>"));
    expectMended(plan, with(plan, "<!-- no --><![CDATA[0]]>", "1"), "root-task 1");
}

TEST_F(MendTest, opensElementsThatAreClosedInThemselves) {
    const auto plan = planOf(tasks("<Task><UID>0</UID><Summary/><OutlineLevel>0</OutlineLevel></Task>"));
    // An empty truth cannot be read; the root comes first, and gives it one.
    expectMended(plan, with(plan, "<Summary/>", "<Summary>1</Summary>"), "root-task 1");
}

TEST_F(MendTest, givesLaterRootsUIDsOfTheirOwn) {
    const auto root = task(0, 0, "<Summary>1</Summary>");
    const auto plan = planOf(tasks(root + task(7, 1) + task(0, 0) + task(0, 3)));
    auto wanted = planOf(tasks(root + task(7, 1) + task(8, 1) + task(9, 3)));
    expectMended(plan, wanted, "duplicate-root 2");
}

TEST_F(MendTest, keepsAsTheRootTheTaskThatIsOne) {
    const auto root = task(0, 0, "<Summary>1</Summary>");
    expectMended(planOf(tasks(task(0, 1) + root)), planOf(tasks(task(1, 1) + root)), "duplicate-root 1");
}

TEST_F(MendTest, givesUIDsToTasksWithout) {
    const auto plan = planOf(tasks("<Task><Name>a</Name></Task><Task><UID/></Task>" + task(3, 1) + "<Task/>"));
    const auto wanted = planOf(tasks("<Task><UID>4</UID><Name>a</Name></Task><Task><UID>5</UID></Task>" + task(3, 1) +
                                     "<Task><UID>6</UID></Task>"));
    expectMended(plan, wanted, "missing-uid 3");
}

TEST_F(MendTest, renumbersNegativeUIDsWithTheirLinksAndAssignments) {
    const std::string links = "<PredecessorLink><PredecessorUID>-5</PredecessorUID></PredecessorLink>";
    const std::string assignments =
        "  <Assignments><Assignment><TaskUID>-5</TaskUID><ResourceUID>-2</ResourceUID></Assignment></Assignments>\n";
    const std::string resources = "  <Resources><Resource><UID>-2</UID></Resource></Resources>\n";
    const auto plan = planOf(tasks(task(-5, 1) + task(1, 1, links)) + resources + assignments);
    auto wanted = with(plan, "<UID>-5<", "<UID>2<");
    wanted = with(wanted, "<PredecessorUID>-5<", "<PredecessorUID>2<");
    wanted = with(wanted, "<TaskUID>-5<", "<TaskUID>2<");
    wanted = with(wanted, "<UID>-2<", "<UID>1<");
    wanted = with(wanted, "<ResourceUID>-2<", "<ResourceUID>1<");
    expectMended(plan, wanted, "missing-uid 2");
}

TEST_F(MendTest, leavesWorkThatIsAssignedToNobody) {
    const std::string rest =
        "  <Resources><Resource><UID>-65535</UID></Resource></Resources>\n"
        "  <Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID>-65535</ResourceUID></Assignment></Assignments>\n";
    const auto plan = planOf(tasks(task(1, 1)) + rest);
    expectMended(plan, with(plan, "<UID>-65535<", "<UID>1<"), "missing-uid 1");
}

TEST_F(MendTest, renumbersUIDsThatLeaveNoneForPieces) {
    const auto piece = [](const std::string& day) {
        return "<TimephasedData><Type>1</Type><Start>2012-01-" + day + "T08:00:00</Start><Finish>2012-01-" + day +
               "T17:00:00</Finish><Value>PT8H0M0S</Value></TimephasedData>";
    };
    const auto plan = planOf(tasks("<Task><UID>9223372036854775807</UID></Task>" + task(1, 1)) +
                             "  <Assignments><Assignment><TaskUID>1</TaskUID>" + piece("09") + piece("11") +
                             "</Assignment></Assignments>\n");
    expectMended(plan, with(plan, "9223372036854775807", "2"), "missing-uid 1");
}

TEST_F(MendTest, levelsTheOutlineFromNegativeLevelsOn) {
    const auto summary = std::string("<Summary>1</Summary>");
    const auto plan = planOf(tasks(task(1, -1, summary) + task(2, 3, summary) + task(3, 5) + task(4, 3) + task(5, -1)));
    const auto wanted = planOf(tasks(task(1, 1, summary) + task(2, 2, summary) + task(3, 3) + task(4, 2) + task(5, 1)));
    expectMended(plan, wanted, "outline 5");
}

TEST_F(MendTest, makesSummaryTasksOfThoseWithOthersUnderThem) {
    const auto plan = planOf(tasks(task(1, -1, "<Summary>0</Summary>") + task(2, 0)));
    const auto wanted = planOf(tasks(task(1, 1, "<Summary>1</Summary>") + task(2, 2)));
    expectMended(plan, wanted, "outline 3");
}

TEST_F(MendTest, putsATaskBesideOneThatWouldLoseItsAssignments) {
    const std::string assignments =
        "  <Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID>1</ResourceUID></Assignment></Assignments>\n";
    const auto plan = planOf(tasks(task(1, -1) + task(2, 0)) + assignments);
    expectMended(plan, planOf(tasks(task(1, 1) + task(2, 1)) + assignments), "outline 2");
}

TEST_F(MendTest, leavesOddLevelsThatEndNoImport) {
    const auto plan = planOf(tasks(task(0, 0) + task(1, 0) + task(2, 4)));
    expectMended(plan, with(plan, "</OutlineLevel>", "</OutlineLevel><Summary>1</Summary>"), "root-task 1");
}

TEST_F(MendTest, mendsTheOutlineOfAPlanThatImportsWhenAsked) {
    const auto plan = planOf(tasks(task(1, 0, "<Summary>1</Summary>") + task(2, 4)));
    const auto mended = mend(plan, {.only = {"outline"}});
    EXPECT_EQ(mended.verdict, MSPDIMendVerdict::Mended);
    EXPECT_EQ(mended.bytes, planOf(tasks(task(1, 1, "<Summary>1</Summary>") + task(2, 2))));
    EXPECT_FALSE(mended.refusal.has_value());
    EXPECT_EQ(mend(mended.bytes, {.only = {"outline"}}).verdict, MSPDIMendVerdict::ImportsAsIs);
}

TEST_F(MendTest, doesNothingButWhatItMay) {
    const auto mended = mend(planOf(tasks(task(0, 0))), {.only = {"outline"}});
    EXPECT_EQ(mended.verdict, MSPDIMendVerdict::NotMendable);
    EXPECT_THAT(mended.obstacle, HasSubstr("This does not seem like a MS Project root task"));
    EXPECT_TRUE(mended.bytes.empty() && mended.steps.empty());
}

TEST_F(MendTest, mendsSeveralThingsAtOnce) {
    const auto plan = planOf(tasks(task(0, 0) + "<Task><Priority>1</Priority><Type>9</Type></Task>"), "");
    const auto mended = mend(plan);
    EXPECT_EQ(mended.verdict, MSPDIMendVerdict::Mended) << mended.obstacle;
    EXPECT_EQ(stepsOf(mended), "missing-uid 1, root-task 1, standard-calendar 1, unreadable-value 1");
}

TEST_F(MendTest, tellsTheFirstPlacesOfAStep) {
    const auto mended = mend(planOf(tasks("<Task><Name>a</Name></Task><Task/><Task/><Task/>")));
    ASSERT_EQ(stepsOf(mended), "missing-uid 4");
    EXPECT_THAT(mended.steps[0].where,
                ElementsAre("Task UID='' name='a': UID 1", "Task UID='' name='': UID 2", "Task UID='' name='': UID 3"));
}

TEST_F(MendTest, takesAPlanOutOfAnotherFile) {
    const auto plan = planOf(tasks(task(1, 1)));
    const auto wanted = plan.substr(0, plan.size() - 1);
    expectMended(std::string("\x01\xAC\0binary <Project>@@", 19) + plan + "\0more", wanted, "embedded 1");
}

TEST_F(MendTest, refusesWhatIsNoPlanForAReason) {
    for (const auto* other : {"", "no XML at all", "<html/>", "<Project/>", "<project name=\"a\"><tasks/></project>",
                              "<APIBusinessObjects xmlns=\"u\"><Project ObjectId=\"1\"/></APIBusinessObjects>"}) {
        const auto mended = mend(other);
        EXPECT_EQ(mended.verdict, MSPDIMendVerdict::NotMendable) << other;
        EXPECT_THAT(mended.obstacle, HasSubstr("plan")) << other;
    }
}

TEST_F(MendTest, declaresTheNamespaceOfPlans) {
    const auto plan = planOf(tasks(task(1, 1)));
    const std::string declared = " xmlns=\"http://schemas.microsoft.com/project\"";
    expectMended(with(plan, declared, ""), plan, "namespace 1");
    expectMended(with(plan, declared, " xmlns='http://schemas.microsoft.com/project/2003'"), plan, "namespace 1");
    expectMended(with(plan, declared, declared + " xmlns:xsi=\"u\" xsi:schemaLocation=\"a b\""), plan, "namespace 1");
}

TEST_F(MendTest, dropsThePrefixesOfAPlan) {
    const std::string start = "<m:Project xmlns:m=\"http://schemas.microsoft.com/project\">";
    const auto calendar =
        "<m:Calendars><m:Calendar><m:UID>1</m:UID><m:IsBaseCalendar>1</m:IsBaseCalendar>"
        "</m:Calendar></m:Calendars>";
    expectMended(start + calendar + "</m:Project>",
                 "<Project xmlns=\"http://schemas.microsoft.com/project\"><Calendars><Calendar><UID>1</UID>"
                 "<IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars></Project>",
                 "namespace 1");
}

TEST_F(MendTest, declaresOtherNamespacesWhereTheyAreUsed) {
    const auto plan = planOf("  <x:Other><x:a/></x:Other>\n" + tasks(task(1, 1)));
    const std::string declared = " xmlns=\"http://schemas.microsoft.com/project\"";
    expectMended(with(plan, declared, declared + " xmlns:x=\"u\""), with(plan, "<x:Other>", "<x:Other xmlns:x=\"u\">"),
                 "namespace 1");
}

TEST_F(MendTest, writesPlansOfOtherEncodingsInUTF8) {
    auto plan = with(planOf(tasks(task(0, 0, "<Name>\xFC</Name>"))), "UTF-8", "ISO-8859-1");
    const auto mended = mend(plan);
    ASSERT_EQ(mended.verdict, MSPDIMendVerdict::Mended);
    EXPECT_TRUE(mended.isConverted);
    plan = with(with(plan, "ISO-8859-1", "UTF-8"), "\xFC", "\xC3\xBC");
    EXPECT_EQ(mended.bytes, with(plan, "\xC3\xBC</Name>", "\xC3\xBC</Name><Summary>1</Summary>"));
}

TEST_F(MendTest, saysWhereItHadToRepairTheMarkup) {
    const auto mended = mend(planOf(tasks(task(0, 0, "<Name>A & B</Name>"))));
    ASSERT_EQ(mended.verdict, MSPDIMendVerdict::Mended);
    EXPECT_TRUE(mended.isRepaired);
    EXPECT_THAT(mended.bytes, HasSubstr("A &amp; B"));
}

TEST_F(MendTest, keepsAByteOrderMark) {
    const auto plan = "\xEF\xBB\xBF" + planOf(tasks(task(0, 0, "<Summary>0</Summary>")));
    expectMended(plan, with(plan, "<Summary>0<", "<Summary>1<"), "root-task 1");
}

// Between the elements that are looked at stand many that are not: where something is put in follows from all of them.
TEST_F(MendTest, putsThingsInBehindElementsThatNobodyLooksAt) {
    const auto plan =
        planOf(tasks("<Task><UID>0</UID><OutlineLevel>0</OutlineLevel><Priority>500</Priority>"
                     "<Estimated>0</Estimated><Milestone>0</Milestone><Critical>1</Critical></Task>"));
    expectMended(plan, with(plan, "</Milestone>", "</Milestone><Summary>1</Summary>"), "root-task 1");
}

TEST_F(MendTest, leavesAllThatNobodyLooksAt) {
    const auto plan = with(planOf(tasks(task(0, 0, "<Summary>0</Summary>"))), "  <Tasks>",
                           "  <Views>\n    <View><Name a=\"b\">x</Name><!-- y --><![CDATA[z]]></View>\r\n  </Views>\n"
                           "  <!-- c -->\n  <Tasks>");
    expectMended(plan, with(plan, "<Summary>0<", "<Summary>1<"), "root-task 1");
}

TEST_F(MendTest, importsAPlanThreeTimesAtMost) {
    EXPECT_EQ(mend(planOf(tasks(task(1, 1)))).imports, 1);
    EXPECT_EQ(mend(planOf(tasks(task(0, 0)))).imports, 2);
    // All that can be found at once is mended at once.
    const auto several = planOf(tasks(task(0, 0) + "<Task><Type>9</Type><Start>x</Start></Task>") +
                                    "  <Resources><Resource><UID>1</UID><Type>2</Type><MaxUnits>x</MaxUnits></Resource>"
                                    "</Resources>\n",
                                "");
    EXPECT_EQ(mend(several).imports, 2);
    // Inside another file it is found first, and looked at then.
    const auto inside = mend("PK" + several + "PK");
    EXPECT_EQ(inside.verdict, MSPDIMendVerdict::Mended) << inside.obstacle;
    EXPECT_LE(inside.imports, 3);
    EXPECT_LE(mend("no plan at all").imports, 3);
}

TEST_F(MendTest, mendsAPlanThatBeginsWithItsRoot) {
    const auto plan = planOf(tasks(task(0, 0, "<Critical>1</Critical><Summary>0</Summary>")));
    const auto bare = plan.substr(plan.find("<Project"));
    expectMended(bare, with(bare, "<Summary>0<", "<Summary>1<"), "root-task 1");
}

TEST_F(MendTest, givesNoUIDTwiceWhereSomeAreVeryHigh) {
    const auto high = task(1'999'999'999, 1) + task(2'000'000'000, 1);
    expectMended(planOf(tasks(high + task(-1, 1))), planOf(tasks(high + task(2'000'000'001, 1))), "missing-uid 1");
}

TEST_F(MendTest, tellsThatWhatItTookOutWasConvertedOrRepaired) {
    const auto inside = [](const std::string& plan) { return "\x01" + plan + "\x02"; };
    const auto plan = planOf(tasks(task(1, 1, "<Name>\xFC</Name>")));
    for (const std::string between : {"?>\n", "?>\n<!-- of an archive -->\n", "?>\n<!DOCTYPE Project>\n",
                                      "?><?a b?><!-- c --><!DOCTYPE Project [<!ENTITY e 'x'>]>\n"}) {
        const auto mended = mend(inside(with(with(plan, "UTF-8", "windows-1252"), "?>\n", between)));
        ASSERT_EQ(mended.verdict, MSPDIMendVerdict::Mended) << between << mended.obstacle;
        EXPECT_TRUE(mended.isConverted) << between;
        EXPECT_THAT(mended.bytes, testing::StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>")) << between;
        EXPECT_THAT(mended.bytes, HasSubstr("<Name>\xC3\xBC</Name>")) << between;
    }
    EXPECT_TRUE(mend(inside(planOf(tasks(task(1, 1, "<Name>A & B</Name>"))))).isRepaired);
    EXPECT_FALSE(mend(inside(planOf(tasks(task(1, 1))))).isRepaired);
}

TEST_F(MendTest, mendsTheNamespaceOfAPlanInsideAnotherFile) {
    const std::string inner =
        "<m:Project xmlns:m=\"http://schemas.microsoft.com/project\"><m:Calendars><m:Calendar><m:UID>1</m:UID>"
        "<m:IsBaseCalendar>1</m:IsBaseCalendar></m:Calendar></m:Calendars></m:Project>";
    const std::string wanted =
        "<Project xmlns=\"http://schemas.microsoft.com/project\"><Calendars><Calendar><UID>1</UID>"
        "<IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars></Project>";
    expectMended("\x01 < " + inner + " >", wanted, "embedded 1, namespace 1");
}

TEST_F(MendTest, takesAPlanOutOfAnotherElement) {
    const auto plan = planOf(tasks(task(1, 1)));
    const auto inner = plan.substr(plan.find("<Project"), plan.find("</Project>") + 10 - plan.find("<Project"));
    expectMended("<?xml version=\"1.0\"?><Archive><Owner/>" + inner + "</Archive>", inner, "embedded 1");
}

TEST_F(MendTest, givesEmptyRowsALevel) {
    const std::string row = "<IsNull>1</IsNull>";
    expectMended(planOf(tasks(task(1, 1) + task(2, -1, row))), planOf(tasks(task(1, 1) + task(2, 0, row))),
                 "outline 1");
}

// A repair would leave an empty plan, which imports once it has a calendar.
TEST_F(MendTest, mendsTheTagOfTheRoot) {
    const auto plan = planOf(tasks(task(1, 1)), "");
    const auto wanted = mend(plan).bytes;
    const std::string attribute = " xmlns=\"http://schemas.microsoft.com/project\"";
    const std::vector<std::string> damages = {" b=1" + attribute,
                                              attribute + " <",
                                              attribute + attribute,
                                              attribute + " b=\"1",
                                              attribute.substr(0, attribute.size() - 1),
                                              attribute + " c",
                                              attribute + " =\"\"",
                                              attribute + "d=\"1\""};
    for (const auto& damaged : damages) {
        expectMended(with(plan, attribute, damaged), wanted, "namespace 1, standard-calendar 1");
    }
    expectMended(with(plan, "/project\">", "/project\""), wanted, "namespace 1, standard-calendar 1");
}

TEST_F(MendTest, doesNotCallMendedWhatARepairHasLost) {
    std::string many;
    for (int uid = 1; uid <= 20; ++uid) {
        many += task(uid, 1);
    }
    const auto plan = planOf("<Author p=\"1\"Name>x</AuthorName>" + tasks(many), "");
    const auto mended = mend(plan);
    EXPECT_EQ(mended.verdict, MSPDIMendVerdict::NotMendable);
    EXPECT_THAT(mended.obstacle, HasSubstr("a repair would lose most of it: 0 of 20 "));
    EXPECT_TRUE(mended.bytes.empty() && mended.steps.empty());
    // All of it stays, but within the title, or within a comment.
    for (const auto* damage : {"<Title>x<Title>", "<!-- x", "<![CDATA[ x", "</Project>"}) {
        const auto other = mend(planOf(damage + tasks(many), ""));
        EXPECT_EQ(other.verdict, MSPDIMendVerdict::NotMendable) << damage;
        EXPECT_THAT(other.obstacle, HasSubstr("a repair would lose most of it")) << damage;
    }
    // What loses little is mended.
    EXPECT_EQ(mend(planOf(tasks(many + "<Task><UID>21</UID><Summ"), "")).verdict, MSPDIMendVerdict::Mended);
}

TEST_F(MendTest, saysThatTheMarkupOfAPlanIsDamaged) {
    const auto cut = planOf(tasks(task(1, 1)));
    const auto asIs = mend(cut.substr(0, cut.find("</Project>")));
    EXPECT_EQ(asIs.verdict, MSPDIMendVerdict::ImportsAsIs);
    EXPECT_THAT(asIs.damage, HasSubstr("Repaired malformed XML"));
    const auto refused = planOf(tasks(task(0, 0) + task(1, 1)));
    const auto mended = mend(refused.substr(0, refused.find("</Project>")));
    EXPECT_EQ(mended.verdict, MSPDIMendVerdict::Mended);
    EXPECT_THAT(mended.damage, HasSubstr("Repaired malformed XML"));
    EXPECT_EQ(mend(refused).damage, "");
}

TEST_F(MendTest, takesAllPrefixesOfPlansFromNames) {
    const auto plan = planOf(tasks(task(1, 1, "<Name>A</Name>")), "");
    const std::string declaration = "xmlns=\"http://schemas.microsoft.com/project\"";
    auto prefixed =
        with(with(plan, "<Name>A</Name>", "<q:Name>A</q:Name>"), declaration,
             "xmlns:p=\"http://schemas.microsoft.com/project\" xmlns:q=\"http://schemas.microsoft.com/project\"");
    prefixed = with(with(prefixed, "<Project ", "<p:Project "), "</Project>", "</p:Project>");
    prefixed = with(with(prefixed, "<Tasks>", "<p:Tasks>"), "</Tasks>", "</p:Tasks>");
    expectMended(prefixed, mend(plan).bytes, "namespace 1, standard-calendar 1");
}

TEST_F(MendTest, takesAPlanFromBehindADeclarationThatNobodyKnows) {
    const auto plan = planOf(tasks(task(1, 1, "<Name>\xC3\xBC</Name>")));
    const auto wanted = plan.substr(plan.find("<Project"));
    for (const auto* encoding : {"encoding=?UTF-8\" standalone=\"yes\"", "encoding=\"UTF-99\""}) {
        expectMended(with(plan, "encoding=\"UTF-8\"", encoding), wanted, "embedded 1");
    }
    const auto latin = with(with(plan, "\xC3\xBC", "\xFC"), "UTF-8", "UTF-99");
    EXPECT_EQ(mend(latin).verdict, MSPDIMendVerdict::NotMendable);
}

TEST_F(MendTest, mendsPlansWithPrefixesWhoseMarkupIsBroken) {
    const std::string prefixed =
        "<p:Project xmlns:p=\"http://schemas.microsoft.com/project\"><p:SaveVersion>14</p:SaveVersion>"
        "<p:StartDate>2012-01-09T08:00:00</p:StartDate><p:Calendars><p:Calendar><p:UID>1</p:UID><p:Name>Standard</"
        "p:Name>"
        "<p:IsBaseCalendar>1</p:IsBaseCalendar></p:Calendar></p:Calendars><p:Tasks><p:Task><p:UID>1</p:UID>"
        "<p:Name>A & B</p:Name><p:OutlineLevel>1</p:OutlineLevel></p:Task></p:Tasks></p:Project>";
    const auto mended = mend(prefixed);
    ASSERT_EQ(mended.verdict, MSPDIMendVerdict::Mended) << mended.obstacle;
    EXPECT_EQ(stepsOf(mended), "namespace 1");
    EXPECT_TRUE(mended.isRepaired);
    EXPECT_THAT(mended.bytes, testing::HasSubstr("<Name>A &amp; B</Name>"));
    EXPECT_EQ(mended.refusal->name, "MSPEXMLException");
    const auto sound = mend(with(prefixed, " & ", " "));
    EXPECT_EQ(sound.refusal->name, "MSPIMapperException");
    EXPECT_FALSE(sound.isRepaired);
}

// Though what is around a plan is imported alone, without the plan.
TEST_F(MendTest, tellsWhatAnImportSaysOfTheWholeFile) {
    const auto plan = planOf(tasks(task(1, 1)));
    const auto inner = plan.substr(plan.find("<Project"));
    const auto broken = with(inner, "<UID>1</UID><OutlineLevel>", "<UID>1<OutlineLevel>");
    const auto prefixed = with(with(inner, "<Project xmlns", "<p:Project xmlns:p"), "</Project>", "</p:Project>");
    for (const auto& file : std::vector<std::string>{"<a>" + inner + "</a>", "<a>" + inner, "<a>" + broken + "</a>",
                                                     "<a b=1>" + inner + "</a>", "<a>" + plan + "</a>", "text " + plan,
                                                     "<a><![CDATA[" + inner + "]]></a>", "<a><b>" + inner + "</a></b>",
                                                     prefixed, "<!-- a -->" + prefixed + "<b/>"}) {
        const auto refusal = MSPDIImportBytesInMemory("Plan.xml", file, services, MSPDIMemoryKeeping::Names).refusal;
        const auto mended = mend(file);
        ASSERT_TRUE(refusal && mended.refusal) << file;
        EXPECT_EQ(mended.refusal->name, refusal->name) << file;
        EXPECT_EQ(mended.refusal->reason, refusal->reason) << file;
        EXPECT_LE(mended.imports, 3);
    }
}
