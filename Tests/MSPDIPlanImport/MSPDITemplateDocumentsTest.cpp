#include "MSPDITemplateDocuments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ExpectRaises.h"
#include "InMemoryFileSystem.h"
#include "MSPCException.h"
#include "RecordingLog.h"

namespace {

using testing::ElementsAre;

const std::string declaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";

class TemplateDocumentsTest : public testing::Test {
protected:
    // A bundle's file with these bytes, as it is written back.
    std::string loaded(const std::string& bytes, const std::string& name = "Actual.xml") {
        files.addFile("/out/Plan.kdzx/" + name, bytes);
        const auto url = MSPCURL::fileURL("/out/Plan.kdzx/" + name, false);
        return documents.load(url, files, log).serialized();
    }
    // How often the bundle's files were read since the last call.
    std::size_t reads() {
        const auto count = files.calls().size() - _told;
        _told = files.calls().size();
        return count;
    }

    InMemoryFileSystem files;
    RecordingLog log;
    MSPDITemplateDocuments documents;

private:
    std::size_t _told = 0;
};

}  // namespace

TEST_F(TemplateDocumentsTest, areTheSameEachTime) {
    const auto bytes = declaration +
                       "<!-- empty --><scenario id=\"a\">\n  <task>x<![CDATA[ & ]]></task><?do it?>\n"
                       "</scenario>\n";
    const auto first = loaded(bytes);
    EXPECT_THAT(first, testing::HasSubstr("<!-- empty -->"));
    EXPECT_GT(reads(), 1U) << "read once more for a thorough look";
    for (int time = 0; time < 3; ++time) {
        EXPECT_EQ(loaded(bytes), first);
        EXPECT_EQ(reads(), 1U);
    }
}

TEST_F(TemplateDocumentsTest, areThoseOfTheBytesThatAreThere) {
    EXPECT_THAT(loaded("<scenario id=\"a\"/>"), testing::HasSubstr("id=\"a\""));
    EXPECT_THAT(loaded("<scenario id=\"b\"/>"), testing::HasSubstr("id=\"b\""));
    EXPECT_THAT(loaded("<toc/>", "__TOC.xml"), testing::HasSubstr("<toc/>"));
    EXPECT_THAT(loaded("<scenario id=\"b\"/>"), testing::HasSubstr("id=\"b\""));
    EXPECT_THAT(loaded("<scenario id=\"a\"/>"), testing::HasSubstr("id=\"a\""));
}

TEST_F(TemplateDocumentsTest, areNotSharedByThoseWhoChangeThem) {
    files.addFile("/out/Plan.kdzx/__TOC.xml", "<toc/>");
    const auto url = MSPCURL::fileURL("/out/Plan.kdzx/__TOC.xml", false);
    static_cast<void>(documents.load(url, files, log));
    for (int time = 0; time < 2; ++time) {
        auto document = documents.load(url, files, log);
        EXPECT_FALSE(document.root().firstChildElement("scenario"));
        document.root().appendElement("scenario");
    }
}

// A name that no element may have passes the quick parser, which does not look at names.
TEST_F(TemplateDocumentsTest, failEachTimeWhereTheyAreBroken) {
    for (const auto* bytes : {"<scenario><1/></scenario>", "<scenario>", "no markup", ""}) {
        for (int time = 0; time < 2; ++time) {
            EXPECT_RAISES(loaded(bytes), MSPEXMLException,
                          "MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.");
        }
    }
    EXPECT_THAT(loaded("<scenario/>"), testing::HasSubstr("<scenario/>"));
}

TEST_F(TemplateDocumentsTest, tellOfARepairEachTime) {
    const std::string broken = "<Project><a>x & y</a></Project>";
    for (int time = 0; time < 3; ++time) {
        EXPECT_THAT(loaded(broken), testing::HasSubstr("<a>x &amp; y</a>"));
        EXPECT_THAT(log.takeLines(), ElementsAre(testing::StartsWith("WARNING: Repaired malformed XML in ")));
    }
}

TEST_F(TemplateDocumentsTest, keepWhatTheirDeclarationsSay) {
    const auto withEntity = R"(<!DOCTYPE scenario [<!ENTITY who "Ann">]><scenario>&who;</scenario>)";
    const auto inLatin1 = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><scenario>\xE9</scenario>";
    for (int time = 0; time < 3; ++time) {
        EXPECT_THAT(loaded(withEntity), testing::HasSubstr("<scenario>Ann</scenario>"));
        EXPECT_THAT(loaded(inLatin1, "__TOC.xml"), testing::HasSubstr("<scenario>\xC3\xA9</scenario>"));
    }
}

TEST_F(TemplateDocumentsTest, mayBeLarge) {
    const auto large = "<scenario>" + std::string(300'000, 'x') + "</scenario>";
    const auto first = loaded(large);
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(loaded(large), first);
    }
}
