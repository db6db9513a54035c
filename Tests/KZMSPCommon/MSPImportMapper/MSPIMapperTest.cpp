#include "MSPIMapper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ExpectRaises.h"
#include "MappingFixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr std::string_view templateScenario =
    "<scenario xmlns=\"urn:kadenza:document:2\" id=\"template\"><critical-path slack=\"0\"/></scenario>";
constexpr std::string_view emptyTOC =
    "<toc xmlns=\"urn:kadenza:document:2\"><!-- kept --><window><editing-scenario>template</editing-scenario></window>"
    "<project><next-task-id>1</next-task-id><next-resource-id>1</next-resource-id>"
    "<scenario id=\"template\" name=\"Actual\" filename=\"Actual.xml\"/><date-display/><duration-format/>"
    "<effort-format/><named-styles/></project></toc>";

constexpr std::string_view standardCalendar =
    "<Calendars><Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>";
// What every project needs, and starts in 2012's winter.
constexpr std::string_view frame = "<ScheduleFromStart>1</ScheduleFromStart><StartDate>2012-01-09T08:00:00</StartDate>";

std::string framed(const std::string& content) {
    return std::string(frame) + std::string(standardCalendar) + content;
}

std::string task(int uid, const std::string& more = "") {
    return "<Task><UID>" + std::to_string(uid) + "</UID><OutlineLevel>1</OutlineLevel>" + more + "</Task>";
}
std::string tasks(const std::string& content) { return "<Tasks>" + content + "</Tasks>"; }
std::string baseline(int number, const std::string& more = "") {
    return "<Baseline><Number>" + std::to_string(number) + "</Number>" + more + "</Baseline>";
}

// An import of one project: its documents, and one mapper after another. The n-th scenario gets the n-th of the ids
// "baaaaaaaaaa", "caaaaaaaaaa", "daaaaaaaaaa".
class Import : public MappingServices {
public:
    explicit Import(const std::string& projectContent, std::string_view tocMarkup = emptyTOC)
        : Import(documentFromXML("<Project xmlns=\"http://schemas.microsoft.com/project\">" + projectContent +
                                 "</Project>"),
                 tocMarkup) {}
    Import(MSPCXMLDocument&& source, std::string_view tocMarkup)
        : project(std::move(source)),
          toc(documentFromXML(tocMarkup, MSPCXMLContent::Everything)),
          scenarioTemplate(documentFromXML(templateScenario)) {
        randomSource = ListedRandomSource{0x0100000000000000, 0x0200000000000000, 0x0300000000000000};
        info.mspdiProjectName = "Plan";
    }

    // The markup of the scenario; "(none)" where there is none.
    std::string mapActual() {
        info.mspdiBaselineNumber.reset();
        info.kdzxScenarioName = "Actual";
        return map();
    }
    std::string mapBaseline(int number) {
        info.mspdiBaselineNumber = number;
        info.kdzxScenarioName = number == 0 ? "Baseline" : "Baseline" + std::to_string(number);
        return map();
    }
    std::string map() {
        MSPIMapper mapper(project, scenarioTemplate, toc, info, services);
        mapper.map();
        projectName = mapper.mspProjectName();
        return mapper.kdzxXmlDoc() ? markupOf(*mapper.kdzxXmlDoc()) : "(none)";
    }
    // The markup of the one element of a path below the table of contents' root.
    std::string inTOC(const std::string& path) {
        const auto nodes = toc.root().nodesForXPath(path);
        return nodes && nodes->size() == 1 ? markupOf(toc.root().newCopyOf(nodes->front())) : "(not one)";
    }

    MSPCXMLDocument project;
    MSPCXMLDocument toc;
    MSPCXMLDocument scenarioTemplate;
    MSPIImportInfo info;
    std::string projectName;
};

