// The same element, in places where it means different things.
#include <gtest/gtest.h>

#include "AccountOfPlan.h"

namespace {

constexpr const char* first = "Tasks[1]/Task[1]/";

std::string fateInTask(const std::string& children, const std::string& leaf) {
    return AccountOfPlan(tasksOf(taskOf(1, children))).at(first + leaf + "[1]");
}

}  // namespace

TEST(FatesInContext, aRepeatedElementCountsOnceOnly) {
    const AccountOfPlan plan(tasksOf(taskOf(1,
                                            "<Name>a</Name><Name>b</Name><PercentComplete>10</PercentComplete>"
                                            "<PercentComplete>20</PercentComplete>")));
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Name[1]"), "lost");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Name[2]"), "carried");
    EXPECT_EQ(plan.count("repeated-element"), 1U);
    // Two percentages are none at all, and without either of them the other one would count.
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/PercentComplete[1]"), "shaping");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/PercentComplete[2]"), "shaping");
}

TEST(FatesInContext, ofAnEmptyRowNothingArrives) {
    const AccountOfPlan plan(
        tasksOf("<Task><UID>3</UID><IsNull>1</IsNull><Name>gone</Name><Priority>500</Priority></Task>"));
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Name[1]"), "lost");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Priority[1]"), "default");
    EXPECT_EQ(plan.count("empty-row"), 1U);
}

TEST(FatesInContext, ofTheProjectsSummaryTaskOnlyTheDatesArrive) {
    const AccountOfPlan plan(
        tasksOf("<Task><UID>0</UID><Summary>1</Summary><Name>All</Name><Start>2012-01-09T08:00:00</Start>"
                "<Work>PT8H0M0S</Work><Notes>n</Notes></Task>"));
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Start[1]"), "carried");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Work[1]"), "derived");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Notes[1]"), "lost");
    EXPECT_EQ(plan.count("summary-task"), 1U);
}

TEST(FatesInContext, durationIsTheEffortWithoutWork) {
    EXPECT_EQ(fateInTask("<Duration>PT8H0M0S</Duration>", "Duration"), "carried");
    EXPECT_EQ(fateInTask("<Duration>PT8H0M0S</Duration><Work>PT0H0M0S</Work>", "Work"), "default");
    EXPECT_EQ(fateInTask("<Duration>PT8H0M0S</Duration><Work>PT8H0M0S</Work>", "Duration"), "shaping");
    EXPECT_EQ(fateInTask("<Duration>PT8H0M0S</Duration><Work>PT4H0M0S</Work>", "Duration"), "changed");
    EXPECT_EQ(fateInTask("<Summary>1</Summary><Duration>PT8H0M0S</Duration><Work>PT4H0M0S</Work>", "Duration"),
              "derived");
    EXPECT_EQ(AccountOfPlan(tasksOf(taskOf(1, "<Duration>PT8H0M0S</Duration><Work>PT4H0M0S</Work>")))
                  .count("duration-not-effort"),
              1U);
}

TEST(FatesInContext, aPercentageOfNoEffortSaysNothingOfItsOwn) {
    EXPECT_EQ(fateInTask("<Work>PT8H0M0S</Work><PercentWorkComplete>50</PercentWorkComplete>", "PercentWorkComplete"),
              "carried");
    EXPECT_EQ(fateInTask("<PercentWorkComplete>50</PercentWorkComplete>", "PercentWorkComplete"), "shaping");
    EXPECT_EQ(fateInTask("<Work>PT8H0M0S</Work><PercentWorkComplete>0</PercentWorkComplete>", "PercentWorkComplete"),
              "default");
}

TEST(FatesInContext, aConstraintsDateGoesByItsType) {
    const auto fate = [](const std::string& type) {
        return fateInTask(
            "<ConstraintType>" + type + "</ConstraintType><ConstraintDate>2012-01-11T08:00:00</ConstraintDate>",
            "ConstraintDate");
    };
    EXPECT_EQ(fate("0"), "default");
    EXPECT_EQ(fate("2"), "carried");
    EXPECT_EQ(fate("4"), "carried");
    EXPECT_EQ(fate("5"), "lost");
    EXPECT_EQ(fate("6"), "carried");
    EXPECT_EQ(fate("8"), "lost");
}

TEST(FatesInContext, aTaskBeforeItsProjectIsLockedToItsOwnDate) {
    const auto fate = [](const std::string& date) {
        return fateInTask("<ConstraintType>2</ConstraintType><Start>2012-01-04T08:00:00</Start><ConstraintDate>" +
                              date + "</ConstraintDate>",
                          "ConstraintDate");
    };
    EXPECT_EQ(fate("2012-01-03T08:00:00"), "carried");
    EXPECT_EQ(fate("2012-01-04T08:00:00"), "derived");
    EXPECT_EQ(fate("2012-01-05T08:00:00"), "lost");
}

TEST(FatesInContext, aBaselinesValueArrivesWhereTheTaskHasSuchAnElement) {
    const std::string baseline =
        "<Baseline><Number>2</Number><Start>2012-01-10T08:00:00</Start><Work>PT0H0M0S</Work></Baseline>";
    const AccountOfPlan without(tasksOf(taskOf(1, baseline)));
    EXPECT_EQ(without.at("Tasks[1]/Task[1]/Baseline[1]/Start[1]"), "lost");
    EXPECT_EQ(without.at("Tasks[1]/Task[1]/Baseline[1]/Work[1]"), "default");
    const AccountOfPlan with(tasksOf(taskOf(1, "<Start>2012-01-11T08:00:00</Start><Work>PT8H0M0S</Work>" + baseline)));
    EXPECT_EQ(with.at("Tasks[1]/Task[1]/Baseline[1]/Start[1]"), "carried");
    EXPECT_EQ(with.at("Tasks[1]/Task[1]/Baseline[1]/Work[1]"), "shaping");  // hides the task's own
    EXPECT_EQ(with.at("Tasks[1]/Task[1]/Baseline[1]/Number[1]"), "shaping");
}

