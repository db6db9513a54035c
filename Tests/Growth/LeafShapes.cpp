#include "PlanShapes.h"

namespace {

std::string times(int count, const std::string& text) {
    std::string repeated;
    for (int i = 0; i < count; ++i) {
        repeated += text;
    }
    return repeated;
}

std::string numbered(int count, const std::string& before, const std::string& after) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += before + std::to_string(i) + after;
    }
    return text;
}

std::string planOf(const std::string& content, const std::string& calendar = "") {
    return "<Project xmlns=\"http://schemas.microsoft.com/project\"><SaveVersion>14</SaveVersion><StartDate>"
           "2024-01-01T08:00:00</StartDate><Calendars><Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1"
           "</IsBaseCalendar>" +
           calendar + "</Calendar></Calendars>" + content + "</Project>";
}

std::string ofTask(const std::string& content) {
    return planOf("<Tasks><Task><UID>1</UID><OutlineLevel>1</OutlineLevel><Start>2024-01-01T08:00:00</Start>" +
                  content + "</Task></Tasks>");
}

std::string ofLink(const std::string& content) {
    return planOf(
        "<Tasks><Task><UID>1</UID></Task><Task><UID>2</UID><PredecessorLink><PredecessorUID>1</PredecessorUID>" +
        content + "</PredecessorLink></Task></Tasks>");
}

std::string ofAssignment(const std::string& content) {
    return planOf(
        "<Tasks><Task><UID>1</UID></Task></Tasks><Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID>1"
        "</ResourceUID>" +
        content + "</Assignment></Assignments>");
}

const std::string baselineStart = "<Start>2024-02-01T08:00:00</Start>";

const PlanShape ofLeaves[] = {
    {"NamesOfATask", [](int n) { return ofTask(times(n, "<Name>a</Name>")); }},
    {"UnknownElementsOfATask", [](int n) { return ofTask(numbered(n, "<e", "/>")); }},
    {"UnknownElementsInANote", [](int n) { return ofTask("<Notes>" + times(n, "<a/>") + "</Notes>"); }},
    {"UnknownElementsOnManyLevels", [](int n) { return ofTask(times(n, "<a><b/>") + times(n, "</a>")); }},
    {"UnknownElementsOnManyLevelsOfANote",
     [](int n) { return ofTask("<Notes>" + times(n, "<a><b/>") + times(n, "</a>") + "</Notes>"); }},
    {"TypesOfALink", [](int n) { return ofLink(times(n, "<Type>1</Type><LinkLag>3</LinkLag>")); }},
    {"ValuesOfAField",
     [](int n) {
         return ofTask("<ExtendedAttribute>" + times(n, "<FieldID>7</FieldID><Value>v</Value>") +
                       "</ExtendedAttribute>");
     }},
    {"StartsOfABaseline",
     [](int n) { return ofTask("<Baseline><Number>0</Number>" + times(n, baselineStart) + "</Baseline>"); }},
    {"UnknownElementsOfABaseline",
     [](int n) { return ofTask("<Baseline><Number>0</Number>" + numbered(n, "<e", "/>") + "</Baseline>"); }},
    {"NumbersOfBaselines",
     [](int n) {
         return ofTask(times(n, "<Baseline><Number>0</Number><Number>1</Number>" + baselineStart + "</Baseline>"));
     }},
    {"DatesOfAnExceptionThatRecurs",
     [](int n) {
         return planOf("", "<Exceptions><Exception>" +
                               times(n,
                                     "<Type>2</Type><DayWorking>1</DayWorking><TimePeriod><FromDate>"
                                     "2024-01-01T00:00:00</FromDate></TimePeriod>") +
                               "</Exception></Exceptions>");
     }},
    {"RatesOfAResource",
     [](int n) {
         return planOf("<Resources><Resource><UID>1</UID><Rates><Rate>" +
                       times(n, "<RateTable>1</RateTable><StandardRate>3</StandardRate>") +
                       "</Rate></Rates></Resource></Resources>");
     }},
    {"TypesOfARecord",
     [](int n) {
         return ofAssignment("<TimephasedData>" + times(n, "<Type>1</Type><Value>PT1H0M0S</Value>") +
                             "</TimephasedData>");
     }},
    {"WorkOfAnAssignment",
     [](int n) { return ofAssignment(times(n, "<Work>PT1H0M0S</Work><ResourceUID>1</ResourceUID>")); }},
    {"NamesOfADefinition",
     [](int n) {
         return planOf("<ExtendedAttributes><ExtendedAttribute>" +
                       times(n, "<FieldID>7</FieldID><Alias>a</Alias><FieldName>b</FieldName><CFType>3</CFType>") +
                       "</ExtendedAttribute></ExtendedAttributes>");
     }},
    {"TitlesOfThePlan", [](int n) { return planOf(times(n, "<Title>a</Title><Author>b</Author>")); }},
    {"UnitsOfWorkingTime",
     [](int n) { return planOf(times(n, "<MinutesPerDay>480</MinutesPerDay><MinutesPerWeek>2400</MinutesPerWeek>")); }},
    {"UnknownElementsOfThePlan", [](int n) { return planOf(numbered(n, "<e", "/>")); }},
};

}  // namespace

std::span<const PlanShape> shapesOfLeaves() {
    return ofLeaves;
}
