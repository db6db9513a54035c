#include "MSPIXMLDump.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ExpectRaises.h"
#include "InMemoryFileSystem.h"
#include "MSPCURL.h"
#include "MappingFixture.h"

namespace {

constexpr const char* DumpFolder = "/dumps/KZMSPDIFilterDump";

class MSPIXMLDumpTest : public testing::Test {
protected:
    void dump(std::optional<std::string_view> name, std::int32_t number) {
        dumpXMLDocumentWorkingFolderUrlDumpNameDumpNumber(document, folder, name, number, files);
    }

    InMemoryFileSystem files;
    MSPCXMLDocument document = documentFromXML("<scenario><task id=\"t1\"/><name>a</name></scenario>");
    MSPCURL folder = MSPCURL::fileURL("/dumps", true);
};

}  // namespace

TEST_F(MSPIXMLDumpTest, documentIsWrittenPrettyPrintedWithCompactEmptyElements) {
    files.addFolder("/dumps");
    dump("Actual", 0);
    EXPECT_EQ(files.contents("/dumps/KZMSPDIFilterDump/Actual_dump.xml"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<scenario>\n    <task id=\"t1\"/>\n    <name>a</name>\n"
              "</scenario>\n");
}

TEST_F(MSPIXMLDumpTest, fileIsNamedAfterDumpAndPositiveNumber) {
    struct Case {
        std::optional<std::string_view> name;
        std::int32_t number;
        const char* path;
    };
    const Case cases[] = {
        {"Actual", 3, "/dumps/KZMSPDIFilterDump/Actual_dump(3).xml"},
        {"Actual", -1, "/dumps/KZMSPDIFilterDump/Actual_dump.xml"},
        {std::nullopt, 0, "/dumps/KZMSPDIFilterDump/KZMSPDIFilter_dump.xml"},
        {std::nullopt, 2, "/dumps/KZMSPDIFilterDump/KZMSPDIFilter_dump(2).xml"},
    };
    for (const auto& [name, number, path] : cases) {
        files.takeAway("/dumps");
        files.addFolder("/dumps");
        dump(name, number);
        EXPECT_EQ(files.pathsBelow("/dumps"), (std::vector<std::string>{"/dumps", DumpFolder, path}));
    }
}

TEST_F(MSPIXMLDumpTest, dumpWithoutNumberIsTheOneWithNumber0) {
    files.addFolder("/dumps");
    dumpXMLDocumentWorkingFolderUrlDumpName(document, folder, "Baseline1", files);
    EXPECT_TRUE(files.exists("/dumps/KZMSPDIFilterDump/Baseline1_dump.xml"));
}

TEST_F(MSPIXMLDumpTest, earlierDumpOfTheSameNameIsReplaced) {
    files.addFile("/dumps/KZMSPDIFilterDump/Actual_dump.xml", "old");
    dump("Actual", 0);
    EXPECT_NE(files.contents("/dumps/KZMSPDIFilterDump/Actual_dump.xml"), "old");
}

TEST_F(MSPIXMLDumpTest, nothingIsWrittenWhereTheWorkingFolderIsNoFolder) {
    dump("Actual", 0);
    EXPECT_FALSE(files.exists("/dumps"));
    files.addFile("/dumps", "a file");
    dump("Actual", 0);
    EXPECT_EQ(files.contents("/dumps"), "a file");
    EXPECT_EQ(files.calls(), std::vector<std::string>());
}

TEST_F(MSPIXMLDumpTest, failureToWriteIsIgnored) {
    files.addFolder("/dumps");
    files.failAlways("writeAtomically", "No space left on device");
    dump("Actual", 0);
    EXPECT_EQ(files.pathsBelow("/dumps"), (std::vector<std::string>{"/dumps", DumpFolder}));
}

TEST_F(MSPIXMLDumpTest, otherURLThanAFilesRaises) {
    folder = MSPCURL::fromString("http://example.org/work");
    EXPECT_RAISES(dump("Actual", 0), MSPCInternalInconsistency,
                  "*** ERROR: MSPIUtilities dumpXMLDocument:workingFolderUrl: Not a file URL: "
                  "'http://example.org/work'");
}

TEST_F(MSPIXMLDumpTest, dumpFolderThatCannotBeMadeRaises) {
    constexpr const char* reason =
        "*** ERROR: MSPIUtilities dumpXMLDocument:workingFolderUrl: Failed to locate dump folder: "
        "'/dumps/KZMSPDIFilterDump'.";
    files.addFolder("/dumps");
    files.failAlways("createFolder", "Permission denied");
    EXPECT_RAISES(dump("Actual", 0), MSPCInternalInconsistency, reason);
    files.addFile(DumpFolder, "in the way");
    EXPECT_RAISES(dump("Actual", 0), MSPCInternalInconsistency, reason);
}
