#include "MSPDIImportRunner.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "FixedClock.h"
#include "InMemoryFileSystem.h"
#include "ListedRandomSource.h"
#include "MapUserDefaults.h"
#include "RecordingLog.h"

namespace {

using Lines = std::vector<std::string>;
using Arguments = std::vector<std::string>;

// A folder "/in" with plans, a template "/T.kdzx", a folder "/out" and an import that keeps what it is asked for.
class MSPDIImportRunnerTest : public ::testing::Test {
protected:
    struct Asked {
        std::string source;
        std::string destination;
        MSPIImportInfo info;
    };

    MSPDIImportRunnerTest() {
        files.addFile("/T.kdzx/Actual.xml", "template");
        files.addFolder("/out");
        for (const auto* name : {"a.xml", "b.mspxml", "Plan.final.xml", "Plan.MSPXML", "bad.xml", "notes.txt"}) {
            files.addFile(std::string("/in/") + name);
        }
    }

    // Imports succeed unless the input's name holds "bad".
    int run(const Arguments& arguments) {
        MSPDIImportRunner runner(services,
                                 [this](const auto& info, const auto&, const auto& source, const auto& destination) {
                                     asked.push_back({source.path(), destination.absoluteString(), info});
                                     return source.path().find("bad") == std::string::npos;
                                 });
        return runner.run(arguments);
    }
    int runWith(const Arguments& afterTemplate) {
        Arguments arguments{"/usr/bin/MSPDIImport", "--template-path", "/T.kdzx"};
        arguments.insert(arguments.end(), afterTemplate.begin(), afterTemplate.end());
        return run(arguments);
    }
    int runList(const std::string& list) {
        files.addFile("/list", list);
        return runWith({"--input-list", "/list", "/out"});
    }
    Lines sources() const {
        Lines result;
        for (const auto& one : asked) {
            result.push_back(one.source);
        }
        return result;
    }
    // The log of a run that fails before anything is imported; the run's status is checked too.
    Lines linesOfFailure(const Arguments& arguments) {
        EXPECT_EQ(run(arguments), 1);
        EXPECT_TRUE(asked.empty());
        return log.takeLines();
    }

    InMemoryFileSystem files;
    RecordingLog log;
    MapUserDefaults settings;
    FixedClock clock{MSPCInstant{}};
    ListedRandomSource random{};
    MSPCServices services{clock, MSPCTimeZone::fixed(0), log, settings, files, random};
    std::vector<Asked> asked;
};

const std::string start = "MSPDIImporter Runner";
const std::string templateLine = "KDZX Template URL: 'file:///T.kdzx/'";

}  // namespace

TEST_F(MSPDIImportRunnerTest, importsASingleFileAndTellsIt) {
    EXPECT_EQ(runWith({"/in/a.xml", "/out"}), 0);
    EXPECT_EQ(log.takeLines(), (Lines{start, templateLine, "### Import single file: \"/in/a.xml\"",
                                      "### Import from URL: 'file:///in/a.xml'",
                                      "### Write to URL (bundle): 'file:///out/a.kdzx/'", "### Importer SUCCEEDED."}));
    ASSERT_EQ(asked.size(), 1U);
    EXPECT_EQ(asked[0].source, "/in/a.xml");
    EXPECT_EQ(asked[0].destination, "file:///out/a.kdzx/");
}

TEST_F(MSPDIImportRunnerTest, handsOverTheNameAndTheTemplateAndNothingElse) {
    EXPECT_EQ(runWith({"/in/Plan.final.xml"}), 0);
    log.ignoreLines();
    ASSERT_EQ(asked.size(), 1U);
    const auto& info = asked[0].info;
    EXPECT_EQ(info.mspdiProjectName, "Plan.final");
    ASSERT_TRUE(info.kdzxTemplateURL);
    EXPECT_EQ(info.kdzxTemplateURL->absoluteString(), "file:///T.kdzx/");
    EXPECT_FALSE(info.mspdiBaselineNumber);
    EXPECT_FALSE(info.kdzxScenarioName);
    EXPECT_FALSE(info.mppTemplateURL);
}

