#include "MSPIXMLImporter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "FixedClock.h"
#include "InMemoryFileSystem.h"
#include "ListedRandomSource.h"
#include "MSPCException.h"
#include "MapUserDefaults.h"
#include "RecordingLog.h"
#include "RecordingProgress.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr auto copyFailure =
    "Exception: KZMPPImporterException\n"
    "MSPIMPPImporter importFromMppURL:toKdzxBundleURL:Failed to copy KZ2 Template bundle to destination directory.\n";

// One import of /in/Plan.xml into /out/Plan.kdzx with a mapping that writes the scenario's name into its document and
// an entry into the table of contents, for the actual scenario and `baselinesWithData`.
class MSPIXMLImporterTest : public testing::Test {
protected:
    MSPIXMLImporterTest() {
        fileSystem.addFile("/in/Plan.xml", "<Project><Title>the plan</Title></Project>");
        fileSystem.addFile("/template/Empty.kdzx/Actual.xml", "<scenario>template</scenario>");
        fileSystem.addFile("/template/Empty.kdzx/__TOC.xml", "<toc><!--kept--><project>empty</project></toc>");
        fileSystem.addFile("/template/Empty.kdzx/extra/notes.txt", "untouched");
        fileSystem.addFolder("/out");
        info.mspdiProjectName = "Plan";
        info.kdzxTemplateURL = MSPCURL::fileURL("/template/Empty.kdzx", true);
    }

    bool import(const std::optional<MSPCURL>& source, const std::optional<MSPCURL>& destination) {
        return MSPIXMLImporter(info, services, mapping).importFromMspdiURLToKdzxBundleURL(source, destination);
    }
    bool import() { return import(MSPCURL::fileURL("/in/Plan.xml", false), MSPCURL::fileURL("/out/Plan.kdzx", true)); }

    std::optional<MSPCXMLDocument> mapScenario(const MSPIPlan& plan, const MSPCXMLDocument& kdzxTemplate,
                                               MSPCXMLDocument& kdzxTOC, const MSPIImportInfo& scenarioInfo) {
        const auto number = scenarioInfo.mspdiBaselineNumber;
        mapped.push_back(scenarioInfo);
        EXPECT_EQ(plan.root().stringValue(), "the plan");
        EXPECT_EQ(kdzxTemplate.root().stringValue(), "template");
        if (number ? !baselinesWithData.contains(*number) : !hasActualScenario) {
            return std::nullopt;
        }
        kdzxTOC.root().appendElement("entry").setStringValue(*scenarioInfo.kdzxScenarioName);
        MSPCXMLDocument document;
        document.setRoot(document.newElement("scenario")).setStringValue(*scenarioInfo.kdzxScenarioName + scenarioText);
        return document;
    }

    [[nodiscard]] std::string written(const std::string& fileName) const {
        return fileSystem.contents("/out/Plan.kdzx/" + fileName);
    }

    // The lines before the documents are loaded.
    void expectHead(const std::string& bundlePath = "/out/Plan.kdzx") {
        const auto lines = log.takeLines();
        ASSERT_GE(lines.size(), 3U);
        EXPECT_EQ(lines[0], "MSPIXMLImporter: Importing XML (MSPDI) file to KZ 2 document bundle...");
        EXPECT_EQ(lines[1], "Input:  '/in/Plan.xml'");
        EXPECT_EQ(lines[2], "Output: '" + bundlePath + "'");
        rest.assign(lines.begin() + 3, lines.end());
    }

    InMemoryFileSystem fileSystem;
    RecordingLog log;
    FixedClock clock{MSPCInstant{}};
    MapUserDefaults userDefaults;
    ListedRandomSource randomSource{};
    RecordingProgress progress;
    MSPCServices services{clock, MSPCTimeZone::fixed(0), log, userDefaults, fileSystem, randomSource, progress};

