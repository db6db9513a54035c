#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "FixedClock.h"
#include "InMemoryFileSystem.h"
#include "ListedRandomSource.h"
#include "MSPIXMLImporter.h"
#include "MapUserDefaults.h"
#include "RecordingLog.h"

namespace {

using testing::HasSubstr;

// Imports with the true mapping, for what table of contents and scenarios must have in common.
class ImportedBundleTest : public testing::Test {
protected:
    ImportedBundleTest() {
        fileSystem.addFolder("/out");
        fileSystem.addFile("/t/Empty.kdzx/Actual.xml", R"(<scenario xmlns="urn:kadenza:document:2" id="x"/>)");
    }

    // A table of contents with all that is required; each test says what it replaces.
    static std::string tableOfContents(const std::string& piece = {}, const std::string& replacement = {}) {
        std::string text =
            R"(<toc xmlns="urn:kadenza:document:2"><window><editing-scenario/></window><project>)"
            R"(<next-task-id>1</next-task-id><next-resource-id>1</next-resource-id>)"
            R"(<scenario id="x" name="Actual" filename="Actual.xml"/><duration-format/><effort-format/></project></toc>)";
        const auto position = text.find(piece);
        EXPECT_NE(position, std::string::npos) << piece;
        return text.replace(position, piece.size(), replacement);
    }

    // A plan with one task that holds these baselines.
    static std::string planWithBaselines(const std::string& baselines) {
        return R"(<Project xmlns="http://schemas.microsoft.com/project"><StartDate>2024-03-04T08:00:00</StartDate>)"
               R"(<Calendars><Calendar><UID>1</UID><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars><Tasks><Task>)"
               R"(<UID>1</UID><OutlineLevel>1</OutlineLevel><Summary>0</Summary>)" +
               baselines + "</Task></Tasks></Project>";
    }

    bool import(const std::string& toc, const std::string& plan = planWithBaselines("")) {
        fileSystem.addFile("/t/Empty.kdzx/__TOC.xml", toc);
        fileSystem.addFile("/in/Plan.xml", plan);
        MSPIImportInfo info;
        info.kdzxTemplateURL = MSPCURL::fileURL("/t/Empty.kdzx", true);
        const bool succeeded = MSPIXMLImporter(info, services)
                                   .importFromMspdiURLToKdzxBundleURL(MSPCURL::fileURL("/in/Plan.xml", false),
                                                                      MSPCURL::fileURL("/out/Plan.kdzx", true));
        lastLine = log.takeLines().back();
        return succeeded;
    }

    // The value of the first `id="..."` behind a text.
    static std::string idBehind(const std::string& marker, const std::string& text) {
        const auto id = text.find("id=\"", text.find(marker)) + 4;
        return text.substr(id, text.find('"', id) - id);
    }

    InMemoryFileSystem fileSystem;
    RecordingLog log;
    FixedClock clock{MSPCInstant{}};
    MapUserDefaults userDefaults;
    ListedRandomSource randomSource{0x8000000000000001U, 0x9000000000000002U, 0xA000000000000003U};
    MSPCServices services{clock, MSPCTimeZone::fixed(0), log, userDefaults, fileSystem, randomSource};
    std::string lastLine;
};

}  // namespace

TEST_F(ImportedBundleTest, everyRequiredElementOfTheTableOfContentsIsMissedByName) {
    const struct {
        const char* piece;
        const char* replacement;
        const char* reason;
    } table[] = {
        {"<window><editing-scenario/></window>", "", "Failed to get 'scenario/window' element from TOC XML DOM"},
        {"project>", "projects>", "Failed to get 'scenario/project' element from TOC XML DOM"},
        {"<editing-scenario/>", "", "Failed to get 'window/editing-scenario' from TOC XML DOM."},
        {"<next-task-id>1</next-task-id>", "", "Failed to get 'project/next-task-id' element from TOC XML DOM"},
        {"<next-resource-id>1</next-resource-id>", "",
         "Failed to get 'project/next-resource-id' element from TOC XML DOM"},
        {"<duration-format/>", "", "Failed to get 'project/duration-format' from TOC XML DOM."},
        {"<effort-format/>", "", "Failed to get 'project/effort-format' from TOC XML DOM."},
    };
    for (const auto& row : table) {
        auto toc = tableOfContents(row.piece, row.replacement);
        if (const auto end = toc.find("</project>"); std::string(row.replacement) == "projects>") {
            toc.replace(end, 10, "</projects>");
        }
        randomSource = ListedRandomSource{0x8000000000000001U};
        EXPECT_FALSE(import(toc)) << row.piece;
        EXPECT_EQ(lastLine, std::string("Exception: MSPCInternalInconsistency\n") + row.reason + "\n");
    }
}

TEST_F(ImportedBundleTest, anEntryForTheActualScenarioKeepsItsPlaceAndGetsAnotherIdWithEachImport) {
    const auto toc = tableOfContents("<scenario id=\"x\"", "<other/><scenario id=\"x\" kept=\"yes\"");
    ASSERT_TRUE(import(toc));
    ASSERT_TRUE(import(toc));
    const auto first = fileSystem.contents("/out/Plan.kdzx/__TOC.xml");
    const auto second = fileSystem.contents("/out/Plan-1.kdzx/__TOC.xml");
    EXPECT_EQ(first.find("<scenario "), first.rfind("<scenario "));
    EXPECT_LT(first.find("<other"), first.find("<scenario "));
    EXPECT_THAT(first, HasSubstr("kept=\"yes\""));
    EXPECT_EQ(idBehind("<scenario ", first), idBehind("<scenario ", fileSystem.contents("/out/Plan.kdzx/Actual.xml")));
    EXPECT_THAT(first, HasSubstr("<editing-scenario>" + idBehind("<scenario ", first) + "</editing-scenario>"));
    EXPECT_NE(idBehind("<scenario ", first), "x");
    EXPECT_NE(idBehind("<scenario ", first), idBehind("<scenario ", second));
}

TEST_F(ImportedBundleTest, baselines0And2StandBehindTheActualScenario) {
    ASSERT_TRUE(import(tableOfContents(), planWithBaselines("<Baseline><Number>2</Number></Baseline>"
                                                            "<Baseline><Number>0</Number></Baseline>")));
    const auto toc = fileSystem.contents("/out/Plan.kdzx/__TOC.xml");
    const auto actual = toc.find("name=\"Actual\"");
    const auto baseline = toc.find("name=\"Baseline\"");
    const auto baseline2 = toc.find("name=\"Baseline2\"");
    ASSERT_NE(baseline2, std::string::npos);
    EXPECT_LT(actual, baseline);
    EXPECT_LT(baseline, baseline2);
    EXPECT_LT(baseline2, toc.find("<duration-format"));
    EXPECT_THAT(toc, HasSubstr("filename=\"Baseline2.xml\""));
    EXPECT_THAT(toc, HasSubstr("<comparison-scenario>" +
                               idBehind("<scenario ", fileSystem.contents("/out/Plan.kdzx/Baseline2.xml")) +
                               "</comparison-scenario>"));
    EXPECT_THAT(fileSystem.contents("/out/Plan.kdzx/Baseline1.xml"), "(no file)");
}