std::string standardWeek() {
    std::string week;
    for (const std::string day : {"sunday", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday"}) {
        const bool isWorking = day != "sunday" && day != "saturday";
        week += "<schedule-day day-of-week=\"" + day + "\"" +
                (isWorking ? "><time-span start-time=\"28800\" end-time=\"43200\"/>"
                             "<time-span start-time=\"46800\" end-time=\"61200\"/></schedule-day>"
                           : "/>");
    }
    return "<schedule>" + week + "</schedule>";
}

constexpr std::string_view smallPlan =
    "<SaveVersion>12</SaveVersion><Title>House</Title><WorkFormat>2</WorkFormat>"
    "<ExtendedAttributes><ExtendedAttribute><FieldID>1</FieldID><FieldName>Text1</FieldName><CFType>0</CFType>"
    "<Alias>Region</Alias></ExtendedAttribute></ExtendedAttributes>"
    "<Tasks><Task><UID>7</UID><Name>Dig</Name><OutlineLevel>1</OutlineLevel><Start>2012-01-09T08:00:00</Start>"
    "<Finish>2012-01-09T17:00:00</Finish><Duration>PT8H0M0S</Duration><Work>PT4H0M0S</Work>"
    "<ExtendedAttribute><FieldID>1</FieldID><Value>North</Value></ExtendedAttribute>"
    "<Baseline><Number>1</Number><Start>2012-01-10T08:00:00</Start><Finish>2012-01-11T17:00:00</Finish>"
    "<Duration>PT16H0M0S</Duration><Work>PT12H0M0S</Work><Cost>5</Cost></Baseline></Task>"
    "<Task><UID>9</UID><Name>Build</Name><OutlineLevel>1</OutlineLevel></Task></Tasks>"
    "<Resources><Resource><UID>3</UID><Name>Anna</Name><Type>1</Type></Resource></Resources>"
    "<Assignments><Assignment><UID>1</UID><TaskUID>7</TaskUID><ResourceUID>3</ResourceUID></Assignment></Assignments>";

TEST(MSPIMapper, MapsTheActualScenarioOfASmallPlan) {
    Import import(framed(std::string(smallPlan)));
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
    EXPECT_THAT(import.log.takeLines(),
                ElementsAre("Mapping active scenario ...", "  Mapping Calendar UID='1' name='Standard' ...",
                            "Mapping 1 Resources ...", "  Mapping Resource UID=3  name='Anna' ...",
                            "Mapping 2 Tasks ...", "  Mapping Task UID='7' name='Dig' ...",
                            "  Mapping Task UID='9' name='Build' ..."));
}

TEST(MSPIMapper, MapsABaselineOfTheSamePlanAndRestoresTheSource) {
    Import import(framed(std::string(smallPlan)));
    const auto before = import.project.serialized();
    EXPECT_EQ(import.mapBaseline(1),
              "<scenario xmlns=\"urn:kadenza:document:2\" id=\"baaaaaaaaaa\">"
              "<!--  2012-01-10 11:00:00 +0000: Kadenza 2.x MSPDI Importer.  -->"
              "<!--  Imported MS Project 2007: 'Plan' (Baseline 1)  -->"
              "<start-date>2012-01-09T08:00:00+01:00</start-date><granularity>hours</granularity>"
              "<!--  Resources  --><top-resource idref=\"r-1\"/>"
              "<resource id=\"r-1\"><type>Group</type><!--  Project Schedule  -->" +
                  standardWeek() +
                  "</resource><!--  Tasks  --><top-task idref=\"t-1\"/>"
                  "<task id=\"t-1\"><type>group</type><child-task idref=\"t7\"/></task>"
                  "<task id=\"t7\"><title>Dig</title><type>task</type><schedule-type>asap</schedule-type>"
                  "<effort>43200</effort><start-date>2012-01-10T08:00:00+01:00</start-date>"
                  "<end-date>2012-01-11T17:00:00+01:00</end-date>"
                  "<user-data><key>Region</key><string>North</string></user-data></task>"
                  "<!--  Critical Path  --><critical-path slack=\"0\"/></scenario>");
    EXPECT_EQ(import.project.serialized(), before);
    EXPECT_EQ(markupOf(import.toc),
              "<toc xmlns=\"urn:kadenza:document:2\"><!-- kept -->"
              "<window><editing-scenario>template</editing-scenario>"
              "<comparison-scenario>baaaaaaaaaa</comparison-scenario></window>"
              "<project><next-task-id>8</next-task-id><next-resource-id>1</next-resource-id>"
              "<scenario id=\"template\" name=\"Actual\" filename=\"Actual.xml\"/>"
              "<scenario id=\"baaaaaaaaaa\" name=\"Baseline1\" filename=\"Baseline1.xml\"/>"
              "<date-display/><duration-format/><effort-format/><named-styles/></project></toc>");
    EXPECT_THAT(import.log.takeLines(),
                ElementsAre("Searching for data for baseline 1", "  Baseline Tasks: 1", "  Baseline Resources: 0",
                            "  Baseline Assignments: 0", "  Mapping Calendar UID='1' name='Standard' ...",
                            "Mapping 0 Resources ...", "Mapping 1 Tasks ...", "  Mapping Task UID='7' name='Dig' ..."));
}

TEST(MSPIMapper, ProducesNothingForABaselineWithoutData) {
    Import import(framed(tasks(task(1, baseline(1)))));
    EXPECT_EQ(import.mapBaseline(0), "(none)");
    EXPECT_EQ(import.mapBaseline(10), "(none)");
    EXPECT_EQ(markupOf(import.toc), emptyTOC);
    EXPECT_THAT(import.log.takeLines(), IsEmpty());
}

TEST(MSPIMapper, BelievesTheCountsItIsGiven) {
    Import import(framed(tasks(task(1, baseline(1)))));
    import.info.baselineCounts = MSPIBaselineCounts();
    EXPECT_EQ(import.mapBaseline(1), "(none)");
    import.info.baselineCounts->byNumber[1].tasks = 5;
    EXPECT_THAT(import.mapBaseline(1), HasSubstr("<task id=\"t1\">"));
    EXPECT_THAT(import.log.takeLines(), testing::Contains("  Baseline Tasks: 5"));
}

TEST(MSPIMapper, MapsABaselineThatOnlyAssignmentsHave) {
    Import import(framed(tasks(task(1)) + "<Resources><Resource><UID>3</UID></Resource></Resources><Assignments>"
                                          "<Assignment><TaskUID>1</TaskUID><ResourceUID>3</ResourceUID>" +
                         baseline(0) + "</Assignment></Assignments>"));
    const auto before = import.project.serialized();
    const auto scenario = import.mapBaseline(0);
    EXPECT_THAT(scenario, HasSubstr("<task id=\"t-1\"><type>group</type></task><!--  Critical Path  -->"));
    EXPECT_THAT(scenario, Not(HasSubstr("<resource id=\"r3\"")));
    EXPECT_EQ(import.project.serialized(), before);
    EXPECT_EQ(import.inTOC("project/scenario[@name='Baseline']"),
              "<scenario id=\"baaaaaaaaaa\" name=\"Baseline\" filename=\"Baseline.xml\"/>");
    EXPECT_THAT(import.log.takeLines(),
                ElementsAre("Searching for data for baseline 0", "  Baseline Tasks: 0", "  Baseline Resources: 0",
                            "  Baseline Assignments: 1", "  Mapping Calendar UID='1' name='Standard' ...",
                            "Mapping 0 Resources ...", "Mapping 0 Tasks ..."));
}

TEST(MSPIMapper, NamesTheLastBaselineAsComparisonScenario) {
    Import import(framed(tasks(task(1, baseline(0) + baseline(4)))));
    import.mapActual();
    import.mapBaseline(0);
    import.mapBaseline(4);
    import.log.ignoreLines();
    EXPECT_EQ(import.inTOC("window"),
              "<window><editing-scenario>baaaaaaaaaa</editing-scenario>"
              "<comparison-scenario>daaaaaaaaaa</comparison-scenario></window>");
    const auto toc = markupOf(import.toc);
    EXPECT_THAT(toc, HasSubstr("<scenario id=\"baaaaaaaaaa\" name=\"Actual\" filename=\"Actual.xml\"/>"
                               "<scenario id=\"caaaaaaaaaa\" name=\"Baseline\" filename=\"Baseline.xml\"/>"
                               "<scenario id=\"daaaaaaaaaa\" name=\"Baseline4\" filename=\"Baseline4.xml\"/>"));
}

TEST(MSPIMapper, MapsEveryBaselineFromTheSameSource) {
    const auto content = framed(tasks(task(1, "<Start>2012-01-09T08:00:00</Start>" +
                                                  baseline(0, "<Start>2012-01-10T08:00:00</Start>") +
                                                  baseline(2, "<Start>2012-01-12T08:00:00</Start>")) +
                                      task(2, baseline(2)) + task(3, baseline(0)) + task(4)));
    Import import(content);
    const auto before = import.project.serialized();
    const auto actual = import.mapActual();
    const auto first = import.mapBaseline(0);
    EXPECT_EQ(import.project.serialized(), before);
    const auto second = import.mapBaseline(2);
    EXPECT_EQ(import.project.serialized(), before);
    EXPECT_THAT(actual, HasSubstr("<child-task idref=\"t1\"/><child-task idref=\"t2\"/><child-task idref=\"t3\"/>"
                                  "<child-task idref=\"t4\"/></task>"));
    EXPECT_THAT(actual, HasSubstr("<effort>0</effort><start-date>2012-01-09T08:00:00+01:00</start-date>"));
    EXPECT_THAT(first, HasSubstr("<type>group</type><child-task idref=\"t1\"/><child-task idref=\"t3\"/></task>"));
    EXPECT_THAT(first, HasSubstr("<effort>0</effort><start-date>2012-01-10T08:00:00+01:00</start-date>"));
    EXPECT_THAT(second, HasSubstr("<type>group</type><child-task idref=\"t1\"/><child-task idref=\"t2\"/></task>"));
    EXPECT_THAT(second, HasSubstr("<effort>0</effort><start-date>2012-01-12T08:00:00+01:00</start-date>"));
    import.log.ignoreLines();
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
        Import import(saveVersion + framed(""));
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
        {"Plan", "'Plan'"},
        {std::nullopt, "'MS Project project'"},
        {"", "''"},
        {"a--b", "'a- -b'"},  // a comment cannot hold two hyphens in a row
        {"<&>", "'<&>'"},
    };
    for (const auto& [name, comment] : cases) {
        Import import(framed(""));
        import.info.mspdiProjectName = name;
        EXPECT_THAT(import.mapActual(), HasSubstr("<!--  Imported MS Project 2003: " + comment + "  -->"));
        import.log.ignoreLines();
    }
}

