#include "MSPDIAccountOfPlan.h"
#include "MSPDIKinds.h"
#include "MSPDIMendForLoss.h"
#include "MendFixture.h"

using testing::HasSubstr;
using testing::Not;

namespace {

// What is done by name to plans that import.
class ImprovementTest : public MendTest {
protected:
    std::size_t lossesOf(const std::string& plan, std::string_view kind) {
        machine.addFile("/Plan.xml", plan);
        for (const auto& loss : MSPDIAccountOfPlan("/Plan.xml", services).losses) {
            if (loss.kind == kind) {
                return loss.count;
            }
        }
        return 0;
    }
    std::size_t allLossesOf(const std::string& plan) {
        machine.addFile("/Plan.xml", plan);
        const auto account = MSPDIAccountOfPlan("/Plan.xml", services);
        return account.leaves[MSPDIFateIndex(MSPDIFate::Lost)] + account.leaves[MSPDIFateIndex(MSPDIFate::Changed)];
    }
    // Expects that the step that is named for a kind of loss takes all of it away, adds no other, and is through.
    std::string saved(const std::string& plan, std::string_view kind) {
        EXPECT_GT(lossesOf(plan, kind), 0U) << kind;
        const auto* step = MSPDIMendStepForLoss(kind);
        EXPECT_EQ(mend(plan).verdict, MSPDIMendVerdict::ImportsAsIs);
        const MSPDIMendOptions options{.only = {std::string(step->name)}};
        const auto mended = mend(plan, options);
        EXPECT_EQ(mended.verdict, MSPDIMendVerdict::Mended) << kind << mended.obstacle;
        EXPECT_EQ(lossesOf(mended.bytes, kind), 0U) << kind << mended.bytes;
        EXPECT_LE(allLossesOf(mended.bytes), allLossesOf(plan)) << kind;
        EXPECT_EQ(mend(mended.bytes, options).verdict, MSPDIMendVerdict::ImportsAsIs) << kind << mended.bytes;
        return mended.bytes;
    }
};

std::string named(const std::string& name) {
    return "<Name>" + name + "</Name>";
}

}  // namespace

TEST_F(ImprovementTest, deadlinesBecomeAFieldOfTheirTasks) {
    const auto plan =
        planOf(tasks(task(1, 1, named("Paint") + "<Deadline>2012-02-01T17:00:00</Deadline>") + task(2, 1)));
    const auto mended = saved(plan, "deadline");
    EXPECT_THAT(mended, HasSubstr("<ExtendedAttributes><ExtendedAttribute><FieldID>188743731</FieldID><FieldName>Text1"
                                  "</FieldName><Alias>Deadline</Alias><CFType>7</CFType></ExtendedAttribute>"
                                  "</ExtendedAttributes>"));
    EXPECT_THAT(mended, HasSubstr("<Name>Paint</Name><ExtendedAttribute><FieldID>188743731</FieldID>"
                                  "<Value>2012-02-01T17:00:00</Value></ExtendedAttribute></Task>"));
    EXPECT_THAT(mended, Not(HasSubstr("<Deadline>")));
}

TEST_F(ImprovementTest, lagBecomesAFieldInWords) {
    const auto link = [](int uid, const std::string& lag) {
        return "<PredecessorLink><PredecessorUID>" + std::to_string(uid) + "</PredecessorUID><Type>1</Type><LinkLag>" +
               lag + "</LinkLag></PredecessorLink>";
    };
    const auto plan = planOf(tasks(task(1, 1) + task(2, 1) + task(3, 1, link(1, "4800") + link(2, "-450"))));
    EXPECT_THAT(saved(plan, "link-lag"), HasSubstr("<Value>8 h after task 1; -45 min after task 2</Value>"));
}

TEST_F(ImprovementTest, lagSaysWhatItLiesBetween) {
    const auto link = [](int uid, const std::string& type, const std::string& lag, const std::string& format) {
        return "<PredecessorLink><PredecessorUID>" + std::to_string(uid) + "</PredecessorUID><Type>" + type +
               "</Type><LinkLag>" + lag + "</LinkLag><LagFormat>" + format + "</LagFormat></PredecessorLink>";
    };
    const auto plan = planOf(tasks(task(1, 1) + task(2, 1) + task(3, 1) + task(4, 1) +
                                   task(5, 1,
                                        link(1, "0", "600", "7") + link(2, "2", "4800", "8") +
                                            link(3, "3", "-300", "5") + link(4, "1", "600", "40"))));
    EXPECT_THAT(saved(plan, "link-lag"),
                HasSubstr("<Value>finish 1 h after the finish of task 1; finish 8 h elapsed after the start of task 2; "
                          "-30 min after the start of task 3; 1 h elapsed after task 4</Value>"));
}

TEST_F(ImprovementTest, leavesLagInPercentBesideOtherLag) {
    const std::string percent =
        "<PredecessorLink><PredecessorUID>1</PredecessorUID><Type>1</Type><LinkLag>50</LinkLag>"
        "<LagFormat>19</LagFormat></PredecessorLink>";
    const auto plan = planOf(tasks(task(1, 1) + task(2, 1) +
                                   task(3, 1,
                                        percent + "<PredecessorLink><PredecessorUID>2</PredecessorUID><Type>1</Type>"
                                                  "<LinkLag>600</LinkLag></PredecessorLink>")));
    const auto mended = mend(plan, {.only = {"lag-to-field"}});
    EXPECT_THAT(mended.bytes, HasSubstr(percent));
    EXPECT_THAT(mended.bytes, HasSubstr("<Value>1 h after task 2</Value>"));
}

