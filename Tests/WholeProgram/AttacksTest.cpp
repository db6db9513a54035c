#include "AttackBounds.h"
#include "BundleMask.h"

// Hostile plans: each ends within bounds of time and memory, with a bundle or a clear reason.

namespace {

constexpr int Many = 1'000'000;

std::string exception(const std::string& from, const std::string& to, const std::string& working = "0",
                      const std::string& times = "") {
    return "<Exception><Type>1</Type><DayWorking>" + working + "</DayWorking><TimePeriod><FromDate>" + from +
           "</FromDate><ToDate>" + to + "</ToDate></TimePeriod>" + times + "</Exception>";
}

std::string exceptions(const std::string& content) {
    return "<Exceptions>" + content + "</Exceptions>";
}

const std::string LongException = exception("1000-01-01T00:00:00", "8999-12-31T23:59:00");

// A plan whose tasks and split work lean on a Monday with these working times.
std::string planWithMonday(const std::string& workingTimes) {
    const auto piece = [](const std::string& day) {
        return "<TimephasedData><Type>1</Type><Start>2012-01-" + day + "T08:00:00</Start><Finish>2012-01-" + day +
               "T17:00:00</Finish><Value>PT8H0M0S</Value></TimephasedData>";
    };
    return planOf({"<Tasks>" +
                       taskElement("1",
                                   "<Start>2012-01-09T08:00:00</Start><Finish>2012-03-09T08:00:00</Finish>"
                                   "<Duration>PT800H0M0S</Duration><PercentComplete>50</PercentComplete>") +
                       "</Tasks><Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID>1</ResourceUID>" +
                       piece("09") + piece("16") + "</Assignment></Assignments>",
                   "<WeekDays><WeekDay><DayType>2</DayType><DayWorking>1</DayWorking><WorkingTimes>" + workingTimes +
                       "</WorkingTimes></WeekDay></WeekDays>",
                   ""});
}

std::string workingTime(const std::string& from, const std::string& to) {
    return "<WorkingTime><FromTime>" + from + "</FromTime><ToTime>" + to + "</ToTime></WorkingTime>";
}

}  // namespace

TEST(Attacks, entitiesThatMultiplyTextEndTheImport) {
    std::string declaration = "<!DOCTYPE Project [<!ENTITY e0 \"0123456789\">";
    for (int level = 1; level <= 12; ++level) {
        const auto inner = "&e" + std::to_string(level - 1) + ";";
        declaration += "<!ENTITY e" + std::to_string(level) + " \"";
        for (int i = 0; i < 10; ++i) {
            declaration += inner;
        }
        declaration += "\">";
    }
    const PlanImport import("entity-bomb", planOf({"<Title>&e12;</Title>", "", declaration + "]>"}));
    EXPECT_EQ(import.status(), 1);
    EXPECT_TRUE(import.logHolds("MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data."));
    expectWithin(import, 2, 100);
}

TEST(Attacks, aMillionLevelsOfNesting) {
    for (const std::string_view owner : {"Title", "Other"}) {
        const PlanImport import("nesting", planEndingWith([owner](std::ostream& file) {
                                    file << '<' << owner << '>';
                                    repeat(file, "<a>", Many);
                                    repeat(file, "</a>", Many);
                                    file << "</" << owner << '>';
                                }));
        EXPECT_EQ(import.status(), 0);
        expectWithin(import, 5, 300);
    }
}

TEST(Attacks, aMillionLevelsThatAreNeverClosed) {
    const PlanImport import("open-nesting", planEndingWith([](std::ostream& file) { repeat(file, "<a>", Many); }));
    EXPECT_EQ(import.status(), 0);
    EXPECT_TRUE(import.logHolds("WARNING: Repaired malformed XML"));
    expectWithin(import, 10, 600);
}