TEST(MSPIMapper, TitlesAProjectWithoutANameAfterTheImportedFile) {
    Import import(framed(""));
    import.mapActual();
    EXPECT_EQ(import.inTOC("project/title"), "<title>Plan</title>");
    import.info.mspdiProjectName.reset();
    import.mapActual();
    EXPECT_EQ(import.inTOC("project/title"), "<title>MS Project project</title>");
    import.log.ignoreLines();
}

TEST(MSPIMapper, DatesTheImportInUTC) {
    Import import(framed(""));
    import.clock.set(MSPCInstant{1304515330});  // 2011-05-04 15:22:10 in Berlin
    EXPECT_THAT(import.mapActual(), HasSubstr("<!--  2011-05-04 13:22:10 +0000: Kadenza 2.x MSPDI Importer.  -->"));
    import.log.ignoreLines();
}

TEST(MSPIMapper, RefusesWhatIsNoMSPDI) {
    const std::vector<std::string> sources = {
        "<Project/>",                                               // no namespace
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
            Import import(documentFromXML(source), emptyTOC);
            EXPECT_RAISES(number < 0 ? import.mapActual() : import.mapBaseline(number), MSPIMapperException,
                          "MSPIMapper.map: Source XML DOM is not a valid MSPDI document.");
            EXPECT_EQ(markupOf(import.toc), emptyTOC) << source;
        }
    }
}

