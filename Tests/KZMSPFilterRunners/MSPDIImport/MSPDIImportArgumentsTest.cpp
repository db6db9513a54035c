#include "MSPDIImportArguments.h"

#include <gtest/gtest.h>

#include "ExpectRaises.h"

namespace {

constexpr const char* tooFew =
    "Too few arguments. Usage:\n"
    "  MSPDIImport --template-path <KDZX_template_path> <input_MSPDI_XML_path> [<output_folder_path>]\n"
    "  MSPDIImport --template-path <KDZX_template_path> --input-list <input_list_path> [<output_folder_path>]";

}  // namespace

TEST(MSPDIImportArguments, namesTheInputFile) {
    const auto parsed = MSPDIParseArguments({"MSPDIImport", "--template-path", "T.kdzx", "Plan.xml"});
    EXPECT_EQ(parsed.templatePath, "T.kdzx");
    EXPECT_FALSE(parsed.isListForm);
    EXPECT_EQ(parsed.inputPath, "Plan.xml");
    EXPECT_EQ(parsed.outputFolder, std::nullopt);
}

TEST(MSPDIImportArguments, namesTheOutputFolderAndIgnoresTheRest) {
    const auto parsed =
        MSPDIParseArguments({"x", "--template-path", "T.kdzx", "Plan.xml", "out", "more", "--input-list"});
    EXPECT_EQ(parsed.inputPath, "Plan.xml");
    EXPECT_EQ(parsed.outputFolder, "out");
}

TEST(MSPDIImportArguments, namesTheListFile) {
    const auto parsed = MSPDIParseArguments({"x", "--template-path", "T.kdzx", "--input-list", "list", "out", "more"});
    EXPECT_TRUE(parsed.isListForm);
    EXPECT_EQ(parsed.inputPath, "list");
    EXPECT_EQ(parsed.outputFolder, "out");
}

TEST(MSPDIImportArguments, mayEndBeforeTheListFile) {
    const auto parsed = MSPDIParseArguments({"x", "--template-path", "T.kdzx", "--input-list"});
    EXPECT_TRUE(parsed.isListForm);
    EXPECT_EQ(parsed.inputPath, std::nullopt);
    EXPECT_EQ(parsed.outputFolder, std::nullopt);
}

TEST(MSPDIImportArguments, recogniseTheListOptionOnlyInItsPlaceAndSpelling) {
    for (const auto* other : {"--Input-List", "--input-list ", "--input", "-input-list"}) {
        const auto parsed = MSPDIParseArguments({"x", "--template-path", "T.kdzx", other, "--input-list"});
        EXPECT_FALSE(parsed.isListForm) << other;
        EXPECT_EQ(parsed.inputPath, other);
        EXPECT_EQ(parsed.outputFolder, "--input-list");
    }
}

TEST(MSPDIImportArguments, threeOrFewerAreTheUsageError) {
    const std::vector<std::string> all = {"/usr/bin/MSPDIImport", "--template-path", "T.kdzx"};
    for (std::size_t count = 1; count <= all.size(); ++count) {
        const std::vector<std::string> some(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count));
        EXPECT_RAISES(MSPDIParseArguments(some), CommandLineArgumentException, tooFew);
    }
}

TEST(MSPDIImportArguments, knowNoWordForHelpOrTheVersion) {
    for (const auto* word : {"--help", "-h", "--version", "-v"}) {
        EXPECT_RAISES(MSPDIParseArguments({"MSPDIImport", word}), CommandLineArgumentException, tooFew);
    }
}

TEST(MSPDIImportArguments, withTheTemplateOptionElsewhereAreTheUsageError) {
    using Arguments = std::vector<std::string>;
    for (const auto& arguments : {Arguments{"MSPDIImport", "Plan.xml", "--template-path", "T.kdzx"},
                                  Arguments{"bin/MSPDIImport", "--Template-Path", "T.kdzx", "Plan.xml"},
                                  Arguments{"./MSPDIImport", "--help", "a", "b", "c", "d", "e"}}) {
        EXPECT_RAISES(MSPDIParseArguments(arguments), CommandLineArgumentException, tooFew);
    }
}

TEST(MSPDIImportArguments, withoutAnyAtAllAreTheUsageErrorOfANamelessProgram) {
    EXPECT_RAISES(MSPDIParseArguments({}), CommandLineArgumentException,
                  "Too few arguments. Usage:\n"
                  "   --template-path <KDZX_template_path> <input_MSPDI_XML_path> [<output_folder_path>]\n"
                  "   --template-path <KDZX_template_path> --input-list <input_list_path> [<output_folder_path>]");
}