// A baseline's value counts only where its owner has an element of that name, which may say nothing itself.
TEST(FatesInContext, aValueThatSaysNothingLetsABaselinesIn) {
    const auto plan = [](const std::string& children, const std::string& ofBaseline) {
        return AccountOfPlan(
            tasksOf(taskOf(1, children + "<Baseline><Number>1</Number>" + ofBaseline + "</Baseline>")));
    };
    const std::string task = "Tasks[1]/Task[1]/";
    EXPECT_EQ(plan("<Work>PT0H0M0S</Work>", "<Work>PT8H0M0S</Work>").at(task + "Work[1]"), "shaping");
    EXPECT_EQ(plan("<Work>PT0H0M0S</Work>", "<Work>PT0H0M0S</Work>").at(task + "Work[1]"), "default");
    EXPECT_EQ(plan("<Work>PT0H0M0S</Work>", "<Start>2012-01-10T08:00:00</Start>").at(task + "Work[1]"), "default");
    EXPECT_EQ(plan("<Start></Start>", "<Start>2012-01-10T08:00:00</Start>").at(task + "Start[1]"), "shaping");
    EXPECT_EQ(plan("<FixedCost>0</FixedCost>", "<FixedCost>5</FixedCost>").at(task + "FixedCost[1]"), "carried");
    const auto summary = plan("<Summary>1</Summary><Duration>PT8H0M0S</Duration><Work>PT16H0M0S</Work>",
                              "<Duration>PT4H0M0S</Duration><Work>PT0H0M0S</Work>");
    EXPECT_EQ(summary.at(task + "Duration[1]"), "shaping");
    EXPECT_EQ(summary.at(task + "Baseline[1]/Duration[1]"), "carried");
}

TEST(FatesInContext, datesOfTheSummaryTaskLetThoseOfABaselineIn) {
    const std::string baseline = "<Baseline><Number>0</Number><Start>2012-01-10T08:00:00</Start></Baseline>";
    const AccountOfPlan plan(tasksOf("<Task><UID>0</UID><Summary>1</Summary><Start/><Finish/>" + baseline + "</Task>"));
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Start[1]"), "shaping");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Finish[1]"), "default");
}

TEST(FatesInContext, aResourcesUnitsLetThoseOfABaselineIn) {
    const auto fate = [](const std::string& ofBaseline) {
        return AccountOfPlan("<Resources><Resource><UID>1</UID><MaxUnits/><Baseline><Number>0</Number>" + ofBaseline +
                             "</Baseline></Resource></Resources>")
            .at("Resources[1]/Resource[1]/MaxUnits[1]");
    };
    EXPECT_EQ(fate("<MaxUnits>2</MaxUnits>"), "shaping");
    EXPECT_EQ(fate("<Work>PT8H0M0S</Work>"), "default");
}

TEST(FatesInContext, ratesAreLostWithTheirDatesAndUnits) {
    const auto plan = [](const std::string& own, const std::string& rate) {
        return AccountOfPlan("<Resources><Resource><UID>1</UID>" + own + "<Rates><Rate>" + rate +
                             "</Rate></Rates></Resource></Resources>");
    };
    const std::string first = "<RatesFrom>1984-01-01T00:00:00</RatesFrom><RateTable>0</RateTable>";
    const std::string later = "<RatesFrom>2012-03-01T08:00:00</RatesFrom><RateTable>0</RateTable>";
    const std::string other = "<RateTable>1</RateTable><StandardRateFormat>3</StandardRateFormat>";
    const std::string at = "Resources[1]/Resource[1]/Rates[1]/Rate[1]/";
    const auto raised = plan("<StandardRate>50</StandardRate>", later + "<StandardRate>60</StandardRate>");
    EXPECT_EQ(raised.at(at + "RatesFrom[1]"), "lost");
    EXPECT_EQ(raised.loss("further-rates").where.at(0).value, "60");
    EXPECT_EQ(raised.count("further-rates"), 1U);
    const auto ended = plan("<StandardRate>50</StandardRate>", later + "<StandardRate>0</StandardRate>");
    EXPECT_EQ(ended.loss("further-rates").where.at(0).value, "2012-03-01T08:00:00");
    const auto table = plan("", other + "<CostPerUse>7</CostPerUse>");
    EXPECT_EQ(table.at(at + "RateTable[1]"), "lost");
    EXPECT_EQ(table.at(at + "StandardRateFormat[1]"), "lost");
    EXPECT_EQ(plan("", other + "<CostPerUse>0</CostPerUse>").count("further-rates"), 0U);
    const auto same = plan("<StandardRate>50</StandardRate>", first + "<StandardRate>50.00</StandardRate>");
    EXPECT_EQ(same.at(at + "StandardRate[1]"), "derived");
    EXPECT_EQ(same.at(at + "RatesFrom[1]"), "default");
    const auto differing = plan("<StandardRate>50</StandardRate>", first + "<StandardRate>40</StandardRate>");
    EXPECT_EQ(differing.at(at + "StandardRate[1]"), "lost");
    EXPECT_EQ(plan("", first + "<OvertimeRate>0</OvertimeRate>").at(at + "OvertimeRate[1]"), "default");
}

TEST(FatesInContext, whatIsDoneIsLostWhereNoPercentageSaysIt) {
    EXPECT_EQ(fateInTask("<ActualWork>PT8H0M0S</ActualWork>", "ActualWork"), "lost");
    EXPECT_EQ(fateInTask("<ActualDuration>PT8H0M0S</ActualDuration>", "ActualDuration"), "lost");
    EXPECT_EQ(fateInTask("<ActualWork>PT0H0M0S</ActualWork>", "ActualWork"), "default");
    EXPECT_EQ(fateInTask("<ActualWork>PT8H0M0S</ActualWork><PercentComplete>50</PercentComplete>", "ActualWork"),
              "derived");
    EXPECT_EQ(
        fateInTask("<PercentWorkComplete>50</PercentWorkComplete><ActualWork>PT8H0M0S</ActualWork>", "ActualWork"),
        "derived");
    EXPECT_EQ(fateInTask("<Summary>1</Summary><ActualWork>PT8H0M0S</ActualWork>", "ActualWork"), "derived");
    EXPECT_EQ(AccountOfPlan(tasksOf(taskOf(1, "<ActualWork>PT8H0M0S</ActualWork>"))).count("completion"), 1U);
}