TEST_F(ImprovementTest, detailsOfTasksBecomeFieldsInWords) {
    struct Case {
        std::string_view kind;
        std::string content;
        std::string alias;
        std::string words;
    };
    const std::vector<Case> cases = {
        {"hyperlink",
         "<Hyperlink>Map &amp; way</Hyperlink><HyperlinkAddress>http://a/b</HyperlinkAddress>"
         "<HyperlinkSubAddress>top</HyperlinkSubAddress>",
         "Hyperlink", "Map &amp; way; http://a/b; #top"},
        {"wbs", "<WBS>A.1</WBS><OutlineNumber>1</OutlineNumber>", "WBS", "A.1"},
        {"contact", "<Contact>Anna</Contact>", "Contact", "Anna"},
        {"manual-task", "<Manual>1</Manual>", "Scheduled by hand", "yes"},
        {"inactive-task", "<Active>0</Active>", "Active", "no"},
        {"task-calendar", "<CalendarUID>1</CalendarUID><IgnoreResourceCalendar>1</IgnoreResourceCalendar>",
         "Task calendar", "Standard; calendars of resources do not count"},
        {"task-calendar", "<CalendarUID>8</CalendarUID>", "Task calendar", "calendar 8"},
        {"actual-dates",
         "<ActualStart>2012-01-09T08:00:00</ActualStart><ActualFinish>2012-01-10T17:00:00</ActualFinish>",
         "Actual dates", "started 2012-01-09T08:00:00; finished 2012-01-10T17:00:00"},
        {"physical-progress", "<PhysicalPercentComplete>30</PhysicalPercentComplete>", "Physical completion", "30%"},
        {"estimated", "<Estimated>1</Estimated>", "Estimated", "yes"},
        {"recurring-task", "<Recurring>true</Recurring>", "Recurring", "yes"},
        {"subproject", "<IsSubproject>1</IsSubproject><SubprojectName>C:\\b.mpp</SubprojectName>", "Subproject",
         "stands for a project; C:\\b.mpp"},
        {"commitment",
         "<CommitmentStart>2012-01-09T08:00:00</CommitmentStart>"
         "<CommitmentFinish>2012-01-10T17:00:00</CommitmentFinish>",
         "Commitment", "from 2012-01-09T08:00:00; until 2012-01-10T17:00:00"},
        {"manual-text", "<StartText>soon</StartText><DurationText>long</DurationText>", "Entered as text",
         "start: soon; duration: long"},
        {"leveling-delay", "<LevelingDelay>600</LevelingDelay><LevelingDelayFormat>8</LevelingDelayFormat>",
         "Leveling delay", "1 h, elapsed"},
        {"leveling-delay", "<LevelingDelay>605</LevelingDelay><LevelingDelayFormat>7</LevelingDelayFormat>",
         "Leveling delay", "1 h 0.5 min"},
        {"overtime",
         "<OvertimeWork>PT8H0M0S</OvertimeWork><ActualOvertimeWork>PT1H30M0S</ActualOvertimeWork>"
         "<RemainingOvertimeWork>PT6H30M0S</RemainingOvertimeWork>",
         "Overtime", "8 h; 1 h 30 min done; 6 h 30 min remaining"},
        {"overtime", "<OvertimeWork>much</OvertimeWork>", "Overtime", "much"},
        {"cost-accrual", "<FixedCostAccrual>1</FixedCostAccrual>", "Cost accrual", "fixed costs are due at the start"},
        {"leveling-settings", "<LevelAssignments>0</LevelAssignments><LevelingCanSplit>0</LevelingCanSplit>",
         "Leveling", "leveling does not move its assignments; leveling does not split it"},
        {"task-details",
         "<StatusManager>Anna</StatusManager><AssignmentOwner>Bert</AssignmentOwner><BoardStatus>Next</BoardStatus>"
         "<Sprint>3</Sprint>",
         "Further details", "status manager: Anna; owner of assignments: Bert; board: Next; sprint: 3"},
    };
    for (const auto& [kind, content, alias, words] : cases) {
        const auto mended = saved(planOf(tasks(task(1, 1, named("Paint") + content) + task(2, 1))), kind);
        EXPECT_THAT(mended, HasSubstr("<Alias>" + alias + "</Alias>")) << kind;
        EXPECT_THAT(mended, HasSubstr("<FieldID>188743731</FieldID><Value>" + words + "</Value>")) << kind;
    }
}

// What says nothing, and what is told already, makes no field.
TEST_F(ImprovementTest, leavesDetailsThatSayNothing) {
    const auto plan = planOf(tasks(task(
        1, 1,
        "<WBS>1</WBS><OutlineNumber>1</OutlineNumber><Contact></Contact><Manual>0</Manual><Active>1</Active>"
        "<CalendarUID>-1</CalendarUID><IgnoreResourceCalendar>0</IgnoreResourceCalendar><ActualStart>NA</ActualStart>"
        "<PhysicalPercentComplete>0</PhysicalPercentComplete><Estimated>0</Estimated><Recurring>0</Recurring>"
        "<IsSubproject>0</IsSubproject><ExternalTask>0</ExternalTask><LevelingDelay>0</LevelingDelay>"
        "<OvertimeWork>PT0H0M0S</OvertimeWork><FixedCostAccrual>3</FixedCostAccrual>"
        "<LevelAssignments>1</LevelAssignments><LevelingCanSplit>1</LevelingCanSplit><Sprint></Sprint>")));
    EXPECT_EQ(mend(plan, {.only = {}, .isAll = true}).verdict, MSPDIMendVerdict::ImportsAsIs);
}

// Of several elements of one name all go, so that doing it again finds nothing.
TEST_F(ImprovementTest, tellsWhatIsRepeated) {
    const auto plan = planOf(tasks(task(1, 1, "<Contact>Anna</Contact><Contact>Bert</Contact>")));
    EXPECT_THAT(saved(plan, "contact"), HasSubstr("<Value>Anna; Bert</Value>"));
}

