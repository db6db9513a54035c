#include "MSPDIInWords.h"

#include <gtest/gtest.h>

#include "MSPDIRefusal.h"

namespace {

std::string inWords(const std::string& reason, const std::string& subject = {}) {
    return MSPDIReasonInWords({"MSPCInternalInconsistency", reason, subject});
}

}  // namespace

TEST(MSPDIReasonInWords, putsWordsInFrontOfTheImportersOwn) {
    EXPECT_EQ(inWords("MS Project 'Standard' Calendar not found."),
              "the plan has no base calendar named Standard (MS Project 'Standard' Calendar not found.)");
    EXPECT_EQ(
        inWords("Invalid value of 'Type' in 'Resource': '2'.", "Resource UID='3' name='Travel'"),
        "a resource is neither work nor material: a cost resource perhaps (Invalid value of 'Type' in 'Resource': "
        "'2' (Resource UID='3' name='Travel').)");
}

TEST(MSPDIReasonInWords, hasWordsForAReasonWithoutAny) {
    EXPECT_EQ(inWords("", "Task UID='3' name='Roof'"),
              "interrupted work lies where there is no working time, on a weekend perhaps (Task UID='3' name='Roof')");
    EXPECT_EQ(inWords(""), "interrupted work lies where there is no working time, on a weekend perhaps");
}

TEST(MSPDIReasonInWords, leavesTheOthersAsTheyAre) {
    EXPECT_EQ(inWords("Something else.", "Task UID='3'"), "Something else (Task UID='3').");
    EXPECT_EQ(MSPDIReasonInWords({}), "The importer gives no reason.");
}

TEST(MSPDIReasonInWords, knowsWhatOnlyATemplateIsToBlameFor) {
    EXPECT_TRUE(
        MSPDIBlamesTemplate({"MSPCInternalInconsistency", "Failed to get 'project/title' from TOC XML DOM.", ""}));
    EXPECT_FALSE(MSPDIBlamesTemplate({"MSPCInternalInconsistency", "Failed to get UID from Task.", ""}));
    EXPECT_FALSE(MSPDIBlamesTemplate({}));
}

TEST(MSPDIWarningInWords, tellsTheKnownOnesInWords) {
    EXPECT_EQ(MSPDIWarningInWords("Igonring currency code from MSPDI: EUR. Always assume USD."),
              "the currency code EUR is ignored");
    EXPECT_EQ(MSPDIWarningInWords("Repaired malformed XML in '/a' at line b/P.xml' at line 12: xmlParseEntityRef"),
              "the file is damaged and was mended on reading, values may be missing (at line 12: xmlParseEntityRef)");
    EXPECT_EQ(MSPDIWarningInWords("Replaced 2 characters that XML cannot hold in '/out/P.kdzx/Actual.xml'."),
              "2 characters that XML cannot hold were replaced in Actual.xml");
    EXPECT_EQ(MSPDIWarningInWords("Replaced 1 characters that XML cannot hold in '/out/P.kdzx/Actual.xml'."),
              "1 character that XML cannot hold was replaced in Actual.xml");
    EXPECT_EQ(MSPDIWarningInWords("Failed to remove all of the document that was replaced: '/out/.x' is left."),
              "a part of the document that was replaced is left: /out/.x");
}

TEST(MSPDIWarningInWords, leavesTheOthersAsTheyAre) {
    EXPECT_EQ(MSPDIWarningInWords("Something else."), "Something else.");
    EXPECT_EQ(MSPDIWarningInWords(""), "");
}
