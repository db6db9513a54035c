#include <fmt/format.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "CountedWork.h"
#include "FuzzWorld.h"
#include "MSPDIMemoryImport.h"
#include "MSPDIMend.h"
#include "PlanGenerator.h"
#include "ProcessTiming.h"

// Twice the damage, twice the work of mending it, whatever it is; and no plan takes more than three imports.

namespace {

std::string element(const std::string& name, const std::string& content) {
    return fmt::format("<{0}>{1}</{0}>", name, content);
}

// What `make` gives for 1 to n.
template <typename Make>
std::string each(int n, const Make& make) {
    std::string text;
    for (int number = 1; number <= n; ++number) {
        text += make(number);
    }
    return text;
}

struct Lists {
    std::string definitions{};
    std::string ofCalendar{};  // beside the standard calendar's name
    std::string calendars{};
    std::string tasks{};
    std::string resources{};
    std::string assignments{};
};

std::string planOf(const Lists& lists) {
    return "<Project xmlns=\"http://schemas.microsoft.com/project\"><SaveVersion>14</SaveVersion>"
           "<StartDate>2012-01-09T08:00:00</StartDate><FinishDate>2012-12-21T17:00:00</FinishDate>" +
           element("ExtendedAttributes", lists.definitions) +
           element("Calendars",
                   element("Calendar", "<UID>1</UID><IsBaseCalendar>1</IsBaseCalendar>" + lists.ofCalendar) +
                       lists.calendars) +
           element("Tasks", lists.tasks) + element("Resources", lists.resources) +
           element("Assignments", lists.assignments) + "</Project>";
}

std::string task(int uid, const std::string& more = {}, int level = 1) {
    return element("Task",
                   fmt::format("<UID>{}</UID><Name>T</Name><OutlineLevel>{}</OutlineLevel>{}", uid, level, more));
}

std::string tasks(int n) {
    return each(n, [](int uid) { return task(uid); });
}

std::string resource(int uid, const std::string& more = {}) {
    return element("Resource", fmt::format("<UID>{}</UID>", uid) + more);
}

std::string resources(int n) {
    return each(n, [](int uid) { return resource(uid, fmt::format("<CalendarUID>{}</CalendarUID>", uid + 1)); });
}

std::string assignment(const std::string& taskUID, const std::string& resourceUID, const std::string& more = {}) {
    return element("Assignment", element("TaskUID", taskUID) + element("ResourceUID", resourceUID) + more);
}

std::string record(const std::string& start) {
    return "<TimephasedData><Type>1</Type>" + element("Start", start) +
           "<Finish>2012-01-09T17:00:00</Finish><Value>PT8H0M0S</Value></TimephasedData>";
}

std::string exception(const std::string& more) {
    return "<Exception><TimePeriod><FromDate>2012-01-10T00:00:00</FromDate><ToDate>2012-06-10T00:00:00</ToDate>"
           "</TimePeriod>" +
           more + "<DayWorking>0</DayWorking></Exception>";
}

// A file in which a plan lies behind many that hold nothing.
std::string behindOthers(int n, const std::string& other) {
    return each(n, [&](int) { return other; }) + planOf({.tasks = tasks(2)});
}

const std::string emptyPlan = "<Project xmlns=\"http://schemas.microsoft.com/project\"></Project>";

std::string escaped(const std::string& markup) {
    std::string text;
    for (const char character : markup) {
        text += character == '<' ? "&lt;" : std::string(1, character);
    }
    return text;
}

struct Damage {
    const char* name;
    const char* step;  // empty for the necessary ones
    std::string (*plan)(int n);

