#include "MSPIMapper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "ExpectRaises.h"
#include "ProjectImport.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(MSPIMapper, MapsTheActualScenarioOfASmallPlan) {
    ProjectImport import(framed(std::string(smallPlan)));
    EXPECT_EQ(import.mapActual(),
              "<scenario xmlns=\"urn:kadenza:document:2\" id=\"baaaaaaaaaa\">"
              "<!--  2012-01-10 11:00:00 +0000: Kadenza 2.x MSPDI Importer.  -->"
              "<!--  Imported MS Project 2007: 'Plan'  -->"
              "<start-date>2012-01-09T08:00:00+01:00</start-date><granularity>hours</granularity>"
              "<!--  Resources  --><top-resource idref=\"r-1\"/>"
              "<resource id=\"r-1\"><type>Group</type><!--  Project Schedule  -->" +
                  standardWeek() +
                  "<child-resource idref=\"r3\"/></resource>"
                  "<resource id=\"r3\"><name>Anna</name><type>Staff</type><units-available>1.000000</units-available>"
                  "</resource>"
                  "<!--  Tasks  --><top-task idref=\"t-1\"/>"
                  "<task id=\"t-1\"><type>group</type><child-task idref=\"t7\"/><child-task idref=\"t9\"/></task>"
                  "<task id=\"t7\"><title>Dig</title><type>task</type><schedule-type>asap</schedule-type>"
                  "<effort>14400</effort><start-date>2012-01-09T08:00:00+01:00</start-date>"
                  "<end-date>2012-01-09T17:00:00+01:00</end-date>"
                  "<user-data><key>Region</key><string>North</string></user-data><assignment idref=\"r3\"/></task>"
                  "<task id=\"t9\"><title>Build</title><type>milestone</type><schedule-type>asap</schedule-type>"
                  "<effort>0</effort></task>"
                  "<!--  Critical Path  --><critical-path slack=\"0\"/></scenario>");
    EXPECT_EQ(import.projectName, "House");
    EXPECT_EQ(markupOf(import.toc),
              "<toc xmlns=\"urn:kadenza:document:2\"><!-- kept -->"
              "<window><editing-scenario>baaaaaaaaaa</editing-scenario></window>"
              "<project><title>House</title><next-task-id>10</next-task-id><next-resource-id>4</next-resource-id>"
              "<scenario id=\"baaaaaaaaaa\" name=\"Actual\" filename=\"Actual.xml\"/><date-display/>"
              "<currency-format>$1,234.56</currency-format>"
              "<duration-format hours-per-day=\"8\" hours-per-week=\"40\" hours-per-month=\"160\" "
              "hours-per-year=\"1920\"/>"
              "<effort-format hours-per-day=\"8\" hours-per-week=\"40\" hours-per-month=\"160\" "
              "hours-per-year=\"1920\"/><named-styles/>"
              "<task-user-data-keys><user-data><key>Region</key><null/></user-data></task-user-data-keys>"
              "</project></toc>");
    EXPECT_THAT(
        import.log.takeLines(),
        ElementsAre("Mapping active scenario ...", "  Mapping Calendar UID='1' name='Standard' ...",
                    "Mapping 1 Resources ...", "  Mapping Resource UID=3  name='Anna' ...", "Mapping 2 Tasks ...",
                    "  Mapping Task UID='7' name='Dig' ...", "  Mapping Task UID='9' name='Build' ..."));
}

TEST(MSPIMapper, TellsTheProgressAfterEachTaskEmptyRowsIncluded) {
    ProjectImport import(framed(tasks(task(1) + task(2, "<IsNull>1</IsNull>") + task(3))));
    static_cast<void>(import.mapActual());
    EXPECT_THAT(import.progress.told(), ElementsAre("1 of 3", "2 of 3", "3 of 3"));
    static_cast<void>(import.log.takeLines());
}

TEST(MSPIMapper, NamesTheVersionThatSavedThePlan) {
    struct Case {
        std::string saveVersion;
        std::string year;
    };
    const Case cases[] = {
        {"", "2003"},
        {"<SaveVersion>9</SaveVersion>", "2003"},
        {"<SaveVersion>11</SaveVersion>", ""},
        {"<SaveVersion>12</SaveVersion>", "2007"},
        {"<SaveVersion>13</SaveVersion>", ""},
        {"<SaveVersion>14</SaveVersion>", "2010"},
        {"<SaveVersion>15</SaveVersion>", ""},
        {"<SaveVersion>0</SaveVersion>", ""},
        {"<SaveVersion>none</SaveVersion>", "2003"},
    };
    for (const auto& [saveVersion, year] : cases) {
        ProjectImport import(saveVersion + framed(""));
        EXPECT_THAT(import.mapActual(), HasSubstr("<!--  Imported MS Project " + year + ": 'Plan'  --><start-date>"))
            << saveVersion;
        import.log.ignoreLines();
    }
}

