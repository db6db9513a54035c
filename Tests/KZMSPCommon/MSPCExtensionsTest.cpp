#include "MSPCExtensions.h"

#include <gtest/gtest.h>

#include "ExpectRaises.h"
#include "InMemoryFileSystem.h"
#include "MSPCURL.h"
#include "MSPCXMLLoader.h"
#include "MSPCXMLSelection.h"
#include "RecordingLog.h"
#include "XMLText.h"

namespace {

constexpr const char* NoNode = "Sent message singleObjectForXQuery:error: to an object which is not NSXMLNodeProxy.";
constexpr const char* NoElementForAttribute =
    "Sent message setAttributeWithName:stringValue: to an object which is not NSXMLElementProxy.";
constexpr const char* NoElementForChild =
    "Sent message addChildElementWithName:stringValue: to an object which is not NSXMLElementProxy.";

TEST(MSPCExtensions, aQueryThatMatchesNothingGivesNoneAndCode1) {
    const auto document = xmlDocument("<p><a>1</a></p>");
    // A path of names, one for the engine, and one that no engine takes.
    for (const std::string_view query : {"b", "a/b", "a[2]", "a["}) {
        Error error{MSPCGeneralErrorDomain, 100, "set by somebody else"};
        EXPECT_FALSE(singleObjectForXQuery(document.root(), query, &error)) << query;
        EXPECT_EQ(error.domain, "org.kadenza.KZMSPFilter.XQueryErrorDomain");
        EXPECT_EQ(error.code, 1);
        EXPECT_EQ(error.description, "");
        EXPECT_FALSE(singleObjectForXQuery(document.root(), query)) << query;
        EXPECT_EQ(stringValueForXQuery(document.root(), query), std::nullopt);
        EXPECT_EQ(intValueForXQuery(document.root(), query), 0);
        EXPECT_EQ(floatValueForXQuery(document.root(), query), 0.0);
        EXPECT_FALSE(boolValueForXQuery(document.root(), query));
    }
}

TEST(MSPCExtensions, ofThreeMatchesTheLastCountsWithCode2) {
    const auto document = xmlDocument("<p><a>1</a><a>2</a><b/><a>3</a></p>");
    for (const std::string_view query : {"a", "child::a", "/p/a"}) {
        Error error;
        EXPECT_EQ(singleObjectForXQuery(document.root(), query, &error), document.root().lastChild()) << query;
        EXPECT_EQ(error.domain, "org.kadenza.KZMSPFilter.XQueryErrorDomain");
        EXPECT_EQ(error.code, 2);
        EXPECT_EQ(singleObjectForXQuery(document.root(), query), document.root().lastChild()) << query;
        EXPECT_EQ(intValueForXQuery(document.root(), query), 3);
    }
}

TEST(MSPCExtensions, aSingleMatchLeavesTheErrorAlone) {
    const auto document = xmlDocument("<p><a k='v'>1</a></p>");
    for (const std::string_view query : {"a", "a/@k", "."}) {
        Error error{MSPCGeneralErrorDomain, 100, "kept"};
        EXPECT_TRUE(singleObjectForXQuery(document.root(), query, &error)) << query;
        EXPECT_EQ(error.code, 100);
        EXPECT_EQ(error.description, "kept");
    }
    EXPECT_EQ(stringValueForXQuery(document.root(), "a/@k"), "v");
}

TEST(MSPCExtensions, presentButEmptyIsPresent) {
    const auto document = xmlDocument("<p><Name/><Alias>  </Alias></p>");
    Error error;
    EXPECT_EQ(stringValueForXQuery(document.root(), "Name", &error), "");
    EXPECT_EQ(stringValueForXQuery(document.root(), "Alias", &error), "  ");
    EXPECT_FALSE(error);
}

MSPCXMLDocument withValue(std::string_view text) {
    return xmlDocument("<p><v>" + std::string(text) + "</v></p>");
}

TEST(MSPCExtensions, integersAreScannedFromTheStart) {
    EXPECT_EQ(intValueForXQuery(withValue(" 42abc").root(), "v"), 42);
    EXPECT_EQ(intValueForXQuery(withValue("12h").root(), "v"), 12);
    EXPECT_EQ(intValueForXQuery(withValue("4<!--x-->2").root(), "v"), 42);
    EXPECT_EQ(intValueForXQuery(withValue("99999999999999999999").root(), "v"), 9223372036854775807);
    EXPECT_EQ(intValueForXQuery(withValue("-99999999999999999999").root(), "v"),
              std::numeric_limits<std::int64_t>::min());
}

TEST(MSPCExtensions, textWithoutANumberIsAHardFailure) {
    EXPECT_RAISES(intValueForXQuery(withValue("abc").root(), "v"), MSPCInternalInconsistency,
                  "Failed to get int value from XML node: <v>abc</v>");
    EXPECT_RAISES(intValueForXQuery(withValue("").root(), "v"), MSPCInternalInconsistency,
                  "Failed to get int value from XML node: <v/>");
    EXPECT_RAISES(floatValueForXQuery(withValue("nan").root(), "v"), MSPCInternalInconsistency,
                  "Failed to get float value from XML node: <v>nan</v>");
    EXPECT_RAISES(boolValueForXQuery(withValue("maybe").root(), "v"), MSPCInternalInconsistency,
                  "Failed to get boolean value from XML node: <v>maybe</v>");
    EXPECT_RAISES(boolValueForXQuery(withValue("").root(), "v"), MSPCInternalInconsistency,
                  "Failed to get boolean value from XML node: <v/>");
    EXPECT_RAISES(intValueForXQuery(xmlDocument("<p k='x'/>").root(), "@k"), MSPCInternalInconsistency,
                  "Failed to get int value from XML node: k=\"x\"");
}

TEST(MSPCExtensions, floatsAreScannedFromTheStart) {
    EXPECT_EQ(floatValueForXQuery(withValue(" 1.5h").root(), "v"), 1.5);
    EXPECT_EQ(floatValueForXQuery(withValue("-2e2").root(), "v"), -200.0);
    EXPECT_EQ(floatValueForXQuery(withValue("0x10").root(), "v"), 0.0);
}

TEST(MSPCExtensions, booleansAreWordsOrIntegers) {
    struct Case {
        std::string_view text;
        bool value;
    };
    constexpr Case cases[] = {{" YES ", true},  {"yes", true}, {"TRUE", true}, {"\n true\t", true},
                              {"False", false}, {"no", false}, {"NO", false},  {"1", true},
                              {"0", false},     {"2", true},   {"7", true},    {"-1", true},
                              {"0.9", false},   {"1x", true},  {"00", false},  {"99999999999", true}};
    for (const auto& [text, value] : cases) {
        EXPECT_EQ(boolValueForXQuery(withValue(text).root(), "v"), value) << text;
    }
    EXPECT_RAISES(boolValueForXQuery(withValue("truely").root(), "v"), MSPCInternalInconsistency,
                  "Failed to get boolean value from XML node: <v>truely</v>");
}

TEST(MSPCExtensions, whiteSpaceOfAllOfUnicodeIsSkipped) {
    EXPECT_EQ(intValueForXQuery(withValue("\u00A042").root(), "v"), 42);
    EXPECT_EQ(intValueForXQuery(withValue("&#160;&#x3000;42").root(), "v"), 42);
    EXPECT_EQ(floatValueForXQuery(withValue("\u2003-1.5").root(), "v"), -1.5);
    EXPECT_TRUE(boolValueForXQuery(withValue("\u00A0Yes\u2028\u00A0").root(), "v"));
    EXPECT_TRUE(boolValueForXQuery(withValue("\u00851\u3000").root(), "v"));
    EXPECT_RAISES(boolValueForXQuery(withValue("\u00A0").root(), "v"), MSPCInternalInconsistency,
                  "Failed to get boolean value from XML node: <v>\u00A0</v>");
}

TEST(MSPCExtensions, aQueryNeedsANode) {
    const MSPCXMLNode none;
    EXPECT_RAISES(singleObjectForXQuery(none, "a"), MSPCInternalInconsistency, NoNode);
    EXPECT_RAISES(stringValueForXQuery(none, "a"), MSPCInternalInconsistency, NoNode);
    EXPECT_RAISES(intValueForXQuery(none, "a"), MSPCInternalInconsistency, NoNode);
    EXPECT_RAISES(floatValueForXQuery(none, "a"), MSPCInternalInconsistency, NoNode);
    EXPECT_RAISES(boolValueForXQuery(none, "a"), MSPCInternalInconsistency, NoNode);
    EXPECT_RAISES(nodesForXQuery(none, "a"), MSPCInternalInconsistency, NoNode);
}

TEST(MSPCExtensions, allNodesOfAQueryComeInDocumentOrder) {
    const auto document = xmlDocument("<p><a>1</a><b/><a>2</a></p>");
    Error error;
    EXPECT_EQ(nodesForXQuery(document.root(), "a", &error),
              (std::vector{document.root().firstChild(), document.root().lastChild()}));
    EXPECT_TRUE(nodesForXQuery(document.root(), "c", &error).empty());
    EXPECT_FALSE(error);
    EXPECT_TRUE(nodesForXQuery(document.root(), "a[", &error).empty());
    EXPECT_EQ(error.code, 1);
}

TEST(MSPCExtensions, settingAnAttributeFindsOrCreatesIt) {
    const auto document = xmlDocument("<p k='v'/>");
    const auto root = document.root();
    EXPECT_EQ(setAttributeWithName(root, "k").stringValue(), "v");
    EXPECT_EQ(setAttributeWithName(root, "new").stringValue(), "");
    EXPECT_EQ(setAttributeWithNameStringValue(root, "k", std::nullopt).stringValue(), "v");
    EXPECT_EQ(setAttributeWithNameStringValue(root, "k", "w").stringValue(), "w");
    EXPECT_EQ(setAttributeWithNameStringValue(root, "new", "").stringValue(), "");
    EXPECT_EQ(root.markup(), "<p k=\"w\" new=\"\"/>");
}

TEST(MSPCExtensions, onlyElementsTakeAttributesAndChildren) {
    const auto document = xmlDocument("<p k='v'>text</p>");
    for (const auto& node :
         {document.root().attribute("k"), document.root().firstChild(), MSPCXMLNode(), document.root().parent()}) {
        EXPECT_RAISES(setAttributeWithName(node, "a"), MSPCInternalInconsistency, NoElementForAttribute);
        EXPECT_RAISES(setAttributeWithNameStringValue(node, "a", "b"), MSPCInternalInconsistency,
                      NoElementForAttribute);
        EXPECT_RAISES(addChildElementWithName(node, "a"), MSPCInternalInconsistency, NoElementForChild);
        EXPECT_RAISES(addChildElementWithNameStringValue(node, "a", "b"), MSPCInternalInconsistency, NoElementForChild);
        EXPECT_FALSE(insertChildElementWithNameAtIndex(node, "a", 0));
    }
    EXPECT_EQ(document.root().markup(), "<p k=\"v\">text</p>");
}

TEST(MSPCExtensions, childrenAndCommentsAreAddedAndInserted) {
    const auto document = xmlDocument("<p><a/></p>");
    const auto root = document.root();
    const auto added = addChildElementWithName(root, "b");
    EXPECT_EQ(added, root.lastChild());
    addChildElementWithNameStringValue(root, "c", "text");
    addChildElementWithNameStringValue(root, "d", std::nullopt);
    const auto inserted = insertChildElementWithNameAtIndex(root, "first", 0);
    EXPECT_EQ(inserted, root.firstChild());
    insertChildElementWithNameStringValueAtIndex(root, "third", "3", 2);
    insertChildElementWithNameAtIndex(root, "negative", -1);
    insertChildElementWithNameAtIndex(root, "last", 1000);
    EXPECT_EQ(root.markup(), "<p><negative/><first/><a/><third>3</third><b/><c>text</c><d/><last/></p>");
}

TEST(MSPCExtensions, commentsAreAddedAndInserted) {
    const auto document = xmlDocument("<p><a/></p>");
    addComment(document.root(), "tail");
    addComment(document.root(), std::nullopt);
    insertCommentAtIndex(document.root(), "a--b", 0);
    insertCommentAtIndex(document.root(), "second", 1);
    EXPECT_EQ(document.root().markup(), "<p><!--a- -b--><!--second--><a/><!--tail--><!----></p>");
}

TEST(MSPCExtensions, loadsADocumentFromAFile) {
    InMemoryFileSystem files;
    RecordingLog log;
    files.addFile("/in/Plan.xml", "<Project><Name>a</Name></Project>");
    const auto url = MSPCURL::fileURL("/in/Plan.xml", false);
    EXPECT_EQ(newXmlDocFromUrl(url, MSPCXMLContent::DataOnly, files, log).root().markup(),
              "<Project><Name>a</Name></Project>");
    EXPECT_EQ(newXmlDocFromUrlStripNamespace(url, MSPCXMLContent::DataOnly, files, log).root().markup(),
              "<Project><Name>a</Name></Project>");
}

TEST(MSPCExtensions, loadsOnlyWhatASelectionNames) {
    InMemoryFileSystem files;
    RecordingLog log;
    files.addFile("/in/Plan.xml", "<Project><Name>a</Name><Other>b</Other></Project>");
    const auto selection = MSPCXMLSelection::fromText("Project(Name)");
    const auto url = MSPCURL::fileURL("/in/Plan.xml", false);
    EXPECT_EQ(newXmlDocFromUrlSelection(url, selection, files, log).document.root().markup(),
              "<Project><Name>a</Name></Project>");
}

TEST(MSPCExtensions, whatCannotBeReadInPartIsLoadedWholeInSpiteOfASelection) {
    struct Case {
        std::string bytes;
        std::string markup;
        std::vector<std::string> log;
    };
    const Case cases[] = {
        {"<?xml version=\"1.0\" encoding=\"windows-1252\"?><Project><Name>\x80</Name></Project>",
         "<Project><Name>\xE2\x82\xAC</Name></Project>",
         {}},
        {"<!DOCTYPE Project [<!ENTITY e 'x'>]><Project><Name>&e;</Name></Project>",
         "<Project><Name>x</Name></Project>",
         {}},
        {"<Project><Name>a</Name><Other b=\"1\">c</Other></Project>",
         "<Project><Name>a</Name><Other b=\"1\">c</Other></Project>",
         {}},
        {"<Project><Name>a</Name><Other>b & c</Other></Project>",
         "<Project><Name>a</Name><Other>b &amp; c</Other></Project>",
         {"WARNING: Repaired malformed XML in '/in/Plan.xml' at line 1: xmlParseEntityRef: no name"}},
        {"<Project><Name a=>a</Name></Project>",
         "<Project><Name>a</Name></Project>",
         {"WARNING: Repaired malformed XML in '/in/Plan.xml' at line 1: AttValue: \" or ' expected"}},
        {"<scenario id=\"1\"/>", "<scenario id=\"1\"/>", {}},
    };
    const auto selection = MSPCXMLSelection::fromText("Project(Name)");
    const auto url = MSPCURL::fileURL("/in/Plan.xml", false);
    for (const auto& [bytes, markup, warnings] : cases) {
        InMemoryFileSystem files;
        RecordingLog log;
        files.addFile("/in/Plan.xml", bytes);
        EXPECT_EQ(newXmlDocFromUrlSelection(url, selection, files, log).document.root().markup(), markup);
        EXPECT_EQ(log.takeLines(), warnings) << bytes;
    }
}

TEST(MSPCExtensions, aSelectionChangesNoFailure) {
    InMemoryFileSystem files;
    RecordingLog log;
    files.addFile("/in/Empty.xml", "");
    files.addFile("/in/Cut.xml", "<scenario><a></scenario>");
    const auto selection = MSPCXMLSelection::fromText("Project(Name)");
    for (const char* path : {"/in/Empty.xml", "/in/Cut.xml", "/in/Missing.xml", "/in"}) {
        EXPECT_RAISES(newXmlDocFromUrlSelection(MSPCURL::fileURL(path, false), selection, files, log), MSPEXMLException,
                      "MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.");
    }
}

TEST(MSPCExtensions, strippingTheNamespaceRemovesNone) {
    InMemoryFileSystem files;
    RecordingLog log;
    files.addFile("/in/Plan.xml", "<Project xmlns=\"urn:x\"/>");
    const auto document =
        newXmlDocFromUrlStripNamespace(MSPCURL::fileURL("/in/Plan.xml", false), MSPCXMLContent::DataOnly, files, log);
    EXPECT_EQ(document.root().markup(), "<Project xmlns=\"urn:x\"/>");
}

TEST(MSPCExtensions, aRepairIsLoggedWithPathAndLine) {
    InMemoryFileSystem files;
    RecordingLog log;
    files.addFile("/in/Bad Plan.xml", "<Project>\n<Name>A & B</Name>\n</Project>");
    files.addFile("/in/Cut.xml", "<Project>\n<Name>A</Name>\n");
    const auto document =
        newXmlDocFromUrl(MSPCURL::fileURL("/in/Bad Plan.xml", false), MSPCXMLContent::DataOnly, files, log);
    EXPECT_EQ(stringValueForXQuery(document.root(), "Name"), "A & B");
    EXPECT_TRUE(newXmlDocFromUrl(MSPCURL::fileURL("/in/Cut.xml", false), MSPCXMLContent::DataOnly, files, log).root());
    EXPECT_EQ(log.takeLines(),
              (std::vector<std::string>{
                  "WARNING: Repaired malformed XML in '/in/Bad Plan.xml' at line 2: xmlParseEntityRef: no name",
                  "WARNING: Repaired malformed XML in '/in/Cut.xml' at line 3: Premature end of data in tag Project "
                  "line 1"}));
}

TEST(MSPCExtensions, aDocumentThatCannotBeLoadedIsAFailure) {
    InMemoryFileSystem files;
    RecordingLog log;
    files.addFile("/in/Empty.xml", "");
    files.addFile("/in/Other.xml", "<scenario><a></scenario>");
    for (const char* path : {"/in/Empty.xml", "/in/Other.xml", "/in/Missing.xml", "/in"}) {
        const auto url = MSPCURL::fileURL(path, false);
        EXPECT_RAISES(newXmlDocFromUrl(url, MSPCXMLContent::Everything, files, log), MSPEXMLException,
                      "MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.");
        EXPECT_RAISES(newXmlDocFromUrlStripNamespace(url, MSPCXMLContent::Everything, files, log), MSPEXMLException,
                      "MSPEXMLExporter.newXmlDocFromUrlStripNamespace: Failed to build XML DOM from source data.");
    }
}

TEST(MSPCExtensions, aQueryFormNotOfferedNamesFileLineAndQuery) {
    const auto error = notPortedXQueryError("/src/filter/Mapper.m", 42, "for $t in //Task return $t");
    EXPECT_EQ(error.domain, "org.kadenza.KZMSPFilter.GeneralErrorDomain");
    EXPECT_EQ(error.code, 100);
    EXPECT_EQ(error.description, "NOT PORTED XQUERY (Mapper.m [42]): for $t in //Task return $t");
}

}  // namespace