TEST(FatesInContext, theFormOfAnOutlineCodeIsLostWithIt) {
    const AccountOfPlan plan(
        "<OutlineCodes><OutlineCode><Values><Value><ParentValueID>7</ParentValueID></Value><Value><ParentValueID>0"
        "</ParentValueID></Value></Values><Masks><Mask><Type>2</Type></Mask></Masks></OutlineCode></OutlineCodes>");
    const std::string code = "OutlineCodes[1]/OutlineCode[1]/";
    EXPECT_EQ(plan.at(code + "Values[1]/Value[1]/ParentValueID[1]"), "lost");
    EXPECT_EQ(plan.at(code + "Values[1]/Value[2]/ParentValueID[1]"), "default");
    EXPECT_EQ(plan.at(code + "Masks[1]/Mask[1]/Type[1]"), "lost");
    EXPECT_EQ(plan.count("outline-code"), 1U);
}

// What others cost comes from their rates and their work.
TEST(FatesInContext, theCostOfACostResourceIsEntered) {
    const AccountOfPlan plan(tasksOf(taskOf(1)) +
                             "<Resources><Resource><UID>1</UID><IsCostResource>1</IsCostResource></Resource>"
                             "<Resource><UID>2</UID></Resource></Resources><Assignments>"
                             "<Assignment><TaskUID>1</TaskUID><ResourceUID>1</ResourceUID><Cost>500</Cost></Assignment>"
                             "<Assignment><TaskUID>1</TaskUID><ResourceUID>1</ResourceUID><Cost>0</Cost></Assignment>"
                             "<Assignment><TaskUID>1</TaskUID><ResourceUID>2</ResourceUID><Cost>500</Cost></Assignment>"
                             "<Assignment><TaskUID>1</TaskUID><ResourceUID>9</ResourceUID><Cost>500</Cost></Assignment>"
                             "</Assignments>");
    EXPECT_EQ(plan.at("Assignments[1]/Assignment[1]/Cost[1]"), "lost");
    EXPECT_EQ(plan.at("Assignments[1]/Assignment[2]/Cost[1]"), "default");
    EXPECT_EQ(plan.at("Assignments[1]/Assignment[3]/Cost[1]"), "derived");
    EXPECT_EQ(plan.at("Assignments[1]/Assignment[4]/Cost[1]"), "derived");
    EXPECT_EQ(plan.count("cost-resource"), 2U);  // the resource, and what is entered for it
}

TEST(FatesInContext, ofSeveralBaselinesWithOneNumberTheLastCounts) {
    const AccountOfPlan plan(
        tasksOf(taskOf(1,
                       "<Start>2012-01-11T08:00:00</Start>"
                       "<Baseline><Number>2</Number><Start>2012-01-10T08:00:00</Start></Baseline>"
                       "<Baseline><Number>2</Number><Start>2012-01-12T08:00:00</Start></Baseline>"
                       "<Baseline><Number>11</Number><Start>2012-01-12T08:00:00</Start></Baseline>")));
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Baseline[1]/Start[1]"), "lost");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Baseline[2]/Start[1]"), "carried");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Baseline[3]/Start[1]"), "lost");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Baseline[3]/Number[1]"), "lost");
}

TEST(FatesInContext, aLinkNeedsOneTaskOfThatNumber) {
    const std::string link = "<PredecessorLink><PredecessorUID>2</PredecessorUID><Type>1</Type></PredecessorLink>";
    const AccountOfPlan one(tasksOf(taskOf(1, link) + taskOf(2)));
    EXPECT_EQ(one.at("Tasks[1]/Task[1]/PredecessorLink[1]/PredecessorUID[1]"), "carried");
    EXPECT_EQ(one.at("Tasks[1]/Task[1]/PredecessorLink[1]/Type[1]"), "carried");
    const AccountOfPlan none(tasksOf(taskOf(1, link)));
    EXPECT_EQ(none.at("Tasks[1]/Task[1]/PredecessorLink[1]/PredecessorUID[1]"), "lost");
    EXPECT_EQ(none.at("Tasks[1]/Task[1]/PredecessorLink[1]/Type[1]"), "default");
    EXPECT_EQ(none.count("dropped-link"), 1U);
    EXPECT_EQ(AccountOfPlan(tasksOf(taskOf(1, link) + taskOf(2) + taskOf(2))).count("dropped-link"), 1U);
}

TEST(FatesInContext, aCustomFieldNeedsADefinition) {
    const std::string definition =
        "<ExtendedAttributes><ExtendedAttribute><FieldID>5</FieldID><FieldName>Text1</FieldName>"
        "<Alias>Colour</Alias></ExtendedAttribute></ExtendedAttributes>";
    const std::string value = "<ExtendedAttribute><FieldID>5</FieldID><Value>red</Value></ExtendedAttribute>";
    const AccountOfPlan with(definition + tasksOf(taskOf(1, value)));
    EXPECT_EQ(with.at("Tasks[1]/Task[1]/ExtendedAttribute[1]/Value[1]"), "carried");
    EXPECT_EQ(with.at("ExtendedAttributes[1]/ExtendedAttribute[1]/Alias[1]"), "carried");
    EXPECT_EQ(with.at("ExtendedAttributes[1]/ExtendedAttribute[1]/FieldName[1]"), "derived");
    const AccountOfPlan without(tasksOf(taskOf(1, value)));
    EXPECT_EQ(without.at("Tasks[1]/Task[1]/ExtendedAttribute[1]/Value[1]"), "lost");
    EXPECT_EQ(without.count("undefined-field"), 1U);
    EXPECT_EQ(AccountOfPlan(definition).at("ExtendedAttributes[1]/ExtendedAttribute[1]/Alias[1]"), "lost");
    EXPECT_EQ(AccountOfPlan(definition + tasksOf(taskOf(1, value + value)))
                  .at("Tasks[1]/Task[1]/ExtendedAttribute[1]/Value[1]"),
              "lost");
}

// Without the last number of a field's value the one before counts, which has a definition here.
TEST(FatesInContext, theLastOfSeveralNumbersOfAFieldDecides) {
    const AccountOfPlan plan(
        "<ExtendedAttributes><ExtendedAttribute><FieldID>5</FieldID><FieldName>Text1</FieldName></ExtendedAttribute>"
        "</ExtendedAttributes>" +
        tasksOf(taskOf(1,
                       "<ExtendedAttribute><FieldID>5</FieldID><FieldID>6</FieldID><Value>red</Value>"
                       "</ExtendedAttribute>") +
                taskOf(2, "<ExtendedAttribute><FieldID>6</FieldID><Value>red</Value></ExtendedAttribute>")));
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/ExtendedAttribute[1]/FieldID[1]"), "default");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/ExtendedAttribute[1]/FieldID[2]"), "shaping");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/ExtendedAttribute[1]/Value[1]"), "lost");
    EXPECT_EQ(plan.at("Tasks[1]/Task[2]/ExtendedAttribute[1]/FieldID[1]"), "default");
}

