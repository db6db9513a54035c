#include "MendFixture.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

// Without a level a task would be left outside the outline, which an import does not tell.
TEST_F(MendTest, givesATaskALevelWhereItsOwnCannotBeRead) {
    const std::string summary = "<Summary>1</Summary>";
    const auto unreadable = [](int uid, const std::string& rest = {}) {
        return "<Task><UID>" + std::to_string(uid) + "</UID><OutlineLevel>x</OutlineLevel>" + rest + "</Task>";
    };
    expectMended(planOf(tasks(task(0, 0, summary) + unreadable(1, summary) + unreadable(2) + task(3, 2) +
                              unreadable(4) + unreadable(5, "<IsNull>1</IsNull>") + task(6, 1) + unreadable(7))),
                 planOf(tasks(task(0, 0, summary) + task(1, 1, summary) + task(2, 2) + task(3, 2) + task(4, 2) +
                              task(5, 0, "<IsNull>1</IsNull>") + task(6, 1) + task(7, 1))),
                 "outline 5");
}

// Any other number would leave it outside the outline, and the project without its root.
TEST_F(MendTest, givesTheRootItsOwnUID) {
    const auto root = [](const std::string& uid, int level) {
        return "<Task>" + uid + "<OutlineLevel>" + std::to_string(level) + "</OutlineLevel><Summary>1</Summary></Task>";
    };
    const auto wanted = planOf(tasks(root("<UID>0</UID>", 0) + task(1, 1)));
    expectMended(planOf(tasks(root("", 0) + task(1, 1))), wanted, "missing-uid 1");
    expectMended(planOf(tasks(root("", -1) + task(1, 1))), wanted, "missing-uid 1, root-task 1");
    // Not where it stands among others, or another one has the number.
    expectMended(planOf(tasks(task(0, 0, "<Summary>1</Summary>") + root("", 0))),
                 planOf(tasks(task(0, 0, "<Summary>1</Summary>") + root("<UID>1</UID>", 0))), "missing-uid 1");
    expectMended(planOf(tasks(root("", 1) + task(1, 2))), planOf(tasks(root("<UID>2</UID>", 1) + task(1, 2))),
                 "missing-uid 1");
}

TEST_F(MendTest, makesCostResourcesMaterialAndUnknownOnesWork) {
    const std::string resources =
        "  <Resources><Resource><UID>1</UID><Type>2</Type><Rates/></Resource>"
        "<Resource><UID>2</UID><Type>7</Type></Resource><Resource><UID>0</UID><Type>9</Type></Resource></Resources>\n";
    auto wanted = with(planOf(resources), "<Type>2</Type>", "<Type>0</Type><IsCostResource>1</IsCostResource>");
    wanted = with(wanted, "<Type>7</Type>", "<Type>1</Type>");
    expectMended(planOf(resources), wanted, "resource-type 2");
}

// Whatever a task's value is, the importer stops at it, and nothing else leaves the copy.
TEST_F(MendTest, leavesOutValuesThatEndTheImport) {
    for (const std::string bad :
         {"<IsNull>maybe</IsNull>", "<Summary/>", "<Duration>8 hours</Duration>", "<Start>tomorrow</Start>",
          "<Finish>2012-01-09X08:00:00</Finish>", "<Work>P1D</Work>", "<Type>9</Type>", "<Type>x</Type>",
          "<PercentComplete>half</PercentComplete>", "<PercentWorkComplete>-</PercentWorkComplete>",
          "<FixedCost>much</FixedCost>", "<ConstraintType>x</ConstraintType>"}) {
        const auto plan = planOf(tasks("<Task><UID>1</UID><Name>a</Name>" + bad + "<Priority>1</Priority></Task>"));
        expectMended(plan, with(plan, bad, ""), "unreadable-value 1");
    }
}

