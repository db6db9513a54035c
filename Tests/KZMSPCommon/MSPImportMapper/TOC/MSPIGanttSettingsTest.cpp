#include "MSPIGanttSettings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ExpectRaises.h"
#include "MappingFixture.h"

namespace {

const std::vector<std::string> settingsInOrder = {
    "date-display",         "numbering-style",     "no-numbers",         "auto-level",           "critical-path-slack",
    "currency-format",      "duration-format",     "effort-format",      "base-style",           "column-title-style",
    "note-style",           "standard-task-style", "overdue-task-style", "completed-task-style", "group-task-style",
    "milestone-task-style", "resource-style",      "not-editable-style", "named-styles"};

MSPCXMLDocument projectOf(const std::string& content) {
    return documentFromXML("<project>" + content + "</project>", MSPCXMLContent::Everything);
}

// The project's markup after a setting was asked for.
std::string markupAfterGetting(const std::string& name, const std::string& content) {
    const auto document = projectOf(content);
    EXPECT_EQ(getGanttSettingsElementProjectTOC(name, document.root()).name(), name);
    return markupOf(document);
}

TEST(MSPIGanttSettings, GiveTheElementThatIsThere) {
    const auto document = projectOf("<next-resource-id>1</next-resource-id><currency-format>x</currency-format>");
    const auto element = getGanttSettingsElementProjectTOC("currency-format", document.root());
    EXPECT_EQ(element.stringValue(), "x");
    EXPECT_EQ(markupOf(document),
              "<project><next-resource-id>1</next-resource-id><currency-format>x</currency-format></project>");
}

TEST(MSPIGanttSettings, PutACurrencyFormatRightAfterTheCriticalPathSlack) {
    EXPECT_EQ(markupAfterGetting("currency-format",
                                 "<scenario/><date-display/><critical-path-slack/><other/><duration-format/>"),
              "<project><scenario/><date-display/><critical-path-slack/><currency-format/><other/><duration-format/>"
              "</project>");
}

TEST(MSPIGanttSettings, StandInListOrderWhicheverIsMissing) {
    std::string complete;
    for (const auto& name : settingsInOrder) {
        complete += "<" + name + "/>";
    }
    for (const auto& missing : settingsInOrder) {
        auto content = complete;
        content.replace(content.find("<" + missing + "/>"), missing.size() + 3, "");
        EXPECT_EQ(markupAfterGetting(missing, "<scenario/>" + content),
                  "<project><scenario/>" + complete + "</project>");
    }
}

TEST(MSPIGanttSettings, StandInListOrderInWhicheverOrderTheyAreMade) {
    const auto document = projectOf("<next-resource-id>1</next-resource-id>");
    std::string complete;
    for (std::size_t step = 0; step < settingsInOrder.size(); ++step) {
        static_cast<void>(
            getGanttSettingsElementProjectTOC(settingsInOrder[step * 7 % settingsInOrder.size()], document.root()));
        complete += "<" + settingsInOrder[step] + "/>";
    }
    EXPECT_EQ(markupOf(document), "<project><next-resource-id>1</next-resource-id>" + complete + "</project>");
}

TEST(MSPIGanttSettings, FollowTheLastScenarioWhereNoneIsBeforeThem) {
    EXPECT_EQ(markupAfterGetting("auto-level",
                                 "<next-resource-id>1</next-resource-id><scenario/><!--a--><scenario/><base-style/>"),
              "<project><next-resource-id>1</next-resource-id><scenario/><!--a--><scenario/><auto-level/><base-style/>"
              "</project>");
}

TEST(MSPIGanttSettings, FollowTheNextResourceIdWithoutAnyScenario) {
    EXPECT_EQ(
        markupAfterGetting("date-display", "<next-task-id>1</next-task-id><next-resource-id>1</next-resource-id><x/>"),
        "<project><next-task-id>1</next-task-id><next-resource-id>1</next-resource-id><date-display/><x/>"
        "</project>");
}

TEST(MSPIGanttSettings, FollowTheLastOfSeveralOfOneName) {
    EXPECT_EQ(markupAfterGetting("no-numbers",
                                 "<scenario/><date-display>1</date-display><x/><date-display>2</date-display><y/>"),
              "<project><scenario/><date-display>1</date-display><x/><date-display>2</date-display><no-numbers/><y/>"
              "</project>");
}

TEST(MSPIGanttSettings, GiveTheLastOfSeveralOfOneName) {
    const auto document = projectOf("<no-numbers>1</no-numbers><no-numbers>2</no-numbers>");
    EXPECT_EQ(getGanttSettingsElementProjectTOC("no-numbers", document.root()).stringValue(), "2");
}

TEST(MSPIGanttSettings, CreateNothingForANameThatIsNoSetting) {
    const auto document = projectOf("<scenario/>");
    EXPECT_FALSE(getGanttSettingsElementProjectTOC("user-data", document.root()));
    EXPECT_EQ(markupOf(document), "<project><scenario/></project>");
}

TEST(MSPIGanttSettings, GiveAnElementOfTheProjectEvenWhereItIsNoSetting) {
    const auto document = projectOf("<title>Plan</title>");
    EXPECT_EQ(getGanttSettingsElementProjectTOC("title", document.root()).stringValue(), "Plan");
}

TEST(MSPIGanttSettings, RaiseWhereNothingCanStandBeforeThem) {
    const auto document = projectOf("<title/><base-style/>");
    EXPECT_RAISES(getGanttSettingsElementProjectTOC("currency-format", document.root()), MSPCInternalInconsistency,
                  "Failed to find element preceeding TOC Project Gantt Settings section.");
    EXPECT_RAISES(getLastElementBeforeGanttSettingsInProjectTOC(document.root()), MSPCInternalInconsistency,
                  "Failed to find element preceeding TOC Project Gantt Settings section.");
    EXPECT_EQ(markupOf(document), "<project><title/><base-style/></project>");
}

TEST(MSPIGanttSettings, FindTheLastOneAskedFromPastTheEndOfTheList) {
    const auto document = projectOf("<scenario/><named-styles/><base-style/><other/>");
    const auto last = getPrevGanttSettingsElementForNameIndexProjectTOC(ganttSettingsCount(), document.root());
    EXPECT_EQ(last.name(), "named-styles");
    EXPECT_EQ(ganttSettingsCount(), settingsInOrder.size());
}

TEST(MSPIGanttSettings, LookOnlyBeforeTheIndex) {
    const auto document = projectOf("<next-resource-id/><scenario/><date-display/><auto-level/>");
    EXPECT_EQ(getPrevGanttSettingsElementForNameIndexProjectTOC(4, document.root()).name(), "auto-level");
    EXPECT_EQ(getPrevGanttSettingsElementForNameIndexProjectTOC(3, document.root()).name(), "date-display");
    EXPECT_EQ(getPrevGanttSettingsElementForNameIndexProjectTOC(0, document.root()).name(), "scenario");
}

}  // namespace