    MSPIImportInfo info;
    bool hasActualScenario = true;
    std::set<int> baselinesWithData;
    std::string scenarioText;
    std::vector<MSPIImportInfo> mapped;
    std::vector<std::string> rest;  // of the log, behind its head
    MSPIScenarioMapping mapping = [this](MSPIPlan& plan, const MSPCXMLDocument& kdzxTemplate, MSPCXMLDocument& kdzxTOC,
                                         const MSPIImportInfo& scenarioInfo, const MSPCServices&) {
        return mapScenario(plan, kdzxTemplate, kdzxTOC, scenarioInfo);
    };
};

}  // namespace

TEST_F(MSPIXMLImporterTest, aPlanWithoutBaselinesGivesTheActualScenarioAndTheTableOfContents) {
    EXPECT_TRUE(import());
    expectHead();
    EXPECT_THAT(rest, ElementsAre("Begin loading XML document ...", "Process XML DOM ..."));
    EXPECT_THAT(fileSystem.pathsBelow("/out/Plan.kdzx"),
                ElementsAre("/out/Plan.kdzx", "/out/Plan.kdzx/Actual.xml", "/out/Plan.kdzx/__TOC.xml",
                            "/out/Plan.kdzx/extra", "/out/Plan.kdzx/extra/notes.txt"));
    EXPECT_THAT(written("Actual.xml"), HasSubstr("<scenario>Actual</scenario>"));
    EXPECT_THAT(written("__TOC.xml"), HasSubstr("<entry>Actual</entry>"));
    EXPECT_EQ(written("extra/notes.txt"), "untouched");
}

TEST_F(MSPIXMLImporterTest, theProgressNamesEachScenarioAndEndsWithTheImport) {
    EXPECT_TRUE(import());
    EXPECT_THAT(progress.told(),
                ElementsAre("begin Actual", "begin Baseline", "begin Baseline1", "begin Baseline2", "begin Baseline3",
                            "begin Baseline4", "begin Baseline5", "begin Baseline6", "begin Baseline7",
                            "begin Baseline8", "begin Baseline9", "begin Baseline10", "end"));
    static_cast<void>(log.takeLines());
}

TEST_F(MSPIXMLImporterTest, theProgressEndsWithAnImportThatFails) {
    hasActualScenario = false;
    EXPECT_FALSE(import());
    EXPECT_THAT(progress.told(), ElementsAre("begin Actual", "end"));
    static_cast<void>(log.takeLines());
}

TEST_F(MSPIXMLImporterTest, aFailedBundleThatIsNotKeptNeverAppears) {
    info.keepsFailedBundle = false;
    hasActualScenario = false;
    EXPECT_FALSE(import());
    EXPECT_FALSE(fileSystem.exists("/out/Plan.kdzx"));
    mapping = [](auto&, const auto&, auto&, const auto&, const auto&) -> std::optional<MSPCXMLDocument> {
        throw MSPCInternalInconsistency("no");
    };
    EXPECT_FALSE(import());
    EXPECT_FALSE(fileSystem.exists("/out/Plan.kdzx"));
    log.ignoreLines();
}

TEST_F(MSPIXMLImporterTest, whatAFailedBundleWasToReplaceStandsWhereItIsNotKept) {
    fileSystem.addFile("/out/Plan.kdzx/old.txt", "old");
    info.keepsFailedBundle = false;
    info.replacesOldBundle = true;
    hasActualScenario = false;
    EXPECT_FALSE(import());
    EXPECT_EQ(fileSystem.contents("/out/Plan.kdzx/old.txt"), "old");
    hasActualScenario = true;
    EXPECT_TRUE(import());
    EXPECT_FALSE(fileSystem.exists("/out/Plan.kdzx/old.txt"));
    log.ignoreLines();
}

TEST_F(MSPIXMLImporterTest, baselines0And2GiveTwoMoreScenarios) {
    baselinesWithData = {0, 2};
    EXPECT_TRUE(import());
    log.ignoreLines();
    EXPECT_THAT(written("Baseline.xml"), HasSubstr("<scenario>Baseline</scenario>"));
    EXPECT_THAT(written("Baseline2.xml"), HasSubstr("<scenario>Baseline2</scenario>"));
    EXPECT_EQ(fileSystem.pathsBelow("/out/Plan.kdzx").size(), 7U);
}

