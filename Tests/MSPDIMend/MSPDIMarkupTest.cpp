#include "MSPDIMarkup.h"

#include <gtest/gtest.h>

namespace {

std::string elementIn(std::string_view bytes, std::size_t begin) {
    const auto extent = MSPDIExtentOfElement(bytes, begin);
    return std::string(bytes.substr(begin, extent.end - begin));
}

std::string contentIn(std::string_view bytes, std::size_t begin) {
    const auto extent = MSPDIExtentOfElement(bytes, begin);
    return std::string(bytes.substr(extent.contentBegin, extent.contentEnd - extent.contentBegin));
}

}  // namespace

TEST(MSPDIMarkupTest, findsTheEndsOfTagsBehindQuotes) {
    EXPECT_EQ(MSPDIEndOfTag("<a>b", 0), 3U);
    EXPECT_EQ(MSPDIEndOfTag("<a b='>'>c", 0), 9U);
    EXPECT_EQ(MSPDIEndOfTag("<a b=\"'>\">c", 0), 10U);
    EXPECT_EQ(MSPDIEndOfTag("<a b='>", 0), 7U);
    EXPECT_EQ(MSPDIEndOfTag("<a", 0), 2U);
}

TEST(MSPDIMarkupTest, findsTheNextChildWithinTheParent) {
    const std::string_view plan = "<p><!-- <x/> --><a><b/></a> <c/></p><d/>";
    const auto first = MSPDINextChild(plan, 3);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->name, "a");
    EXPECT_EQ(plan.substr(first->begin, first->end - first->begin), "<a><b/></a>");
    const auto second = MSPDINextChild(plan, first->end);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->name, "c");
    EXPECT_FALSE(MSPDINextChild(plan, second->end));
}

TEST(MSPDIMarkupTest, findsTheEndOfAnElement) {
    EXPECT_EQ(elementIn("<a>text</a><b/>", 0), "<a>text</a>");
    EXPECT_EQ(contentIn("<a>text</a><b/>", 0), "text");
    EXPECT_EQ(elementIn("<a><a/><a>x</a></a><b/>", 0), "<a><a/><a>x</a></a>");
    EXPECT_EQ(elementIn("<r><a/>x</r>", 3), "<a/>");
    EXPECT_TRUE(MSPDIExtentOfElement("<r><a />x</r>", 3).isSelfClosed);
}

TEST(MSPDIMarkupTest, isNotLedAstrayByAttributesAndSections) {
    EXPECT_EQ(contentIn("<a x='>' y=\"/>\">t</a>", 0), "t");
    EXPECT_EQ(contentIn("<a><!-- </a> --><![CDATA[</a>]]><?p </a>?>t</a>z", 0),
              "<!-- </a> --><![CDATA[</a>]]><?p </a>?>t");
}

TEST(MSPDIMarkupTest, endsWithTheDocument) {
    EXPECT_EQ(elementIn("<a><b>cut", 0), "<a><b>cut");
    EXPECT_EQ(elementIn("<a x='", 0), "<a x='");
}

TEST(MSPDIMarkupTest, escapesWhatIsMarkup) {
    EXPECT_EQ(MSPDIEscapedText("a<b>&c\r\n\"d\""), "a&lt;b&gt;&amp;c&#13;\n\"d\"");
}

TEST(MSPDIMarkupTest, declaresUTF8) {
    EXPECT_EQ(MSPDIWithUtf8Declared("<?xml version='1.0' encoding='windows-1252'?><a/>"),
              "<?xml version='1.0' encoding='UTF-8'?><a/>");
    EXPECT_EQ(MSPDIWithUtf8Declared("<a encoding='x'/>"), "<a encoding='x'/>");
    EXPECT_EQ(MSPDIWithUtf8Declared("<?xml version='1.0'?><a encoding='x'/>"),
              "<?xml version='1.0'?><a encoding='x'/>");
}