TEST(Attacks, tenMillionAttributes) {
    for (const std::string_view owner : {"Title", "Other"}) {
        const PlanImport import("attributes", planEndingWith([owner](std::ostream& file) {
                                    file << '<' << owner;
                                    for (int i = 0; i < 10 * Many; ++i) {
                                        file << " a" << i << "=\"\"";
                                    }
                                    file << "/>";
                                }));
        EXPECT_EQ(import.status(), 0);
        expectWithin(import, 10, 1000);
    }
}

TEST(Attacks, fiveMillionChildren) {
    struct Case {
        std::string_view before, child, after;
        int status;
        std::string_view reason;
    };
    constexpr Case cases[] = {
        {"<Tasks>", "<Task/>", "</Tasks>", 1, "Failed to get UID from Task."},
        {"", "<Other/>", "", 0, ""},
        {"<Tasks><Task><UID>1</UID>", "<ExtendedAttribute/>", "</Task></Tasks>", 0, ""},
        {"<Tasks><Task><UID>1</UID>", "<Name>a</Name>", "</Task></Tasks>", 0, ""},
        {"<Tasks><Task><UID>1</UID>", "<Baseline/>", "</Task></Tasks>", 0, ""},
        {"<Tasks><Task><UID>1</UID>", "<PredecessorLink/>", "</Task></Tasks>", 0, ""},
        {"<Resources><Resource><UID>1</UID>", "<UID>2</UID>", "</Resource></Resources>", 0, ""},
        {"<Assignments><Assignment><TaskUID>1</TaskUID>", "<TimephasedData/>", "</Assignment></Assignments>", 0, ""},
    };
    for (const auto& [before, child, after, status, reason] : cases) {
        const PlanImport import("children", planEndingWith([&, b = before, c = child, a = after](std::ostream& file) {
                                    file << b;
                                    repeat(file, c, 5 * Many);
                                    file << a;
                                }));
        EXPECT_EQ(import.status(), status) << child;
        EXPECT_TRUE(import.logHolds(reason)) << child;
        expectWithin(import, 20, 1500);
    }
}

// Each line becomes a paragraph: no other text of a plan grows as much.
TEST(Attacks, aNoteOfAMillionEmptyLines) {
    const PlanImport import("empty-lines", planEndingWith([](std::ostream& file) {
                                file << "<Tasks><Task><UID>1</UID><Notes>";
                                repeat(file, "\n", Many);
                                file << "</Notes></Task></Tasks>";
                            }));
    EXPECT_EQ(import.status(), 0);
    EXPECT_EQ(import.texts("lit").size(), static_cast<std::size_t>(Many));
    expectWithin(import, 5, 400);
}

// In an encoding that is read as a whole, where unknown names are kept too.
TEST(Attacks, aBaselineOfManyNamesIsNotLookedUpOneByOne) {
    const auto values = [](std::ostream& file, int value) {
        for (int i = 0; i < 200'000; ++i) {
            file << "<n" << i << '>' << value << "</n" << i << '>';
        }
    };
    const PlanImport import("many-names",
                            planEndingWith(
                                [&values](std::ostream& file) {
                                    file << "<Tasks><Task><UID>1</UID><OutlineLevel>1</OutlineLevel><Name>\xFC</Name>";
                                    values(file, 1);
                                    file << "<Baseline><Number>0</Number>";
                                    values(file, 2);
                                    file << "</Baseline></Task></Tasks>";
                                },
                                {"", "", R"(<?xml version="1.0" encoding="windows-1252"?>)"}));
    EXPECT_EQ(import.status(), 0);
    EXPECT_EQ(import.texts("title", "Baseline.xml"), std::vector<std::string>{"\xC3\xBC"});
    expectWithin(import, 5, 400);
}