TEST_F(MSPIXMLImporterTest, theActualScenarioAndBaselines0To10AreMappedInThatOrderAndNoneAbove) {
    baselinesWithData = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    EXPECT_TRUE(import());
    log.ignoreLines();
    ASSERT_EQ(mapped.size(), 12U);
    EXPECT_EQ(mapped[0].mspdiBaselineNumber, std::nullopt);
    EXPECT_EQ(mapped[0].kdzxScenarioName, "Actual");
    EXPECT_EQ(mapped[1].mspdiBaselineNumber, 0);
    EXPECT_EQ(mapped[1].kdzxScenarioName, "Baseline");
    EXPECT_EQ(mapped[11].mspdiBaselineNumber, 10);
    EXPECT_EQ(mapped[11].kdzxScenarioName, "Baseline10");
    for (int number = 1; number <= 10; ++number) {
        EXPECT_EQ(mapped[static_cast<std::size_t>(number) + 1].kdzxScenarioName, "Baseline" + std::to_string(number));
    }
    EXPECT_EQ(written("Baseline11.xml"), "(no file)");
}

TEST_F(MSPIXMLImporterTest, theMapperGetsTheProjectNameAndTheTemplate) {
    EXPECT_TRUE(import());
    log.ignoreLines();
    EXPECT_EQ(mapped[0].mspdiProjectName, "Plan");
    ASSERT_TRUE(mapped[0].kdzxTemplateURL);
    EXPECT_EQ(mapped[0].kdzxTemplateURL->path(), "/template/Empty.kdzx");
    EXPECT_FALSE(mapped[0].mppTemplateURL);
}

TEST_F(MSPIXMLImporterTest, oneTableOfContentsCollectsAllScenariosAndKeepsWhatItHeld) {
    baselinesWithData = {0, 7};
    EXPECT_TRUE(import());
    log.ignoreLines();
    const auto toc = written("__TOC.xml");
    EXPECT_THAT(toc, HasSubstr("<!--kept-->"));
    EXPECT_THAT(toc, HasSubstr("<project>empty</project>"));
    const auto actual = toc.find("<entry>Actual</entry>");
    const auto first = toc.find("<entry>Baseline</entry>");
    const auto second = toc.find("<entry>Baseline7</entry>");
    EXPECT_LT(actual, first);
    EXPECT_LT(first, second);
    EXPECT_NE(second, std::string::npos);
}

TEST_F(MSPIXMLImporterTest, theTableOfContentsIsWrittenLast) {
    baselinesWithData = {3};
    EXPECT_TRUE(import());
    log.ignoreLines();
    EXPECT_THAT(fileSystem.calls(),
                ElementsAre("copyContent /template/Empty.kdzx -> /out/Plan.kdzx", "readFile /in/Plan.xml",
                            "readFile /out/Plan.kdzx/Actual.xml", "readFile /out/Plan.kdzx/__TOC.xml",
                            "writeAtomically /out/Plan.kdzx/Actual.xml", "writeAtomically /out/Plan.kdzx/Baseline3.xml",
                            "writeAtomically /out/Plan.kdzx/__TOC.xml", "appear /out/Plan.kdzx"));
}

TEST_F(MSPIXMLImporterTest, aScenarioThatFailsTheCheckIsWrittenAllTheSame) {
    // The fake scenario has neither namespace nor id nor tasks.
    EXPECT_TRUE(import());
    log.ignoreLines();
    EXPECT_THAT(written("Actual.xml"), HasSubstr("Actual"));
}

TEST_F(MSPIXMLImporterTest, aPlanWithoutActualScenarioFailsWithoutALineAndLeavesTheTableOfContents) {
    hasActualScenario = false;
    baselinesWithData = {0};
    EXPECT_FALSE(import());
    expectHead();
    EXPECT_THAT(rest, ElementsAre("Begin loading XML document ...", "Process XML DOM ..."));
    EXPECT_EQ(mapped.size(), 1U);
    EXPECT_EQ(written("__TOC.xml"), "<toc><!--kept--><project>empty</project></toc>");
}