TEST(MSPIMapper, NamesTheImportedFile) {
    struct Case {
        std::optional<std::string> name;
        std::string comment;
    };
    const Case cases[] = {
        {"Plan", "'Plan'"}, {std::nullopt, "'MS Project project'"},
        {"", "''"},         {"a--b", "'a- -b'"},  // a comment cannot hold two hyphens in a row
        {"<&>", "'<&>'"},
    };
    for (const auto& [name, comment] : cases) {
        ProjectImport import(framed(""));
        import.info.mspdiProjectName = name;
        EXPECT_THAT(import.mapActual(), HasSubstr("<!--  Imported MS Project 2003: " + comment + "  -->"));
        import.log.ignoreLines();
    }
}

TEST(MSPIMapper, TitlesAProjectWithoutANameAfterTheImportedFile) {
    ProjectImport import(framed(""));
    import.mapActual();
    EXPECT_EQ(import.inTOC("project/title"), "<title>Plan</title>");
    import.info.mspdiProjectName.reset();
    import.mapActual();
    EXPECT_EQ(import.inTOC("project/title"), "<title>MS Project project</title>");
    import.log.ignoreLines();
}

TEST(MSPIMapper, DatesTheImportInUTC) {
    ProjectImport import(framed(""));
    import.clock.set(MSPCInstant{1304515330});  // 2011-05-04 15:22:10 in Berlin
    EXPECT_THAT(import.mapActual(), HasSubstr("<!--  2011-05-04 13:22:10 +0000: Kadenza 2.x MSPDI Importer.  -->"));
    import.log.ignoreLines();
}

TEST(MSPIMapper, RefusesWhatIsNoMSPDI) {
    const std::vector<std::string> sources = {
        "<Project/>",                                                 // no namespace
        "<Project xmlns=\"http://schemas.microsoft.com/Project\"/>",  // another one
        "<Project xmlns=\"http://schemas.microsoft.com/project/\"/>",
        "<Project xmlns=\"\"/>",
        "<Project xmlns=\"http://schemas.microsoft.com/project\" xmlns:x=\"urn:x\"/>",  // a second one
        "<Project xmlns:x=\"urn:x\" xmlns=\"http://schemas.microsoft.com/project\"/>",
        "<project xmlns=\"http://schemas.microsoft.com/project\"/>",
        "<Projects xmlns=\"http://schemas.microsoft.com/project\"><Project/></Projects>",
        "<p:Project xmlns:p=\"http://schemas.microsoft.com/project\"/>",
    };
    for (const auto& source : sources) {
        for (const int number : {-1, 0}) {
            ProjectImport import(documentFromXML(source), emptyTOC);
            EXPECT_RAISES(number < 0 ? import.mapActual() : import.mapBaseline(number), MSPIMapperException,
                          "MSPIMapper.map: Source XML DOM is not a valid MSPDI document.");
            EXPECT_EQ(markupOf(import.toc), emptyTOC) << source;
        }
    }
}

TEST(MSPIMapper, RefusesADocumentWithoutRoot) {
    ProjectImport import(MSPCXMLDocument(), emptyTOC);
    EXPECT_RAISES(import.mapActual(), MSPIMapperException,
                  "MSPIMapper.map: Source XML DOM is not a valid MSPDI document.");
}

TEST(MSPIMapper, HasNoDocumentBeforeItMaps) {
    ProjectImport import(framed(""));
    MSPIMapper mapper(import.plan, import.scenarioTemplate, import.toc, import.info, import.services);
    EXPECT_FALSE(mapper.kdzxXmlDoc());
    EXPECT_EQ(markupOf(import.toc), emptyTOC);
}

TEST(MSPIMapper, LeavesTheTableOfContentsAloneWhereTheMappingFails) {
    ProjectImport import(std::string(frame) + tasks(task(1)));  // without a calendar
    EXPECT_RAISES(import.mapActual(), MSPCInternalInconsistency, "MS Project 'Standard' Calendar not found.");
    EXPECT_EQ(markupOf(import.toc), emptyTOC);
    import.log.ignoreLines();
}

TEST(MSPIMapper, GivesUpWithoutRandomNumbers) {
    ProjectImport import(framed(""));
    import.randomSource = ListedRandomSource{};
    EXPECT_RAISES(import.mapActual(), MSPCInternalInconsistency,
                  "MSPIUtilities VFXMLCreateID: Failed to generate random Big Number.");
    EXPECT_EQ(markupOf(import.toc), emptyTOC);
    import.log.ignoreLines();
}

}  // namespace