TEST_F(ImprovementTest, repeatedDeadlinesGoTogether) {
    const auto plan = planOf(tasks(task(1, 1,
                                        "<Deadline>2012-02-01T17:00:00</Deadline><Deadline>2012-02-02T17:00:00"
                                        "</Deadline>")));
    EXPECT_THAT(saved(plan, "deadline"), HasSubstr("<Value>2012-02-01T17:00:00; 2012-02-02T17:00:00</Value>"));
}

TEST_F(ImprovementTest, unitsBecomeAFieldInWords) {
    const std::string rest =
        "  <Resources><Resource><UID>1</UID><Name>Anna</Name><Type>1</Type></Resource></Resources>\n"
        "  <Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID>1</ResourceUID><Units>0.5</Units></Assignment>"
        "</Assignments>\n";
    EXPECT_THAT(saved(planOf(tasks(task(1, 1, "<Duration>PT8H0M0S</Duration>")) + rest), "assignment-units"),
                HasSubstr("<Value>Anna 50%</Value>"));
}

TEST_F(ImprovementTest, takesFieldsThatAreFree) {
    const std::string definitions =
        "  <ExtendedAttributes><ExtendedAttribute><FieldID>188743731</FieldID><FieldName>Text1</FieldName>"
        "</ExtendedAttribute></ExtendedAttributes>\n";
    const auto mended = mend(planOf(definitions + tasks(task(1, 1, "<Deadline>2012-02-01T17:00:00</Deadline>"))),
                             {.only = {"deadline-to-field"}});
    EXPECT_THAT(mended.bytes, HasSubstr("<FieldID>188743734</FieldID><FieldName>Text2</FieldName>"));
}

TEST_F(ImprovementTest, allFieldsGetKeys) {
    const std::string definitions =
        "  <ExtendedAttributes><ExtendedAttribute><FieldID>7</FieldID><Alias>Region</Alias></ExtendedAttribute>"
        "</ExtendedAttributes>\n";
    const auto value = std::string("<ExtendedAttribute><FieldID>7</FieldID><Value>v</Value></ExtendedAttribute>");
    const std::string other = "<ExtendedAttribute><FieldID>8</FieldID><Value>v</Value></ExtendedAttribute>";
    const auto plan = planOf(with(definitions, "</ExtendedAttributes>",
                                  "<ExtendedAttribute><FieldID>8</FieldID><Alias>Team</Alias></ExtendedAttribute>"
                                  "</ExtendedAttributes>") +
                             tasks(task(1, 1, value) + task(2, 1, other)));
    EXPECT_THAT(saved(plan, "unregistered-field"),
                HasSubstr(other + "<ExtendedAttribute><FieldID>7</FieldID></ExtendedAttribute></Task></Tasks>"));
}

TEST_F(ImprovementTest, resourcesGetTheWeekOfTheirBaseCalendar) {
    const std::string calendars =
        "  <Calendars><Calendar><UID>1</UID><IsBaseCalendar>1</IsBaseCalendar></Calendar>"
        "<Calendar><UID>2</UID><IsBaseCalendar>1</IsBaseCalendar><WeekDays><WeekDay><DayType>2</DayType><DayWorking>0"
        "</DayWorking></WeekDay></WeekDays></Calendar>"
        "<Calendar><UID>3</UID><IsBaseCalendar>0</IsBaseCalendar><BaseCalendarUID>2</BaseCalendarUID></Calendar>"
        "</Calendars>\n";
    const auto plan =
        planOf("  <Resources><Resource><UID>1</UID><CalendarUID>3</CalendarUID></Resource></Resources>\n", calendars);
    EXPECT_THAT(saved(plan, "resource-week"),
                HasSubstr("<UID>3</UID><IsBaseCalendar>1</IsBaseCalendar><BaseCalendarUID>2</BaseCalendarUID><WeekDays>"
                          "<WeekDay><DayType>2</DayType><DayWorking>0</DayWorking></WeekDay></WeekDays></Calendar>"));
}

TEST_F(ImprovementTest, exceptionsOf2003TakeTheLaterForm) {
    const std::string day =
        "<WeekDay><DayType>0</DayType><DayWorking>0</DayWorking><TimePeriod><FromDate>2012-01-10T00:00:00</FromDate>"
        "<ToDate>2012-01-10T23:59:00</ToDate></TimePeriod></WeekDay>";
    const auto plan = planOf("", "  <Calendars><Calendar><UID>1</UID><IsBaseCalendar>1</IsBaseCalendar><WeekDays>" +
                                     day + "</WeekDays></Calendar></Calendars>\n");
    EXPECT_THAT(saved(plan, "exception-2003"),
                HasSubstr("<WeekDays></WeekDays><Exceptions><Exception><TimePeriod><FromDate>2012-01-10T00:00:00"
                          "</FromDate><ToDate>2012-01-10T23:59:00</ToDate></TimePeriod><Type>1</Type><DayWorking>0"
                          "</DayWorking></Exception></Exceptions>"));
}

namespace {

// A plan of three weeks from Monday, 2012-01-09, whose calendar holds these things beside its usual week.
std::string planOfThreeWeeks(const std::string& ofCalendar) {
    return "<Project xmlns=\"http://schemas.microsoft.com/project\"><SaveVersion>14</SaveVersion>"
           "<StartDate>2012-01-09T08:00:00</StartDate><FinishDate>2012-01-29T17:00:00</FinishDate><Calendars><Calendar>"
           "<UID>1</UID><IsBaseCalendar>1</IsBaseCalendar><WeekDays>"
           "<WeekDay><DayType>1</DayType><DayWorking>0</DayWorking></WeekDay>"
           "<WeekDay><DayType>2</DayType><DayWorking>1</DayWorking><WorkingTimes><WorkingTime><FromTime>08:00:00"
           "</FromTime><ToTime>16:00:00</ToTime></WorkingTime></WorkingTimes></WeekDay></WeekDays>" +
           ofCalendar + "</Calendar></Calendars></Project>";
}

std::string period(const std::string& from, const std::string& to) {
    return "<TimePeriod><FromDate>" + from + "T00:00:00</FromDate><ToDate>" + to + "T23:59:00</ToDate></TimePeriod>";
}

std::string dayOff(const std::string& date) {
    return "<Exception>" + period(date, date) + "<Type>1</Type><DayWorking>0</DayWorking></Exception>";
}

}  // namespace

