#include "MSPCXMLDocument.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "XMLText.h"

namespace {

// What a reading gave: the root's markup or "(none)", and the repair as "<line>: <message>".
struct Reading {
    std::string markup = "(none)";
    std::string repair;
};

Reading readingOf(std::string bytes, MSPCXMLContent content = MSPCXMLContent::DataOnly,
                  std::string_view repairableRoot = "Project") {
    std::optional<MSPCXMLRepair> repair;
    const auto document = MSPCXMLDocument::read(std::move(bytes), content, repairableRoot, &repair);
    Reading reading;
    if (document) {
        reading.markup = document->root().markup();
    }
    if (repair) {
        reading.repair = std::to_string(repair->line) + ": " + repair->message;
    }
    return reading;
}

TEST(MSPCXMLDocument, everythingOrDataOnlyIsKept) {
    const std::string text = "<Project><!--c--><Name>a</Name><?p i?></Project>";
    EXPECT_EQ(readingOf(text, MSPCXMLContent::Everything).markup, text);
    EXPECT_EQ(readingOf(text, MSPCXMLContent::DataOnly).markup, "<Project><Name>a</Name></Project>");
    EXPECT_EQ(readingOf("<Project><!--c--></Project>", MSPCXMLContent::DataOnly).markup, "<Project/>");
    EXPECT_EQ(readingOf("<Project><?p i?></Project>", MSPCXMLContent::DataOnly).markup, "<Project/>");
}

TEST(MSPCXMLDocument, aNameOfThreeBlanksIsAName) {
    for (const auto content : {MSPCXMLContent::Everything, MSPCXMLContent::DataOnly}) {
        EXPECT_EQ(readingOf("<Project>\n <Name>   </Name>\n</Project>", content).markup,
                  "<Project><Name>   </Name></Project>");
    }
}

TEST(MSPCXMLDocument, soundMarkupIsNotReportedAsMended) {
    constexpr std::string_view texts[] = {
        "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<Project/>\n",
        " \n<Project a='&amp;&#10;&#x1F600;'>&lt;</Project>",
        "<Project><![CDATA[A & B &nbsp;]]></Project>",
        "<Project><!-- A & B --></Project>",
        "<Project><?t A & B?></Project>",
        "<!-- A & B --><Project/>",
        "<!DOCTYPE Project><Project/>",
        "<Project></Project >",
    };
    for (const auto text : texts) {
        for (const auto content : {MSPCXMLContent::Everything, MSPCXMLContent::DataOnly}) {
            const auto reading = readingOf(std::string(text), content);
            EXPECT_NE(reading.markup, "(none)") << text;
            EXPECT_EQ(reading.repair, "") << text;
        }
    }
}

TEST(MSPCXMLDocument, brokenMarkupIsMendedAndReported) {
    struct Case {
        std::string_view bytes;
        std::string_view markup;
        std::string_view repair;
    };
    constexpr Case cases[] = {
        {"<Project>\n<Name>A & B</Name></Project>", "<Project><Name>A &amp; B</Name></Project>",
         "2: xmlParseEntityRef: no name"},
        {"<Project><Name>R&D; &nbsp;x &</Name></Project>", "<Project><Name>R&amp;D; &amp;nbsp;x &amp;</Name></Project>",
         "1: Entity 'D' not defined"},
        {"<Project a='1&2'/>", "<Project a=\"1&amp;2\"/>", "1: xmlParseEntityRef: no name"},
        {"<Project><Name>a&#1;b</Name></Project>",
         "<Project><Name>a\xEF\xBF\xBD"
         "b</Name></Project>",
         "1: xmlParseCharRef: invalid xmlChar value 1"},
        {"<Project>\n<Name>a\n</Project>", "<Project><Name>a\n</Name></Project>",
         "3: Opening and ending tag mismatch: Name line 2 and Project"},
        {"<Project><Name>a</Name>", "<Project><Name>a</Name></Project>",
         "1: Premature end of data in tag Project line 1"},
        {"<Project/><Project/>", "<Project/>", "1: Extra content at the end of the document"},
        {"<Project/>tail", "<Project/>", "1: Extra content at the end of the document"},
    };
    for (const auto& [bytes, markup, repair] : cases) {
        const auto reading = readingOf(std::string(bytes));
        EXPECT_EQ(reading.repair, repair) << bytes;
        EXPECT_EQ(reading.markup, markup) << bytes;
    }
}

TEST(MSPCXMLDocument, mendingLosesNoTextBesideForbiddenCharactersAndSectionEnds) {
    const auto afterNul = readingOf(std::string("<Project><Name>a\0b</Name><UID>1</UID></Project>", 47));
    EXPECT_EQ(afterNul.markup,
              "<Project><Name>a\xEF\xBF\xBD"
              "b</Name><UID>1</UID></Project>");
    EXPECT_EQ(afterNul.repair, "1: Char 0x0 out of allowed range");
    EXPECT_EQ(readingOf("<Project><Name>a & \x01</Name></Project>").markup,
              "<Project><Name>a &amp; \xEF\xBF\xBD</Name></Project>");
    EXPECT_EQ(readingOf("<Project><Name>a]]>b &</Name><UID>1</UID></Project>").markup,
              "<Project><Name>a]]&gt;b &amp;</Name><UID>1</UID></Project>");
}

TEST(MSPCXMLDocument, onlyTheRootThatWasAskedForIsMended) {
    EXPECT_EQ(readingOf("<scenario><a>").markup, "(none)");
    EXPECT_EQ(readingOf("<p:Project xmlns:p='u'><a>").markup, "(none)");
    EXPECT_EQ(readingOf("<scenario><a>", MSPCXMLContent::Everything, "scenario").markup, "<scenario><a/></scenario>");
    EXPECT_EQ(readingOf("<Project>A & B</Project>", MSPCXMLContent::DataOnly, "").markup, "(none)");
    EXPECT_EQ(readingOf("<Project>", MSPCXMLContent::DataOnly, "").markup, "(none)");
}

TEST(MSPCXMLDocument, bytesThatAreNoXMLGiveNoDocument) {
    using namespace std::string_view_literals;
    for (const auto bytes : {""sv, " "sv, "Project"sv, "\0\0\0"sv, "\xFF\xFE"sv, "<"sv, "<?xml version='1.0'?>"sv,
                             "<!DOCTYPE Project ["sv, "<!--"sv, "&"sv, "\x89PNG\r\n\x1A\n"sv, "]]>"sv}) {
        EXPECT_EQ(readingOf(std::string(bytes)).markup, "(none)") << bytes;
        EXPECT_EQ(readingOf(std::string(bytes), MSPCXMLContent::Everything, "").markup, "(none)") << bytes;
    }
}

TEST(MSPCXMLDocument, anAttributeGivenTwiceIsNoXMLWhereItIsWrittenBack) {
    EXPECT_EQ(readingOf("<scenario a='1' a='2'/>", MSPCXMLContent::Everything).markup, "(none)");
    const auto reading = readingOf("<Project a='1' a='2'/>", MSPCXMLContent::Everything);
    EXPECT_EQ(reading.markup, "<Project a=\"1\"/>");
    EXPECT_EQ(reading.repair, "1: Attribute a redefined");
}

TEST(MSPCXMLDocument, aRepairReadsTheBytesAgainWhereItCan) {
    int readings = 0;
    const MSPCXMLReadAgain readAgain = [&]() -> std::optional<std::string> {
        ++readings;
        return "<Project><Name>a</Name>";
    };
    std::optional<MSPCXMLRepair> repair;
    const auto mended =
        MSPCXMLDocument::read("<Project><Name>a</Name>", MSPCXMLContent::DataOnly, "Project", &repair, readAgain);
    ASSERT_TRUE(mended && repair);
    EXPECT_EQ(mended->root().markup(), "<Project><Name>a</Name></Project>");
    EXPECT_EQ(readings, 1);
    EXPECT_TRUE(MSPCXMLDocument::read("<Project/>", MSPCXMLContent::DataOnly, "Project", &repair, readAgain));
    EXPECT_EQ(readings, 1);
    EXPECT_FALSE(MSPCXMLDocument::read("<Project>", MSPCXMLContent::DataOnly, "Project", &repair,
                                       [] { return std::optional<std::string>(); }));
}

TEST(MSPCXMLDocument, internalEntitiesAreExpanded) {
    const auto reading = readingOf(
        "<!DOCTYPE Project [<!ENTITY firm \"Dig &amp; Sons\"><!ENTITY all '&firm;!'>]>"
        "<Project a='&firm;'><Name>&all;</Name></Project>");
    EXPECT_EQ(reading.markup, "<Project a=\"Dig &amp; Sons\"><Name>Dig &amp; Sons!</Name></Project>");
    EXPECT_EQ(reading.repair, "");
}

TEST(MSPCXMLDocument, strayAmpersandsBesideEntitiesAreMended) {
    const auto reading = readingOf("<!DOCTYPE Project [<!ENTITY e 'x'>]>\n<Project>&e; & y</Project>");
    EXPECT_EQ(reading.markup, "<Project>x &amp; y</Project>");
    EXPECT_EQ(reading.repair, "2: xmlParseEntityRef: no name");
}

std::string entityBomb(std::string_view use) {
    std::string bomb = "<!DOCTYPE Project [<!ENTITY a0 \"lol\">";
    for (int level = 1; level <= 12; ++level) {
        bomb += "<!ENTITY a" + std::to_string(level) + " \"";
        for (int copy = 0; copy < 10; ++copy) {
            bomb += "&a" + std::to_string(level - 1) + ";";
        }
        bomb += "\">";
    }
    return bomb + "]><Project>" + std::string(use) + "</Project>";
}

TEST(MSPCXMLDocument, anEntityBombFailsAtOnce) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(readingOf(entityBomb("&a12;")).markup, "(none)");
    EXPECT_EQ(readingOf(entityBomb("<Name a='&a12;'/>")).markup, "(none)");
    std::string quadratic = "<!DOCTYPE Project [<!ENTITY a '" + std::string(100'000, 'x') + "'>]><Project>";
    for (int use = 0; use < 20'000; ++use) {
        quadratic += "&a;";
    }
    EXPECT_EQ(readingOf(quadratic + "</Project>").markup, "(none)");
    EXPECT_EQ(readingOf("<!DOCTYPE Project [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><Project>&a;</Project>").markup,
              "(none)");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST(MSPCXMLDocument, nothingOutsideTheBytesIsRead) {
    const auto canary = std::filesystem::temp_directory_path() / ("kzmsp-canary-" + std::to_string(::getpid()));
    std::ofstream(canary) << "<!ENTITY e 'CANARY'>CANARY";
    const auto url = "'file://" + canary.string() + "'";
    const std::string bodies[] = {
        "<!DOCTYPE Project [<!ENTITY e SYSTEM " + url + ">]><Project>[&e;]</Project>",
        "<!DOCTYPE Project [<!ENTITY % p SYSTEM " + url + "> %p;]><Project>[&e;]</Project>",
        "<!DOCTYPE Project SYSTEM " + url + " [<!ENTITY f 'x'>]><Project>[&e;&f;]</Project>",
        "<!DOCTYPE Project SYSTEM " + url + "><Project>[&e;]</Project>",
        "<Project xmlns:i='http://www.w3.org/2001/XInclude'><i:include parse='text' href=" + url + "/></Project>",
    };
    for (const auto& body : bodies) {
        for (const auto content : {MSPCXMLContent::Everything, MSPCXMLContent::DataOnly}) {
            EXPECT_EQ(readingOf(body, content).markup.find("CANARY"), std::string::npos) << body;
        }
    }
    std::filesystem::remove(canary);
}

TEST(MSPCXMLDocument, aMillionUnclosedLevelsAreMended) {
    std::string bytes = "<Project>";
    for (int level = 0; level < 1'000'000; ++level) {
        bytes += "<a>";
    }
    const auto document = MSPCXMLDocument::read(bytes, MSPCXMLContent::DataOnly, "Project");
    ASSERT_TRUE(document);
    EXPECT_EQ(document->root().firstChild().name(), "a");
}

}  // namespace