TEST_F(MendTest, leavesOutADateOnlyWhereItIsRead) {
    const std::string date = "<ConstraintDate>soon</ConstraintDate>";
    const auto plan = planOf(tasks(task(0, 0) + task(1, 1, "<ConstraintType>0</ConstraintType>" + date) +
                                   task(2, 1, "<ConstraintType>4</ConstraintType>" + date)));
    auto wanted = with(plan, "</OutlineLevel>", "</OutlineLevel><Summary>1</Summary>");
    wanted.erase(wanted.rfind(date), date.size());
    expectMended(plan, wanted, "root-task 1, unreadable-value 1");
}

TEST_F(MendTest, leavesOutAllUnreadableValuesOfATaskWithTheirLines) {
    const auto plan =
        planOf(tasks("\n    <Task>\n      <UID>1</UID>\n      <Start>x</Start>\n      <Type>y</Type>\n"
                     "      <Notes>n</Notes>\n    </Task>\n  "));
    expectMended(plan, with(plan, "      <Start>x</Start>\n      <Type>y</Type>\n", ""), "unreadable-value 2");
    EXPECT_THAT(mend(plan).steps[0].where,
                ElementsAre("Task UID='1' name='': Start 'x'", "Task UID='1' name='': Type 'y'"));
}

TEST_F(MendTest, leavesOutValuesThatSayNothingFirst) {
    const std::string empty = "<FinishDate></FinishDate>";
    const auto plan = planOf("  <ScheduleFromStart>0</ScheduleFromStart>" + empty + "\n");
    expectMended(plan, with(plan, empty, ""), "unreadable-value 1");
}

TEST_F(MendTest, leavesOutWhatHoldsElementsInsteadOfAText) {
    const auto plan = planOf(tasks(task(1, 1)));
    const std::string date = "  <StartDate>2012-01-09T08:00:00</StartDate>\n";
    expectMended(with(plan, date, "  <StartDate><x/></StartDate>\n"), with(plan, date, ""), "unreadable-value 1");
}

TEST_F(MendTest, leavesOutUnreadableValuesOfTheProject) {
    for (const std::string bad : {"<FinishDate>x</FinishDate><ScheduleFromStart>0</ScheduleFromStart>",
                                  "<ScheduleFromStart>maybe</ScheduleFromStart>", "<WorkFormat>w</WorkFormat>"}) {
        const auto plan = planOf("  " + bad + "\n");
        const auto mended = mend(plan);
        EXPECT_EQ(mended.verdict, MSPDIMendVerdict::Mended) << bad << mended.obstacle;
        EXPECT_EQ(stepsOf(mended), "unreadable-value 1") << bad;
    }
}

TEST_F(MendTest, leavesOutUnreadableValuesOfResourcesAndTheirCalendars) {
    const std::string resource =
        "  "
        "<Resources><Resource><UID>1</UID><MaxUnits>x</MaxUnits><CalendarUID>2</CalendarUID></Resource></Resources>\n";
    const std::string calendars =
        "  "
        "<Calendars><Calendar><UID>1</UID><IsBaseCalendar>1</IsBaseCalendar></Calendar><Calendar><UID>2</UID><WeekDays>"
        "<WeekDay><DayType>2</DayType><DayWorking>1</"
        "DayWorking><WorkingTimes><WorkingTime><FromTime>2012-01-09X8:00:00</FromTime>"
        "<ToTime>17:00:00</ToTime></WorkingTime></WorkingTimes></WeekDay></WeekDays></Calendar></Calendars>\n";
    const auto plan = planOf(resource, calendars);
    expectMended(plan, with(with(plan, "<MaxUnits>x</MaxUnits>", ""), "<FromTime>2012-01-09X8:00:00</FromTime>", ""),
                 "unreadable-value 2");
}

TEST_F(MendTest, leavesOutUnreadableValuesOfAssignments) {
    const std::string start = "  <Assignments><Assignment>";
    const std::string end = "</Assignment></Assignments>\n";
    const auto plan = planOf(tasks(task(1, 1)) + start + "<TaskUID>x</TaskUID><ResourceUID>1</ResourceUID>" + end);
    expectMended(plan, with(plan, "<TaskUID>x</TaskUID>", ""), "unreadable-value 1");
    const auto other = planOf(tasks(task(1, 1)) + start + "<TaskUID>1</TaskUID><ResourceUID>x</ResourceUID>" + end);
    expectMended(other, with(other, "<ResourceUID>x</ResourceUID>", ""), "unreadable-value 1");
}

