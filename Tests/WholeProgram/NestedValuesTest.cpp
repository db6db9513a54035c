#include <gtest/gtest.h>

#include "PlanImport.h"

// Elements and blanks within values: the text of the whole element counts, for whatever finds or shows it, and however
// the plan had to be read.

namespace {

using Texts = std::vector<std::string>;

const std::string NestedContent = R"(<Title>a<b>c</b>
</Title><StartDate>2012-01-09T08:00:00</StartDate>
<ExtendedAttributes><ExtendedAttribute><FieldID>1<q>2</q></FieldID><Alias>Al<i>ias</i> <i>!</i></Alias></ExtendedAttribute>
</ExtendedAttributes>
<Calendars><Calendar><UID>5</UID><Name><b>Standard</b></Name><IsBaseCalendar><t>1</t></IsBaseCalendar><WeekDays>
  <WeekDay><DayType>6<q>1</q></DayType><DayWorking>0</DayWorking></WeekDay>
  <WeekDay><DayType><q>2</q></DayType><DayWorking>0</DayWorking></WeekDay>
</WeekDays></Calendar></Calendars>
<Tasks>
  <Task><UID>1<q>2</q></UID><Name>T<x> </x> <y>u</y></Name><OutlineLevel><l>1</l></OutlineLevel>
    <ExtendedAttribute><FieldID>12</FieldID><Value>v<w> </w> <w/> z</Value></ExtendedAttribute>
    <Baseline><Number><n>3</n></Number><Name>was<q> </q>T</Name></Baseline></Task>
  <Task><UID>13</UID><Name xml:space="preserve"> <y>u</y> </Name><OutlineLevel>1</OutlineLevel>
    <PredecessorLink><PredecessorUID><q>1</q>2</PredecessorUID><Type>1</Type></PredecessorLink></Task>
</Tasks>)";

std::string nestedPlan(const std::string& documentType = "", const std::string& more = "") {
    return documentType + "<Project xmlns=\"http://schemas.microsoft.com/project\"><SaveVersion>14</SaveVersion>" +
           NestedContent + more + "</Project>";
}

std::string inUtf16(const std::string& ascii) {
    std::string bytes = "\xFF\xFE";
    for (const char character : ascii) {
        bytes.append(1, character).append(1, '\0');
    }
    return bytes;
}

void expectWholeTexts(const PlanImport& import, const char* way) {
    EXPECT_EQ(import.status(), 0) << way << import.log();
    EXPECT_EQ(import.texts("title", "__TOC.xml"), Texts{"ac\n"}) << way;
    EXPECT_EQ(import.texts("title"), (Texts{"T  u", " u "})) << way;
    EXPECT_EQ(import.texts("key"), Texts{"Alias !"}) << way;
    EXPECT_EQ(import.texts("string"), Texts{"v   z"}) << way;
    EXPECT_EQ(import.texts("title", "Baseline3.xml"), Texts{"was T"}) << way;
    // Monday alone is a day off: 61 is no day of the week.
    EXPECT_EQ(import.texts("schedule-day"), Texts{""}) << way;
    EXPECT_EQ(import.texts("prerequisite-task"), Texts{""}) << way;
}

}  // namespace

TEST(NestedValues, meanTheSameHoweverThePlanIsRead) {
    expectWholeTexts(PlanImport("selected", nestedPlan()), "selected");
    expectWholeTexts(PlanImport("comment", nestedPlan("", "<!--c-->")), "with a comment");
    expectWholeTexts(PlanImport("attribute", nestedPlan("", "<X a=\"b\"/>")), "as a whole");
    expectWholeTexts(PlanImport("encoding", inUtf16(nestedPlan())), "in UTF-16");
    expectWholeTexts(PlanImport("entity", nestedPlan("<!DOCTYPE Project [<!ENTITY e \"x\">]>")), "with an entity");
    expectWholeTexts(PlanImport("mended", nestedPlan("", "<X>a & b</X>")), "mended");
}

TEST(NestedValues, aFieldIdWithAnApostropheFindsNothing) {
    for (const std::string id : {"7'", "7&apos;", "<q>7</q>'", "' or '1'='1"}) {
        const auto attribute = "<ExtendedAttribute><FieldID>" + id + "</FieldID>";
        const PlanImport import(
            "apostrophe", planOf({"<ExtendedAttributes>" + attribute +
                                      "<Alias>a</Alias></ExtendedAttribute></ExtendedAttributes><Tasks>" +
                                      taskElement("1", attribute + "<Value>v</Value></ExtendedAttribute>") + "</Tasks>",
                                  "", ""}));
        EXPECT_EQ(import.status(), 0) << id << import.log();
        EXPECT_EQ(import.texts("user-data"), Texts{}) << id;
    }
}
