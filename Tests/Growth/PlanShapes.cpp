#include "PlanShapes.h"

#include <fmt/format.h>

#include <cmath>

namespace {

// What stands in the lists of a plan.
struct Lists {
    std::string definitions{};
    std::string calendars{};  // beside the project's own
    std::string tasks{};
    std::string resources{};
    std::string assignments{};
    int saveVersion = 14;
};

std::string times(int count, const std::string& text) {
    std::string repeated;
    for (int i = 0; i < count; ++i) {
        repeated += text;
    }
    return repeated;
}

// What `make` gives for 1 to n.
template <typename Make>
std::string each(int n, const Make& make) {
    std::string text;
    for (int i = 1; i <= n; ++i) {
        text += make(i);
    }
    return text;
}

std::string element(const std::string& name, const std::string& content) {
    return fmt::format("<{}>{}</{}>", name, content, name);
}

std::string element(const std::string& name, int number) {
    return element(name, std::to_string(number));
}

std::string planOf(const Lists& lists, const std::string& prolog = {}, const std::string& rootAttributes = {}) {
    return prolog + "<Project xmlns=\"http://schemas.microsoft.com/project\"" + rootAttributes + ">" +
           element("SaveVersion", lists.saveVersion) + "<StartDate>2024-01-01T08:00:00</StartDate>" +
           element("ExtendedAttributes", lists.definitions) +
           "<Calendars><Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar>" +
           lists.calendars + "</Calendars>" + element("Tasks", lists.tasks) + element("Resources", lists.resources) +
           element("Assignments", lists.assignments) + "</Project>";
}

std::string task(int uid, const std::string& more = {}, int level = 1) {
    return element("Task", element("UID", uid) + element("Name", "T") + element("OutlineLevel", level) + more);
}

std::string summary(int uid, int level) {
    return task(uid, "<Summary>1</Summary>", level);
}

std::string calendar(int uid, const std::string& more) {
    return element("Calendar",
                   element("UID", uid) + element("Name", "C") + "<IsBaseCalendar>0</IsBaseCalendar>" + more);
}

std::string exception(int type, bool isWorked, const std::string& from, const std::string& to,
                      const std::string& more = {}) {
    return element("Exception", element("TimePeriod", element("FromDate", from) + element("ToDate", to)) +
                                    element("Type", type) + element("DayWorking", isWorked ? 1 : 0) + more);
}

const std::string newYear = "2024-01-01T00:00:00";
const std::string newYearsEve = "2024-01-01T23:59:00";

std::string workingTimes(int count) {
    return element("WorkingTimes",
                   times(count, "<WorkingTime><FromTime>08:00:00</FromTime><ToTime>09:00:00</ToTime></WorkingTime>"));
}

std::string resource(int uid, const std::string& more = {}) {
    return element("Resource", element("UID", uid) + more);
}
std::string material(int uid) {
    return resource(uid, "<Type>0</Type>");
}

std::string resourcesOfCalendar(int n) {
    return each(n, [](int uid) { return resource(uid, "<CalendarUID>2</CalendarUID>"); });
}

// n resources that share a calendar.
std::string shared(int n, const std::string& contentOfCalendar) {
    return planOf({.calendars = calendar(2, contentOfCalendar), .resources = resourcesOfCalendar(n)});
}

std::string assignment(int taskUID, int resourceUID, const std::string& more = {}) {
    return element("Assignment", element("TaskUID", taskUID) + element("ResourceUID", resourceUID) + more);
}

std::string record(int type, const std::string& start, const std::string& finish) {
    return element("TimephasedData", element("Type", type) + element("Start", start) + element("Finish", finish) +
                                         "<Value>PT8H0M0S</Value>");
}

// A record of one day; days follow each other through a month, and months through years.
std::string dayRecord(int type, int day) {
    const auto date = fmt::format("{:04}-{:02}-{:02}", 2000 + day / 28 / 12, day / 28 % 12 + 1, day % 28 + 1);
    return record(type, date + "T08:00:00", date + "T17:00:00");
}

std::string definition(const std::string& more) {
    return element("ExtendedAttribute", more);
}

std::string attribute(int fieldID, const std::string& value = "<Value>v</Value>") {
    return element("ExtendedAttribute", element("FieldID", fieldID) + value);
}

std::string link(int uid) {
    return element("PredecessorLink", element("PredecessorUID", uid) + "<Type>1</Type>");
}

std::string baseline(int number, const std::string& more) {
    return element("Baseline", element("Number", number) + more);
}

const std::string baselineStart = "<Start>2024-02-01T08:00:00</Start>";

std::string elevenBaselines(const std::string& more = {}) {
    return each(11, [&](int i) { return baseline(i - 1, more); });
}

int rootOf(int n) {
    return static_cast<int>(std::sqrt(n)) + 1;
}

const PlanShape onceQuadratic[] = {
    {"PlainTasks", plainTasks},
    {"ResourcesAndExceptionsThatRecur",
     [](int n) { return shared(n, element("Exceptions", times(n, "<Exception><Type>2</Type></Exception>"))); }},
    {"ResourcesAndExceptionsThatEndBeforeTheyBegin",
     [](int n) {
         return shared(n, element("Exceptions", times(n, exception(1, false, "2024-02-02T00:00:00", newYear))));
     }},
    {"ResourcesAndWeekDaysOfTheOlderKind",
     [](int n) { return shared(n, element("WeekDays", times(n, "<WeekDay><DayType>0</DayType></WeekDay>"))); }},
    {"ResourcesAndOvertimeWithoutTimes",
     [](int n) { return shared(n, element("Exceptions", times(n, exception(1, true, newYear, newYearsEve)))); }},
    {"ResourcesAndNamesOfACalendar", [](int n) { return shared(n, times(n, "<Name/>")); }},
    {"ResourcesAndListsOfACalendar", [](int n) { return shared(n, times(n, "<WeekDays/>")); }},
    {"MaterialOfOneUIDAndAssignments",
     [](int n) {
         return planOf(
             {.resources = times(n, material(5)), .assignments = times(n, assignment(1, 5, "<Units>1</Units>"))});
     }},
    {"MaterialOfOneUIDAndUnits",
     [](int n) {
         return planOf(
             {.resources = times(n, material(5)), .assignments = assignment(1, 5, times(n, "<Units>1</Units>"))});
     }},
    {"ValuesAndAliases",
     [](int n) {
         return planOf({.definitions = definition("<FieldID>7</FieldID>" + times(n, "<Alias/>")),
                        .tasks = task(1, times(n, attribute(7)))});
     }},
    {"ValuesAndTypes",
     [](int n) {
         return planOf(
             {.definitions = definition("<FieldID>7</FieldID><Alias>a</Alias>" + times(n, "<CFType>1</CFType>")),
              .tasks = each(n, [](int uid) { return task(uid, attribute(7)); })});
     }},
    {"AttributesSaidTwiceAndASection",
     [](int n) {
         const auto attributes = each(n, [](int i) { return fmt::format(" a{}=\"\"", i); });
         return planOf({.tasks = task(1, "<Notes><![CDATA[x]]></Notes>")}, {}, attributes + attributes);
     }},
    {"TextsAndEntities",
     [](int n) {
         return planOf({.tasks = task(1, element("Notes", times(10 * n, "y&a;")))},
                       "<?xml version=\"1.0\"?>\n<!DOCTYPE Project [<!ENTITY a \"x\">]>\n");
     }},
    {"TasksOfAnEntity",
     [](int n) {
         return planOf({.tasks = times(50 * n, "&a;")},
                       "<?xml version=\"1.0\"?>\n<!DOCTYPE Project [<!ENTITY a \"<Task><UID>1</UID></Task>\">]>\n");
     }},
    {"RecordsAndWorkingTimes",
     [](int n) {
         const auto minutes = each(6 * n, [](int i) {
             return fmt::format(
                 "<WorkingTime><FromTime>{0:02}:{1:02}:00</FromTime><ToTime>{0:02}:{1:02}:30</ToTime></WorkingTime>",
                 i / 60 % 24, i % 60);
         });
         const auto week = each(7, [&](int day) {
             return element("WeekDay",
                            element("DayType", day) + "<DayWorking>1</DayWorking>" + element("WorkingTimes", minutes));
         });
         const Lists lists{
             .calendars = calendar(1, "<IsBaseCalendar>1</IsBaseCalendar>" + element("WeekDays", week)),
             .tasks = task(1),
             .assignments = assignment(1, 1, times(n, record(1, "1970-01-01T08:00:00", "9999-12-31T17:00:00")))};
         return planOf(lists);
     }},
};

const PlanShape ofLists[] = {
    // Calendars
    {"ResourcesAndUIDsOfOneCalendar",
     [](int n) {
         const auto uids = each(n, [](int i) { return element("UID", i + 1); });
         return planOf(
             {.calendars =
                  element("Calendar", uids + element("WeekDays", times(n, "<WeekDay><DayType>0</DayType></WeekDay>"))),
              .resources = each(n, [](int i) { return resource(i, element("CalendarUID", i + 1)); })});
     }},
    {"ResourcesAndWorkWeeks",
     [](int n) {
         return shared(
             n,
             element(
                 "WorkWeeks",
                 times(n, "<WorkWeek><TimePeriod><FromDate>2024-01-01T00:00:00</FromDate></TimePeriod></WorkWeek>")));
     }},
    {"ResourcesAndFromDatesOfOneException",
     [](int n) {
         return shared(n, element("Exceptions", exception(1, false, newYear, newYearsEve,
                                                          element("TimePeriod", times(n, "<FromDate/>")))));
     }},
    {"ResourcesAndDayTypes",
     [](int n) { return shared(n, element("WeekDays", element("WeekDay", times(n, "<DayType>0</DayType>")))); }},
    {"ResourcesAndTypesOfOneException",
     [](int n) {
         return shared(
             n, element("Exceptions", element("Exception", "<DayWorking>0</DayWorking>" + times(n, "<Type>2</Type>"))));
     }},
    {"ResourcesAndReversedOvertimeOfManyTimes",
     [](int n) {
         return shared(n, element("Exceptions", exception(1, true, "2024-02-02T00:00:00", newYear, workingTimes(n))));
     }},
    {"ResourcesAndTimesOfADayThatIsFree",
     [](int n) {
         return shared(n, element("WeekDays", element("WeekDay", "<DayType>2</DayType><DayWorking>0</DayWorking>" +
                                                                     workingTimes(n))));
     }},
    {"ResourcesAndListsOfExceptions", [](int n) { return shared(n, times(n, "<Exceptions/>")); }},
    {"ResourcesAndCalendarsOfOneUID",
     [](int n) {
         return planOf({.calendars = times(n, calendar(2, "<WeekDays/>")), .resources = resourcesOfCalendar(n)});
     }},
    {"ResourcesOfManyCalendarUIDs",
     [](int n) {
         return planOf({.calendars = each(n, [](int i) { return calendar(i + 1, ""); }),
                        .resources = resource(1, each(n, [](int i) { return element("CalendarUID", i + 1); })) +
                                     each(n, [](int i) { return resource(i + 1, element("CalendarUID", i + 1)); })});
     }},
    {"CalendarsAndTheirLists",
     [](int n) {
         const auto k = rootOf(n);
         return planOf(
             {.calendars = each(k, [&](int i) { return calendar(i + 1, times(k, "<WeekDays/><Exceptions/>")); }),
              .resources = each(n, [&](int i) { return resource(i, element("CalendarUID", i % k + 2)); })});
     }},
    {"CalendarsNamedStandardAndNames",
     [](int n) {
         return planOf({.calendars = times(n, "<Calendar><Name>Standard</Name><Name>x</Name></Calendar>") +
                                     element("Calendar", times(n, "<Name>y</Name>"))});
     }},
    {"DaysOffAndBaselines",
     [](int n) {
         return planOf(
             {.calendars = calendar(2, element("Exceptions", times(n, exception(1, false, newYear, newYearsEve)))),
              .tasks = task(1, elevenBaselines(baselineStart)),
              .resources = resource(1, "<CalendarUID>2</CalendarUID>" + elevenBaselines())});
     }},
    // Resources and assignments
    {"MaterialAndAssignmentsOfManyResources",
     [](int n) {
         return planOf({.resources = each(n, material),
                        .assignments = element("Assignment", "<TaskUID>1</TaskUID>" + each(n, [](int i) {
                                                                 return element("ResourceUID", i);
                                                             }) + times(n, "<Units>1</Units>"))});
     }},
    {"MaterialAndRootsOfAssignmentsOfRootsOfResources",
     [](int n) {
         const auto k = rootOf(n);
         const auto uids = each(k, [](int i) { return element("ResourceUID", i); });
         return planOf({.resources = each(k, material),
                        .assignments = times(
                            k, element("Assignment", "<TaskUID>1</TaskUID>" + uids + times(k, "<Units>1</Units>")))});
     }},
    {"MaterialUnitsAndBaselines",
     [](int n) {
         return planOf(
             {.tasks = task(1, elevenBaselines(baselineStart)),
              .resources = times(n, element("Resource", "<UID>5</UID><Type>0</Type>" + baseline(0, ""))),
              .assignments = times(n, assignment(1, 5, "<Units>1</Units>" + baseline(0, "<Units>2</Units>")))});
     }},
    {"TasksOfOneUIDAndAssignmentsToNobody",
     [](int n) { return planOf({.tasks = times(n, task(1)), .assignments = times(n, assignment(1, -65535))}); }},
    {"TasksAndAssignmentsOfNoTaskBehindANestedOne",
     [](int n) {
         return planOf({.tasks = summary(1, 1) + task(2, "", 2) + each(n, [](int i) { return task(i + 2); }),
                        .assignments = times(n, "<Assignment><ResourceUID>1</ResourceUID></Assignment>")});
     }},
    {"AssignmentsOfOneTaskBehindManyOfOneUID",
     [](int n) {
         return planOf({.tasks = times(n, task(7)), .assignments = each(n, [](int i) { return assignment(7, i); })});
     }},
    // Timephased data
    {"TasksAndRecordsOfOneAssignmentOfAllOfThem",
     [](int n) {
         return planOf(
             {.tasks = each(n, [](int i) { return task(i); }),
              .assignments = element(
                  "Assignment", each(n, [](int i) { return element("TaskUID", i); }) + "<ResourceUID>1</ResourceUID>" +
                                    times(n, record(1, "2024-01-01T08:00:00", "2024-01-01T17:00:00")))});
     }},
    {"TasksAndWorkOfOneAssignmentOfAllOfThem",
     [](int n) {
         return planOf({.tasks = each(n, [](int i) { return task(i); }),
                        .assignments = element("Assignment", each(n, [](int i) { return element("TaskUID", i); }) +
                                                                 times(n, "<Work>PT8H0M0S</Work>")) +
                                       each(n, [](int i) { return assignment(i, 1, dayRecord(1, i)); })});
     }},
    {"TasksOfOneUIDAndRecordsOfOneStretch",
     [](int n) {
         return planOf(
             {.tasks = times(n, task(1)),
              .assignments = assignment(1, 1, times(n, record(1, "2024-01-01T08:00:00", "2024-01-01T17:00:00")))});
     }},
    {"RecordsOfOtherScenariosAndTasksOfOneUID",
     [](int n) {
         return planOf({.tasks = times(n, task(1)),
                        .assignments = assignment(1, 1, each(n, [](int i) { return dayRecord(4, 3 * i); }))});
     }},
    {"RecordsOfAllBaselinesAndBaselines",
     [](int n) {
         return planOf({.tasks = task(1, elevenBaselines(baselineStart)),
                        .assignments = element("Assignment",
                                               "<TaskUID>1</TaskUID><ResourceUID>1</ResourceUID>" + elevenBaselines() +
                                                   each(n, [](int i) { return dayRecord(16 + i % 3 * 6, 3 * i); }))});
     }},
    {"RecordsAndALongName",
     [](int n) {
         return planOf(
             {.tasks = element("Task", "<UID>1</UID><OutlineLevel>1</OutlineLevel>" +
                                           element("Name", times(n, std::string(100, 'x')))),
              .assignments = assignment(1, 1, times(n, record(1, "2024-01-01T08:00:00", "2024-01-01T17:00:00")))});
     }},
    {"TypesAndValuesOfOneRecord",
     [](int n) {
         return planOf(
             {.tasks = task(1),
              .assignments = assignment(
                  1, 1,
                  element("TimephasedData",
                          times(n, "<Type>1</Type><Start>2024-01-01T08:00:00</Start><Value>PT1H0M0S</Value>")))});
     }},
    // Custom fields
    {"ValuesAndFieldIDsOfOneDefinition",
     [](int n) {
         return planOf(
             {.definitions = definition("<Alias>a</Alias>" + each(n, [](int i) { return element("FieldID", i); }) +
                                        times(n, "<CFType>1</CFType>")),
              .tasks = task(1, each(n, [](int i) { return attribute(i); }))});
     }},
    {"ValuesAndNamesWithoutAlias",
     [](int n) {
         return planOf({.definitions = definition("<FieldID>7</FieldID>" + times(n, "<FieldName>f</FieldName>")),
                        .tasks = each(n, [](int uid) { return task(uid, attribute(7)); })});
     }},
    {"NoValuesAndALongAlias",
     [](int n) {
         return planOf(
             {.definitions = definition("<FieldID>7</FieldID>" + element("Alias", times(n, std::string(50, 'a')))),
              .tasks = each(n, [](int uid) { return task(uid, attribute(7, "")); })});
     }},
    {"NoValuesOfOneTaskAndALongAlias",
     [](int n) {
         return planOf(
             {.definitions = definition("<FieldID>7</FieldID>" + element("Alias", times(n, std::string(50, 'a')))),
              .tasks = task(1, times(n, attribute(7, "")))});
     }},
    {"ResourcesValuesAndAliases",
     [](int n) {
         return planOf({.definitions = definition("<FieldID>7</FieldID>" + times(n, "<Alias>a</Alias>")),
                        .resources = each(n, [](int uid) { return resource(uid, attribute(7)); })});
     }},
    {"FieldIDsOfOneValueAndDefinitions",
     [](int n) {
         return planOf(
             {.definitions = each(n, [](int i) { return definition(element("FieldID", i) + "<Alias>a</Alias>"); }),
              .tasks = task(1, element("ExtendedAttribute",
                                       each(n, [](int i) { return element("FieldID", i); }) + "<Value>v</Value>"))});
     }},
    {"DefinitionsWhoseFieldIDsBeginAlike",
     [](int n) {
         const auto fieldID = [](int i) { return element("FieldID", std::string(100, '7') + std::to_string(i)); };
         return planOf({.definitions = each(n, [&](int i) { return definition(fieldID(i) + "<Alias>a</Alias>"); }),
                        .tasks = task(1, each(n, [&](int i) {
                                          return element("ExtendedAttribute", fieldID(i) + "<Value>v</Value>");
                                      }))});
     }},
    // Links and the outline
    {"LinksAndTasksOfTwoUIDs",
     [](int n) {
         return planOf({.tasks = each(n, [](int i) {
                            return element("Task", element("UID", i) + element("UID", i + 1) +
                                                       "<OutlineLevel>1</OutlineLevel>" + link(i));
                        })});
     }},
    {"UIDsAndTypesOfOneLink",
     [](int n) {
         return planOf({.tasks = task(1, element("PredecessorLink",
                                                 times(n, "<PredecessorUID>1</PredecessorUID><Type>1</Type>"))) +
                                 each(n, [](int i) { return task(i + 1); })});
     }},
    {"TasksWithoutAParent", [](int n) { return planOf({.tasks = each(n, [](int i) { return task(i, "", 2); })}); }},
    {"LevelsThatFallAndRise",
     [](int n) { return planOf({.tasks = each(n, [n](int i) { return summary(i, i % 2 == 0 ? n - i + 1 : i); })}); }},
    {"TasksOfOneUIDOnManyLevels",
     [](int n) { return planOf({.tasks = each(n, [](int i) { return summary(7, i % 50 + 1); }), .saveVersion = 9}); }},
    // Baselines, notes and whole lists
    {"BaselinesOfOneTaskAndFields",
     [](int n) {
         return planOf({.tasks = task(1, times(n, "<Start>2024-01-01T08:00:00</Start>") +
                                             each(n, [](int i) { return baseline(i % 11, baselineStart); }))});
     }},
    {"BaselinesAndValuesOfOneField",
     [](int n) {
         return planOf(
             {.definitions = definition("<FieldID>7</FieldID>" + times(n, "<Alias>a</Alias>")),
              .tasks = each(n, [](int i) { return task(i, attribute(7) + baseline(i % 11, baselineStart)); })});
     }},
    {"LinesOfANoteAndBaselines",
     [](int n) {
         return planOf(
             {.tasks = task(1, element("Notes", times(n, "a line of some length that people could write\n&#13;")) +
                                   elevenBaselines(baselineStart))});
     }},
    {"ListsOfTasksResourcesAndAssignments",
     [](int n) {
         return planOf(
             {.tasks = each(n, [](int i) { return task(i) + "</Tasks><Tasks>"; }),
              .resources = each(n, [](int i) { return resource(i) + "</Resources><Resources>"; }),
              .assignments = each(n, [](int i) { return assignment(i, i) + "</Assignments><Assignments>"; })});
     }},
    {"TasksAndDatesSaidOften",
     [](int n) {
         const auto k = rootOf(n);
         return planOf({.tasks = each(k, [k](int i) {
                            return task(i, times(k,
                                                 "<PreLeveledStart/><Pinned>1</Pinned><PinnedStart/><ConstraintType>2</"
                                                 "ConstraintType><ConstraintDate/>"));
                        })});
     }},
};

}  // namespace

std::string plainTasks(int n) {
    return planOf({.tasks = each(n, [](int uid) { return task(uid); })});
}

std::span<const PlanShape> shapesOnceQuadratic() {
    return onceQuadratic;
}

std::span<const PlanShape> shapesOfLists() {
    return ofLists;
}