// Every second Friday until summer: the 13th and the 27th are the plan's.
TEST_F(ImprovementTest, recurringExceptionsAreWrittenOutAsSingleDates) {
    const auto recurring = "<Exception>" + period("2012-01-10", "2012-06-30") +
                           "<Name>Fridays off</Name><Type>6</Type><Period>2</Period><DaysOfWeek>32</DaysOfWeek>"
                           "<DayWorking>0</DayWorking></Exception>";
    const auto plan = planOfThreeWeeks("<Exceptions>" + dayOff("2012-01-11") + recurring + "</Exceptions>");
    EXPECT_EQ(saved(plan, "recurring-exception"),
              planOfThreeWeeks("<Exceptions>" + dayOff("2012-01-11") + dayOff("2012-01-13") + dayOff("2012-01-27") +
                               "</Exceptions>"));
}

TEST_F(ImprovementTest, aDayThatHasAnExceptionKeepsIt) {
    const auto own = "<Exception>" + period("2012-01-12", "2012-01-14") +
                     "<Type>1</Type><DayWorking>1</DayWorking>"
                     "<WorkingTimes><WorkingTime><FromTime>08:00:00</FromTime><ToTime>09:00:00</ToTime></WorkingTime>"
                     "</WorkingTimes></Exception>";
    const auto recurring = "<Exception>" + period("2012-01-10", "2012-06-30") +
                           "<Type>6</Type><Period>2</Period><DaysOfWeek>32</DaysOfWeek><DayWorking>0</DayWorking>"
                           "</Exception>";
    const auto mended =
        mend(planOfThreeWeeks("<Exceptions>" + own + recurring + "</Exceptions>"), {.only = {"recurring-exceptions"}});
    EXPECT_EQ(mended.bytes, planOfThreeWeeks("<Exceptions>" + own + dayOff("2012-01-27") + "</Exceptions>"));
}

TEST_F(ImprovementTest, whatDoesNotArriveIsNotWrittenOut) {
    const auto until = [](const std::string& end) {
        return "<Exceptions><Exception>" + period("2012-01-10", "2012-06-30") +
               "<Type>7</Type><Period>9</Period><DayWorking>1</DayWorking><WorkingTimes><WorkingTime><FromTime>18:00:00"
               "</FromTime><ToTime>" +
               end + "</ToTime></WorkingTime></WorkingTimes></Exception></Exceptions>";
    };
    const MSPDIMendOptions options{.only = {"recurring-exceptions"}};
    EXPECT_EQ(mend(planOfThreeWeeks(until("00:00:00")), options).verdict, MSPDIMendVerdict::ImportsAsIs);
    EXPECT_EQ(stepsOf(mend(planOfThreeWeeks(until("22:00:00")), options)), "recurring-exceptions 1");
}

// From the second Sunday on Mondays are worked later, and Sundays as they always are.
TEST_F(ImprovementTest, workWeeksAreWrittenOutAsExceptions) {
    const std::string later =
        "<DayWorking>1</DayWorking><WorkingTimes><WorkingTime><FromTime>10:00:00</FromTime><ToTime>18:00:00</ToTime>"
        "</WorkingTime></WorkingTimes>";
    const auto week = "<WorkWeek>" + period("2012-01-15", "2012-12-31") +
                      "<Name>Late</Name><WeekDays><WeekDay><DayType>1</DayType><DayWorking>0</DayWorking></WeekDay>"
                      "<WeekDay><DayType>2</DayType>" +
                      later + "</WeekDay></WeekDays></WorkWeek>";
    const auto monday = [&later](const std::string& date) {
        return "<Exception>" + period(date, date) + "<Type>1</Type>" + later + "</Exception>";
    };
    EXPECT_EQ(saved(planOfThreeWeeks("<WorkWeeks>" + week + "</WorkWeeks>"), "work-weeks"),
              planOfThreeWeeks("<Exceptions>" + monday("2012-01-16") + monday("2012-01-23") +
                               "</Exceptions><WorkWeeks></WorkWeeks>"));
}

TEST_F(ImprovementTest, thePlansOwnCalendarIsTaken) {
    saved(planOf("",
                 "  <CalendarUID>3</CalendarUID>\n  <Calendars><Calendar><UID>1</UID><Name>Other</Name>"
                 "<IsBaseCalendar>1</IsBaseCalendar></Calendar><Calendar><UID>3</UID><Name>Own</Name>"
                 "<IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>\n"),
          "project-calendar");
}

// What a step puts in, an import reads for the first time.
TEST_F(ImprovementTest, allStepsMendWhatOnlyTheyBringToLight) {
    const std::string calendars =
        "  <Calendars><Calendar><UID>1</UID><IsBaseCalendar>1</IsBaseCalendar></Calendar>"
        "<Calendar><UID>2</UID><IsBaseCalendar>1</IsBaseCalendar><WeekDays><WeekDay><DayType>2</DayType><DayWorking>x"
        "</DayWorking></WeekDay></WeekDays></Calendar>"
        "<Calendar><UID>3</UID><IsBaseCalendar>0</IsBaseCalendar><BaseCalendarUID>2</BaseCalendarUID></Calendar>"
        "</Calendars>\n";
    const auto plan =
        planOf("  <Resources><Resource><UID>1</UID><CalendarUID>3</CalendarUID></Resource></Resources>\n", calendars);
    const auto mended = mend(plan, {.only = {}, .isAll = true});
    EXPECT_NE(mended.verdict, MSPDIMendVerdict::NotMendable) << mended.obstacle;
    EXPECT_EQ(stepsOf(mended), "resource-weeks 1, unreadable-value 1");
}