TEST(MSPIMapper, RefusesADocumentWithoutRoot) {
    Import import(MSPCXMLDocument(), emptyTOC);
    EXPECT_RAISES(import.mapActual(), MSPIMapperException,
                  "MSPIMapper.map: Source XML DOM is not a valid MSPDI document.");
}

TEST(MSPIMapper, RefusesNumbersThatNoBaselineHas) {
    Import import(framed(""));
    EXPECT_RAISES(import.mapBaseline(11), MSPCInternalInconsistency,
                  "Unexpected baseline number in info dictionary: 11");
    EXPECT_RAISES(import.mapBaseline(-1), MSPCInternalInconsistency,
                  "Unexpected baseline number in info dictionary: -1");
}

TEST(MSPIMapper, HasNoDocumentBeforeItMaps) {
    Import import(framed(""));
    MSPIMapper mapper(import.project, import.scenarioTemplate, import.toc, import.info, import.services);
    EXPECT_FALSE(mapper.kdzxXmlDoc());
    EXPECT_EQ(markupOf(import.toc), emptyTOC);
}

TEST(MSPIMapper, NeedsAScenarioName) {
    for (const auto& name : {std::optional<std::string>(), std::optional<std::string>("")}) {
        Import import(framed(""));
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
        Import import(framed(tasks(task(1, baseline(0)))), toc);
        EXPECT_RAISES(import.mapActual(), MSPCInternalInconsistency, failure);
        if (isOfBaselinesToo) {
            EXPECT_RAISES(import.mapBaseline(0), MSPCInternalInconsistency, failure);
        } else {
            EXPECT_THAT(import.mapBaseline(0), HasSubstr("<task id=\"t1\">"));
        }
        import.log.ignoreLines();
    }
    Import import(framed(""), "<toc><window><editing-scenario/></window></toc>");
    EXPECT_RAISES(import.mapActual(), MSPCInternalInconsistency,
                  "Failed to get 'scenario/project' element from TOC XML DOM");
    import.log.ignoreLines();
}