// Each in a plan of its own: one that fails must not hide the others.
TEST(Attacks, numbersOfAMillionDigits) {
    std::vector<std::string> contents{
        "<Tasks><Task><UID>@</UID></Task></Tasks>",
        "<Tasks><Task><UID>1</UID><OutlineLevel>@</OutlineLevel></Task></Tasks>",
        "<MinutesPerDay>@</MinutesPerDay>",
        "<CurrencyDigits>@</CurrencyDigits>",
        "<SaveVersion>@</SaveVersion>",
        "<Resources><Resource><UID>@</UID></Resource></Resources>",
        "<Resources><Resource><UID>1</UID><MaxUnits>@</MaxUnits></Resource></Resources>",
        "<Resources><Resource><UID>1</UID><CostPerUse>@</CostPerUse></Resource></Resources>",
    };
    for (const std::string name : {"Priority", "PercentComplete", "Work", "FixedCost", "Type", "ConstraintType",
                                   "Summary", "Duration", "Start", "PreLeveledStart"}) {
        for (const std::string value :
             {"@", "-@", "0.@", "PT@H0M0S", "PT0H0M@S", "@-01-01T00:00:00", "2012-01-01T00:00:@"}) {
            std::string element("<");
            element.append(name).append(">").append(value).append("</").append(name).append(">");
            contents.push_back("<Tasks>" + taskElement("1", element) + "</Tasks>");
        }
    }
    const std::string digits(Many, '9');
    for (auto content : contents) {
        SCOPED_TRACE(content);
        replaceAll(content, "@", digits);
        const PlanImport import("digits", planOf({content, "", ""}));
        EXPECT_EQ(import.complaints(), "");
        EXPECT_EQ(import.status(), import.logHolds("] Exception: MSPCInternalInconsistency\n") ? 1 : 0);
        expectWithin(import, 5, 200);
    }
}

TEST(Attacks, datesOfYearZeroAndOfYearTwoBillion) {
    const PlanImport import(
        "dates", planOf({"<Tasks>" +
                             taskElement("1",
                                         "<Start>2000000000-01-01T00:00:00</Start>"
                                         "<Finish>0000-01-01T00:00:00</Finish><Duration>PT8H0M0S</Duration>"
                                         "<PercentComplete>50</PercentComplete>") +
                             taskElement("2",
                                         "<Start>0000-01-01T00:00:00</Start>"
                                         "<Finish>2000000000-01-01T00:00:00</Finish>"
                                         "<Duration>PT2000000000H0M0S</Duration>"
                                         "<PercentComplete>50</PercentComplete>") +
                             "</Tasks><Assignments><Assignment><TaskUID>2</TaskUID><ResourceUID>1</ResourceUID>"
                             "<TimephasedData><Type>1</Type><Start>0000-01-01T00:00:00</Start><Finish>"
                             "0000-01-02T00:00:00</Finish><Value>PT8H0M0S</Value></TimephasedData><TimephasedData>"
                             "<Type>1</Type><Start>2000000000-01-01T00:00:00</Start><Finish>"
                             "2000000000-01-02T00:00:00</Finish><Value>PT8H0M0S</Value></TimephasedData></Assignment>"
                             "</Assignments>",
                         "", ""}));
    EXPECT_EQ(import.status(), 0) << import.log();
    EXPECT_EQ(import.complaints(), "");
    expectWithin(import, 2, 100);
}

TEST(Attacks, outlineLevelsAtTheEndsOf64Bits) {
    const auto taskOfLevel = [](const std::string& uid, const std::string& level) {
        return "<Task><UID>" + uid + "</UID><OutlineLevel>" + level + "</OutlineLevel></Task>";
    };
    const auto plan = [&](const std::string& level) {
        return planOf(
            {"<Tasks>" + taskOfLevel("1", "1") + taskOfLevel("2", level) + taskOfLevel("3", "1") + "</Tasks>", "", ""});
    };
    const PlanImport highest("highest-level", plan("9223372036854775807"));
    EXPECT_EQ(highest.status(), 0) << highest.log();
    expectWithin(highest, 2, 100);
    const PlanImport lowest("lowest-level", plan("-9223372036854775808"));
    EXPECT_EQ(lowest.status(), 1);
    EXPECT_TRUE(lowest.logHolds("Unexpected outline level -9223372036854775808 found in task (UID=2)"));
}

