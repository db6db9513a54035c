#include "MSPITOCUpdater.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>

#include "ExpectRaises.h"
#include "MappingFixture.h"

namespace {

// A table of contents with that much in its two parts.
MSPCXMLDocument tocOf(const std::string& window, const std::string& project) {
    return documentFromXML("<toc><window>" + window + "</window><project>" + project + "</project></toc>",
                           MSPCXMLContent::Everything);
}

// What becomes of the content of `project`, or of `window`.
std::string projectAfter(const std::string& project, const std::function<void(MSPITOCUpdater&)>& change) {
    const auto document = tocOf("", project);
    MSPITOCUpdater updater(document.root());
    change(updater);
    constexpr std::string_view before = "<toc><window/><project>";
    constexpr std::string_view after = "</project></toc>";
    auto markup = markupOf(document);
    EXPECT_TRUE(markup.starts_with(before) && markup.ends_with(after)) << markup;
    return markup.substr(before.size(), markup.size() - before.size() - after.size());
}

std::string windowAfter(const std::string& window, const std::function<void(MSPITOCUpdater&)>& change) {
    const auto document = tocOf(window, "");
    MSPITOCUpdater updater(document.root());
    change(updater);
    constexpr std::string_view before = "<toc><window>";
    constexpr std::string_view after = "</window><project/></toc>";
    auto markup = markupOf(document);
    EXPECT_TRUE(markup.starts_with(before) && markup.ends_with(after)) << markup;
    return markup.substr(before.size(), markup.size() - before.size() - after.size());
}

TEST(MSPITOCUpdater, NeedsAWindowAndAProject) {
    struct Case {
        std::string markup;
        std::string failure;
    };
    const Case cases[] = {
        {"<toc><project/></toc>", "Failed to get 'scenario/window' element from TOC XML DOM"},
        {"<toc/>", "Failed to get 'scenario/window' element from TOC XML DOM"},
        {"<toc><window/></toc>", "Failed to get 'scenario/project' element from TOC XML DOM"},
        {"<toc><window/><other><project/></other></toc>", "Failed to get 'scenario/project' element from TOC XML DOM"},
    };
    for (const auto& [markup, failure] : cases) {
        const auto document = documentFromXML(markup);
        EXPECT_RAISES(MSPITOCUpdater(document.root()), MSPCInternalInconsistency, failure);
    }
}

TEST(MSPITOCUpdater, WorksOnTheLastOfSeveralProjects) {
    const auto document = documentFromXML("<toc><window/><project><title>a</title></project><project/></toc>");
    MSPITOCUpdater(document.root()).setTitle("b");
    EXPECT_EQ(markupOf(document),
              "<toc><window/><project><title>a</title></project><project><title>b</title></project></toc>");
}

TEST(MSPITOCUpdater, FindsItsPartsInTheDefaultNamespace) {
    const auto document = documentFromXML("<toc xmlns=\"urn:x\"><window/><project/></toc>");
    MSPITOCUpdater(document.root()).setTitle("b");
    EXPECT_EQ(markupOf(document), "<toc xmlns=\"urn:x\"><window/><project><title>b</title></project></toc>");
}

TEST(MSPITOCUpdater, PutsTheFirstScenarioAfterTheNextResourceId) {
    EXPECT_EQ(
        projectAfter("<next-task-id>1</next-task-id><next-resource-id>1</next-resource-id><!--c--><date-display/>",
                     [](auto& toc) { toc.setScenarioEntry("Actual", "id1"); }),
        "<next-task-id>1</next-task-id><next-resource-id>1</next-resource-id>"
        "<scenario id=\"id1\" name=\"Actual\" filename=\"Actual.xml\"/><!--c--><date-display/>");
}

TEST(MSPITOCUpdater, ChangesOnlyTheIdOfAScenarioThatIsListed) {
    EXPECT_EQ(projectAfter("<scenario name=\"Actual\" filename=\"Other.xml\" id=\"old\" "
                           "extra=\"1\"><x/></scenario><next-resource-id/>",
                           [](auto& toc) { toc.setScenarioEntry("Actual", "new"); }),
              "<scenario name=\"Actual\" filename=\"Other.xml\" id=\"new\" extra=\"1\"><x/></scenario>"
              "<next-resource-id/>");
}

TEST(MSPITOCUpdater, GivesAnIdToAListedScenarioThatHasNone) {
    EXPECT_EQ(projectAfter("<scenario name=\"Actual\"/>", [](auto& toc) { toc.setScenarioEntry("Actual", "new"); }),
              "<scenario name=\"Actual\" id=\"new\"/>");
}

TEST(MSPITOCUpdater, ListsBaselinesOneAfterAnother) {
    EXPECT_EQ(projectAfter("<next-resource-id/><scenario id=\"a\" name=\"Actual\" filename=\"Actual.xml\"/><x/>",
                           [](auto& toc) {
                               toc.setScenarioEntry("Baseline", "b");
                               toc.setScenarioEntry("Baseline2", "c");
                           }),
              "<next-resource-id/><scenario id=\"a\" name=\"Actual\" filename=\"Actual.xml\"/>"
              "<scenario id=\"b\" name=\"Baseline\" filename=\"Baseline.xml\"/>"
              "<scenario id=\"c\" name=\"Baseline2\" filename=\"Baseline2.xml\"/><x/>");
}

TEST(MSPITOCUpdater, TellsScenariosApartByTheirWholeName) {
    EXPECT_EQ(projectAfter("<scenario name=\"Baseline1\" id=\"a\"/><scenario name=\"baseline\" id=\"b\"/>",
                           [](auto& toc) { toc.setScenarioEntry("Baseline", "c"); }),
              "<scenario name=\"Baseline1\" id=\"a\"/><scenario name=\"baseline\" id=\"b\"/>"
              "<scenario id=\"c\" name=\"Baseline\" filename=\"Baseline.xml\"/>");
}

TEST(MSPITOCUpdater, TakesTheLastOfSeveralScenariosOfOneName) {
    EXPECT_EQ(projectAfter("<scenario name=\"Actual\" id=\"a\"/><scenario name=\"Actual\" id=\"b\"/>",
                           [](auto& toc) { toc.setScenarioEntry("Actual", "c"); }),
              "<scenario name=\"Actual\" id=\"a\"/><scenario name=\"Actual\" id=\"c\"/>");
}

TEST(MSPITOCUpdater, FindsAScenarioWhoseNameHoldsQuotes) {
    EXPECT_EQ(projectAfter("<scenario name=\"a'b&quot;c\" id=\"a\"/>",
                           [](auto& toc) { toc.setScenarioEntry("a'b\"c", "d"); }),
              "<scenario name=\"a'b&quot;c\" id=\"d\"/>");
}

TEST(MSPITOCUpdater, RaisesWhereAScenarioHasNoPlace) {
    const auto document = tocOf("", "<title/>");
    MSPITOCUpdater toc(document.root());
    EXPECT_RAISES(toc.setScenarioEntry("Actual", "a"), MSPCInternalInconsistency,
                  "Failed to find insertion point for 'scenario' element in TOC XML DOM.");
}

TEST(MSPITOCUpdater, RaisesNextIdsAboveTheHighestNumbersAndNeverLowersThem) {
    struct Case {
        std::string before;
        std::int64_t highest;
        std::string after;
    };
    const Case cases[] = {
        {"500", 20, "500"},  {"500", 499, "500"},
        {"500", 500, "501"}, {"500", 501, "502"},
        {"0", 0, "1"},       {"1", 0, "1"},
        {"-7", 0, "1"},      {" 12 ", 3, " 12 "},
        {"12x", 12, "13"},   {"1", INT64_MAX, "9223372036854775808"},
    };
    for (const auto& [before, highest, after] : cases) {
        const auto first = "<next-task-id>" + before + "</next-task-id><next-resource-id>90</next-resource-id>";
        const auto firstAfter = "<next-task-id>" + after + "</next-task-id><next-resource-id>90</next-resource-id>";
        EXPECT_EQ(projectAfter(first, [&](auto& toc) { toc.raiseNextIds(highest, 4); }), firstAfter) << before;
        const auto second = "<next-task-id>90</next-task-id><next-resource-id>" + before + "</next-resource-id>";
        const auto secondAfter = "<next-task-id>90</next-task-id><next-resource-id>" + after + "</next-resource-id>";
        EXPECT_EQ(projectAfter(second, [&](auto& toc) { toc.raiseNextIds(4, highest); }), secondAfter) << before;
    }
}

TEST(MSPITOCUpdater, NeedsBothNextIds) {
    const auto withoutTaskId = tocOf("", "<next-resource-id>1</next-resource-id>");
    MSPITOCUpdater first(withoutTaskId.root());
    EXPECT_RAISES(first.raiseNextIds(1, 1), MSPCInternalInconsistency,
                  "Failed to get 'project/next-task-id' element from TOC XML DOM");
    const auto withoutResourceId = tocOf("", "<next-task-id>1</next-task-id>");
    MSPITOCUpdater second(withoutResourceId.root());
    EXPECT_RAISES(second.raiseNextIds(1, 1), MSPCInternalInconsistency,
                  "Failed to get 'project/next-resource-id' element from TOC XML DOM");
}

TEST(MSPITOCUpdater, RaisesForANextIdThatIsNoNumber) {
    const auto document = tocOf("", "<next-task-id>none</next-task-id><next-resource-id>1</next-resource-id>");
    MSPITOCUpdater toc(document.root());
    EXPECT_RAISES(toc.raiseNextIds(1, 1), MSPCInternalInconsistency,
                  "Failed to get int value from XML node: <next-task-id>none</next-task-id>");
}

TEST(MSPITOCUpdater, PutsTheComparisonScenarioAfterTheEditedOne) {
    EXPECT_EQ(windowAfter("<editing-scenario>a</editing-scenario><!--kept--><zoom/>",
                          [](auto& toc) { toc.setComparisonScenario("b"); }),
              "<editing-scenario>a</editing-scenario><comparison-scenario>b</comparison-scenario><!--kept--><zoom/>");
}

TEST(MSPITOCUpdater, NamesTheLastBaselineAsComparisonScenario) {
    EXPECT_EQ(windowAfter("<comparison-scenario>x</comparison-scenario><editing-scenario>a</editing-scenario>",
                          [](auto& toc) {
                              toc.setComparisonScenario("b");
                              toc.setComparisonScenario("c");
                          }),
              "<comparison-scenario>c</comparison-scenario><editing-scenario>a</editing-scenario>");
}

TEST(MSPITOCUpdater, NeedsTheEditedScenario) {
    const auto document = tocOf("<zoom/>", "");
    MSPITOCUpdater toc(document.root());
    EXPECT_RAISES(toc.setComparisonScenario("b"), MSPCInternalInconsistency,
                  "Failed to get 'window/editing-scenario' from TOC XML DOM.");
    EXPECT_RAISES(toc.setEditingScenario("a"), MSPCInternalInconsistency,
                  "Failed to get 'window/editing-scenario' from TOC XML DOM.");
}

TEST(MSPITOCUpdater, ChangesTheLastOfSeveralEditedScenarios) {
    EXPECT_EQ(windowAfter("<editing-scenario>a</editing-scenario><x/><editing-scenario>b</editing-scenario><y/>",
                          [](auto& toc) {
                              toc.setEditingScenario("c");
                              toc.setComparisonScenario("d");
                          }),
              "<editing-scenario>a</editing-scenario><x/><editing-scenario>c</editing-scenario>"
              "<comparison-scenario>d</comparison-scenario><y/>");
}

TEST(MSPITOCUpdater, PutsANewTitleFirst) {
    EXPECT_EQ(projectAfter("<!--c--><next-task-id/>", [](auto& toc) { toc.setTitle("Plan <1>"); }),
              "<title>Plan &lt;1&gt;</title><!--c--><next-task-id/>");
}

TEST(MSPITOCUpdater, ChangesTheTitleWhereItStands) {
    EXPECT_EQ(projectAfter("<next-task-id/><title>a</title><title>b</title>", [](auto& toc) { toc.setTitle("c"); }),
              "<next-task-id/><title>a</title><title>c</title>");
}

TEST(MSPITOCUpdater, WritesTheCurrencyFormatWhereItStandsOrAtItsPlace) {
    EXPECT_EQ(projectAfter("<currency-format>x</currency-format>", [](auto& toc) { toc.setCurrencyFormat("1 $"); }),
              "<currency-format>1 $</currency-format>");
    EXPECT_EQ(projectAfter("<scenario/><date-display/><critical-path-slack/><duration-format/>",
                           [](auto& toc) { toc.setCurrencyFormat("$1"); }),
              "<scenario/><date-display/><critical-path-slack/><currency-format>$1</currency-format>"
              "<duration-format/>");
}

TEST(MSPITOCUpdater, WritesTheSameWorkingTimeUnitsTwice) {
    EXPECT_EQ(
        projectAfter("<effort-format style=\"s\" hours-per-day=\"1\"/><!--c--><duration-format>d</duration-format>",
                     [](auto& toc) {
                         toc.setWorkingTimeUnits({7, 37, 140, 1680});
                     }),
        "<effort-format style=\"s\" hours-per-day=\"7\" hours-per-week=\"37\" hours-per-month=\"140\" "
        "hours-per-year=\"1680\"/><!--c-->"
        "<duration-format hours-per-day=\"7\" hours-per-week=\"37\" hours-per-month=\"140\" "
        "hours-per-year=\"1680\">d</duration-format>");
}

TEST(MSPITOCUpdater, NeedsBothFormats) {
    const auto withoutDuration = tocOf("", "<effort-format/>");
    MSPITOCUpdater first(withoutDuration.root());
    EXPECT_RAISES(first.setWorkingTimeUnits({}), MSPCInternalInconsistency,
                  "Failed to get 'project/duration-format' from TOC XML DOM.");
    const auto withoutEffort = tocOf("", "<duration-format/>");
    MSPITOCUpdater second(withoutEffort.root());
    EXPECT_RAISES(second.setWorkingTimeUnits({}), MSPCInternalInconsistency,
                  "Failed to get 'project/effort-format' from TOC XML DOM.");
}

}  // namespace