TEST(MSPIMapper, ListsTheScenarioWhereTheTemplateListsNone) {
    auto toc = std::string(emptyTOC);
    const std::string entry = "<scenario id=\"template\" name=\"Actual\" filename=\"Actual.xml\"/>";
    toc.replace(toc.find(entry), entry.size(), "");
    Import import(framed(""), toc);
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
        Import import(framed(tasks(task(highest) + task(3))), toc);
        import.mapActual();
        EXPECT_EQ(import.inTOC("project/next-task-id"), "<next-task-id>" + next + "</next-task-id>");
        EXPECT_EQ(import.inTOC("project/next-resource-id"), "<next-resource-id>1</next-resource-id>");
        import.log.ignoreLines();
    }
}

TEST(MSPIMapper, WritesTheProjectsUnitsAndCurrency) {
    Import import("<SaveVersion>14</SaveVersion><CurrencyDigits>0</CurrencyDigits><CurrencySymbol>kr</CurrencySymbol>"
                  "<CurrencyCode>SEK</CurrencyCode><CurrencySymbolPosition>3</CurrencySymbolPosition>"
                  "<MinutesPerDay>450</MinutesPerDay><MinutesPerWeek>2250</MinutesPerWeek>"
                  "<DaysPerMonth>20</DaysPerMonth>" +
                  framed(tasks(task(1, baseline(0)))));
    import.mapActual();
    EXPECT_EQ(import.inTOC("project/currency-format"), "<currency-format>1,234 kr</currency-format>");
    for (const std::string name : {"duration-format", "effort-format"}) {
        EXPECT_EQ(import.inTOC("project/" + name),
                  "<" + name + " hours-per-day=\"7\" hours-per-week=\"37\" hours-per-month=\"140\" hours-per-year=\"1680\"/>");
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
    Import import(framed(std::string(definitions) + tasks(task(1, field("1")) + task(2, field("2")) + task(3)) +
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
    Import import(framed(std::string(definitions) + tasks(task(1))));
    import.mapActual();
    EXPECT_THAT(markupOf(import.toc), HasSubstr("<named-styles/></project>"));
    import.log.ignoreLines();
}

TEST(MSPIMapper, KeepsTheUserDataKeysOfBaselinesToItself) {
    Import import(framed(std::string(definitions) + tasks(task(1, field("1") + baseline(0)))));
    EXPECT_THAT(import.mapBaseline(0), HasSubstr("<user-data><key>Region</key><string>x</string></user-data>"));
    EXPECT_THAT(markupOf(import.toc), HasSubstr("<named-styles/></project>"));
    import.log.ignoreLines();
}

TEST(MSPIMapper, LeavesTheTableOfContentsAloneWhereTheMappingFails) {
    Import import(std::string(frame) + tasks(task(1)));  // without a calendar
    EXPECT_RAISES(import.mapActual(), MSPCInternalInconsistency, "MS Project 'Standard' Calendar not found.");
    EXPECT_EQ(markupOf(import.toc), emptyTOC);
    import.log.ignoreLines();
}

TEST(MSPIMapper, GivesUpWithoutRandomNumbers) {
    Import import(framed(""));
    import.randomSource = ListedRandomSource{};
    EXPECT_RAISES(import.mapActual(), MSPCInternalInconsistency,
                  "MSPIUtilities VFXMLCreateID: Failed to generate random Big Number.");
    EXPECT_EQ(markupOf(import.toc), emptyTOC);
    import.log.ignoreLines();
}

}  // namespace