TEST_F(MSPIXMLImporterTest, anExistingBundleIsNeverOverwritten_theFirstFreeNumberIsTaken) {
    fileSystem.addFile("/out/Plan.kdzx/Actual.xml", "old");
    fileSystem.addFile("/out/Plan-1.kdzx", "a file");
    EXPECT_TRUE(import());
    expectHead("/out/Plan-2.kdzx");
    EXPECT_EQ(written("Actual.xml"), "old");
    EXPECT_EQ(fileSystem.contents("/out/Plan-1.kdzx"), "a file");
    EXPECT_THAT(fileSystem.contents("/out/Plan-2.kdzx/Actual.xml"), HasSubstr("<scenario>Actual</scenario>"));
}

TEST_F(MSPIXMLImporterTest, aNameThatAnotherRunTakesMeanwhileIsLeftToIt) {
    // Takes the name between the choice and the copy, as another run would.
    class RacingLog final : public MSPCLog {
    public:
        explicit RacingLog(InMemoryFileSystem& files) : _files(files) {}
        std::vector<std::string> outputs;

    protected:
        void write(std::string_view message) override {
            if (message == "Output: '/out/Plan.kdzx'") {
                _files.addFile("/out/Plan.kdzx/Actual.xml", "another run's");
            }
            if (message.starts_with("Output:")) {
                outputs.emplace_back(message);
            }
        }

    private:
        InMemoryFileSystem& _files;
    };
    RacingLog racingLog(fileSystem);
    const MSPCServices racing{clock, MSPCTimeZone::fixed(0), racingLog, userDefaults, fileSystem, randomSource};
    EXPECT_TRUE(MSPIXMLImporter(info, racing, mapping)
                    .importFromMspdiURLToKdzxBundleURL(MSPCURL::fileURL("/in/Plan.xml", false),
                                                       MSPCURL::fileURL("/out/Plan.kdzx", true)));
    EXPECT_THAT(racingLog.outputs, ElementsAre("Output: '/out/Plan.kdzx'", "Output: '/out/Plan-1.kdzx'"));
    EXPECT_EQ(written("Actual.xml"), "another run's");
    EXPECT_THAT(fileSystem.contents("/out/Plan-1.kdzx/Actual.xml"), HasSubstr("<scenario>Actual</scenario>"));
}

TEST_F(MSPIXMLImporterTest, nothingHasTheNameUntilAllIsWritten) {
    baselinesWithData = {0};
    const auto map = mapping;
    mapping = [this, map](auto&&... arguments) {
        EXPECT_FALSE(fileSystem.exists("/out/Plan.kdzx"));
        return map(arguments...);
    };
    EXPECT_TRUE(import());
    log.ignoreLines();
    EXPECT_EQ(mapped.size(), 12U);
    EXPECT_THAT(written("__TOC.xml"), HasSubstr("<entry>Baseline</entry>"));
}

TEST_F(MSPIXMLImporterTest, whatIsReplacedStandsUntilAllIsWritten) {
    fileSystem.addFile("/out/Plan.kdzx/old.xml", "old");
    info.replacesOldBundle = true;
    const auto map = mapping;
    mapping = [this, map](auto&&... arguments) {
        EXPECT_EQ(written("old.xml"), "old");
        return map(arguments...);
    };
    EXPECT_TRUE(import());
    expectHead();
    EXPECT_EQ(mapped.size(), 12U);
    EXPECT_EQ(written("old.xml"), "(no file)");
    EXPECT_THAT(written("Actual.xml"), HasSubstr("<scenario>Actual</scenario>"));
}

TEST_F(MSPIXMLImporterTest, aFailedImportReplacesWithWhatWasWritten) {
    fileSystem.addFile("/out/Plan.kdzx/old.xml", "old");
    info.replacesOldBundle = true;
    mapping = [](auto&&...) -> std::optional<MSPCXMLDocument> { throw MSPIMapperException("Reason."); };
    EXPECT_FALSE(import());
    EXPECT_EQ(log.takeLines().back(), "Exception: MSPIMapperException\nReason.\n");
    EXPECT_EQ(written("old.xml"), "(no file)");
    EXPECT_EQ(written("Actual.xml"), "<scenario>template</scenario>");
}