TEST_F(MendTest, leavesOutUnreadableValuesOfBaselines) {
    const auto plan = planOf(tasks(task(1, 1,
                                        "<Start>2012-01-09T08:00:00</Start><Baseline><Number>3</Number><Start>x</Start>"
                                        "<Work>PT8H0M0S</Work></Baseline>")));
    expectMended(plan, with(plan, "<Start>x</Start>", ""), "unreadable-value 1");
}

TEST_F(MendTest, leavesOutDefinitionsTypesThatAreNoNumbers) {
    const std::string definitions =
        "  <ExtendedAttributes><ExtendedAttribute><FieldID>7</FieldID><FieldName>Text1</FieldName><CFType>x</CFType>"
        "</ExtendedAttribute></ExtendedAttributes>\n";
    const auto plan = planOf(definitions + tasks(task(1, 1,
                                                      "<ExtendedAttribute><FieldID>7</FieldID><Value>v</Value>"
                                                      "</ExtendedAttribute>")));
    expectMended(plan, with(plan, "<CFType>x</CFType>", ""), "unreadable-value 1");
}

// The last one counts; without it the one before it would.
TEST_F(MendTest, leavesOutAValueWithAllThatSayTheSameBesideIt) {
    const std::string bad = "<Start>x</Start>";
    const auto plan = planOf(tasks(task(1, 1, bad + bad + "<Name>a</Name>" + bad)));
    expectMended(plan, planOf(tasks(task(1, 1, "<Name>a</Name>"))), "unreadable-value 3");
}

// They fail alike, so that without one of them the failure seems to be the same.
TEST_F(MendTest, leavesOutSeveralValuesOfOneText) {
    const auto plan =
        planOf(tasks(task(1, 1, "<Start>x</Start><Finish>x</Finish><Duration>x</Duration><Name>x</Name>")));
    expectMended(plan, planOf(tasks(task(1, 1, "<Name>x</Name>"))), "unreadable-value 3");
    std::string links;
    for (int number = 0; number < 10; ++number) {
        links += "<PredecessorLink><PredecessorUID>x</PredecessorUID></PredecessorLink>";
    }
    EXPECT_EQ(stepsOf(mend(planOf(tasks(task(1, 1, links))))), "unreadable-value 10");
}

TEST_F(MendTest, leavesOutBothDatesOfAnException) {
    const std::string from = "<FromDate>x</FromDate>";
    const auto plan =
        planOf("", with(standardCalendar(), "</Calendar>",
                        "<Exceptions><Exception><TimePeriod>" + from +
                            "<ToDate>x</ToDate></TimePeriod>"
                            "<Type>1</Type><DayWorking>0</DayWorking></Exception></Exceptions></Calendar>"));
    expectMended(plan, with(plan, from, ""), "unreadable-value 1");
}

// More pieces of one object than are looked at together.
TEST_F(MendTest, leavesOutUnreadableValuesOfManyPieces) {
    std::string links;
    std::string wanted;
    for (int number = 0; number < 200; ++number) {
        const auto link = [&](const std::string& uid) {
            return "<PredecessorLink>" + uid + "<Type>1</Type></PredecessorLink>";
        };
        const bool isBad = number % 3 == 0;
        links += link(isBad ? "<PredecessorUID>x</PredecessorUID>" : "<PredecessorUID>2</PredecessorUID>");
        wanted += link(isBad ? "" : "<PredecessorUID>2</PredecessorUID>");
    }
    expectMended(planOf(tasks(task(1, 1, links) + task(2, 1))), planOf(tasks(task(1, 1, wanted) + task(2, 1))),
                 "unreadable-value 67");
}