TEST(FatesInContext, onlyTheLastTasksFieldsAreRegistered) {
    const auto definition = [](const std::string& id) {
        return "<ExtendedAttribute><FieldID>" + id + "</FieldID><FieldName>Text" + id +
               "</FieldName></ExtendedAttribute>";
    };
    const auto value = [](const std::string& id) {
        return "<ExtendedAttribute><FieldID>" + id + "</FieldID><Value>v</Value></ExtendedAttribute>";
    };
    const AccountOfPlan plan("<ExtendedAttributes>" + definition("5") + definition("6") + "</ExtendedAttributes>" +
                             tasksOf(taskOf(1, value("5")) + taskOf(2, value("6"))));
    ASSERT_EQ(plan.count("unregistered-field"), 1U);
    EXPECT_EQ(plan.loss("unregistered-field").where[0].uid, "5");
    EXPECT_EQ(plan.loss("unregistered-field").where[0].value, "Text5");
}

TEST(FatesInContext, aTaskWithoutAParentIsUnreachable) {
    const AccountOfPlan plan(
        tasksOf("<Task><UID>1</UID><OutlineLevel>0</OutlineLevel></Task>"
                "<Task><UID>2</UID><OutlineLevel>2</OutlineLevel></Task>" +
                taskOf(3, "<Summary>1</Summary>") +
                "<Task><UID>4</UID><OutlineLevel>2</OutlineLevel></Task><Task><UID>5</UID></Task>"));
    ASSERT_EQ(plan.count("unreachable-task"), 3U);
    EXPECT_EQ(plan.loss("unreachable-task").where[0].uid, "1");
    EXPECT_EQ(plan.loss("unreachable-task").where[1].uid, "2");
    EXPECT_EQ(plan.loss("unreachable-task").where[2].uid, "5");
}

TEST(FatesInContext, assignmentsGoByTheirTask) {
    const AccountOfPlan plan(
        tasksOf(taskOf(1, "<Summary>1</Summary>") + taskOf(2)) +
        "<Resources><Resource><UID>1</UID></Resource><Resource><UID>2</UID><Type>0</Type></Resource></"
        "Resources><Assignments>"
        "<Assignment><TaskUID>1</TaskUID><ResourceUID>1</ResourceUID></Assignment>"
        "<Assignment><TaskUID>2</TaskUID><ResourceUID>1</ResourceUID><Units>0.5</Units><Work>PT8H0M0S</Work></"
        "Assignment>"
        "<Assignment><TaskUID>2</TaskUID><ResourceUID>2</ResourceUID><Units>0.5</Units><Work>PT4H0M0S</Work></"
        "Assignment>"
        "<Assignment><TaskUID>9</TaskUID><ResourceUID>1</ResourceUID></Assignment>"
        "<Assignment><TaskUID>2</TaskUID><ResourceUID>-65535</ResourceUID></Assignment></Assignments>");
    EXPECT_EQ(plan.at("Assignments[1]/Assignment[1]/ResourceUID[1]"), "lost");
    EXPECT_EQ(plan.count("summary-assignment"), 1U);
    EXPECT_EQ(plan.at("Assignments[1]/Assignment[2]/ResourceUID[1]"), "carried");
    EXPECT_EQ(plan.at("Assignments[1]/Assignment[2]/Units[1]"), "lost");
    EXPECT_EQ(plan.at("Assignments[1]/Assignment[3]/Units[1]"), "carried");  // of material
    EXPECT_EQ(plan.count("unequal-shares"), 2U);
    EXPECT_EQ(plan.count("dropped-assignment"), 1U);
    EXPECT_EQ(plan.at("Assignments[1]/Assignment[5]/ResourceUID[1]"), "shaping");
}

// Which of its tasks or resources is meant nobody knows; below the first level the last one is taken all the same.
TEST(FatesInContext, anAssignmentWithSeveralTasksOrResourcesIsDroppedUnlessItsTaskIsNested) {
    const auto planOf = [](int level, const std::string& assignment) {
        return AccountOfPlan(
            tasksOf(taskOf(1, "<Summary>1</Summary>") + "<Task><UID>2</UID><OutlineLevel>" + std::to_string(level) +
                    "</OutlineLevel></Task><Task><UID>3</UID><OutlineLevel>" + std::to_string(level) +
                    "</OutlineLevel></Task>") +
            "<Resources><Resource><UID>1</UID></Resource><Resource><UID>2</UID></Resource></Resources><Assignments>"
            "<Assignment><TaskUID>3</TaskUID><ResourceUID>2</ResourceUID></Assignment><Assignment>" +
            assignment + "</Assignment></Assignments>");
    };
    const std::string resource = "Assignments[1]/Assignment[2]/ResourceUID[1]";
    const std::string twoTasks = "<TaskUID>1</TaskUID><TaskUID>3</TaskUID><ResourceUID>1</ResourceUID>";
    EXPECT_EQ(planOf(1, twoTasks).at(resource), "lost");
    EXPECT_EQ(planOf(1, twoTasks).count("dropped-assignment"), 1U);
    EXPECT_EQ(planOf(2, twoTasks).at(resource), "carried");
    EXPECT_EQ(planOf(2, twoTasks).count("dropped-assignment"), 0U);
    const std::string twoResources = "<TaskUID>3</TaskUID><ResourceUID>1</ResourceUID><ResourceUID>1</ResourceUID>";
    EXPECT_EQ(planOf(1, twoResources).at(resource), "shaping");
    EXPECT_EQ(planOf(1, twoResources).count("dropped-assignment"), 1U);
    EXPECT_EQ(planOf(2, twoResources).count("dropped-assignment"), 0U);
}