TEST_F(MSPIXMLImporterTest, aTemplateThatCannotBeCopiedReplacesNothing) {
    fileSystem.addFile("/out/Plan.kdzx/old.xml", "old");
    info.replacesOldBundle = true;
    fileSystem.failAlways("copyContent", "No space left on device");
    EXPECT_FALSE(import());
    EXPECT_EQ(log.takeLines().back(), std::string(copyFailure) + "No space left on device");
    EXPECT_EQ(written("old.xml"), "old");
}

TEST_F(MSPIXMLImporterTest, whatCannotBeReplacedIsInTheWayLikeAnyOther) {
    fileSystem.addFile("/out/Plan.kdzx/old.xml", "old");
    fileSystem.fix("/out/Plan.kdzx");
    info.replacesOldBundle = true;
    EXPECT_TRUE(import());
    expectHead("/out/Plan-1.kdzx");
    EXPECT_EQ(written("old.xml"), "old");
    EXPECT_THAT(fileSystem.contents("/out/Plan-1.kdzx/Actual.xml"), HasSubstr("<scenario>Actual</scenario>"));
}

TEST_F(MSPIXMLImporterTest, numberedNamesAreNeverReplaced) {
    fileSystem.addFile("/out/Plan.kdzx/old.xml", "old");
    fileSystem.addFile("/out/Plan-1.kdzx/old.xml", "old too");
    fileSystem.fix("/out/Plan.kdzx");
    info.replacesOldBundle = true;
    EXPECT_TRUE(import());
    expectHead("/out/Plan-2.kdzx");
    EXPECT_EQ(fileSystem.contents("/out/Plan-1.kdzx/old.xml"), "old too");
}

TEST_F(MSPIXMLImporterTest, whatIsLeftOfAReplacedBundleIsToldOf) {
    fileSystem.addFile("/out/Plan.kdzx/old.xml", "old");
    fileSystem.keepRemainsAs("/out/.hidden");
    info.replacesOldBundle = true;
    EXPECT_TRUE(import());
    EXPECT_EQ(log.takeLines().back(),
              "WARNING: Failed to remove all of the document that was replaced: '/out/.hidden' is left.");
}

TEST_F(MSPIXMLImporterTest, aBundleThatCannotGetItsNameFailsTheImport) {
    fileSystem.failAlways("appear", "Input/output error");
    EXPECT_FALSE(import());
    EXPECT_EQ(log.takeLines().back(),
              "Exception: KZMPPImporterException\nFailed to write '/out/Plan.kdzx': Input/output error\n");
    EXPECT_FALSE(fileSystem.exists("/out/Plan.kdzx"));
}

TEST_F(MSPIXMLImporterTest, theFirstFailureCountsWhereTheBundleCannotGetItsNameEither) {
    fileSystem.failAlways("appear", "Input/output error");
    mapping = [](auto&&...) -> std::optional<MSPCXMLDocument> { throw MSPIMapperException("Reason."); };
    EXPECT_FALSE(import());
    EXPECT_EQ(log.takeLines().back(), "Exception: MSPIMapperException\nReason.\n");
}

TEST_F(MSPIXMLImporterTest, manyPlansOfOneNameLookEachNameUpOnlyAFewTimes) {
    constexpr int count = 300;
    fileSystem.addFile("/out/Plan-7.kdzx", "of somebody else");
    info.bundleNumbers = std::make_shared<std::map<std::string, std::uint64_t>>();
    mapping = [](auto&&...) -> std::optional<MSPCXMLDocument> { return std::nullopt; };
    for (int number = 0; number < count; ++number) {
        EXPECT_FALSE(import());
    }
    // 0 to 300 without the 7; what another run makes meanwhile is seen.
    EXPECT_TRUE(fileSystem.exists("/out/Plan-300.kdzx"));
    EXPECT_FALSE(fileSystem.exists("/out/Plan-301.kdzx"));
    EXPECT_LE(fileSystem.newFolders(), 3 * count);
    fileSystem.addFolder("/out/Plan-301.kdzx");
    log.ignoreLines();
    EXPECT_FALSE(import());
    expectHead("/out/Plan-302.kdzx");
}