TEST(Attacks, identifiersAtTheEndsOf64Bits) {
    const PlanImport highest(
        "highest-uid", planOf({"<Tasks>" + taskElement("9223372036854775807") + taskElement("9223372036854775806") +
                                   "</Tasks><Resources><Resource><UID>9223372036854775807</UID><Name>a</Name>"
                                   "</Resource></Resources><Assignments><Assignment><TaskUID>9223372036854775807"
                                   "</TaskUID><ResourceUID>9223372036854775807</ResourceUID></Assignment>"
                                   "</Assignments>",
                               "", ""}));
    EXPECT_EQ(highest.status(), 0) << highest.log();
    EXPECT_EQ(highest.complaints(), "");
    const PlanImport lowest("lowest-uid", planOf({"<Resources><Resource><UID>-9223372036854775808</UID></Resource>"
                                                  "</Resources>",
                                                  "", ""}));
    EXPECT_EQ(lowest.status(), 1);
    EXPECT_TRUE(
        lowest.logHolds("Invalid format of MSPDI Resource ID (can not be negative number): -9223372036854775808"));
}

TEST(Attacks, workingTimesThatMakeNoSense) {
    const std::string timesOfMonday[] = {
        workingTime("17:00:00", "08:00:00"),
        workingTime("08:00:00", "17:00:00") + workingTime("09:00:00", "18:00:00"),
        workingTime("-08:00:00", "-07:00:00"),
        workingTime("00:00:00", "277777777777777:46:40"),
        workingTime("00:00:-1000000000000000000", "00:00:1000000000000000000"),
        workingTime("08:00:00", "08:00:00"),
        workingTime("", "") + workingTime("x", "y"),
    };
    for (const auto& times : timesOfMonday) {
        const PlanImport import("monday", planWithMonday(times));
        EXPECT_TRUE(import.status() == 0 || import.logHolds("Exception: MSPCInternalInconsistency\n")) << import.log();
        EXPECT_EQ(import.complaints(), "");
        expectWithin(import, 2, 100);
    }
}

TEST(Attacks, aWeekOfMoreWorkingTimesThanMinutesIsMapped) {
    std::string times;
    for (int i = 0; i <= 10'080; ++i) {
        times += workingTime("08:00:00", "12:00:00");
    }
    const PlanImport import("crowded-week", planWithMonday(times));
    EXPECT_EQ(import.status(), 0);
    EXPECT_EQ(import.complaints(), "");
    expectWithin(import, 2, 100);
}

TEST(Attacks, aHolidayOfEightThousandYearsIsMapped) {
    const PlanImport import("8000-years", planOf({"", exceptions(LongException), ""}));
    EXPECT_EQ(import.status(), 0);
    EXPECT_EQ(import.complaints(), "");
    expectWithin(import, 5, 400);
}

TEST(Attacks, aHolidayOfTwoBillionYearsIsRefused) {
    const PlanImport import(
        "2000000000-years",
        planOf({"", exceptions(exception("0000-01-01T00:00:00", "2000000000-01-01T00:00:00")), ""}));
    EXPECT_EQ(import.status(), 1);
    EXPECT_TRUE(import.logHolds("Too many calendar events from '0000-01-01T00:00:00' to '2000000000-01-01T00:00:00'."));
    expectWithin(import, 1, 100);
}

TEST(Attacks, aLongHolidayThatEachResourceHasIsRefused) {
    std::string resources;
    for (int uid = 1; uid <= 1000; ++uid) {
        resources += "<Resource><UID>" + std::to_string(uid) + "</UID><CalendarUID>1</CalendarUID></Resource>";
    }
    const PlanImport import("resources",
                            planOf({"<Resources>" + resources + "</Resources>", exceptions(LongException), ""}));
    EXPECT_EQ(import.status(), 1);
    EXPECT_TRUE(
        import.logHolds("Too many working times and calendar events in all schedules together: more than 10000000."));
    expectWithin(import, 15, 3000);
}