// A summary task takes no assignments, so that another task with its number gets them.
TEST(FatesInContext, assignmentsGoToTheFirstTaskOfTheirNumberThatTakesAny) {
    const auto fateWith = [](const std::string& second) {
        return AccountOfPlan(tasksOf(taskOf(1, "<Summary>1</Summary>") + second) +
                             "<Resources><Resource><UID>1</UID></Resource></Resources><Assignments><Assignment>"
                             "<TaskUID>1</TaskUID><ResourceUID>1</ResourceUID></Assignment></Assignments>")
            .at("Assignments[1]/Assignment[1]/ResourceUID[1]");
    };
    EXPECT_EQ(fateWith(taskOf(1)), "carried");
    EXPECT_EQ(fateWith(taskOf(2)), "lost");
    EXPECT_EQ(fateWith(taskOf(1, "<Summary>1</Summary>")), "lost");
}

// Without it the number is that of a baseline.
TEST(FatesInContext, anElementWithinAValueShapesWhatIsReadOfIt) {
    const AccountOfPlan plan(
        tasksOf(taskOf(1,
                       "<Start>2012-01-10T08:00:00</Start><Baseline><Number>3<Zebra>7</Zebra></Number>"
                       "<Start>2012-01-11T08:00:00</Start></Baseline><Contact>me<Zebra>7</Zebra></Contact>")));
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Baseline[1]/Number[1]/Zebra[1]"), "shaping");
    EXPECT_EQ(plan.at("Tasks[1]/Task[1]/Contact[1]/Zebra[1]"), "lost");
    EXPECT_EQ(plan.count("unknown-element"), 2U);
}

TEST(FatesInContext, aCalendarGoesByWhoHasIt) {
    const auto calendar = [](int uid, const std::string& more) {
        return "<Calendar><UID>" + std::to_string(uid) + "</UID><Name>C" + std::to_string(uid) + "</Name>" + more +
               "</Calendar>";
    };
    const std::string week =
        "<IsBaseCalendar>0</IsBaseCalendar><BaseCalendarUID>8</BaseCalendarUID><WeekDays>"
        "<WeekDay><DayType>2</DayType><DayWorking>0</DayWorking></WeekDay>"
        "<WeekDay><DayType>3</DayType><DayWorking>1</DayWorking><WorkingTimes><WorkingTime>"
        "<FromTime>20:00:00</FromTime><ToTime>00:00:00</ToTime></WorkingTime></WorkingTimes></WeekDay></WeekDays>";
    const AccountOfPlan plan(
        "<Calendars>" + calendar(7, week) + calendar(8, week) +
        "</Calendars><Resources><Resource><UID>1</UID><CalendarUID>7</CalendarUID></Resource></Resources>");
    const std::string used = "Calendars[2]/Calendar[1]/";
    EXPECT_EQ(plan.at(used + "WeekDays[1]/WeekDay[1]/DayWorking[1]"), "lost");
    EXPECT_EQ(plan.at(used + "WeekDays[1]/WeekDay[2]/DayWorking[1]"), "shaping");
    EXPECT_EQ(plan.at(used + "WeekDays[1]/WeekDay[2]/WorkingTimes[1]/WorkingTime[1]/FromTime[1]"), "carried");
    EXPECT_EQ(plan.at(used + "WeekDays[1]/WeekDay[2]/WorkingTimes[1]/WorkingTime[1]/ToTime[1]"), "changed");
    EXPECT_EQ(plan.at(used + "BaseCalendarUID[1]"), "lost");
    EXPECT_EQ(plan.count("resource-week"), 1U);
    EXPECT_EQ(plan.count("overnight-time"), 1U);
    EXPECT_EQ(plan.at("Calendars[2]/Calendar[2]/WeekDays[1]/WeekDay[2]/WorkingTimes[1]/WorkingTime[1]/FromTime[1]"),
              "lost");
    EXPECT_EQ(plan.count("unused-calendar"), 1U);
}

TEST(FatesInContext, ofACalendarThatNobodyHasAllThatSaysSomethingIsLost) {
    const AccountOfPlan plan(
        "<Calendars><Calendar><UID>7</UID><Name>Night</Name><IsBaseCalendar>1</IsBaseCalendar><BaseCalendarUID>-1"
        "</BaseCalendarUID><WeekDays><WeekDay><DayType>2</DayType><DayWorking>1</DayWorking><WorkingTimes><WorkingTime>"
        "<FromTime>20:00:00</FromTime><ToTime>23:00:00</ToTime></WorkingTime><WorkingTime/></WorkingTimes></WeekDay>"
        "</WeekDays><Exceptions><Exception><EnteredByOccurrences/><TimePeriod><FromDate>2012-02-01T00:00:00</FromDate>"
        "<ToDate>2012-02-01T23:59:00</ToDate></TimePeriod><Name>Fair</Name><Type>1</Type><DayWorking>0</DayWorking>"
        "</Exception></Exceptions><WorkWeeks><WorkWeek><Name>Short</Name><WeekDays><WeekDay><DayType>3</DayType>"
        "<DayWorking>1</DayWorking></WeekDay></WeekDays></WorkWeek></WorkWeeks></Calendar></Calendars>");
    const std::string calendar = "Calendars[2]/Calendar[1]/";
    const std::string time = calendar + "WeekDays[1]/WeekDay[1]/WorkingTimes[1]/WorkingTime";
    const std::string exception = calendar + "Exceptions[1]/Exception[1]/";
    const std::string weekDay = calendar + "WorkWeeks[1]/WorkWeek[1]/WeekDays[1]/WeekDay[1]/";
    for (const auto& path :
         {calendar + "Name[1]", calendar + "WeekDays[1]/WeekDay[1]/DayType[1]",
          calendar + "WeekDays[1]/WeekDay[1]/DayWorking[1]", time + "[1]/FromTime[1]", time + "[1]/ToTime[1]",
          exception + "TimePeriod[1]/FromDate[1]", exception + "TimePeriod[1]/ToDate[1]", exception + "Name[1]",
          exception + "Type[1]", exception + "DayWorking[1]", calendar + "WorkWeeks[1]/WorkWeek[1]/Name[1]",
          weekDay + "DayType[1]", weekDay + "DayWorking[1]"}) {
        EXPECT_EQ(plan.at(path), "lost") << path;
    }
    for (const auto& path : {calendar + "UID[1]", calendar + "IsBaseCalendar[1]", calendar + "BaseCalendarUID[1]",
                             time + "[2]", exception + "EnteredByOccurrences[1]"}) {
        EXPECT_EQ(plan.at(path), "default") << path;
    }
    ASSERT_EQ(plan.account.losses.size(), 1U);
    EXPECT_EQ(plan.count("unused-calendar"), 1U);
    EXPECT_EQ(plan.loss("unused-calendar").where[0].value, "Night");
}