TEST_F(MSPIXMLImporterTest, refusedLocationsAreNamedAndNothingIsCopied) {
    const auto plan = MSPCURL::fileURL("/in/Plan.xml", false);
    const auto bundle = MSPCURL::fileURL("/out/Plan.kdzx", true);
    const auto web = MSPCURL::fromString("http://example.org/Plan.xml");
    const auto webBundle = MSPCURL::fromString("http://example.org/Plan.kdzx");
    const struct {
        std::optional<MSPCURL> source;
        std::optional<MSPCURL> destination;
        const char* reason;
    } table[] = {
        {std::nullopt, std::nullopt, "MSPIXMLImporter.importMSPDIData: Source URL not specified."},
        {web, std::nullopt, "MSPIXMLImporter.importMSPDIData: Source must be a file system."},
        {MSPCURL::fileURL("/in/Plan.txt", false), std::nullopt,
         "MSPIXMLImporter.importMSPDIData: Source must be a MS Project XML document."},
        {MSPCURL::fileURL("/in/xml", false), std::nullopt,
         "MSPIXMLImporter.importMSPDIData: Source must be a MS Project XML document."},
        {plan, std::nullopt, "MSPIXMLImporter.importMSPDIData: Destination URL not specified."},
        {plan, webBundle, "MSPIXMLImporter.importMSPDIData: Destination must be a file system."},
        {plan, MSPCURL::fileURL("/out/Plan", true),
         "MSPIXMLImporter.importMSPDIData: Destination must be a KZ 2 document bundle (.kdzx file)."},
        {plan, MSPCURL::fileURL("/out/Plan.KDZX", true),
         "MSPIXMLImporter.importMSPDIData: Destination must be a KZ 2 document bundle (.kdzx file)."},
    };
    for (const auto& row : table) {
        EXPECT_FALSE(import(row.source, row.destination)) << row.reason;
        EXPECT_THAT(log.takeLines(), ElementsAre(std::string("Exception: MSPIXMLException\n") + row.reason + "\n"));
    }
    EXPECT_TRUE(fileSystem.calls().empty());
}

TEST_F(MSPIXMLImporterTest, theSourcesExtensionMayBeInCapitals) {
    for (const auto* path : {"/in/Plan.XML", "/in/Plan.MspXml", "/in/Plan.mspxml"}) {
        fileSystem.addFile(path, "<Project><Title>the plan</Title></Project>");
        EXPECT_TRUE(import(MSPCURL::fileURL(path, false), MSPCURL::fileURL("/out/Plan.kdzx", true))) << path;
        log.ignoreLines();
    }
}

TEST_F(MSPIXMLImporterTest, aMissingTemplateUrlFailsTheImport) {
    info.kdzxTemplateURL = std::nullopt;
    EXPECT_FALSE(import());
    expectHead();
    EXPECT_THAT(rest, ElementsAre("Exception: MSPCInternalInconsistency\n"
                                  "URL of Template kdzx document not specified.\n"));
}

TEST_F(MSPIXMLImporterTest, aCopyThatFailsIsReportedWithTheSystemsReason) {
    fileSystem.failAtCall(1, "No space left on device");
    EXPECT_FALSE(import());
    expectHead();
    EXPECT_THAT(rest, ElementsAre(std::string(copyFailure) + "No space left on device"));
}

TEST_F(MSPIXMLImporterTest, aBrokenPlanFailsAfterTheTemplateWasCopiedAndTheCopyStays) {
    fileSystem.addFile("/in/Plan.xml", "this is no XML at all");
    EXPECT_FALSE(import());
    expectHead();
    EXPECT_THAT(rest, ElementsAre("Begin loading XML document ...",
                                  "Exception: MSPEXMLException\n"
                                  "MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.\n"));
    EXPECT_EQ(written("Actual.xml"), "<scenario>template</scenario>");
}