// Nothing arrives of a calendar whose number a later one has.
TEST_F(ImprovementTest, copiesNothingIntoCalendarsThatDoNotArrive) {
    const std::string persons =
        "<Calendar><UID>3</UID><IsBaseCalendar>0</IsBaseCalendar><BaseCalendarUID>2</BaseCalendarUID></Calendar>";
    const std::string calendars =
        "  <Calendars><Calendar><UID>1</UID><IsBaseCalendar>1</IsBaseCalendar></Calendar>"
        "<Calendar><UID>2</UID><IsBaseCalendar>1</IsBaseCalendar><WeekDays><WeekDay><DayType>2</DayType><DayWorking>0"
        "</DayWorking></WeekDay></WeekDays></Calendar>" +
        persons + persons + "</Calendars>\n";
    const auto plan =
        planOf("  <Resources><Resource><UID>1</UID><CalendarUID>3</CalendarUID></Resource></Resources>\n", calendars);
    EXPECT_THAT(saved(plan, "resource-week"),
                HasSubstr(persons + "<Calendar><UID>3</UID><IsBaseCalendar>1</IsBaseCalendar>"));
}

// As programs write them that define all fields there are.
TEST_F(ImprovementTest, takesAFieldWhoseDefinitionNamesItNothing) {
    constexpr int textFields[] = {
        188743731, 188743734, 188743737, 188743740, 188743743, 188743746, 188743747, 188743748, 188743749, 188743750,
        188743997, 188743998, 188743999, 188744000, 188744001, 188744002, 188744003, 188744004, 188744005, 188744006,
        188744007, 188744008, 188744009, 188744010, 188744011, 188744012, 188744013, 188744014, 188744015, 188744016};
    std::string definitions;
    for (const auto field : textFields) {
        definitions += "<ExtendedAttribute><FieldID>" + std::to_string(field) +
                       "</FieldID><FieldName>Text</FieldName>"
                       "</ExtendedAttribute>";
    }
    const auto plan = planOf(
        "<ExtendedAttributes>" + definitions + "</ExtendedAttributes>" +
        tasks(task(1, 1, "<Deadline>2012-02-01T17:00:00</Deadline>") +
              task(2, 1, "<ExtendedAttribute><FieldID>188743731</FieldID><Value>mine</Value></ExtendedAttribute>")));
    const auto mended = saved(plan, "deadline");
    EXPECT_THAT(mended, HasSubstr("<FieldID>188743734</FieldID><FieldName>Text</FieldName><Alias>Deadline</Alias>"));
    EXPECT_THAT(mended, HasSubstr("<FieldID>188743731</FieldID><FieldName>Text</FieldName></ExtendedAttribute>"));
}

// A copy of what does not arrive as it is would only add to what is lost.
TEST_F(ImprovementTest, copiesNoWeekThatDoesNotArriveAsItIs) {
    const auto planWith = [](const std::string& day) {
        return planOf("  <Resources><Resource><UID>1</UID><CalendarUID>3</CalendarUID></Resource></Resources>\n",
                      "  <Calendars><Calendar><UID>1</UID><IsBaseCalendar>1</IsBaseCalendar><WeekDays>" + day +
                          "</WeekDays></Calendar><Calendar><UID>3</UID><IsBaseCalendar>0</IsBaseCalendar>"
                          "<BaseCalendarUID>1</BaseCalendarUID></Calendar></Calendars>\n");
    };
    const auto workingDay = [](const std::string& times) {
        return "<WeekDay><DayType>2</DayType><DayWorking>1</DayWorking><WorkingTimes><WorkingTime>" + times +
               "</WorkingTime></WorkingTimes></WeekDay>";
    };
    const MSPDIMendOptions all{.only = {}, .isAll = true};
    const auto plain = mend(planWith(workingDay("<FromTime>08:00:00</FromTime><ToTime>17:00:00</ToTime>")), all);
    EXPECT_EQ(stepsOf(plain), "resource-weeks 1");
    for (const auto* times :
         {"<FromTime>08:00:00</FromTime><ToTime>17:00:00\x82</ToTime>",
          "<FromTime>08:00:00</FromTime><ToTime>99</ToTime>", "<FromTime>22:00:00</FromTime><ToTime>06:00:00</ToTime>",
          "<FromTime>08:00:00</FromTime><ToTime>00:00:00</ToTime>", "<FromTime>08:00:00</FromTime>",
          "<FromTime>08:00:00</FromTime><ToTime>12:00:00</ToTime><ToTime>17:00:00</ToTime>"}) {
        const auto plan = planWith(workingDay(times));
        const auto mended = mend(plan, all);
        EXPECT_NE(mended.verdict, MSPDIMendVerdict::NotMendable) << times << mended.obstacle;
        if (mended.verdict == MSPDIMendVerdict::Mended) {
            EXPECT_LE(allLossesOf(mended.bytes), allLossesOf(plan)) << times;
        }
        EXPECT_THAT(stepsOf(mended), Not(HasSubstr("resource-weeks"))) << times;
    }
}

