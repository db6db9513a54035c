#include "MSPCXMLDocument.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

std::string markupOf(std::string_view bytes, const MSPCXMLReading& reading = {}) {
    const auto document = MSPCXMLDocument::read(std::string(bytes), reading);
    return document ? document->root().markup() : "(none)";
}

TEST(MSPCXMLDocument, isMadeOfBytesThatParseAsTheyStand) {
    EXPECT_EQ(markupOf("<a b='1'>c&amp;<d/></a>"), "<a b=\"1\">c&amp;<d/></a>");
    for (const std::string_view bytes : {"", " ", "a", "<a", "<a>", "<a></b>", "<a/><a/>", "<a/>bc", "b<a/>", "</a>",
                                         "<a b=c/>", "<a b='1' b='2'/>", "<![CDATA[a]]>"}) {
        EXPECT_EQ(markupOf(bytes), "(none)") << bytes;
    }
}

TEST(MSPCXMLDocument, keepsWhatItsContentNames) {
    constexpr std::string_view text = "<a><!--c--><b> </b>\n<?p i?></a>";
    EXPECT_EQ(markupOf(text), "<a><!--c--><b> </b><?p i?></a>");
    EXPECT_EQ(markupOf(text, {.content = MSPCXMLContent::DataOnly}), "<a><b> </b></a>");
}

// What is known of the bytes makes reading faster and changes nothing else.
TEST(MSPCXMLDocument, isTheSameWhateverIsKnownOfItsBytes) {
    constexpr std::string_view text = "<a>\n <b c=\"d\"> </b>\n <e>f&#13;</e>\n <g/>\n</a>";
    for (const bool hasNestedValues : {true, false}) {
        for (const bool hasMixedContent : {true, false}) {
            EXPECT_EQ(markupOf(text, {.content = MSPCXMLContent::DataOnly,
                                      .hasSections = false,
                                      .hasMixedContent = hasMixedContent,
                                      .hasNestedValues = hasNestedValues}),
                      "<a><b c=\"d\"> </b><e>f&#13;</e><g/></a>");
        }
    }
}

TEST(MSPCXMLDocument, ofMendedBytesKeepsTheFirstOfTwoAttributes) {
    EXPECT_EQ(markupOf("<a b='1' b='2'/>", {.isMended = true}), "<a b=\"1\"/>");
}

}  // namespace
