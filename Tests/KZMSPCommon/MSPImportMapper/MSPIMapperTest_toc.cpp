#include "MSPIMapper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "ExpectRaises.h"
#include "ProjectImport.h"

namespace {

using testing::HasSubstr;
using testing::Not;

TEST(MSPIMapper, NeedsAScenarioName) {
    for (const auto& name : {std::optional<std::string>(), std::optional<std::string>("")}) {
        ProjectImport import(framed(""));
        import.info.kdzxScenarioName = name;
        EXPECT_RAISES(import.map(), MSPCInternalInconsistency, "No scenario name provided in info dictionary.");
        EXPECT_EQ(markupOf(import.toc), emptyTOC);
        import.log.ignoreLines();
    }
}

TEST(MSPIMapper, NeedsACompleteTableOfContents) {
    struct Case {
        std::string lacking;
        std::string failure;
        bool isOfBaselinesToo;
    };
    const Case cases[] = {
        {"<window><editing-scenario>template</editing-scenario></window>",
         "Failed to get 'scenario/window' element from TOC XML DOM", true},
        {"<editing-scenario>template</editing-scenario>", "Failed to get 'window/editing-scenario' from TOC XML DOM.",
         true},
        {"<next-task-id>1</next-task-id>", "Failed to get 'project/next-task-id' element from TOC XML DOM", true},
        {"<next-resource-id>1</next-resource-id>", "Failed to get 'project/next-resource-id' element from TOC XML DOM",
         true},
        {"<duration-format/>", "Failed to get 'project/duration-format' from TOC XML DOM.", false},
        {"<effort-format/>", "Failed to get 'project/effort-format' from TOC XML DOM.", false},
    };
    for (const auto& [lacking, failure, isOfBaselinesToo] : cases) {
        auto toc = std::string(emptyTOC);
        toc.replace(toc.find(lacking), lacking.size(), "");
        ProjectImport import(framed(tasks(task(1, baseline(0)))), toc);
        EXPECT_RAISES(import.mapActual(), MSPCInternalInconsistency, failure);
        if (isOfBaselinesToo) {
            EXPECT_RAISES(import.mapBaseline(0), MSPCInternalInconsistency, failure);
        } else {
            EXPECT_THAT(import.mapBaseline(0), HasSubstr("<task id=\"t1\">"));
        }
        import.log.ignoreLines();
    }
    ProjectImport import(framed(""), "<toc><window><editing-scenario/></window></toc>");
    EXPECT_RAISES(import.mapActual(), MSPCInternalInconsistency,
                  "Failed to get 'scenario/project' element from TOC XML DOM");
    import.log.ignoreLines();
}

TEST(MSPIMapper, ListsTheScenarioWhereTheTemplateListsNone) {
    auto toc = std::string(emptyTOC);
    const std::string entry = "<scenario id=\"template\" name=\"Actual\" filename=\"Actual.xml\"/>";
    toc.replace(toc.find(entry), entry.size(), "");
    ProjectImport import(framed(""), toc);
    import.mapActual();
    EXPECT_THAT(markupOf(import.toc),
                HasSubstr("<next-resource-id>1</next-resource-id>"
                          "<scenario id=\"baaaaaaaaaa\" name=\"Actual\" filename=\"Actual.xml\"/><date-display/>"));
    import.log.ignoreLines();
}

TEST(MSPIMapper, RaisesTheNextIdsButNeverLowersThem) {
    struct Case {
        int highest;
        std::string next;
    };
    for (const auto& [highest, next] : {Case{20, "500"}, {499, "500"}, {500, "501"}, {812, "813"}}) {
        auto toc = std::string(emptyTOC);
        toc.replace(toc.find(">1</next-task-id>"), 2, ">500");
        ProjectImport import(framed(tasks(task(highest) + task(3))), toc);
        import.mapActual();
        EXPECT_EQ(import.inTOC("project/next-task-id"), "<next-task-id>" + next + "</next-task-id>");
        EXPECT_EQ(import.inTOC("project/next-resource-id"), "<next-resource-id>1</next-resource-id>");
        import.log.ignoreLines();
    }
}

TEST(MSPIMapper, WritesTheProjectsUnitsAndCurrency) {
    ProjectImport import(
        "<SaveVersion>14</SaveVersion><CurrencyDigits>0</CurrencyDigits><CurrencySymbol>kr</CurrencySymbol>"
        "<CurrencyCode>SEK</CurrencyCode><CurrencySymbolPosition>3</CurrencySymbolPosition>"
        "<MinutesPerDay>450</MinutesPerDay><MinutesPerWeek>2250</MinutesPerWeek>"
        "<DaysPerMonth>20</DaysPerMonth>" +
        framed(tasks(task(1, baseline(0)))));
    import.mapActual();
    EXPECT_EQ(import.inTOC("project/currency-format"), "<currency-format>1,234 kr</currency-format>");
    for (const std::string name : {"duration-format", "effort-format"}) {
        EXPECT_EQ(import.inTOC("project/" + name),
                  "<" + name +
                      " hours-per-day=\"7\" hours-per-week=\"37\" hours-per-month=\"140\" hours-per-year=\"1680\"/>");
    }
    EXPECT_THAT(import.log.takeLines(),
                testing::IsSupersetOf({"WARNING: Igonring currency code from MSPDI: SEK. Always assume USD."}));
    // A baseline neither reads the currency nor changes what the actual scenario wrote.
    const auto units = import.inTOC("project/duration-format");
    import.mapBaseline(0);
    EXPECT_EQ(import.inTOC("project/currency-format"), "<currency-format>1,234 kr</currency-format>");
    EXPECT_EQ(import.inTOC("project/duration-format"), units);
    EXPECT_THAT(import.log.takeLines(),
                Not(testing::Contains("WARNING: Igonring currency code from MSPDI: SEK. Always assume USD.")));
}

constexpr std::string_view definitions =
    "<ExtendedAttributes>"
    "<ExtendedAttribute><FieldID>1</FieldID><Alias>Region</Alias></ExtendedAttribute>"
    "<ExtendedAttribute><FieldID>2</FieldID><Alias>Site</Alias></ExtendedAttribute></ExtendedAttributes>";

std::string field(const std::string& fieldID) {
    return "<ExtendedAttribute><FieldID>" + fieldID + "</FieldID><Value>x</Value></ExtendedAttribute>";
}

TEST(MSPIMapper, ListsTheKeysOfTheTaskMappedLast) {
    ProjectImport import(framed(std::string(definitions) + tasks(task(1, field("1")) + task(2, field("2")) + task(3)) +
                                "<Resources><Resource><UID>1</UID>" + field("2") + "</Resource><Resource><UID>2</UID>" +
                                field("1") + "</Resource></Resources>"));
    import.mapActual();
    EXPECT_THAT(markupOf(import.toc),
                HasSubstr("<named-styles/><task-user-data-keys><user-data><key>Site</key><null/></user-data>"
                          "</task-user-data-keys><resource-user-data-keys><user-data><key>Region</key><null/>"
                          "</user-data></resource-user-data-keys></project>"));
    import.log.ignoreLines();
}

TEST(MSPIMapper, WritesNoUserDataKeysForAProjectWithoutCustomFields) {
    ProjectImport import(framed(std::string(definitions) + tasks(task(1))));
    import.mapActual();
    EXPECT_THAT(markupOf(import.toc), HasSubstr("<named-styles/></project>"));
    import.log.ignoreLines();
}

TEST(MSPIMapper, KeepsTheUserDataKeysOfBaselinesToItself) {
    ProjectImport import(framed(std::string(definitions) + tasks(task(1, field("1") + baseline(0)))));
    EXPECT_THAT(import.mapBaseline(0), HasSubstr("<user-data><key>Region</key><string>x</string></user-data>"));
    EXPECT_THAT(markupOf(import.toc), HasSubstr("<named-styles/></project>"));
    import.log.ignoreLines();
}

}  // namespace