TEST_F(MSPIXMLImporterTest, aTemplateWithoutItsDocumentsFailsTheImport) {
    for (const auto* fileName : {"Actual.xml", "__TOC.xml"}) {
        const auto path = std::string("/template/Empty.kdzx/") + fileName;
        const auto content = fileSystem.contents(path);
        fileSystem.takeAway(path);
        EXPECT_FALSE(import()) << fileName;
        const auto lines = log.takeLines();
        EXPECT_EQ(lines.back(),
                  "Exception: MSPEXMLException\n"
                  "MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.\n");
        fileSystem.addFile(path, content);
    }
}

TEST_F(MSPIXMLImporterTest, whatAMapperRaisesIsLoggedWithItsUserInformation) {
    mapping = [](auto&&...) -> std::optional<MSPCXMLDocument> {
        throw MSPCException("SomeException", "Some reason.", "some = info");
    };
    EXPECT_FALSE(import());
    expectHead();
    EXPECT_EQ(rest.back(), "Exception: SomeException\nSome reason.\nsome = info");
    EXPECT_EQ(written("Actual.xml"), "<scenario>template</scenario>");
}

TEST_F(MSPIXMLImporterTest, aFailingBaselineLeavesTheActualScenarioAndTheTemplatesTableOfContents) {
    mapping = [this](MSPIPlan& plan, const MSPCXMLDocument& kdzxTemplate, MSPCXMLDocument& kdzxTOC,
                     const MSPIImportInfo& scenarioInfo, const MSPCServices&) {
        if (scenarioInfo.mspdiBaselineNumber == 4) {
            throw MSPIMapperException("No baseline 4.");
        }
        return mapScenario(plan, kdzxTemplate, kdzxTOC, scenarioInfo);
    };
    baselinesWithData = {1};
    EXPECT_FALSE(import());
    EXPECT_EQ(log.takeLines().back(), "Exception: MSPIMapperException\nNo baseline 4.\n");
    EXPECT_THAT(written("Actual.xml"), HasSubstr("<scenario>Actual</scenario>"));
    EXPECT_THAT(written("Baseline1.xml"), HasSubstr("<scenario>Baseline1</scenario>"));
    EXPECT_THAT(written("__TOC.xml"), Not(HasSubstr("<entry>")));
}

TEST_F(MSPIXMLImporterTest, foreignExceptionsPass) {
    mapping = [](auto&&...) -> std::optional<MSPCXMLDocument> { throw std::logic_error("foreign"); };
    EXPECT_THROW(static_cast<void>(import()), std::logic_error);
    log.ignoreLines();
}

TEST_F(MSPIXMLImporterTest, memoryThatRunsOutIsAFailureWithAReason) {
    mapping = [](auto&&...) -> std::optional<MSPCXMLDocument> { throw std::bad_alloc(); };
    EXPECT_FALSE(import());
    expectHead();
    EXPECT_EQ(rest.back(), "Exception: KZMPPImporterException\nNot enough memory for this import.\n");
    EXPECT_EQ(written("Actual.xml"), "<scenario>template</scenario>");
}

TEST_F(MSPIXMLImporterTest, aFailedWriteNamesTheFileAndTheSystemsReason) {
    fileSystem.failAlways("writeAtomically", "No space left on device");
    EXPECT_FALSE(import());
    EXPECT_EQ(log.takeLines().back(),
              "Exception: KZMPPImporterException\n"
              "Failed to write '/out/Plan.kdzx/Actual.xml': No space left on device\n");
    EXPECT_EQ(written("Actual.xml"), "<scenario>template</scenario>");
}

TEST_F(MSPIXMLImporterTest, replacedCharactersAreCountedInAWarning) {
    scenarioText = " \x01 and \x02";
    EXPECT_TRUE(import());
    EXPECT_EQ(log.takeLines().back(),
              "WARNING: Replaced 2 characters that XML cannot hold in '/out/Plan.kdzx/Actual.xml'.");
    EXPECT_THAT(written("Actual.xml"), HasSubstr("Actual \xEF\xBF\xBD and \xEF\xBF\xBD"));
}