TEST_F(MSPDIImportRunnerTest, tellsAFailedImport) {
    EXPECT_EQ(runWith({"/in/bad.xml"}), 1);
    const auto lines = log.takeLines();
    EXPECT_EQ(lines.back(), "### Importer FAILED.");
}

TEST_F(MSPDIImportRunnerTest, writesNextToTheInputWithoutAnOutputFolder) {
    EXPECT_EQ(runWith({"/in/a.xml"}), 0);
    log.ignoreLines();
    EXPECT_EQ(asked.at(0).destination, "file:///in/a.kdzx/");
}

TEST_F(MSPDIImportRunnerTest, writesToTheCurrentFolderForAnInputWithoutFolder) {
    files.addFile("/home/me/Plan.xml");
    EXPECT_EQ(runWith({"Plan.xml"}), 0);
    log.ignoreLines();
    EXPECT_EQ(asked.at(0).source, "/home/me/Plan.xml");
    EXPECT_EQ(asked.at(0).destination, "file:///home/me/Plan.kdzx/");
}

TEST_F(MSPDIImportRunnerTest, echoesTheArgumentAsGivenAndEncodesURLs) {
    files.addFile("/home/me/a b.xml");
    EXPECT_EQ(runWith({"~/./a b.xml", "/out/"}), 0);
    EXPECT_EQ(log.takeLines(),
              (Lines{start, templateLine, "### Import single file: \"~/./a b.xml\"",
                     "### Import from URL: 'file:///home/me/a%20b.xml'",
                     "### Write to URL (bundle): 'file:///out/a%20b.kdzx/'", "### Importer SUCCEEDED."}));
}

TEST_F(MSPDIImportRunnerTest, threeArgumentsOrFewerAreTheUsageError) {
    EXPECT_EQ(
        linesOfFailure({"/usr/bin/MSPDIImport", "--template-path", "/T.kdzx"}),
        (Lines{start,
               "Exception: CommandLineArgumentException\nToo few arguments. Usage:\n"
               "  MSPDIImport --template-path <KDZX_template_path> <input_MSPDI_XML_path> [<output_folder_path>]\n"
               "  MSPDIImport --template-path <KDZX_template_path> --input-list <input_list_path> "
               "[<output_folder_path>]"}));
}

TEST_F(MSPDIImportRunnerTest, templateOptionAsSecondArgumentIsTheSameUsageError) {
    const auto lines = linesOfFailure({"MSPDIImport", "/in/a.xml", "--template-path", "/T.kdzx"});
    EXPECT_EQ(lines, linesOfFailure({"MSPDIImport"}));
    EXPECT_TRUE(lines.at(1).starts_with("Exception: CommandLineArgumentException\nToo few arguments. Usage:\n"));
}

TEST_F(MSPDIImportRunnerTest, templateMustHaveTheBundlesExtension) {
    EXPECT_EQ(linesOfFailure({"x", "--template-path", "~/T.xml", "/in/a.xml"}),
              (Lines{start,
                     "Exception: CommandLineArgumentException\n"
                     "Template is not a valid KDZX doc folder: '~/T.xml'"}));
    EXPECT_EQ(linesOfFailure({"x", "--template-path", ".kdzx", "/in/a.xml"}),
              (Lines{start,
                     "Exception: CommandLineArgumentException\n"
                     "Template is not a valid KDZX doc folder: '.kdzx'"}));
}

TEST_F(MSPDIImportRunnerTest, templateMustBeAFolder) {
    files.addFile("/home/me/Empty.kdzx");
    EXPECT_EQ(linesOfFailure({"x", "--template-path", "Empty.kdzx", "/in/a.xml"}),
              (Lines{start, "Exception: FileNotFoundException\nKDZX template doc folder not found: Empty.kdzx"}));
    EXPECT_EQ(linesOfFailure({"x", "--template-path", "/none/../N.kdzx", "/in/a.xml"}),
              (Lines{start, "Exception: FileNotFoundException\nKDZX template doc folder not found: /N.kdzx"}));
}

TEST_F(MSPDIImportRunnerTest, templateMayBeUpperCaseAndEndInASlash) {
    files.addFolder("/Empty.KDZX");
    EXPECT_EQ(run({"x", "--template-path", "/Empty.KDZX/", "/in/a.xml"}), 0);
    EXPECT_EQ(log.takeLines().at(1), "KDZX Template URL: 'file:///Empty.KDZX/'");
}