namespace {

std::string record(const std::string& day, const std::string& work = "PT8H0M0S") {
    return "<TimephasedData><Type>1</Type><Start>2012-01-" + day + "T08:00:00</Start><Finish>2012-01-" + day +
           "T17:00:00</Finish><Value>" + work + "</Value></TimephasedData>";
}

std::string assignmentsOf(const std::string& content) {
    return "  <Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID>-1</ResourceUID>" + content +
           "</Assignment></Assignments>\n";
}

}  // namespace

TEST_F(MendTest, leavesOutTheTimephasedDataOfTasksWithOthersUnderThem) {
    const auto family = tasks(task(1, 1, "<Summary>1</Summary>") + task(2, 2));
    const std::string others = "<TimephasedData><Type>4</Type></TimephasedData>";
    expectMended(planOf(family + assignmentsOf(record("09") + record("11") + others)),
                 planOf(family + assignmentsOf(others)), "split-roll-up 2");
}

// Two records of a Saturday hold no working time together.
TEST_F(MendTest, leavesOutTimephasedDataWithoutWorkingTime) {
    const auto saturday = record("14") + record("14");
    expectMended(planOf(tasks(task(1, 1)) + assignmentsOf(saturday + record("16"))),
                 planOf(tasks(task(1, 1)) + assignmentsOf("")), "split-pieces 3");
}

TEST_F(MendTest, tellsWhatStandsInTheWayOfPlansThatGrowBeyondMeasure) {
    const std::string exception =
        "<Exceptions><Exception><DayWorking>0</DayWorking><Type>1</Type><TimePeriod><FromDate>0001-01-01T00:00:00"
        "</FromDate><ToDate>99999-01-01T00:00:00</ToDate></TimePeriod></Exception></Exceptions>";
    const auto mended = mend(planOf("", with(standardCalendar(), "</Calendar>", exception + "</Calendar>")));
    EXPECT_EQ(mended.verdict, MSPDIMendVerdict::NotMendable);
    EXPECT_THAT(mended.obstacle, StartsWith("Too many calendar events"));
}

// A type or a name of the same text is not what could not be read.
TEST_F(MendTest, leavesGoodValuesOfTheSameTextAlone) {
    const std::string date = "<ConstraintDate>4</ConstraintDate>";
    const auto plan = planOf(tasks(task(1, 1, "<ConstraintType>4</ConstraintType>" + date)));
    expectMended(plan, with(plan, date, ""), "unreadable-value 1");
    const auto exceptionOf = [](const std::string& from) {
        return planOf("", with(standardCalendar(), "</Calendar>",
                               "<Exceptions><Exception><Name>1</Name><Type>1</Type><DayWorking>0</DayWorking>"
                               "<TimePeriod>" +
                                   from +
                                   "<ToDate>2012-01-10T00:00:00</ToDate></TimePeriod></Exception>"
                                   "</Exceptions></Calendar>"));
    };
    expectMended(exceptionOf("<FromDate>1</FromDate>"), exceptionOf(""), "unreadable-value 1");
}

// What was to blame in one task leaves the later ones only where it stands in the way there, too.
TEST_F(MendTest, leavesOutWhatWasToBlameBeforeWhereItIsReadOnly) {
    const std::string date = "<ConstraintDate>soon</ConstraintDate>";
    const std::string dated = "<ConstraintType>4</ConstraintType>";
    const auto plan = planOf(tasks(task(1, 1, dated + date) + task(2, 1, date) + task(3, 1, dated + date) +
                                   task(4, 1, "<IsNull>1</IsNull>" + dated + date)));
    const auto wanted = planOf(tasks(task(1, 1, dated) + task(2, 1, date) + task(3, 1, dated) +
                                     task(4, 1, "<IsNull>1</IsNull>" + dated + date)));
    expectMended(plan, wanted, "unreadable-value 2");
}

