#include "MSPCXMLRepair.h"

#include <gtest/gtest.h>

namespace {

TEST(MSPCXMLRepair, writesWhatStopsAMendingParserAnew) {
    struct Case {
        std::string text;
        std::string mendable;
    };
    const Case cases[] = {
        {"<a>b\t\r\n</a>", "<a>b\t\r\n</a>"},
        {std::string("<a>b\0c\x01</a>", 11),
         "<a>b\xEF\xBF\xBD"
         "c\xEF\xBF\xBD</a>"},
        {"<a>]]>b]]]>]></a>", "<a>]]&gt;b]]]&gt;]></a>"},
        {"<a><![CDATA[b]]>]]></a>", "<a><![CDATA[b]]>]]&gt;</a>"},
        {"<a><!--]]>--><?p ]]>?>]]></a>", "<a><!--]]>--><?p ]]>?>]]&gt;</a>"},
        {"<!--]]>--><a b=\"]]>\"/>", "<!--]]>--><a b=\"]]&gt;\"/>"},
        {"]]>", "]]&gt;"},
        {"", ""},
        {"<!--a--b----><a>--</a><!--", "<!--a -b  --><a>--</a><!--"},
        {"<!---->--<!--->a--b-->--", "<!---->--<!--->a -b-->--"},
    };
    for (const auto& [text, mendable] : cases) {
        EXPECT_EQ(withMendableText(text), mendable);
    }
}

TEST(MSPCXMLRepair, escapesOnlyWhatIsStray) {
    constexpr auto predefined = MSPCXMLLexis::Entities::Predefined;
    EXPECT_EQ(escapedStrayAmpersands("<a>&amp;</a>", predefined), std::nullopt);
    EXPECT_EQ(escapedStrayAmpersands("<a>A & B &amp; <![CDATA[&]]>&e;</a>", predefined),
              "<a>A &amp; B &amp; <![CDATA[&]]>&amp;e;</a>");
    EXPECT_EQ(escapedStrayAmpersands("<a>& &e; &#1;x</a>", MSPCXMLLexis::Entities::AnyName),
              "<a>&amp; &e; \xEF\xBF\xBDx</a>");
    EXPECT_EQ(escapedStrayAmpersands("&", predefined), "&amp;");
}

}  // namespace