TEST_F(MSPDIImportRunnerTest, importsAndEchoesTheEntriesOfAList) {
    EXPECT_EQ(runList("/in/a.xml\n\n:: a comment\n/in/b.mspxml"), 0);
    EXPECT_EQ(log.takeLines(), (Lines{start, templateLine, "### Import files from the list:", "    \"/in/a.xml\"",
                                      "    \"/in/b.mspxml\"", "### Import from URL: 'file:///in/a.xml'",
                                      "### Write to URL (bundle): 'file:///out/a.kdzx/'", "### Importer SUCCEEDED.",
                                      "### Import from URL: 'file:///in/b.mspxml'",
                                      "### Write to URL (bundle): 'file:///out/b.kdzx/'", "### Importer SUCCEEDED."}));
    EXPECT_EQ(sources(), (Lines{"/in/a.xml", "/in/b.mspxml"}));
}

TEST_F(MSPDIImportRunnerTest, importsTheSameFromAListWithOtherLineEnds) {
    for (const auto* lineEnd : {"\r\n", "\n", "\r", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        asked.clear();
        EXPECT_EQ(runList(std::string("\xEF\xBB\xBF/in/a.xml").append(lineEnd).append("/in/b.mspxml").append(lineEnd)),
                  0);
        EXPECT_EQ(sources(), (Lines{"/in/a.xml", "/in/b.mspxml"}));
        log.ignoreLines();
    }
}

TEST_F(MSPDIImportRunnerTest, listOfCommentsOnlyImportsNothingAndSaysSo) {
    for (const auto* list : {"", "\n\n", ":: one\n::two"}) {
        EXPECT_EQ(runList(list), 1);
        EXPECT_EQ(log.takeLines(), (Lines{start, templateLine, "### Import files from the list:",
                                          "WARNING: Nothing to import: '/list' names no plan."}));
        EXPECT_TRUE(asked.empty());
    }
}

TEST_F(MSPDIImportRunnerTest, listOptionNeedsAListFile) {
    EXPECT_EQ(linesOfFailure({"x", "--template-path", "/T.kdzx", "--input-list"}),
              (Lines{start, templateLine, "### Import files from the list:",
                     "Exception: CommandLineArgumentException\nNo input list found in command line."}));
}

TEST_F(MSPDIImportRunnerTest, listFileMustBeReadable) {
    const Arguments arguments{"x", "--template-path", "/T.kdzx", "--input-list", "/in/../list"};
    const Lines before{start, templateLine, "### Import files from the list:"};
    auto expected = before;
    expected.emplace_back("Exception: FileNotFoundException\nInput list not found or it is a directory: /list");
    EXPECT_EQ(linesOfFailure(arguments), expected);

    files.addFile("/list", "\xFF");
    expected = before;
    expected.emplace_back("Exception: FileNotFoundException\nInput list file could not be read or empty: /list");
    EXPECT_EQ(linesOfFailure(arguments), expected);
}

TEST_F(MSPDIImportRunnerTest, skipsASingleFileThatLooksLikeAComment) {
    EXPECT_EQ(linesOfFailure({"x", "--template-path", "/T.kdzx", "::a.xml"}),
              (Lines{start, templateLine, "### Import single file: \"::a.xml\"",
                     "WARNING: Nothing to import: '::a.xml' names no plan."}));
    EXPECT_EQ(
        linesOfFailure({"x", "--template-path", "/T.kdzx", ""}),
        (Lines{start, templateLine, "### Import single file: \"\"", "WARNING: Nothing to import: '' names no plan."}));
}

TEST_F(MSPDIImportRunnerTest, emptyPathsHaveAReason) {
    EXPECT_EQ(linesOfFailure({"x", "--template-path", "", "/in/a.xml"}).back(),
              "Exception: CommandLineArgumentException\nTemplate is not a valid KDZX doc folder: ''");
    EXPECT_EQ(linesOfFailure({"x", "--template-path", "/T.kdzx", "--input-list", ""}).back(),
              "Exception: FileNotFoundException\nInput list not found or it is a directory: ");
    EXPECT_EQ(linesOfFailure({"x", "--template-path", "/T.kdzx", "/in/a.xml", ""}).back(),
              "Exception: FileNotFoundException\nOutput directoty not found: ");
}

TEST_F(MSPDIImportRunnerTest, entryThatIsNoXMLEndsTheRun) {
    EXPECT_EQ(runList("/in/a.xml\n/in/notes.txt\n/in/b.mspxml"), 0) << "the last import that ran succeeded";
    EXPECT_EQ(sources(), Lines{"/in/a.xml"});
    EXPECT_EQ(log.takeLines().back(),
              "Exception: CommandLineArgumentException\nInput file is not XML: '/in/notes.txt'");
}

TEST_F(MSPDIImportRunnerTest, checksTheExtensionBeforeTheFile) {
    for (const auto* entry : {"/none.txt", " ", "/in/.xml", "/in/a.xml ", "/in"}) {
        EXPECT_EQ(
            linesOfFailure({"x", "--template-path", "/T.kdzx", entry}).back(),
            std::string("Exception: CommandLineArgumentException\nInput file is not XML: '").append(entry).append("'"));
    }
}

TEST_F(MSPDIImportRunnerTest, inputMustBeAFile) {
    files.addFolder("/in/folder.xml");
    EXPECT_EQ(linesOfFailure({"x", "--template-path", "/T.kdzx", "/in/./none.xml"}).back(),
              "Exception: FileNotFoundException\nInput file not found: /in/none.xml");
    EXPECT_EQ(linesOfFailure({"x", "--template-path", "/T.kdzx", "/in/folder.xml"}).back(),
              "Exception: FileNotFoundException\nInput file is a directory: /in/folder.xml");
}

TEST_F(MSPDIImportRunnerTest, outputFolderMustExist) {
    EXPECT_EQ(
        linesOfFailure({"x", "--template-path", "/T.kdzx", "/in/a.xml", "/none"}),
        (Lines{start, templateLine, "### Import single file: \"/in/a.xml\"", "### Import from URL: 'file:///in/a.xml'",
               "Exception: FileNotFoundException\nOutput directoty not found: /none"}));
    EXPECT_EQ(linesOfFailure({"x", "--template-path", "/T.kdzx", "/in/a.xml", "/in/notes.txt"}).back(),
              "Exception: FileNotFoundException\nOutput directoty not found: /in/notes.txt");
}

TEST_F(MSPDIImportRunnerTest, messagesShowRelativePathsAsRelativeOnes) {
    files.addFolder("/home/me/folder.xml");
    files.addFile("/home/me/a.xml");
    const struct {
        Arguments afterTemplate;
        const char* message;
    } table[] = {
        {{"in/./x/../none.xml"}, "Input file not found: in/none.xml"},
        {{"../none.xml"}, "Input file not found: ../none.xml"},
        {{"~/none.xml"}, "Input file not found: /home/me/none.xml"},
        {{"./folder.xml/"}, "Input file is a directory: folder.xml"},
        {{"a.xml", "./none/"}, "Output directoty not found: none"},
        {{"a.xml", "a.xml"}, "Output directoty not found: a.xml"},
        {{"--input-list", "lists//none"}, "Input list not found or it is a directory: lists/none"},
        {{"--input-list", "."}, "Input list not found or it is a directory: ."},
    };
    for (const auto& row : table) {
        Arguments arguments{"x", "--template-path", "/T.kdzx"};
        arguments.insert(arguments.end(), row.afterTemplate.begin(), row.afterTemplate.end());
        EXPECT_EQ(linesOfFailure(arguments).back(), std::string("Exception: FileNotFoundException\n") + row.message);
    }
    EXPECT_EQ(linesOfFailure({"x", "--template-path", "none/../Empty.kdzx", "/in/a.xml"}).back(),
              "Exception: FileNotFoundException\nKDZX template doc folder not found: Empty.kdzx");
}

TEST_F(MSPDIImportRunnerTest, relativePathsLeadToTheSameAsAbsoluteOnes) {
    files.addFile("/home/me/plans/a.xml");
    files.addFile("/home/me/list", "plans/a.xml\n../../in/a.xml\n");
    files.addFolder("/home/me/out");
    files.addFile("/home/me/E.kdzx/Actual.xml");
    EXPECT_EQ(run({"x", "--template-path", "E.kdzx", "--input-list", "list", "out"}), 0);
    EXPECT_EQ(run({"x", "--template-path", "E.kdzx", "plans/a.xml"}), 0);
    log.ignoreLines();
    EXPECT_EQ(sources(), (Lines{"/home/me/plans/a.xml", "/in/a.xml", "/home/me/plans/a.xml"}));
    EXPECT_EQ(asked.at(1).destination, "file:///home/me/out/a.kdzx/");
    EXPECT_EQ(asked.at(2).destination, "file:///home/me/plans/a.kdzx/");
    EXPECT_EQ(asked.at(2).info.kdzxTemplateURL->absoluteString(), "file:///home/me/E.kdzx/");
}

TEST_F(MSPDIImportRunnerTest, aLinkThatLeadsNowhereDoesNotExist) {
    files.addLink("/in/dead.xml", "/nowhere");
    files.addLink("/dead-list", "/nowhere");
    files.addLink("/in/live.xml", "/in/a.xml");
    EXPECT_EQ(linesOfFailure({"x", "--template-path", "/T.kdzx", "/in/dead.xml", "/out"}).back(),
              "Exception: FileNotFoundException\nInput file not found: /in/dead.xml");
    EXPECT_EQ(linesOfFailure({"x", "--template-path", "/T.kdzx", "--input-list", "/dead-list"}).back(),
              "Exception: FileNotFoundException\nInput list not found or it is a directory: /dead-list");
    EXPECT_EQ(runWith({"/in/live.xml", "/out"}), 0);
    log.ignoreLines();
}

TEST_F(MSPDIImportRunnerTest, includesTheInputsExtensionWhereSet) {
    EXPECT_EQ(runWith({"/in/Plan.MSPXML", "/out"}), 0);
    settings.set("IncludeInputExtension", true);
    EXPECT_EQ(runWith({"/in/Plan.MSPXML", "/out"}), 0);
    log.ignoreLines();
    EXPECT_EQ(asked.at(0).destination, "file:///out/Plan.kdzx/");
    EXPECT_EQ(asked.at(1).destination, "file:///out/Plan.mspxml.kdzx/");
}

TEST_F(MSPDIImportRunnerTest, keepsAnExistingBundleByDefault) {
    files.addFile("/out/a.kdzx/old");
    EXPECT_EQ(runWith({"/in/a.xml", "/out"}), 0);
    log.ignoreLines();
    EXPECT_EQ(files.contents("/out/a.kdzx/old"), "");
    EXPECT_FALSE(asked.at(0).info.replacesOldBundle);
}

TEST_F(MSPDIImportRunnerTest, letsAnExistingBundleBeReplacedWhereSetAndRemovesNothingItself) {
    settings.set("OverwriteFilterTarget", true);
    files.addFile("/out/a.kdzx/old");
    EXPECT_EQ(runWith({"/in/a.xml", "/out"}), 0);
    log.ignoreLines();
    EXPECT_TRUE(files.exists("/out/a.kdzx/old"));
    EXPECT_EQ(asked.at(0).destination, "file:///out/a.kdzx/");
    EXPECT_TRUE(asked.at(0).info.replacesOldBundle);
}

TEST_F(MSPDIImportRunnerTest, replacesAFileOrADeadLinkInThePlaceToo) {
    settings.set("OverwriteFilterTarget", true);
    files.addFile("/out/a.kdzx");
    files.addLink("/out/b.kdzx", "/nowhere");
    EXPECT_EQ(runList("/in/a.xml\n/in/b.mspxml"), 0);
    log.ignoreLines();
    EXPECT_TRUE(asked.at(0).info.replacesOldBundle);
    EXPECT_TRUE(asked.at(1).info.replacesOldBundle);
}

TEST_F(MSPDIImportRunnerTest, replacesWhatAppearsMeanwhileWhereNothingIsYet) {
    settings.set("OverwriteFilterTarget", true);
    EXPECT_EQ(runWith({"/in/a.xml", "/out"}), 0);
    log.ignoreLines();
    EXPECT_TRUE(asked.at(0).info.replacesOldBundle);
}

TEST_F(MSPDIImportRunnerTest, neverReplacesTheTemplate) {
    settings.set("OverwriteFilterTarget", true);
    files.addFolder("/out/a.kdzx/inner/T.kdzx");
    files.addLink("/L.kdzx", "/out/a.kdzx");
    for (const auto* templatePath : {"/out/a.kdzx", "/out/a.kdzx/inner/T.kdzx", "/L.kdzx"}) {
        EXPECT_EQ(run({"x", "--template-path", templatePath, "/in/a.xml", "/out"}), 0);
        log.ignoreLines();
        EXPECT_FALSE(asked.back().info.replacesOldBundle) << templatePath;
    }
    EXPECT_EQ(asked.at(0).destination, "file:///out/a.kdzx/");
}

TEST_F(MSPDIImportRunnerTest, neverReplacesTheInput) {
    settings.set("OverwriteFilterTarget", true);
    files.addFile("/out/a.kdzx/a.xml");
    EXPECT_EQ(runWith({"/out/a.kdzx/a.xml", "/out"}), 0);
    log.ignoreLines();
    EXPECT_FALSE(asked.at(0).info.replacesOldBundle);
}

TEST_F(MSPDIImportRunnerTest, allImportsOfARunCountTheirNumbersTogether) {
    EXPECT_EQ(runList("/in/a.xml\n/in/b.mspxml"), 0);
    log.ignoreLines();
    ASSERT_TRUE(asked.at(0).info.bundleNumbers);
    EXPECT_EQ(asked.at(0).info.bundleNumbers, asked.at(1).info.bundleNumbers);
}

TEST_F(MSPDIImportRunnerTest, statusFollowsTheLastFileOnly) {
    EXPECT_EQ(runList("/in/a.xml\n/in/bad.xml"), 1);
    EXPECT_EQ(runList("/in/bad.xml\n/in/a.xml"), 0);
    EXPECT_EQ(runList("/in/a.xml\n/in/bad.xml\n/in/none.xml"), 1);
    EXPECT_EQ(sources().size(), 6U);
    log.ignoreLines();
}

TEST_F(MSPDIImportRunnerTest, goesOnAfterAFailedImport) {
    EXPECT_EQ(runList("/in/bad.xml\n/in/a.xml"), 0);
    const auto lines = log.takeLines();
    EXPECT_EQ(lines.at(7), "### Importer FAILED.");
    EXPECT_EQ(lines.back(), "### Importer SUCCEEDED.");
}

TEST_F(MSPDIImportRunnerTest, letsForeignExceptionsPassUnlogged) {
    MSPDIImportRunner runner(services, [](const auto&, const auto&, const auto&, const auto&) -> bool {
        throw std::runtime_error("foreign");
    });
    EXPECT_THROW(static_cast<void>(runner.run({"x", "--template-path", "/T.kdzx", "/in/a.xml"})), std::runtime_error);
    EXPECT_EQ(log.takeLines().back(), "### Write to URL (bundle): 'file:///in/a.kdzx/'");
}

TEST_F(MSPDIImportRunnerTest, bringsTheFoldersOfAllImportsToTheDiskOnceAtTheEnd) {
    files.addFolder("/in/sub");
    files.addFile("/in/sub/c.xml");
    files.addFile("/list", "/in/a.xml\n/in/sub/c.xml\n/in/b.mspxml\n/in/missing.xml\n");
    EXPECT_EQ(runWith({"--input-list", "/list"}), 0);
    using Folders = std::set<std::string>;
    EXPECT_EQ(files.synchronized(), std::vector<Folders>{(Folders{"/in", "/in/sub"})});
    log.ignoreLines();
}

TEST_F(MSPDIImportRunnerTest, hasNotSucceededWhenTheDiskFailsAtTheEnd) {
    files.failAlways("synchronize", "'/out': Input/output error");
    EXPECT_EQ(runWith({"/in/a.xml", "/out"}), 1);
    EXPECT_EQ(log.takeLines().back(), "WARNING: Failed to bring the bundles to the disk: '/out': Input/output error");
}