// A kilobyte that wrote 555 MB: each of twelve scenarios had the 521,775 weeks.
TEST(Attacks, aHolidayOfTenThousandYearsInTwelveScenariosIsRefused) {
    std::string baselines;
    for (int number = 0; number <= 10; ++number) {
        baselines += "<Baseline><Number>" + std::to_string(number) + "</Number></Baseline>";
    }
    const PlanImport import("twelve-scenarios",
                            planOf({"<Tasks>" + taskElement("1", baselines) + "</Tasks>",
                                    exceptions(exception("0001-01-01T00:00:00", "9999-01-01T00:00:00")), ""}));
    EXPECT_EQ(import.status(), 1);
    EXPECT_TRUE(import.logHolds("Too many calendar events from '0001-01-01T00:00:00' to '9999-01-01T00:00:00'."));
    expectWithin(import, 5, 400);
}

// What the plan itself holds is never too much, and what it multiplies not soon.
TEST(Attacks, aLongAbsenceOfEachOfManyResourcesIsMapped) {
    std::string calendars;
    std::string resources;
    for (int uid = 2; uid < 512; ++uid) {
        const auto number = std::to_string(uid);
        calendars += "<Calendar><UID>" + number + "</UID>" +
                     exceptions(exception("1984-01-01T00:00:00", "2049-12-31T23:59:00")) + "</Calendar>";
        resources += "<Resource><UID>" + number + "</UID><CalendarUID>" + number + "</CalendarUID></Resource>";
    }
    const PlanImport import(
        "absences",
        planOf({"<Calendars>" + calendars + "</Calendars><Resources>" + resources + "</Resources>", "", ""}));
    EXPECT_EQ(import.status(), 0) << import.log().substr(0, 2000);
    EXPECT_EQ(import.complaints(), "");
    expectWithin(import, 10, 1000);
}

TEST(Attacks, aCalendarOfHolidaysThatManyResourcesShareIsMappedOnce) {
    std::string holidays;
    for (int day = 0; day < 370; ++day) {
        const auto date = std::to_string(2010 + day / 28 / 12) + "-" + std::to_string(101 + day / 28 % 12).substr(1) +
                          "-" + std::to_string(101 + day % 28).substr(1);
        holidays += exception(date + "T00:00:00", date + "T23:59:00");
    }
    std::string resources;
    for (int uid = 1; uid <= 2650; ++uid) {
        resources += "<Resource><UID>" + std::to_string(uid) + "</UID><CalendarUID>2</CalendarUID></Resource>";
    }
    const PlanImport import("shared-calendar",
                            planOf({"<Calendars><Calendar><UID>2</UID>" + exceptions(holidays) +
                                        "</Calendar></Calendars><Resources>" + resources + "</Resources>",
                                    "", ""}));
    EXPECT_EQ(import.status(), 0) << import.log().substr(0, 2000);
    EXPECT_EQ(import.texts("event").size(), 2650U * 370U);
    expectWithin(import, 3, 500);
}

TEST(Attacks, aLongFieldNameThatEachTaskHasIsRefused) {
    const PlanImport import("alias", planEndingWith([](std::ostream& file) {
                                file << "<ExtendedAttributes><ExtendedAttribute><FieldID>1</FieldID><Alias>";
                                repeat(file, "0123456789", Many);
                                file << "</Alias></ExtendedAttribute></ExtendedAttributes><Tasks>";
                                for (int uid = 1; uid <= 1000; ++uid) {
                                    file << taskElement(std::to_string(uid),
                                                        "<ExtendedAttribute><FieldID>1</FieldID><Value>v</Value>"
                                                        "</ExtendedAttribute>");
                                }
                                file << "</Tasks>";
                            }));
    EXPECT_EQ(import.status(), 1);
    EXPECT_TRUE(import.logHolds("Too much text in repeated names: more than 1073741824 bytes."));
    expectWithin(import, 10, 1500);
}