// Another one of the two arrives than the one that was written to.
TEST_F(ImprovementTest, copiesNoWeekForAResourceOfTwoCalendars) {
    const std::string person =
        "<Calendar><UID>3</UID><IsBaseCalendar>0</IsBaseCalendar><BaseCalendarUID>1</BaseCalendarUID></Calendar>";
    const auto plan = planOf(
        "  <Resources><Resource><UID>1</UID><CalendarUID>4</CalendarUID><CalendarUID>3</CalendarUID></Resource>"
        "</Resources>\n",
        "  <Calendars><Calendar><UID>1</UID><IsBaseCalendar>1</IsBaseCalendar></Calendar>" + person +
            with(person, "<UID>3", "<UID>4") + "</Calendars>\n");
    EXPECT_EQ(mend(plan, {.only = {}, .isAll = true}).verdict, MSPDIMendVerdict::ImportsAsIs);
    const auto ofTwoNumbers =
        with(with(plan, "<CalendarUID>4</CalendarUID>", ""), "<UID>1</UID><Cal", "<UID>1</UID><UID>1</UID><Cal");
    EXPECT_EQ(mend(ofTwoNumbers, {.only = {}, .isAll = true}).verdict, MSPDIMendVerdict::ImportsAsIs);
}

// However many tasks stand under it.
TEST_F(ImprovementTest, aTaskWithOthersUnderItBecomesASummaryTask) {
    std::string children;
    for (int uid = 2; uid <= 5; ++uid) {
        children += task(uid, 2);
        const auto mended = mend(planOf(tasks(task(1, 1) + children)), {.only = {"outline"}});
        EXPECT_EQ(mended.bytes, planOf(tasks(task(1, 1, "<Summary>1</Summary>") + children))) << uid;
    }
}

TEST_F(ImprovementTest, calendarsExchangeNothingWhereLessWouldArrive) {
    const auto plan = [](const std::string& standard, const std::string& own, const std::string& others) {
        return planOf(tasks(task(1, 1)),
                      "  <CalendarUID>3</CalendarUID>\n  <Calendars><Calendar><UID>1</UID><Name>Standard</Name>"
                      "<IsBaseCalendar>1</IsBaseCalendar>" +
                          standard + "</Calendar><Calendar><UID>3</UID><Name>Own</Name>" + own + "</Calendar>" +
                          others + "</Calendars>\n");
    };
    const std::string base = "<IsBaseCalendar>1</IsBaseCalendar>";
    const std::string monday = "<WeekDays><WeekDay><DayType>2</DayType><DayWorking>0</DayWorking></WeekDay></WeekDays>";
    const std::string person =
        "<Calendar><UID>4</UID><IsBaseCalendar>0</IsBaseCalendar><BaseCalendarUID>1"
        "</BaseCalendarUID></Calendar>";
    const MSPDIMendOptions only{.only = {"project-calendar"}};
    EXPECT_EQ(stepsOf(mend(plan(monday, base + monday, ""), only)), "project-calendar 1");
    EXPECT_EQ(stepsOf(mend(plan(monday, base + monday, person), only)), "project-calendar 1");
    EXPECT_EQ(stepsOf(mend(plan("", base + monday, person), only)), "project-calendar 1");
    EXPECT_EQ(stepsOf(mend(plan(monday, base, ""), only)), "");
    EXPECT_EQ(stepsOf(mend(plan(monday, base + monday, person + with(person, ">4<", ">5<")), only)), "");
    EXPECT_EQ(stepsOf(mend(plan("", "<IsBaseCalendar>0</IsBaseCalendar>" + monday, ""), only)), "");
}

TEST_F(ImprovementTest, calendarsOfOneNumberExchangeNothing) {
    const std::string standard =
        "<Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar>";
    const auto plan = planOf(tasks(task(1, 1)), "  <Calendars>" + standard + standard + "</Calendars>\n");
    EXPECT_EQ(mend(plan, {.only = {"project-calendar"}}).verdict, MSPDIMendVerdict::ImportsAsIs);
}

TEST_F(ImprovementTest, allStepsMendAPlanWithoutCalendars) {
    const auto mended = mend(planOf(tasks(task(1, 1)), ""), {.only = {}, .isAll = true});
    EXPECT_EQ(mended.verdict, MSPDIMendVerdict::Mended) << mended.obstacle;
    EXPECT_EQ(stepsOf(mended), "standard-calendar 1");
}

TEST_F(ImprovementTest, tasksOutsideTheOutlineComeIn) {
    saved(planOf(tasks(task(1, 0, "<Summary>1</Summary>") + task(2, 1))), "unreachable-task");
}

TEST_F(ImprovementTest, everyStepForALossIsOne) {
    std::size_t count = 0;
    for (const auto& kind : MSPDIKinds()) {
        if (MSPDIMendStepForLoss(kind.name) != nullptr) {
            ++count;
        }
    }
    EXPECT_EQ(count, 32U);
    EXPECT_EQ(MSPDIMendStepForLoss("outline-code"), nullptr);
}

TEST_F(ImprovementTest, lagIsWrittenExactlyOrStays) {
    const auto planOfLag = [](const std::string& lag) {
        return planOf(tasks(task(1, 1) + task(2, 1,
                                              "<PredecessorLink><PredecessorUID>1</PredecessorUID><LinkLag>" + lag +
                                                  "</LinkLag></PredecessorLink>")));
    };
    const MSPDIMendOptions options{.only = {"lag-to-field"}};
    EXPECT_THAT(mend(planOfLag("5"), options).bytes, HasSubstr("<Value>0.5 min after task 1</Value>"));
    EXPECT_THAT(mend(planOfLag("-607"), options).bytes, HasSubstr("<Value>-1 h 0.7 min after task 1</Value>"));
    EXPECT_THAT(mend(planOfLag("-9223372036854775808"), options).bytes,
                HasSubstr("<Value>-15372286728091293 h 0.8 min after task 1</Value>"));
    for (const auto* other : {"5 d", "99999999999999999999", "", "1e3"}) {
        EXPECT_TRUE(mend(planOfLag(other), options).steps.empty()) << other;
    }
}