TEST_F(MendTest, leavesOutWhatWasToBlameBeforeInTheOrderOfReading) {
    const std::string several = "<Work>x</Work><Start>y</Start><Duration>x</Duration><Type>9</Type>";
    const auto plan = planOf(tasks(task(1, 1, several) + task(2, 1, "<Start>z</Start>" + several)));
    const auto mended = mend(plan, {.only = {}, .isAll = false, .mostPlaces = 9});
    EXPECT_EQ(mended.bytes, planOf(tasks(task(1, 1) + task(2, 1))));
    std::vector<std::string> where;
    for (const auto* const place :
         {"Task UID='1' name='': Duration 'x'", "Task UID='1' name='': Start 'y'", "Task UID='1' name='': Work 'x'",
          "Task UID='1' name='': Type '9'", "Task UID='2' name='': Duration 'x'", "Task UID='2' name='': Start 'y'",
          "Task UID='2' name='': Start 'z'", "Task UID='2' name='': Work 'x'", "Task UID='2' name='': Type '9'"}) {
        where.emplace_back(place);
    }
    ASSERT_EQ(mended.steps.size(), 1U);
    EXPECT_EQ(mended.steps[0].where, where);
}

namespace {

// Counts how often the time is asked for: each date that is mapped does so.
class CountingClock final : public MSPCClock {
public:
    explicit CountingClock(MSPCInstant now) : _now(now) {}
    [[nodiscard]] MSPCInstant now() const override {
        ++count;
        return _now;
    }
    mutable std::size_t count = 0;

private:
    MSPCInstant _now;
};

// How much work mending and importing take, in dates that are mapped.
class MendCostTest : public MendTest {
protected:
    std::size_t ofImport(const std::string& plan) {
        _clock.count = 0;
        static_cast<void>(MSPDIImportBytesInMemory("Plan.xml", plan, _services, MSPDIMemoryKeeping::Names));
        return _clock.count;
    }
    std::size_t ofMend(const std::string& plan, MSPDIMended& mended) {
        _clock.count = 0;
        mended = MSPDIMendPlan("Plan.xml", plan, _services);
        return _clock.count;
    }

private:
    CountingClock _clock{utcInstant(2012, 1, 9, 8)};
    MSPCServices _services{_clock, MSPCTimeZone::fixed(0), log, settings, machine, randomSource};
};

}  // namespace

// Each would take a try of its own.
TEST_F(MendCostTest, triesATaskWithBadValuesOfKnownKindsOnce) {
    std::string content;
    for (int uid = 1; uid <= 300; ++uid) {
        content += task(uid, 1,
                        "<Start>2012-01-09T08:00:00</Start><Finish>2012-01-09T09:00:00</Finish>"
                        "<PercentComplete>x</PercentComplete><PercentWorkComplete>y" +
                            std::to_string(uid) + "</PercentWorkComplete><FixedCost>z</FixedCost>");
    }
    MSPDIMended mended;
    const auto cost = ofMend(planOf(tasks(content)), mended);
    ASSERT_EQ(stepsOf(mended), "unreadable-value 900");
    EXPECT_LE(cost, 3 * ofImport(mended.bytes));
}

TEST_F(MendCostTest, triesNothingWhereAPlanGrowsBeyondMeasure) {
    const std::string exception =
        "<Exceptions><Exception><DayWorking>0</DayWorking><Type>1</Type><TimePeriod><FromDate>0001-01-01T00:00:00"
        "</FromDate><ToDate>9999-01-01T00:00:00</ToDate></TimePeriod></Exception></Exceptions>";
    std::string baselines;
    for (int number = 0; number <= 10; ++number) {
        baselines += "<Baseline><Number>" + std::to_string(number) + "</Number></Baseline>";
    }
    const auto calendar = with(standardCalendar(), "</Calendar>", exception + "</Calendar>");
    const auto plan = planOf(tasks(task(1, 1, baselines)), calendar);
    // With something to mend before that is reached.
    for (const auto& refused : {plan, with(plan, "<StartDate>", "<StartDate>x")}) {
        MSPDIMended mended;
        EXPECT_LE(ofMend(refused, mended), 3 * ofImport(plan));
        EXPECT_EQ(mended.verdict, MSPDIMendVerdict::NotMendable);
        EXPECT_THAT(mended.obstacle, StartsWith("Too many calendar events"));
    }
}
