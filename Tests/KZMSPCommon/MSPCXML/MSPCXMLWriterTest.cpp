#include "MSPCXMLWriter.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <memory>

#include "MSPCByteStreams.h"
#include "XMLText.h"

namespace {

bool strictParserReads(const std::string& bytes) {
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
        xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                      XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        &xmlFreeDoc);
    return document != nullptr;
}

TEST(MSPCXMLWriter, laysOutOneElementPerLine) {
    struct Case {
        std::string_view read;
        std::string_view written;
    };
    constexpr Case cases[] = {
        {"<a/>", "<a/>\n"},
        {"<a></a>", "<a/>\n"},
        {"<a>   </a>", "<a>   </a>\n"},
        {"<a b='1' c=\"2\"> x </a>", "<a b=\"1\" c=\"2\"> x </a>\n"},
        {"<a><b>1</b><c/></a>", "<a>\n    <b>1</b>\n    <c/>\n</a>\n"},
        {"<a>\n\n<b>\n <c/>\n\n </b> </a>", "<a>\n    <b>\n        <c/>\n    </b>\n</a>\n"},
        {"<a> <!--x--> <b/> <?t d?> </a>", "<a>\n    <!--x-->\n    <b/>\n    <?t d?>\n</a>\n"},
        {"<a><?t?></a>", "<a>\n    <?t?>\n</a>\n"},
        {"<!--h--><?s t?><a/><!--e-->", "<!--h-->\n<?s t?>\n<a/>\n<!--e-->\n"},
        {"<!DOCTYPE a SYSTEM \"a.dtd\"><a/>", "<!DOCTYPE a SYSTEM \"a.dtd\">\n<a/>\n"},
        {"<?xml version='1.0' standalone='yes'?><a/>", "<a/>\n"},
        {"<a>x <b> <c/> </b> y</a>", "<a>x <b> <c/> </b> y</a>\n"},
        {"<a><b>x<c/></b><d><e/></d></a>", "<a>\n    <b>x<c/></b>\n    <d>\n        <e/>\n    </d>\n</a>\n"},
        {"<a><![CDATA[<x> & ]]></a>", "<a><![CDATA[<x> & ]]></a>\n"},
        {"<a><![CDATA[ ]]><b/></a>", "<a><![CDATA[ ]]><b/></a>\n"},
        {"<a><b xml:space='preserve'> <c/> </b><d> <e/></d></a>",
         "<a>\n    <b xml:space=\"preserve\"> <c/> </b>\n    <d>\n        <e/>\n    </d>\n</a>\n"},
    };
    for (const auto& [read, expected] : cases) {
        const auto written = xmlDocument(read).serialized();
        EXPECT_EQ(written, XMLDeclaration + std::string(expected)) << read;
        EXPECT_TRUE(strictParserReads(written)) << written;
        EXPECT_EQ(xmlDocument(written).serialized(), written) << "written again";
    }
}

TEST(MSPCXMLWriter, everyTextComesBackUnchanged) {
    const std::string text = " \t a&b<c>]]>\"'\r\nd\re \xC3\xA4\xF0\x9F\x98\x80  ";
    MSPCXMLDocument document;
    auto root = document.setRoot(document.newElement("root"));
    root.setStringValue(text);
    const auto inText = document.serialized();
    EXPECT_TRUE(strictParserReads(inText));
    EXPECT_EQ(xmlDocument(inText).root().stringValue(), text);
    root.setStringValue("");
    root.findOrAddAttribute("value").setStringValue(text);
    const auto inAttribute = document.serialized();
    EXPECT_TRUE(strictParserReads(inAttribute));
    EXPECT_EQ(xmlDocument(inAttribute).root().attribute("value").stringValue(), text);
}

TEST(MSPCXMLWriter, aCommentWithHyphensStaysXML) {
    const auto document = xmlDocument("<a/>");
    document.root().appendComment("Imported from a--b-");
    EXPECT_EQ(document.serialized(), XMLDeclaration + "<a>\n    <!--Imported from a- -b- -->\n</a>\n");
    EXPECT_TRUE(strictParserReads(document.serialized()));
}

TEST(MSPCXMLWriter, countsReplacedCharacters) {
    const auto document = xmlDocument("<a/>");
    auto root = document.root();
    root.appendElement("b").setStringValue("x\x02y");
    root.findOrAddAttribute("c").setStringValue("\xFF");
    root.appendComment("\x03");
    MSPCStringWriter writer;
    EXPECT_EQ(document.write(writer), 3U);
    EXPECT_EQ(writer.take(),
              XMLDeclaration + "<a c=\"\xEF\xBF\xBD\">\n    <b>x\xEF\xBF\xBDy</b>\n    <!--\xEF\xBF\xBD-->\n</a>\n");
}

TEST(MSPCXMLWriter, blanksGiveWayOnceElementsStandBesideThem) {
    const auto document = xmlDocument("<a>   </a>");
    document.root().appendElement("b");
    EXPECT_EQ(document.serialized(), XMLDeclaration + "<a>\n    <b/>\n</a>\n");
}

TEST(MSPCXMLWriter, markupOfANodeIsOnOneLine) {
    const auto document = xmlDocument("<a><b c='1'><d/></b><!--e--></a>");
    EXPECT_EQ(document.root().firstChild().markup(), "<b c=\"1\"><d/></b>");
    EXPECT_EQ(document.root().lastChild().markup(), "<!--e-->");
    EXPECT_EQ(document.root().parent().markup(), "<a><b c=\"1\"><d/></b><!--e--></a>");
}

TEST(MSPCXMLWriter, aDocumentWithoutRootIsOnlyItsDeclaration) {
    EXPECT_EQ(MSPCXMLDocument().serialized(), XMLDeclaration);
}

TEST(MSPCXMLWriter, aHundredThousandLevelsAreWritten) {
    MSPCXMLDocument document;
    auto node = document.setRoot(document.newElement("a"));
    for (int level = 0; level < 100'000; ++level) {
        node = node.appendElement("a");
    }
    const auto written = document.serialized();
    EXPECT_EQ(xmlDocument(written).serialized(), written);
}

}  // namespace