TEST_F(ImprovementTest, unitsThatAreNoNumberStay) {
    for (const auto* units : {"abc", "", "nan", "inf", "0x10", "1e400", "0.5x"}) {
        const auto plan = planOf(tasks(task(1, 1)) +
                                 "  <Resources><Resource><UID>1</UID><Type>1</Type></Resource></Resources>\n"
                                 "  <Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID>1</ResourceUID><Units>" +
                                 units + "</Units></Assignment></Assignments>\n");
        EXPECT_TRUE(mend(plan, {.only = {"units-to-field"}}).steps.empty()) << units;
    }
}

TEST_F(ImprovementTest, theOwnersFieldOfThatNameKeepsItsValue) {
    const std::string definitions =
        "  <ExtendedAttributes><ExtendedAttribute><FieldID>188743731</FieldID><FieldName>Text1</FieldName>"
        "<Alias>Deadline</Alias></ExtendedAttribute></ExtendedAttributes>\n";
    const std::string own = "<ExtendedAttribute><FieldID>188743731</FieldID><Value>soon</Value></ExtendedAttribute>";
    const std::string deadline = "<Deadline>2012-02-01T17:00:00</Deadline>";
    const MSPDIMendOptions options{.only = {"deadline-to-field"}};
    const auto mended = mend(planOf(definitions + tasks(task(1, 1, deadline + own))), options).bytes;
    EXPECT_THAT(mended, HasSubstr(own + "<ExtendedAttribute><FieldID>188743734</FieldID>"
                                        "<Value>2012-02-01T17:00:00</Value></ExtendedAttribute>"));
    EXPECT_THAT(mended, HasSubstr("<FieldName>Text2</FieldName><Alias>Deadline 2</Alias>"));
    // One that only other tasks have a value in is taken.
    EXPECT_THAT(mend(planOf(definitions + tasks(task(1, 1, deadline) + task(2, 1, own))), options).bytes,
                HasSubstr("<ExtendedAttribute><FieldID>188743731</FieldID><Value>2012-02-01T17:00:00</Value>"));
}

namespace {

std::string assignmentOf(int task, int resource, const std::string& content) {
    return "<Assignment><TaskUID>" + std::to_string(task) + "</TaskUID><ResourceUID>" + std::to_string(resource) +
           "</ResourceUID>" + content + "</Assignment>";
}

std::string withAssignments(const std::string& assignments) {
    return "  <Resources><Resource><UID>1</UID><Name>Anna</Name></Resource></Resources>\n  <Assignments>" +
           assignments + "</Assignments>\n";
}

std::string lagsOf(const std::string& lags) {
    return "<PredecessorLink><PredecessorUID>1</PredecessorUID>" + lags + "</PredecessorLink>";
}

}  // namespace

TEST_F(ImprovementTest, detailsOfAssignmentsBecomeFieldsOfTheirTasks) {
    struct Case {
        std::string_view kind;
        std::string content;
        std::string alias;
        std::string words;
    };
    const std::vector<Case> cases = {
        {"assignment-notes", "<Notes>Mind the step</Notes>", "Assignment notes", "Mind the step"},
        {"work-contour", "<WorkContour>1</WorkContour>", "Work contour", "back loaded"},
        {"work-contour", "<WorkContour>7</WorkContour>", "Work contour", "turtle"},
        {"work-contour", "<WorkContour>12</WorkContour>", "Work contour", "12"},
        {"assignment-delay", "<Delay>600</Delay><LevelingDelay>300</LevelingDelay>", "Assignment delay",
         "1 h; Anna: 30 min by leveling"},
        {"overtime", "<OvertimeWork>PT2H0M0S</OvertimeWork>", "Overtime", "2 h"},
        {"hyperlink", "<HyperlinkAddress>http://a/b</HyperlinkAddress>", "Hyperlink", "http://a/b"},
    };
    for (const auto& [kind, content, alias, words] : cases) {
        const auto plan = planOf(tasks(task(1, 1) + task(2, 1)) +
                                 withAssignments(assignmentOf(2, 1, content) + assignmentOf(1, 1, "")));
        const auto mended = saved(plan, kind);
        EXPECT_THAT(mended, HasSubstr("<Alias>" + alias + "</Alias>")) << kind;
        const std::string field = "<FieldID>188743731</FieldID><Value>Anna: ";
        EXPECT_GT(mended.find(field + words + "</Value>"), mended.find("<UID>2</UID>")) << mended;
        EXPECT_THAT(mended, HasSubstr(field + words + "</Value>")) << kind;
    }
}

TEST_F(ImprovementTest, detailsOfTasksComeBeforeThoseOfTheirAssignments) {
    const auto plan = planOf(tasks(task(1, 1, "<Hyperlink>Map</Hyperlink>")) +
                             withAssignments(assignmentOf(1, 1, "<Hyperlink>Way</Hyperlink>") +
                                             assignmentOf(1, -65535, "<Hyperlink>Stop</Hyperlink>")));
    EXPECT_THAT(saved(plan, "hyperlink"), HasSubstr("<Value>Map; Anna: Way; Stop</Value>"));
}

// Otherwise the next one would take its place, and mending again would find something.
TEST_F(ImprovementTest, lagsOfOneLinkGoTogether) {
    const auto plan = planOf(tasks(task(1, 1) + task(2, 1, lagsOf("<LinkLag>-1</LinkLag><LinkLag>4800</LinkLag>"))));
    EXPECT_THAT(saved(plan, "link-lag"), HasSubstr("<Value>-0.1 min after task 1; 8 h after task 1</Value>"));
    // The last one counts.
    const auto without = planOf(tasks(task(1, 1) + task(2, 1, lagsOf("<LinkLag>600</LinkLag><LinkLag>0</LinkLag>"))));
    EXPECT_EQ(mend(without, {.only = {"lag-to-field"}}).verdict, MSPDIMendVerdict::ImportsAsIs);
}