TEST(FatesInContext, ofARecurringExceptionAllThatSaysSomethingIsLost) {
    const auto planOf = [](const std::string& type, const std::string& period) {
        return AccountOfPlan(
            "<Calendars><Calendar><UID>7</UID><IsBaseCalendar>1</IsBaseCalendar><Exceptions><Exception>"
            "<EnteredByOccurrences>1</EnteredByOccurrences><TimePeriod><FromDate>2012-02-01T00:00:00</FromDate>"
            "<ToDate>2012-03-31T23:59:00</ToDate></TimePeriod><Occurrences>9</Occurrences><Type>" +
            type + "</Type><Period>" + period +
            "</Period><DaysOfWeek>2</DaysOfWeek><MonthItem>0</MonthItem><MonthPosition>0</MonthPosition><Month>0"
            "</Month><MonthDay>24</MonthDay><DayWorking>0</DayWorking></Exception></Exceptions></Calendar></Calendars>"
            "<Resources><Resource><UID>1</UID><CalendarUID>7</CalendarUID></Resource></Resources>");
    };
    const std::string exception = "Calendars[2]/Calendar[1]/Exceptions[1]/Exception[1]/";
    const auto recurring = planOf("6", "1");
    for (const auto* const name :
         {"EnteredByOccurrences[1]", "TimePeriod[1]/FromDate[1]", "TimePeriod[1]/ToDate[1]", "Occurrences[1]",
          "Type[1]", "Period[1]", "DaysOfWeek[1]", "MonthDay[1]", "DayWorking[1]"}) {
        EXPECT_EQ(recurring.at(exception + name), "lost") << name;
    }
    EXPECT_EQ(recurring.count("recurring-exception"), 1U);
    // Every third day: each day of them arrives.
    const auto everyThirdDay = planOf("1", "3");
    EXPECT_EQ(everyThirdDay.at(exception + "Period[1]"), "lost");
    EXPECT_EQ(everyThirdDay.at(exception + "Occurrences[1]"), "lost");
    EXPECT_EQ(everyThirdDay.at(exception + "Month[1]"), "default");
    EXPECT_EQ(everyThirdDay.at(exception + "TimePeriod[1]/FromDate[1]"), "carried");
    EXPECT_EQ(everyThirdDay.count("recurring-exception"), 1U);
    // Of one that comes every day the number of days follows from the dates.
    const auto daily = planOf("1", "1");
    EXPECT_EQ(daily.at(exception + "Occurrences[1]"), "derived");
    EXPECT_EQ(daily.at(exception + "Period[1]"), "default");
    EXPECT_EQ(daily.count("recurring-exception"), 0U);
}

TEST(FatesInContext, anExceptionOf2003IsDerivedWhereTheLaterFormSaysTheSame) {
    const auto planOf = [](const std::string& exceptions) {
        return AccountOfPlan(
            "<Calendars><Calendar><UID>7</UID><IsBaseCalendar>1</IsBaseCalendar><WeekDays><WeekDay><DayType>0</DayType>"
            "<DayWorking>0</DayWorking><TimePeriod><FromDate>2012-02-01T00:00:00</FromDate><ToDate>2012-02-01T23:59:00"
            "</ToDate></TimePeriod></WeekDay></WeekDays>" +
            exceptions +
            "</Calendar></Calendars><Resources><Resource><UID>1</UID><CalendarUID>7</CalendarUID></Resource>"
            "</Resources>");
    };
    const std::string weekDay = "Calendars[2]/Calendar[1]/WeekDays[1]/WeekDay[1]/";
    const auto alone = planOf("");
    const auto twice = planOf(
        "<Exceptions><Exception><TimePeriod><FromDate>2012-02-01T00:00:00</FromDate><ToDate>2012-02-01T23:59:00"
        "</ToDate></TimePeriod><Type>1</Type><DayWorking>0</DayWorking></Exception></Exceptions>");
    for (const auto* const name : {"DayWorking[1]", "TimePeriod[1]/FromDate[1]", "TimePeriod[1]/ToDate[1]"}) {
        EXPECT_EQ(alone.at(weekDay + name), "lost") << name;
        EXPECT_EQ(twice.at(weekDay + name), "derived") << name;
    }
    EXPECT_EQ(alone.at(weekDay + "DayType[1]"), "default");
    EXPECT_EQ(alone.count("exception-2003"), 1U);
    EXPECT_EQ(twice.count("exception-2003"), 0U);
}

// In a document both times are those of one day, so that such a span has no length.
TEST(FatesInContext, workingTimeUntilTheNextMorningIsOvernight) {
    const auto fateOf = [](const std::string& from, const std::string& to) {
        const AccountOfPlan plan(
            "<Calendars><Calendar><UID>7</UID><WeekDays><WeekDay><DayType>2</DayType><DayWorking>1</DayWorking>"
            "<WorkingTimes><WorkingTime><FromTime>" +
            from + "</FromTime><ToTime>" + to +
            "</ToTime></WorkingTime></WorkingTimes></WeekDay></WeekDays></Calendar></Calendars>"
            "<Resources><Resource><UID>1</UID><CalendarUID>7</CalendarUID></Resource></Resources>");
        const auto fate =
            plan.at("Calendars[2]/Calendar[1]/WeekDays[1]/WeekDay[1]/WorkingTimes[1]/WorkingTime[1]/ToTime[1]");
        EXPECT_EQ(plan.count("overnight-time"), fate == "changed" ? 1U : 0U);
        return fate;
    };
    EXPECT_EQ(fateOf("22:00:00", "06:00:00"), "changed");
    EXPECT_EQ(fateOf("08:00:00", "08:00:00"), "changed");
    EXPECT_EQ(fateOf("00:00:00", "00:00:00"), "changed");
    EXPECT_EQ(fateOf("08:00:00", "08:00:01"), "carried");
    EXPECT_EQ(fateOf("22:00:00", "23:59:59"), "carried");
}

