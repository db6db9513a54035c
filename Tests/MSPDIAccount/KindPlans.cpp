#include "KindPlans.h"

#include <span>

#include "AccountOfPlan.h"

namespace {

std::string task(const std::string& children) {
    return tasksOf(taskOf(1, children));
}

// A task, and a second one with these children.
std::string secondTask(const std::string& children) {
    return tasksOf(taskOf(1) + taskOf(2, children));
}

std::string link(const std::string& children) {
    return secondTask("<PredecessorLink>" + children + "</PredecessorLink>");
}

std::string rootTask(const std::string& children) {
    return tasksOf("<Task><UID>0</UID><Summary>1</Summary>" + children + "</Task>");
}

std::string constrained(const std::string& type, const std::string& date = "2012-01-11T08:00:00") {
    return "<ConstraintType>" + type + "</ConstraintType><ConstraintDate>" + date + "</ConstraintDate>";
}

std::string resource(const std::string& children) {
    return "<Resources><Resource><UID>1</UID>" + children + "</Resource></Resources>";
}

std::string assignment(const std::string& children, const std::string& taskChildren = "") {
    return task(taskChildren) + resource("") +
           "<Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID>1</ResourceUID>" + children +
           "</Assignment></Assignments>";
}

std::string calendar(int uid, const std::string& children) {
    return "<Calendars><Calendar><UID>" + std::to_string(uid) + "</UID>" + children + "</Calendar></Calendars>";
}

// A calendar that a resource has.
std::string usedCalendar(const std::string& children) {
    return calendar(7, children) + resource("<CalendarUID>7</CalendarUID>");
}

std::string weekDay(const std::string& day, const std::string& children) {
    return usedCalendar("<WeekDays><WeekDay><DayType>" + day + "</DayType>" + children + "</WeekDay></WeekDays>");
}

std::string times(const std::string& to) {
    return "<WorkingTimes><WorkingTime><FromTime>20:00:00</FromTime><ToTime>" + to +
           "</ToTime></WorkingTime></WorkingTimes>";
}

const std::string firstOfFebruary =
    "<TimePeriod><FromDate>2012-02-01T00:00:00</FromDate><ToDate>2012-02-01T23:59:00</ToDate></TimePeriod>";

std::string exception(const std::string& children) {
    return "<Exceptions><Exception>" + firstOfFebruary + children + "</Exception></Exceptions>";
}

std::string definition(const std::string& children) {
    return "<ExtendedAttributes><ExtendedAttribute><FieldID>5</FieldID>" + children +
           "</ExtendedAttribute></ExtendedAttributes>";
}

std::string fieldValue(const std::string& id, const std::string& value) {
    return "<ExtendedAttribute><FieldID>" + id + "</FieldID><Value>" + value + "</Value></ExtendedAttribute>";
}

std::string record(const std::string& type, const std::string& day) {
    return "<TimephasedData><Type>" + type + "</Type><Start>2012-01-" + day + "T08:00:00</Start><Finish>2012-01-" +
           day + "T17:00:00</Finish><Value>PT8H0M0S</Value></TimephasedData>";
}

// Work on a Monday and a Wednesday.
std::string splitTask(const std::string& finish) {
    return assignment(record("1", "09") + record("1", "11"), "<Start>2012-01-09T08:00:00</Start><Finish>" + finish +
                                                                 "</Finish><Duration>PT16H0M0S</Duration>");
}

std::string assignments(const std::string& firstWork, const std::string& secondWork) {
    return task("") +
           "<Resources><Resource><UID>1</UID></Resource><Resource><UID>2</UID></Resource></Resources>"
           "<Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID>1</ResourceUID><Work>" +
           firstWork + "</Work></Assignment><Assignment><TaskUID>1</TaskUID><ResourceUID>2</ResourceUID><Work>" +
           secondWork + "</Work></Assignment></Assignments>";
}

std::string baseline(const std::string& children) {
    return "<Baseline><Number>2</Number>" + children + "</Baseline>";
}

const std::string eightHours = "<Duration>PT8H0M0S</Duration>";
const std::string start = "<Start>2012-01-10T08:00:00</Start>";
const std::string week =
    "<WeekDays><WeekDay><DayType>2</DayType><DayWorking>1</DayWorking>" + times("23:00:00") + "</WeekDay></WeekDays>";
const std::string workWeek = "<WorkWeek>" + firstOfFebruary + "<Name>Long days</Name>" + week + "</WorkWeek>";
const std::string version9 = "<SaveVersion>9</SaveVersion>";

const KindCase workKinds[] = {
    {"overwritten-by-repair", 1, task("<Name>Paint & dry</Name>"), task("<Name>Paint &amp; dry</Name>")},
    {"unreachable-task", 2,
     tasksOf("<Task><UID>1</UID><OutlineLevel>0</OutlineLevel></Task><Task><UID>2</UID><OutlineLevel>2</OutlineLevel>"
             "</Task>"),
     tasksOf(taskOf(1, "<Summary>1</Summary>") + "<Task><UID>2</UID><OutlineLevel>2</OutlineLevel></Task>")},
    {"repeated-uid", 4,
     tasksOf(taskOf(7) + taskOf(7)) + "<Resources><Resource><UID>3</UID></Resource><Resource><UID>3</UID></Resource>"
                                      "</Resources>",
     tasksOf(taskOf(7) + "<Task><UID>7</UID><IsNull>1</IsNull></Task>") +
         "<Resources><Resource><UID>7</UID></Resource><Resource><UID>0</UID></Resource><Resource><UID>0</UID>"
         "</Resource></Resources>"},
    {"unreadable-characters", 1, task("<Name>caf\xE9</Name>"), task("<Name>caf\xC3\xA9</Name>")},
    {"odd-date", 1, task("<Start>2012-01-11T08:30</Start>"), task("<Start>2012-01-11T08:30:00</Start>")},
    {"odd-duration", 1, task("<Work>-PT8H0M0S</Work>"), task("<Work>PT8H0M0S</Work>")},
    {"whole-hours", 2, "<MinutesPerDay>450</MinutesPerDay><MinutesPerWeek>2250</MinutesPerWeek>",
     "<MinutesPerDay>420</MinutesPerDay><MinutesPerWeek>2100</MinutesPerWeek>"},
    {"rounded-amount", 1, resource("<CostPerUse>0.4</CostPerUse>"), resource("<CostPerUse>40</CostPerUse>")},
    {"deadline", 1, task("<Deadline>2012-02-01T17:00:00</Deadline>"), task("<Deadline>NA</Deadline>")},
    {"link-lag", 1, link("<PredecessorUID>1</PredecessorUID><LinkLag>-9600</LinkLag>"),
     link("<PredecessorUID>1</PredecessorUID><LinkLag>0</LinkLag>")},
    {"dropped-link", 1, link("<PredecessorUID>9</PredecessorUID><LinkLag>9600</LinkLag>"),
     link("<PredecessorUID>1</PredecessorUID>")},
    {"link-type", 1, link("<PredecessorUID>1</PredecessorUID><Type>4</Type>"),
     link("<PredecessorUID>1</PredecessorUID><Type>3</Type>")},
    {"start-no-later", 1, task(constrained("5")), task(constrained("4"))},
    {"finish-no-earlier", 1, task(constrained("6")), task(constrained("7"))},
    {"locked-date", 1, task("<Start>2012-01-04T08:00:00</Start>" + constrained("2", "2012-01-05T08:00:00")),
     task("<Start>2012-01-10T08:00:00</Start>" + constrained("2", "2012-01-05T08:00:00"))},
    {"constraint", 1, task(constrained("8")), task(constrained("3"))},
    {"manual-task", 1, task("<Manual>1</Manual>"), task("<Manual>false</Manual>")},
    {"inactive-task", 1, task("<Active>0</Active>"), task("<Active>1</Active>")},
    {"split-end", 1, splitTask("2012-01-12T17:00:00"), splitTask("2012-01-11T17:00:00")},
    {"duration-not-effort", 1, task(eightHours + "<Work>PT4H0M0S</Work>"),
     tasksOf(taskOf(1, eightHours + "<Work>PT8H0M0S</Work>") +
             taskOf(2, "<Summary>1</Summary>" + eightHours + "<Work>PT4H0M0S</Work>"))},
    {"elapsed-duration", 2,
     tasksOf(taskOf(1, "<DurationFormat>8</DurationFormat>") + taskOf(2, "<DurationFormat>40</DurationFormat>")),
     task("<DurationFormat>7</DurationFormat>")},
    {"milestone", 2,
     tasksOf(taskOf(1, eightHours + "<Milestone>1</Milestone>") + taskOf(2, "<Milestone>0</Milestone>")),
     tasksOf(taskOf(1, eightHours + "<Milestone>0</Milestone>") + taskOf(2, "<Milestone>1</Milestone>"))},
    {"assignment-units", 1, assignment("<Units>0.5</Units>"), assignment("<Units>1.0</Units>")},
    {"unequal-shares", 2, assignments("PT8H0M0S", "PT4H0M0S"), assignments("PT4H0M0S", "PT4H0M0S")},
    {"summary-assignment", 1, assignment("", "<Summary>1</Summary>"), assignment("")},
    {"dropped-assignment", 1,
     "<Assignments><Assignment><TaskUID>9</TaskUID><ResourceUID>1</ResourceUID></Assignment></Assignments>",
     "<Assignments><Assignment><TaskUID>9</TaskUID><ResourceUID>-65535</ResourceUID></Assignment></Assignments>"},
    {"assignment-delay", 1, assignment("<Delay>4800</Delay>"), assignment("<Delay>0</Delay>")},
    {"work-contour", 1, assignment("<WorkContour>3</WorkContour>"), assignment("<WorkContour>0</WorkContour>")},
    {"actual-dates", 2,
     task("<ActualStart>2012-01-10T08:00:00</ActualStart><ActualFinish>2012-01-10T17:00:00</ActualFinish>"),
     task("<ActualStart>NA</ActualStart><ActualFinish/>")},
    {"status-date", 1, "<StatusDate>2012-01-10T08:00:00</StatusDate>", "<StatusDate>NA</StatusDate>"},
    {"completion", 1, task("<PercentComplete>-5</PercentComplete>"), task("<PercentComplete>5</PercentComplete>")},
    {"physical-progress", 1, task("<PhysicalPercentComplete>5</PhysicalPercentComplete>"),
     task("<PhysicalPercentComplete>0</PhysicalPercentComplete>")},
    {"work", 1, task("<Work>eight hours</Work>"), task("<Work>PT8H0M0S</Work>")},
    {"overtime", 1, task("<OvertimeWork>PT2H0M0S</OvertimeWork>"), task("<OvertimeWork>PT0H0M0S</OvertimeWork>")},
    {"leveling-delay", 1, task("<LevelingDelay>480</LevelingDelay>"), task("<LevelingDelay>0</LevelingDelay>")},
    {"leveling-settings", 2,
     task("<LevelAssignments>0</LevelAssignments><LevelingCanSplit>0</LevelingCanSplit>") +
         resource("<CanLevel>0</CanLevel>"),
     task("<LevelAssignments>1</LevelAssignments><LevelingCanSplit>1</LevelingCanSplit>") +
         resource("<CanLevel>true</CanLevel>")},
    {"pinned", 2, task("<Pinned>1</Pinned><PinnedStart>2012-01-10T08:00:00</PinnedStart>"),
     task("<PreLeveledStart>2012-01-10T08:00:00</PreLeveledStart><Pinned>1</Pinned>"
          "<PinnedStart>2012-01-10T08:00:00</PinnedStart>")},
    {"timephased-data", 1, assignment(record("11", "09")), assignment(record("1", "09"))},
};

const KindCase calendarKinds[] = {
    {"project-calendar", 1, "<CalendarUID>7</CalendarUID>" + calendar(7, ""), "<CalendarUID>1</CalendarUID>"},
    {"task-calendar", 1, task("<CalendarUID>7</CalendarUID><IgnoreResourceCalendar>1</IgnoreResourceCalendar>"),
     task("<CalendarUID>-1</CalendarUID><IgnoreResourceCalendar>0</IgnoreResourceCalendar>")},
    {"resource-week", 1,
     usedCalendar(
         "<BaseCalendarUID>8</BaseCalendarUID><WeekDays><WeekDay><DayType>6</DayType><DayWorking>0</DayWorking>"
         "</WeekDay></WeekDays>") +
         calendar(8, "<IsBaseCalendar>1</IsBaseCalendar>"),
     usedCalendar("<BaseCalendarUID>1</BaseCalendarUID>" + week)},
    {"recurring-exception", 1,
     usedCalendar(exception("<Type>2</Type><Period>2</Period><DayWorking>1</DayWorking>" + times("23:00:00"))),
     usedCalendar(exception("<Type>1</Type><DayWorking>0</DayWorking>"))},
    {"exception-2003", 1, weekDay("0", "<DayWorking>1</DayWorking>" + firstOfFebruary + times("23:00:00")),
     usedCalendar("<WeekDays><WeekDay><DayType>0</DayType><DayWorking>0</DayWorking>" + firstOfFebruary +
                  "</WeekDay></WeekDays>" + exception("<Type>1</Type><DayWorking>0</DayWorking>"))},
    {"calendar-exception", 1, usedCalendar(exception("<DayWorking>0</DayWorking>")),
     usedCalendar(exception("<Type>1</Type><DayWorking>0</DayWorking>"))},
    {"work-weeks", 2, usedCalendar("<WorkWeeks>" + workWeek + workWeek + "</WorkWeeks>"),
     usedCalendar("<WorkWeeks><WorkWeek><Name/></WorkWeek></WorkWeeks>")},
    {"overnight-time", 1, weekDay("2", "<DayWorking>1</DayWorking>" + times("00:00:00")),
     weekDay("2", "<DayWorking>1</DayWorking>" + times("23:59:00"))},
    {"unused-calendar", 1, calendar(7, "<Name>Night</Name>" + week), usedCalendar("<Name>Night</Name>" + week)},
    {"calendar-name", 1, calendar(1, "<Name>Night</Name><IsBaseCalendar>1</IsBaseCalendar>"), ""},
    {"exception-name", 1, usedCalendar(exception("<Type>1</Type><DayWorking>0</DayWorking><Name>Fair</Name>")),
     calendar(7, exception("<Type>1</Type><DayWorking>0</DayWorking><Name>Fair</Name>"))},
    {"baseline-calendar", 1, "<BaselineCalendar>Night</BaselineCalendar>",
     "<BaselineCalendar>Standard</BaselineCalendar>"},
};

const KindCase resourceKinds[] = {
    {"fixed-cost", 1, task("<FixedCost>5</FixedCost>"), task("<FixedCost>0</FixedCost>"), version9},
    {"cost-resource", 1, resource("<IsCostResource>1</IsCostResource>"),
     resource("<IsCostResource>0</IsCostResource>")},
    {"rate-per-unit", 1, resource("<StandardRate>50</StandardRate><StandardRateFormat>3</StandardRateFormat>"),
     resource("<StandardRate>0</StandardRate><StandardRateFormat>3</StandardRateFormat>")},
    {"further-rates", 1,
     resource("<Rates><Rate><RateTable>1</RateTable><StandardRate>5</StandardRate><OvertimeRate>6</OvertimeRate></Rate>"
              "</Rates>"),
     resource("<StandardRate>5</StandardRate><Rates><Rate><RatesFrom>1984-01-01T00:00:00</RatesFrom><RateTable>0"
              "</RateTable><StandardRate>5.0</StandardRate></Rate><Rate><RateTable>1</RateTable><StandardRate>0"
              "</StandardRate></Rate></Rates>")},
    {"overtime-rate", 1, resource("<OvertimeRate>5</OvertimeRate>"), resource("<OvertimeRate>0</OvertimeRate>")},
    {"cost-accrual", 2, task("<FixedCostAccrual>1</FixedCostAccrual>") + resource("<AccrueAt>2</AccrueAt>"),
     task("<FixedCostAccrual>3</FixedCostAccrual>") + resource("<AccrueAt>3</AccrueAt>")},
    {"material-rate", 1, assignment("<RateScale>3</RateScale>"), assignment("<RateScale>0</RateScale>")},
    {"default-rates", 1, "<DefaultStandardRate>5</DefaultStandardRate>",
     "<DefaultStandardRate>0</DefaultStandardRate>"},
    {"availability", 1,
     resource("<AvailabilityPeriods><AvailabilityPeriod><AvailableFrom>2012-01-01T00:00:00</AvailableFrom><AvailableTo>"
              "2012-06-01T00:00:00</AvailableTo><AvailableUnits>0.5</AvailableUnits></AvailabilityPeriod>"
              "</AvailabilityPeriods>"),
     resource("<AvailabilityPeriods><AvailabilityPeriod><AvailableFrom>1984-01-01T00:00:00</AvailableFrom><AvailableTo>"
              "2049-12-31T23:59:00</AvailableTo><AvailableUnits>1</AvailableUnits></AvailabilityPeriod>"
              "</AvailabilityPeriods>")},
    {"resource-units", 1, resource("<Type>0</Type><MaxUnits>3</MaxUnits>"), resource("<MaxUnits>3</MaxUnits>")},
    {"material-label", 1, resource("<MaterialLabel>t</MaterialLabel>"), resource("<MaterialLabel/>")},
    {"booking-type", 1, resource("<BookingType>1</BookingType>"), resource("<BookingType>0</BookingType>")},
    {"budget", 1, assignment("<BudgetWork>PT8H0M0S</BudgetWork>"), assignment("<BudgetCost>0</BudgetCost>")},
    {"resource-group", 1, resource("<Group>Night</Group>"), resource("<Group> </Group>")},
    {"resource-details", 1, resource("<Initials>A</Initials>"), resource("<Initials/>")},
    {"assignment-details", 1, assignment("<Confirmed>1</Confirmed>"), assignment("<Confirmed>0</Confirmed>")},
    {"unassigned-resource", 1, "<Resources><Resource><UID>0</UID><Name>Anybody</Name></Resource></Resources>",
     "<Resources><Resource><UID>0</UID><Name>Unassigned</Name></Resource></Resources>"},
    {"baseline-cost", 1, task(baseline("<Cost>5</Cost>")), task(baseline("<Cost>0</Cost>"))},
    {"baseline-value", 1, task(baseline(start)), task(start + baseline(start))},
    {"further-baseline", 1, task("<Baseline><Number>11</Number></Baseline>"),
     task("<Baseline><Number>10</Number></Baseline>")},
};

const KindCase writtenKinds[] = {
    {"notes", 1, rootTask("<Notes>n</Notes>"), task("<Notes>n</Notes>")},
    {"assignment-notes", 1, assignment("<Notes>n</Notes>"), assignment("<Notes/>")},
    {"hyperlink", 1, task("<Hyperlink>Site</Hyperlink>"), task("<Hyperlink/>")},
    {"wbs", 1, task("<WBS>A.1</WBS><OutlineNumber>1</OutlineNumber>"),
     task("<WBS>1</WBS><OutlineNumber>1</OutlineNumber>")},
    {"unregistered-field", 1,
     definition("<FieldName>Text1</FieldName>") +
         tasksOf(taskOf(1, fieldValue("5", "v")) + taskOf(2, fieldValue("6", "v"))) +
         "<ExtendedAttributes><ExtendedAttribute><FieldID>6</FieldID><Alias>b</Alias></ExtendedAttribute>"
         "</ExtendedAttributes>",
     definition("<FieldName>Text1</FieldName>") +
         tasksOf(taskOf(1, fieldValue("5", "v")) + taskOf(2, fieldValue("5", "v")))},
    {"unregistered-resource-field", 1,
     definition("<FieldName>Text1</FieldName>") + "<Resources><Resource><UID>1</UID>" + fieldValue("5", "v") +
         "</Resource><Resource><UID>2</UID>" + fieldValue("6", "v") +
         "</Resource></Resources><ExtendedAttributes><ExtendedAttribute><FieldID>6</FieldID><Alias>b</Alias>"
         "</ExtendedAttribute></ExtendedAttributes>",
     definition("<FieldName>Text1</FieldName>") + resource(fieldValue("5", "v")) +
         tasksOf(taskOf(1, fieldValue("5", "v")))},
    {"undefined-field", 1, task(fieldValue("5", "v")), task(fieldValue("5", "NA"))},
    {"repeated-field", 1, definition("<Alias>a</Alias>") + task(fieldValue("5", "v") + fieldValue("5", "w")),
     definition("<Alias>a</Alias>") + task(fieldValue("5", "v"))},
    {"assignment-fields", 1, assignment(fieldValue("5", "v")), assignment(fieldValue("5", "0"))},
    {"lookup-or-formula", 1,
     definition("<Formula>[Cost]</Formula><ValueList><Value><ID>1</ID><Value>a</Value><Description>b</Description>"
                "</Value></ValueList>"),
     definition("<Formula/><ValueList/>")},
    {"custom-field-definition", 1, definition("<Alias>a</Alias>"),
     definition("<Alias>a</Alias>") + task(fieldValue("5", "v"))},
    {"phonetic-name", 2, definition("<PhoneticAlias>a</PhoneticAlias>") + resource("<Phonetics>b</Phonetics>"),
     definition("<PhoneticAlias/>") + resource("<Phonetics/>")},
    {"outline-code", 2,
     "<OutlineCodes><OutlineCode><FieldName>Outline Code1</FieldName><Alias>Site</Alias></OutlineCode></OutlineCodes>" +
         task("<OutlineCode><FieldID>1</FieldID><ValueID>3</ValueID><ValueGUID>x</ValueGUID></OutlineCode>"),
     task("<OutlineCode><FieldID>1</FieldID><ValueID>0</ValueID></OutlineCode>")},
    {"subproject", 1, task("<IsSubproject>1</IsSubproject><SubprojectName>b.mpp</SubprojectName>"),
     task("<IsSubproject>0</IsSubproject><SubprojectName/>")},
    {"recurring-task", 1, task("<Recurring>1</Recurring>"), task("<Recurring>0</Recurring>")},
    {"contact", 1, task("<Contact>me</Contact>"), task("<Contact/>")},
    {"commitment", 1, task("<CommitmentStart>2012-01-10T08:00:00</CommitmentStart>"),
     task("<CommitmentStart>NA</CommitmentStart>")},
    {"estimated", 1, task("<Estimated>1</Estimated>"), task("<Estimated>0</Estimated>")},
    {"manual-text", 1, task("<DurationText>some days</DurationText>"), task("<DurationText/>")},
    {"task-details", 1, task("<StatusManager>me</StatusManager>"), task("<StatusManager/>")},
    {"summary-task", 2, "<Title>House</Title>" + rootTask("<Name>All</Name><Priority>800</Priority>"),
     "<Title>House</Title>" + rootTask("<Name>House</Name><Priority>500</Priority>")},
    {"empty-row", 1, tasksOf("<Task><UID>1</UID><IsNull>1</IsNull><Name>gone</Name></Task>"),
     tasksOf("<Task><UID>1</UID><IsNull>1</IsNull><Name/></Task>")},
    {"document-properties", 1, "<Author>me</Author>", "<Author/>"},
    {"document-history", 1, "<CreationDate>2012-01-01T08:00:00</CreationDate>", "<Revision>0</Revision>"},
    {"currency", 1, "<CurrencyCode>EUR</CurrencyCode>", "<CurrencyCode>USD</CurrencyCode>"},
    {"work-format", 1, "<WorkFormat>4</WorkFormat>", "<WorkFormat>3</WorkFormat>"},
    {"calculation-settings", 1, "<CriticalSlackLimit>3</CriticalSlackLimit>",
     "<CriticalSlackLimit>0</CriticalSlackLimit>"},
    {"default-times", 1, "<DefaultStartTime>07:00:00</DefaultStartTime>",
     "<DefaultStartTime>08:00:00</DefaultStartTime><DefaultFinishTime>17:00:00</DefaultFinishTime>"},
    {"fiscal-year", 2, "<FYStartDate>7</FYStartDate><FiscalYearStart>1</FiscalYearStart>",
     "<FYStartDate>1</FYStartDate><FiscalYearStart>0</FiscalYearStart>"},
    {"wbs-mask", 3,
     "<WBSMasks><Prefix>A</Prefix><WBSMask><Level>1</Level><Type>0</Type><Length>2</Length><Separator>.</Separator>"
     "</WBSMask><WBSMask><Level>2</Level><Type>1</Type><Length>3</Length></WBSMask></WBSMasks>",
     "<WBSMasks><Prefix/></WBSMasks>"},
    {"views-and-filters", 1, "<Views><View><Name>Gantt</Name></View></Views>", "<Views><View><Name/></View></Views>"},
    {"display-settings", 1, task("<HideBar>1</HideBar>"), task("<HideBar>0</HideBar>")},
    {"repeated-element", 1, task("<Name>a</Name><Name>b</Name>"), task("<Name>a</Name>")},
    {"stray-text", 6,
     tasksOf("<Task>Paint<UID>1</UID><OutlineLevel>1</OutlineLevel><PredecessorLink><![CDATA[soon]]><PredecessorUID>1"
             "</PredecessorUID></PredecessorLink><Zebra>a<Tail/>b</Zebra></Task> and <Task><UID>2</UID></Task>dry") +
         "twice<Views><![CDATA[all]]><View/></Views> &amp; again",
     // A value's own text is no stray one, and blanks and comments are none.
     tasksOf("<Task> <UID>1</UID> <OutlineLevel>1</OutlineLevel><Name>Pa<Zebra/>int</Name></Task> <!-- dry --> ") +
         "<!-- twice --> <Title>Pa<Zebra/>int</Title> <Views>\n<View/><?dry twice?></Views>&#32;"},
    {"unknown-element", 1, task("<Zebra/>"), task("<ID>1</ID>")},
};

}  // namespace

std::vector<KindCase> kindCases() {
    std::vector<KindCase> cases;
    for (const auto& some : {std::span<const KindCase>(workKinds), std::span<const KindCase>(calendarKinds),
                             std::span<const KindCase>(resourceKinds), std::span<const KindCase>(writtenKinds)}) {
        cases.insert(cases.end(), some.begin(), some.end());
    }
    return cases;
}