TEST_F(ImprovementTest, unitsOfOneAssignmentGoTogether) {
    const auto planWith = [](const std::string& units) {
        return planOf(tasks(task(1, 1, "<Duration>PT8H0M0S</Duration>")) + withAssignments(assignmentOf(1, 1, units)));
    };
    EXPECT_THAT(saved(planWith("<Units>0.63</Units><Units>1</Units><Units>0.5</Units>"), "assignment-units"),
                HasSubstr("<Value>Anna 63%; Anna 50%</Value>"));
    EXPECT_EQ(mend(planWith("<Units>0.63</Units><Units>1</Units>"), {.only = {"units-to-field"}}).verdict,
              MSPDIMendVerdict::ImportsAsIs);
}

TEST_F(ImprovementTest, stepsAreNamedWhereTheyCanDoSomething) {
    const auto stepFor = [&](const std::string& plan, std::string_view kind) {
        machine.addFile("/Plan.xml", plan);
        for (const auto& loss : MSPDIAccountOfPlan("/Plan.xml", services, {.mostPlaces = 1}).losses) {
            if (loss.kind == kind) {
                const auto* const step = MSPDIMendStepForLoss(loss);
                return step == nullptr ? std::string("none") : std::string(step->name);
            }
        }
        return std::string("no loss");
    };
    const std::string summary = "<Summary>1</Summary>";
    const std::string deadline = "<Deadline>2012-02-01T17:00:00</Deadline>";
    const auto root = task(0, 0, summary + deadline);
    EXPECT_EQ(stepFor(planOf(tasks(root + task(1, 1))), "deadline"), "none");
    EXPECT_EQ(stepFor(planOf(tasks(root + task(1, 1, deadline))), "deadline"), "deadline-to-field");
    const std::string map = "<Hyperlink>Map</Hyperlink>";
    EXPECT_EQ(stepFor(planOf(tasks(root + task(1, 1)) + withAssignments(assignmentOf(1, 1, map))), "hyperlink"),
              "hyperlink-to-field");
    EXPECT_EQ(stepFor(planOf(tasks(root + task(1, 1)) + withAssignments(assignmentOf(0, 1, map))), "hyperlink"),
              "none");
    const auto linked = [](const std::string& format) {
        return planOf(
            tasks(task(1, 1) + task(2, 1, lagsOf("<LinkLag>50</LinkLag><LagFormat>" + format + "</LagFormat>"))));
    };
    EXPECT_EQ(stepFor(linked("19"), "link-lag"), "none");
    EXPECT_EQ(stepFor(linked("7"), "link-lag"), "lag-to-field");
    const auto night = [](int uid) {
        return "<Calendar><UID>" + std::to_string(uid) +
               "</UID><Name>Night</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>";
    };
    const auto ofCalendar = [&](int uid) {
        return planOf("  <CalendarUID>7</CalendarUID>\n", with(standardCalendar(), "</Calendars>", night(uid)));
    };
    EXPECT_EQ(stepFor(ofCalendar(7), "project-calendar"), "project-calendar");
    EXPECT_EQ(stepFor(ofCalendar(8), "project-calendar"), "none");
}

TEST_F(ImprovementTest, tellsWhatABoundHasKeptFromBeingDone) {
    const auto leftOf = [&](const std::string& plan, const std::string& step) {
        std::string text;
        for (const auto& [of, why, count] : mend(plan, {.only = {step}}).left) {
            text += std::string(of) + " " + std::to_string(count) + ": " + std::string(why) + "\n";
        }
        return text;
    };
    const std::string week =
        "<WorkWeeks><WorkWeek><TimePeriod><FromDate>1960-01-01T00:00:00</FromDate><ToDate>2040-01-01T00:00:00"
        "</ToDate></TimePeriod><WeekDays><WeekDay><DayType>2</DayType><DayWorking>0</DayWorking></WeekDay><WeekDay>"
        "<DayType>3</DayType><DayWorking>0</DayWorking></WeekDay><WeekDay><DayType>4</DayType><DayWorking>0"
        "</DayWorking></WeekDay><WeekDay><DayType>5</DayType><DayWorking>0</DayWorking></WeekDay><WeekDay><DayType>6"
        "</DayType><DayWorking>0</DayWorking></WeekDay></WeekDays></WorkWeek></WorkWeeks>";
    const auto calendar = with(standardCalendar(), "</Calendar>", week + "</Calendar>");
    const auto until = [&](const std::string& finish) {
        return planOf("  <FinishDate>" + finish + "</FinishDate>\n", calendar);
    };
    const auto from1960 = [](const std::string& plan) { return with(plan, "2012-01-09T08", "1960-01-04T08"); };
    EXPECT_EQ(leftOf(until("2012-02-01T08:00:00"), "work-weeks"), "");
    EXPECT_EQ(leftOf(from1960(until("2040-01-01T08:00:00")), "work-weeks"),
              "work-weeks 1: at most 20,000 dates are written out\n");
    EXPECT_EQ(leftOf(from1960(until("2061-01-01T08:00:00")), "work-weeks"),
              "work-weeks 1: plans of more than a hundred years are not written out\n");
    // Whatever makes a base calendar large.
    const std::string filling = "<!--" + std::string(40U << 20U, '+') + "--></Calendar>";
    auto calendars = with(standardCalendar(), "</Calendar>", filling);
    std::string resources;
    for (int uid = 2; uid <= 4; ++uid) {
        const auto number = std::to_string(uid);
        calendars = with(calendars, "</Calendars>",
                         "<Calendar><UID>" + number + "</UID><Name>Own</Name><BaseCalendarUID>1</BaseCalendarUID>" +
                             "</Calendar></Calendars>");
        resources += "<Resource><UID>" + number + "</UID><CalendarUID>" + number + "</CalendarUID></Resource>";
    }
    EXPECT_EQ(leftOf(planOf("  <Resources>" + resources + "</Resources>\n", calendars), "resource-weeks"),
              "resource-weeks 2: at most 64 MiB are copied into the calendars of resources\n");
}