// Once for each, by its name, however many days and calendars that is.
TEST(FatesInContext, resourcesThatLackTheirWeekAreToldOnce) {
    const auto resource = [](int uid, const std::string& name, int calendar) {
        return "<Resource><UID>" + std::to_string(uid) + "</UID><Name>" + name + "</Name><CalendarUID>" +
               std::to_string(calendar) + "</CalendarUID></Resource>";
    };
    const auto dayOff = [](int day) {
        return "<WeekDay><DayType>" + std::to_string(day) + "</DayType><DayWorking>0</DayWorking></WeekDay>";
    };
    const AccountOfPlan plan(
        "<Calendars><Calendar><UID>6</UID><IsBaseCalendar>1</IsBaseCalendar><WeekDays>" + dayOff(2) +
        "</WeekDays></Calendar><Calendar><UID>7</UID><BaseCalendarUID>6</BaseCalendarUID><WeekDays>" + dayOff(5) +
        dayOff(6) +
        "</WeekDays></Calendar><Calendar><UID>8</UID><BaseCalendarUID>1</BaseCalendarUID></Calendar></Calendars>"
        "<Resources>" +
        resource(0, "Unassigned", 7) + resource(1, "Anna", 7) + resource(2, "Bob", 8) + resource(3, "Cleo", 6) +
        resource(4, "Dan", 7) + resource(5, "Eve", 99) + "</Resources>");
    const auto& loss = plan.loss("resource-week");
    EXPECT_EQ(loss.count, 3U);
    ASSERT_EQ(loss.where.size(), 3U);
    EXPECT_EQ(loss.element, "Resources/Resource/CalendarUID");
    EXPECT_EQ(loss.where[0].name, "Anna");
    EXPECT_EQ(loss.where[0].path, "/Project/Resources[1]/Resource[2]/CalendarUID[1]");
    EXPECT_EQ(loss.where[1].name, "Dan");
    EXPECT_EQ(loss.where[2].name, "Eve");
    EXPECT_EQ(plan.at("Resources[1]/Resource[1]/CalendarUID[1]"), "default");
    EXPECT_EQ(plan.at("Resources[1]/Resource[2]/CalendarUID[1]"), "shaping");
    EXPECT_EQ(plan.at("Resources[1]/Resource[6]/CalendarUID[1]"), "lost");
    EXPECT_EQ(plan.at("Calendars[2]/Calendar[2]/WeekDays[1]/WeekDay[1]/DayType[1]"), "lost");
    EXPECT_EQ(plan.at("Calendars[2]/Calendar[2]/WeekDays[1]/WeekDay[1]/DayWorking[1]"), "lost");
}

// The importer never reads what a calendar is based on.
TEST(FatesInContext, aResourceLacksTheWeekOfItsBaseCalendar) {
    const std::string calendars =
        "<Calendars><Calendar><UID>6</UID><IsBaseCalendar>1</IsBaseCalendar></Calendar><Calendar><UID>7</UID>"
        "<BaseCalendarUID>6</BaseCalendarUID></Calendar><Calendar><UID>8</UID><BaseCalendarUID>1</BaseCalendarUID>"
        "</Calendar></Calendars>";
    const std::string resources =
        "<Resources><Resource><UID>1</UID><Name>Anna</Name><CalendarUID>7</CalendarUID></Resource>"
        "<Resource><UID>2</UID><Name>Bob</Name><CalendarUID>8</CalendarUID></Resource></Resources>";
    for (const auto& content : {calendars + resources, resources + calendars}) {
        const AccountOfPlan plan(content);
        EXPECT_EQ(plan.count("resource-week"), 1U);
        EXPECT_EQ(plan.loss("resource-week").where[0].name, "Anna");
        EXPECT_EQ(plan.loss("resource-week").where[0].uid, "1");
    }
}

TEST(FatesInContext, noUnitsAreLostToo) {
    const auto fateOf = [](const std::string& resource, const std::string& units) {
        const AccountOfPlan plan(tasksOf(taskOf(1)) +
                                 "<Resources><Resource><UID>1</UID></Resource></Resources><Assignments><Assignment>"
                                 "<TaskUID>1</TaskUID><ResourceUID>" +
                                 resource + "</ResourceUID><Units>" + units + "</Units></Assignment></Assignments>");
        const auto fate = plan.at("Assignments[1]/Assignment[1]/Units[1]");
        EXPECT_EQ(plan.count("assignment-units"), fate == "lost" ? 1U : 0U);
        return fate;
    };
    EXPECT_EQ(fateOf("1", "0"), "lost");
    EXPECT_EQ(fateOf("1", "0.0"), "lost");
    EXPECT_EQ(fateOf("1", "1.0"), "default");
    EXPECT_EQ(fateOf("1", ""), "default");
    EXPECT_EQ(fateOf("-65535", "0"), "default");
    EXPECT_EQ(fateOf("-65535", "0.5"), "lost");
}

TEST(FatesInContext, aFurtherBaselineIsToldOnce) {
    const std::string baseline =
        "<Baseline><Number>11</Number><Start>2012-01-12T08:00:00</Start><Work>PT8H0M0S</Work><Cost>5</Cost></Baseline>";
    const AccountOfPlan plan(tasksOf(taskOf(1, "<Start>2012-01-11T08:00:00</Start>" + baseline + baseline)) +
                             "<Resources><Resource><UID>1</UID><Baseline><Number>12</Number><Cost>5</Cost></Baseline>"
                             "</Resource></Resources>");
    ASSERT_EQ(plan.account.losses.size(), 1U);
    EXPECT_EQ(plan.count("further-baseline"), 3U);
    EXPECT_EQ(plan.loss("further-baseline").where[0].value, "11");
    for (const auto* const name : {"Number[1]", "Start[1]", "Work[1]", "Cost[1]"}) {
        EXPECT_EQ(plan.at(std::string("Tasks[1]/Task[1]/Baseline[1]/") + name), "lost") << name;
    }
    // Without a number it is none at all.
    EXPECT_EQ(AccountOfPlan(tasksOf(taskOf(1, "<Baseline><Cost>5</Cost></Baseline>"))).count("baseline-cost"), 1U);
}