    friend std::ostream& operator<<(std::ostream& stream, const Damage& damage) { return stream << damage.name; }
};

const Damage damages[] = {
    {"valuesOfTasks", "",
     [](int n) { return planOf({.tasks = each(n, [](int uid) { return task(uid, "<Duration>x</Duration>"); })}); }},
    {"valuesOfOneTask", "",
     [](int n) {
         return planOf({.tasks = task(1, each(n, [](int) {
                                          return std::string(
                                              "<PredecessorLink><PredecessorUID>x</PredecessorUID></PredecessorLink>");
                                      }))});
     }},
    {"oneValueManyTimes", "",
     [](int n) { return planOf({.tasks = task(1, each(n, [](int) { return std::string("<Start>x</Start>"); }))}); }},
    {"baselines", "",
     [](int n) {
         return planOf({.tasks = each(n, [](int uid) {
                            return task(uid,
                                        "<Start>2012-01-09T08:00:00</Start><Baseline><Number>0</Number><Start>x</Start>"
                                        "</Baseline>");
                        })});
     }},
    {"definitions", "",
     [](int n) {
         return planOf({.definitions = each(n,
                                            [](int id) {
                                                return element("ExtendedAttribute",
                                                               fmt::format("<FieldID>{0}</FieldID><Alias>A{0}</Alias>"
                                                                           "<CFType>x</CFType>",
                                                                           id));
                                            }),
                        .tasks = each(n, [](int uid) {
                            return task(uid, element("ExtendedAttribute",
                                                     fmt::format("<FieldID>{}</FieldID><Value>v</Value>", uid)));
                        })});
     }},
    {"valuesOfResources", "",
     [](int n) {
         return planOf({.resources = each(n, [](int uid) { return resource(uid, "<MaxUnits>x</MaxUnits>"); })});
     }},
    {"calendarsOfResources", "",
     [](int n) {
         return planOf(
             {.calendars = each(
                  n,
                  [](int uid) {
                      return element(
                          "Calendar",
                          fmt::format(
                              "<UID>{}</UID><WeekDays><WeekDay><DayType>2</DayType>"
                              "<DayWorking>1</DayWorking><WorkingTimes><WorkingTime><FromTime>2012-01-09X8:00:00"
                              "</FromTime><ToTime>17:00:00</ToTime></WorkingTime></WorkingTimes></WeekDay></WeekDays>",
                              uid + 1));
                  }),
              .resources = resources(n)});
     }},
    {"exceptionsOfOneCalendar", "",
     [](int n) {
         return planOf({.ofCalendar = element(
                            "Exceptions", each(n, [](int) {
                                return std::string(
                                    "<Exception><TimePeriod><FromDate>x</FromDate><ToDate>2012-01-10T00:00:00</ToDate>"
                                    "</TimePeriod><Type>1</Type><DayWorking>0</DayWorking></Exception>");
                            }))});
     }},
    {"tasksOfAssignments", "",
     [](int n) {
         return planOf({.tasks = tasks(n),
                        .resources = each(n, [](int uid) { return resource(uid); }),
                        .assignments = each(n, [](int uid) { return assignment("x", std::to_string(uid)); })});
     }},
    {"resourcesOfAssignments", "",
     [](int n) {
         return planOf({.tasks = tasks(n),
                        .resources = each(n, [](int uid) { return resource(uid); }),
                        .assignments = each(n, [](int uid) { return assignment(std::to_string(uid), "x"); })});
     }},
    {"recordsOfOneAssignment", "",
     [](int n) {
         return planOf(
             {.tasks = tasks(1), .assignments = assignment("1", "1", each(n, [](int) { return record("x"); }))});
     }},
    {"recordsOfAssignments", "",
     [](int n) {
         return planOf({.tasks = tasks(n), .assignments = each(n, [](int uid) {
                                               return assignment(std::to_string(uid), "1", record("x"));
                                           })});
     }},
    {"missingUIDs", "",
     [](int n) { return planOf({.tasks = each(n, [](int) { return std::string("<Task><Name>a</Name></Task>"); })}); }},
    {"negativeUIDs", "",
     [](int n) {
         return planOf({.tasks = each(n,
                                      [n](int uid) {
                                          return task(
                                              -uid, fmt::format("<PredecessorLink><PredecessorUID>-{}</PredecessorUID>"
                                                                "</PredecessorLink>",
                                                                uid % n + 1));
                                      }),
                        .assignments = each(n, [](int uid) { return assignment(std::to_string(-uid), "1"); })});
     }},
    {"roots", "",
     [](int n) { return planOf({.tasks = each(n, [](int) { return task(0, "<Summary>1</Summary>", 0); })}); }},
    {"levels", "",
     [](int n) {
         return planOf({.tasks = each(n, [n](int uid) { return task(uid, "<Summary>1</Summary>", uid - n); })});
     }},
    {"types", "",
     [](int n) { return planOf({.resources = each(n, [](int uid) { return resource(uid, "<Type>2</Type>"); })}); }},
    {"plansInAText", "", [](int n) { return "x" + behindOthers(n, emptyPlan); }},
    {"plansWithDeclarations", "",
     [](int n) { return "x" + behindOthers(n, "<?xml version='1.0'?><!DOCTYPE Project [" + emptyPlan); }},
    {"plansBehindInstructions", "",
     [](int n) { return "x" + each(n, [](int) { return std::string("<?xml-s?>"); }) + behindOthers(n, emptyPlan); }},
    {"plansInTexts", "", [](int n) { return "<a>" + escaped(behindOthers(n, emptyPlan)) + "</a>"; }},
    {"plansInSections", "", [](int n) { return "<a><![CDATA[" + behindOthers(n, emptyPlan) + "]]></a>"; }},
    {"fields", "field-keys",
     [](int n) {
         return planOf(
             {.definitions = each(n,
                                  [](int id) {
                                      return element("ExtendedAttribute",
                                                     fmt::format("<FieldID>{0}</FieldID><Alias>A{0}</Alias>", id));
                                  }),
              .tasks = each(n, [](int uid) {
                  return task(uid,
                              element("ExtendedAttribute", fmt::format("<FieldID>{}</FieldID><Value>v</Value>", uid)));
              })});
     }},
    {"olderExceptions", "exceptions-2003",
     [](int n) {
         return planOf(
             {.ofCalendar = element(
                  "WeekDays", each(n, [](int number) {
                      return fmt::format(
                          "<WeekDay><DayType>0</DayType><DayWorking>0</DayWorking><TimePeriod><FromDate>{0}-01-10"
                          "T00:00:00</FromDate><ToDate>{0}-01-10T00:00:00</ToDate></TimePeriod></WeekDay>",
                          2000 + number);
                  }))});
     }},
    {"recurringExceptions", "recurring-exceptions",
     [](int n) {
         return planOf({.ofCalendar = element("Exceptions", each(n, [](int number) {
                                                  return exception(fmt::format(
                                                      "<Type>2</Type><Month>{}</Month><MonthDay>{}</MonthDay>",
                                                      number % 12, number % 28));
                                              }))});
     }},
    {"weeks", "resource-weeks",
     [](int n) {
         return planOf(
             {.calendars = each(n,
                                [](int uid) {
                                    return element(
                                        "Calendar",
                                        fmt::format("<UID>{}</UID><BaseCalendarUID>1</BaseCalendarUID>", uid + 1));
                                }),
              .resources = resources(n)});
     }},
    {"lags", "lag-to-field",
     [](int n) {
         return planOf(
             {.tasks =
                  tasks(n) + task(n + 1, each(n, [](int uid) {
                                      return fmt::format(
                                          "<PredecessorLink><PredecessorUID>{}</PredecessorUID><LinkLag>4800</LinkLag>"
                                          "</PredecessorLink>",
                                          uid);
                                  }))});
     }},
    {"deadlines", "deadline-to-field",
     [](int n) {
         return planOf(
             {.tasks = each(n, [](int uid) { return task(uid, "<Deadline>2012-02-01T17:00:00</Deadline>"); })});
     }},
    {"units", "units-to-field",
     [](int n) {
         return planOf({.tasks = tasks(n),
                        .resources = each(n, [](int uid) { return resource(uid); }),
                        .assignments = each(n, [](int uid) {
                            return assignment(std::to_string(uid), std::to_string(uid), "<Units>0.5</Units>");
                        })});
     }},
};

std::uint64_t stepsOfMending(const std::string& plan, const std::string& step = {}) {
    FuzzWorld world;
    MSPDIMendOptions options;
    if (!step.empty()) {
        options.only.push_back(step);
    }
    const auto before = countedWork();
    const auto mended = MSPDIMendPlan("Plan.xml", plan, world.services, options);
    const auto after = countedWork();
    EXPECT_EQ(mended.verdict, MSPDIMendVerdict::Mended) << mended.obstacle;
    return after.steps - before.steps;
}

std::uint64_t stepsOfImporting(const std::string& plan) {
    FuzzWorld world;
    const auto before = countedWork();
    EXPECT_TRUE(MSPDIImportBytesInMemory("Plan.xml", plan, world.services, MSPDIMemoryKeeping::Names).isImported());
    return countedWork().steps - before.steps;
}

class MendGrowth : public testing::TestWithParam<Damage> {};

// A walk over all others for each of them gives nearly 2.
TEST_P(MendGrowth, isLinearInTheDamage) {
    constexpr double largestExponent = 1.1;
    std::vector<double> bytes;
    std::vector<double> steps;
    static_cast<void>(stepsOfMending(GetParam().plan(10), GetParam().step));
    for (const int n : {250, 500, 1000, 2000}) {
        const auto plan = GetParam().plan(n);
        bytes.push_back(static_cast<double>(plan.size()));
        steps.push_back(static_cast<double>(stepsOfMending(plan, GetParam().step)));
    }
    EXPECT_LE(growthExponent(bytes, steps), largestExponent) << steps.front() << ", " << steps.back();
}

INSTANTIATE_TEST_SUITE_P(Of, MendGrowth, testing::ValuesIn(damages),
                         [](const auto& damage) { return damage.param.name; });

std::string replacedAll(std::string text, const std::string& piece, const std::string& other, std::size_t most) {
    for (auto at = text.find(piece); at != std::string::npos && most > 0; at = text.find(piece, at + other.size())) {
        text.replace(at, piece.size(), other);
        --most;
    }
    return text;
}

// The plan of a planning program: most of what it holds is never read.
TEST(MendWork, isThatOfThreeImportsAtMost) {
    std::string plan;
    generatePlan({.tasks = 1000}, [&plan](std::string_view piece) { plan += piece; });
    static_cast<void>(stepsOfImporting(plan));
    const auto three = 3 * stepsOfImporting(plan);
    EXPECT_LE(stepsOfMending(replacedAll(plan, "<Summary>1</Summary>", "<Summary>0</Summary>", 1)), three);
    EXPECT_LE(stepsOfMending(replacedAll(plan, "<IsBaseCalendar>1<", "<IsBaseCalendar>0<", 1)), three);
    EXPECT_LE(stepsOfMending(replacedAll(plan, "<Duration>P", "<Duration>x", 1)), three);
    EXPECT_LE(stepsOfMending(replacedAll(plan, "<Duration>P", "<Duration>x", 50)), three);
}

}  // namespace
