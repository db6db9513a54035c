// Whose element it was that a failure is about, told in the failure's third line.
#include <gtest/gtest.h>

#include "PlanImport.h"

namespace {

struct Failure {
    std::string name;
    std::string content;  // of the project, beside its calendar
    std::string calendar;
    std::string reason;
    std::string subject;
};

std::string tasks(const std::string& elements) {
    return "<Tasks>" + elements + "</Tasks>";
}

std::string resource(const std::string& uid, const std::string& children) {
    return "<Resource><UID>" + uid + "</UID>" + children + "</Resource>";
}

std::string assignment(const std::string& taskUID, const std::string& resourceUID, const std::string& children = "") {
    return "<Assignment><TaskUID>" + taskUID + "</TaskUID><ResourceUID>" + resourceUID + "</ResourceUID>" + children +
           "</Assignment>";
}

std::string timephased(const std::string& type, const std::string& start, const std::string& finish,
                       const std::string& value) {
    return "<TimephasedData><Type>" + type + "</Type><Start>" + start + "</Start><Finish>" + finish +
           "</Finish><Value>" + value + "</Value></TimephasedData>";
}

const std::string roof = taskElement("5", "<Name>Roof</Name>");
const std::string anna = "<Resources>" + resource("3", "<Name>Anna</Name>") + "</Resources>";

class FailureSubjects : public testing::TestWithParam<Failure> {};

std::vector<Failure> failures() {
    const std::string badInteger = "Failed to get int value from XML node: ";
    const std::string badDate = "Failed to make MSPCDateComponents from MSPDI date-time: 'x'.";
    const std::string noDate = "Not a valid MSPDI date-time: 'x' (time zone?).";
    return {
        // Tasks.
        {"aDateOfATask", tasks(roof + taskElement("6", "<Name>Wall</Name><Start>x</Start>")), "", badDate,
         "Task UID='6' name='Wall'"},
        {"aTaskWithoutName", tasks(taskElement("6", "<Start>x</Start>")), "", badDate, "Task UID='6' name=''"},
        {"aTaskWithoutUID", tasks("<Task><Name>Wall</Name></Task>"), "", "Failed to get UID from Task.",
         "Task UID='' name='Wall'"},
        {"aNegativeTaskUID", tasks(taskElement("-2", "<Name>Wall</Name>")), "",
         "Invalid format of MSPDI Task ID (can not be negative number): -2", "Task UID='-2' name='Wall'"},
        {"aNegativeLevel", tasks("<Task><UID>6</UID><Name>Wall</Name><OutlineLevel>-1</OutlineLevel></Task>"), "",
         "Unexpected outline level -1 found in task (UID=6)", "Task UID='6' name='Wall'"},
        {"theRootTask", tasks("<Task><UID>0</UID><Name>House</Name><OutlineLevel>0</OutlineLevel></Task>"), "",
         "This does not seem like a MS Project root task.", "Task UID='0' name='House'"},
        {"aLink",
         tasks(roof + taskElement("6",
                                  "<Name>Wall</Name><PredecessorLink><PredecessorUID>x</PredecessorUID>"
                                  "</PredecessorLink>")),
         "", badInteger + "<PredecessorUID>x</PredecessorUID>", "Task UID='6' name='Wall'"},
        {"aCustomField",
         "<ExtendedAttributes><ExtendedAttribute><FieldID>1</FieldID><Alias>a</Alias><CFType>x</CFType>"
         "</ExtendedAttribute></ExtendedAttributes><SaveVersion>14</SaveVersion>" +
             tasks(taskElement("6",
                               "<Name>Wall</Name><ExtendedAttribute><FieldID>1</FieldID><Value>v</Value>"
                               "</ExtendedAttribute>")),
         "", badInteger + "<CFType>x</CFType>", "Task UID='6' name='Wall'"},
        {"aTaskBelowASplitOne",
         tasks(roof + "<Task><UID>6</UID><Name>Rafters</Name><OutlineLevel>2</OutlineLevel></Task>") + "<Assignments>" +
             assignment("5", "-65535",
                        timephased("1", "2012-01-09T08:00:00", "2012-01-09T17:00:00", "PT8H0M0S") +
                            timephased("1", "2012-01-11T08:00:00", "2012-01-11T17:00:00", "PT8H0M0S")) +
             "</Assignments>",
         "", "Parent task was not assigned a type.", "Task UID='6' name='Rafters'"},
        {"interruptedWorkOnASummaryTask",
         "<SaveVersion>14</SaveVersion>" +
             tasks(taskElement("5", "<Name>Roof</Name><Summary>1</Summary>") +
                   "<Task><UID>6</UID><Name>Rafters</Name><OutlineLevel>2</OutlineLevel></Task>") +
             "<Assignments>" +
             assignment("5", "-65535",
                        timephased("1", "2012-01-09T08:00:00", "2012-01-09T17:00:00", "PT8H0M0S") +
                            timephased("1", "2012-01-11T08:00:00", "2012-01-11T17:00:00", "PT8H0M0S")) +
             "</Assignments>",
         "", "Parent task was not assigned a type.", "Task UID='6' name='Rafters'"},
        {"workThatOverlapsWhereNobodyWorks",
         tasks(roof) + "<Assignments>" +
             assignment("5", "-65535",
                        timephased("1", "2012-01-14T08:00:00", "2012-01-14T12:00:00", "PT4H0M0S") +
                            timephased("1", "2012-01-16T08:00:00", "2012-01-16T17:00:00", "PT8H0M0S")) +
             assignment("5", "-65535", timephased("1", "2012-01-14T10:00:00", "2012-01-14T13:00:00", "PT3H0M0S")) +
             "</Assignments>",
         "", "", "Task UID='5' name='Roof'"},
        // Resources.
        {"aCostResource", "<Resources>" + resource("3", "<Name>Paint</Name><Type>2</Type>") + "</Resources>", "",
         "Invalid value of 'Type' in 'Resource': '2'.", "Resource UID='3' name='Paint'"},
        {"aResourceUIDThatIsNoNumber", "<Resources>" + resource("x", "<Name>Anna</Name>") + "</Resources>", "",
         badInteger + "<UID>x</UID>", "Resource UID='x' name='Anna'"},
        // Calendars.
        {"theProjectsCalendar", "",
         "<WeekDays><WeekDay><DayType>2</DayType><DayWorking>maybe</DayWorking></WeekDay></WeekDays>",
         "Failed to get boolean value from XML node: <DayWorking>maybe</DayWorking>",
         "Calendar UID='1' name='Standard'"},
        {"aCalendarThatIsNoBase", "", "<IsBaseCalendar>0</IsBaseCalendar>",
         "MSPDI 'Standard' Calendar is not a base calendar.", "Calendar UID='1' name='Standard'"},
        {"theCalendarOfAResource",
         "<Calendars><Calendar><UID>4</UID><Name>Night</Name><Exceptions><Exception><DayWorking>0</DayWorking>"
         "<Type>1</Type><TimePeriod><FromDate>x</FromDate><ToDate>x</ToDate></TimePeriod></Exception></Exceptions>"
         "</Calendar></Calendars><Resources>" +
             resource("3", "<Name>Anna</Name><CalendarUID>4</CalendarUID>") + "</Resources>",
         "", noDate, "Calendar UID='4' name='Night', Resource UID='3' name='Anna'"},
        // Assignments.
        {"aTaskUIDThatIsNoNumber", tasks(roof) + anna + "<Assignments>" + assignment("x", "3") + "</Assignments>", "",
         badInteger + "<TaskUID>x</TaskUID>",
         "Assignment of Task UID='x' name='' to Resource UID='3' name='Anna', Task UID='5' name='Roof'"},
        {"aResourceOfAnAssignment", tasks(roof) + anna + "<Assignments>" + assignment("5", "x") + "</Assignments>", "",
         badInteger + "<ResourceUID>x</ResourceUID>",
         "Assignment of Task UID='5' name='Roof' to Resource UID='x' name=''"},
        {"aNegativeZero", tasks(roof) + anna + "<Assignments>" + assignment("5", "-0") + "</Assignments>", "",
         "Invalid format of MSPDI Resource ID (can not be negative number): -0",
         "Assignment of Task UID='5' name='Roof' to Resource UID='-0' name=''"},
        {"aTimephasedRecord",
         tasks(roof) + anna + "<Assignments>" +
             assignment("5", "3", timephased("1", "x", "2012-01-09T17:00:00", "PT8H0M0S")) + "</Assignments>",
         "", noDate, "Assignment of Task UID='5' name='Roof' to Resource UID='3' name='Anna'"},
        // A baseline, which does not show the resource.
        {"aTimephasedRecordOfABaseline",
         tasks(taskElement("5", "<Name>Roof</Name><Baseline><Number>1</Number></Baseline>")) + anna + "<Assignments>" +
             assignment(
                 "5", "3",
                 "<Baseline><Number>1</Number></Baseline>" + timephased("16", "x", "2012-01-09T17:00:00", "PT8H0M0S")) +
             "</Assignments>",
         "", noDate, "Assignment of Task UID='5' name='Roof' to Resource UID='3' name='Anna'"},
        {"aDateOfABaseline",
         tasks(taskElement("5",
                           "<Name>Roof</Name><Start>2012-01-09T08:00:00</Start><Baseline><Number>1</Number>"
                           "<Start>x</Start></Baseline>")),
         "", badDate, "Task UID='5' name='Roof'"},
        // Nothing of the kind.
        {"theProjectItself", "<StartDate>x</StartDate>", "", badDate, ""},
    };
}

}  // namespace

TEST_P(FailureSubjects, areTheThirdLine) {
    const auto& failure = GetParam();
    const PlanImport import("plan", planOf({failure.content, failure.calendar, ""}));
    EXPECT_EQ(import.status(), 1);
    const auto at = import.log().rfind("Exception: MSPCInternalInconsistency\n");
    ASSERT_NE(at, std::string::npos) << import.log();
    const auto told = import.log().substr(at);
    EXPECT_TRUE(
        told.starts_with("Exception: MSPCInternalInconsistency\n" + failure.reason + "\n" + failure.subject + "\n2"))
        << told;
}

INSTANTIATE_TEST_SUITE_P(OfMapping, FailureSubjects, testing::ValuesIn(failures()),
                         [](const auto& failure) { return failure.param.name; });