TEST(FatesInContext, ofADroppedLinkItsLagIsLostWithIt) {
    const auto planOf = [](const std::string& type, const std::string& lag) {
        return AccountOfPlan(tasksOf(taskOf(1, "<PredecessorLink><PredecessorUID>9</PredecessorUID><Type>" + type +
                                                   "</Type><LinkLag>" + lag + "</LinkLag></PredecessorLink>")));
    };
    const std::string link = "Tasks[1]/Task[1]/PredecessorLink[1]/";
    const auto plain = planOf("1", "0");
    EXPECT_EQ(plain.at(link + "Type[1]"), "default");
    EXPECT_EQ(plain.at(link + "LinkLag[1]"), "default");
    const auto other = planOf("3", "4800");
    EXPECT_EQ(other.at(link + "Type[1]"), "lost");
    EXPECT_EQ(other.at(link + "LinkLag[1]"), "lost");
    EXPECT_EQ(other.count("dropped-link"), 1U);
    EXPECT_EQ(other.count("link-lag"), 0U);
}

TEST(FatesInContext, theSeasonOfTheImportChangesDates) {
    ServicesInMemory world;
    world.clock.set(utcInstant(2012, 7, 9, 8));
    world.machine.addFile(
        "/p.xml",
        R"(<Project xmlns="http://schemas.microsoft.com/project"><StartDate>2012-01-09T08:00:00</StartDate></Project>)");
    const MSPCServices summer{world.clock,   *MSPCTimeZone::named("Europe/Berlin"),
                              world.log,     world.settings,
                              world.machine, world.randomSource};
    const auto account = MSPDIAccountOfPlan("/p.xml", summer);
    ASSERT_EQ(account.losses.size(), 1U);
    EXPECT_EQ(account.losses[0].kind, "summer-time");
}

TEST(FatesInContext, workingHoursThatAreNotWholeAreChanged) {
    const auto fateOf = [](const std::string& name, const std::string& minutes) {
        const AccountOfPlan plan("", "<" + name + ">" + minutes + "</" + name + ">");
        EXPECT_EQ(plan.count("whole-hours"), plan.at(name + "[1]") == "changed" ? 1U : 0U);
        return plan.at(name + "[1]");
    };
    EXPECT_EQ(fateOf("MinutesPerDay", "480"), "shaping");
    EXPECT_EQ(fateOf("MinutesPerDay", "450"), "changed");
    EXPECT_EQ(fateOf("MinutesPerDay", "0"), "shaping");
    EXPECT_EQ(fateOf("MinutesPerDay", "-60"), "changed");  // 8 hours
    EXPECT_EQ(fateOf("MinutesPerWeek", "2400"), "shaping");
    EXPECT_EQ(fateOf("MinutesPerWeek", "2250"), "changed");
    EXPECT_EQ(fateOf("MinutesPerWeek", "x"), "shaping");
}

TEST(FatesInContext, aValueThatArrivesAsAnotherIsChanged) {
    const auto kindOf = [](const std::string& name, const std::string& value) {
        const AccountOfPlan plan(tasksOf(taskOf(1, "<" + name + ">" + value + "</" + name + ">")));
        const auto fate = plan.at("Tasks[1]/Task[1]/" + name + "[1]");
        return plan.account.losses.empty() ? fate : fate + " " + std::string(plan.account.losses[0].kind);
    };
    EXPECT_EQ(kindOf("Start", "2012-01-11T08:30:00"), "carried");
    EXPECT_EQ(kindOf("Start", "2012-01-31T08:30:00"), "carried");
    EXPECT_EQ(kindOf("Start", "2012-01-11"), "carried");
    EXPECT_EQ(kindOf("Start", "2012-01-11T08:30"), "changed odd-date");
    EXPECT_EQ(kindOf("Finish", "2012-01-11T08:30:00.5"), "changed odd-date");
    for (const auto* const name : {"Work", "Duration"}) {
        for (const auto* const value : {"PT8H0M0S", "PT480M", "PT8H", "P0DT8H0M0S", "PT999999999H59M59S"}) {
            EXPECT_EQ(kindOf(name, value), "carried") << name << ' ' << value;
        }
        for (const auto* const value : {"-PT5H0M0S", "P4DT1H0M0S", "PT99999999999H0M0S", "PT1H0M0.4S"}) {
            EXPECT_EQ(kindOf(name, value), "changed odd-duration") << name << ' ' << value;
        }
    }
    EXPECT_EQ(kindOf("FixedCost", "5"), "carried");
    EXPECT_EQ(kindOf("FixedCost", "5.25"), "carried");
    EXPECT_EQ(kindOf("FixedCost", "5.0000001"), "changed rounded-amount");
    EXPECT_EQ(kindOf("PercentComplete", "100"), "carried");
    EXPECT_EQ(kindOf("PercentComplete", "150"), "changed completion");
    EXPECT_EQ(kindOf("PercentComplete", "33.5"), "changed completion");
    EXPECT_EQ(kindOf("PercentComplete", "33.0"), "carried");
    EXPECT_EQ(kindOf("PercentComplete", "0.5"), "lost completion");
    EXPECT_EQ(kindOf("PercentWorkComplete", "33.5"), "changed completion");
    EXPECT_EQ(kindOf("Name", "\xC3\xA9t\xC3\xA9"), "carried");
    EXPECT_EQ(kindOf("Name", "caf\xE9"), "changed unreadable-characters");
    EXPECT_EQ(kindOf("Notes", "a\x01z"), "changed unreadable-characters");
}

TEST(FatesInContext, anAmountOfAResourceThatArrivesAsAnotherIsChanged) {
    const auto kindOf = [](const std::string& name, const std::string& value) {
        const AccountOfPlan plan("<Resources><Resource><UID>1</UID><" + name + ">" + value + "</" + name +
                                 "></Resource></Resources>");
        const auto fate = plan.at("Resources[1]/Resource[1]/" + name + "[1]");
        return plan.account.losses.empty() ? fate : fate + " " + std::string(plan.account.losses[0].kind);
    };
    EXPECT_EQ(kindOf("CostPerUse", "333"), "carried");
    EXPECT_EQ(kindOf("CostPerUse", "0.4"), "changed rounded-amount");
    EXPECT_EQ(kindOf("StandardRate", "95.5"), "carried");
    EXPECT_EQ(kindOf("StandardRate", "95,5"), "changed rounded-amount");
    EXPECT_EQ(kindOf("MaxUnits", "0.5"), "carried");
    EXPECT_EQ(kindOf("MaxUnits", "0.33333333"), "changed rounded-amount");
    EXPECT_EQ(kindOf("MaxUnits", "0"), "changed resource-units");
    EXPECT_EQ(kindOf("MaxUnits", ""), "default");
}
