#include "MSPITextExtensions.h"

#include <gtest/gtest.h>

TEST(MSPITextExtensions, stringValueOfATextIsTheText) {
    EXPECT_EQ(stringValue("a <b>\n"), "a <b>\n");
    EXPECT_EQ(stringValue(""), "");
}

TEST(MSPITextExtensions, everyLineBreakPatternBecomesABlank) {
    const std::string_view patterns[] = {"&#x0D;",   "&#x0d;", "&#x2028;", "&#x0A;",       "&#x0a;",
                                         "&#x2029;", "\r",     "\n",       "\xE2\x80\xA8", "\xE2\x80\xA9"};
    for (const auto pattern : patterns) {
        const auto text = std::string(pattern) + "a" + std::string(pattern) + std::string(pattern) + "b";
        EXPECT_EQ(stringByReplacingOccurrencesOfNewline(text), " a  b") << pattern;
    }
}

TEST(MSPITextExtensions, textsWithoutALineBreakStayAsTheyAre) {
    for (const auto* text : {"", "a b", "&#x0B; &#10; &#x000A; \xC2\x85", "<![CDATA[a]]>"}) {
        EXPECT_EQ(stringByReplacingOccurrencesOfNewline(text), text);
    }
}

// From the first to the last of the list; each pair holds two neighbours, the later one first in the text.
TEST(MSPITextExtensions, onlyTheLastPatternOfTheListIsReplaced) {
    const std::pair<const char*, const char*> table[] = {
        {"a&#x0d;b&#x0D;c", "a b&#x0D;c"},
        {"a&#x2028;b&#x0d;c", "a b&#x0d;c"},
        {"a&#x0A;b&#x2028;c", "a b&#x2028;c"},
        {"a&#x0a;b&#x0A;c", "a b&#x0A;c"},
        {"a&#x2029;b&#x0a;c", "a b&#x0a;c"},
        {"a\rb&#x2029;c", "a b&#x2029;c"},
        {"a\xE2\x80\xA8"
         "b\rc",
         "a b\rc"},
        {"a\nb\xE2\x80\xA8"
         "c",
         "a b\xE2\x80\xA8"
         "c"},
        {"a\xE2\x80\xA9"
         "b\nc",
         "a b\nc"},
        {"a\rb\nc\r\n", "a\rb c\r "},
    };
    for (const auto& [text, expected] : table) {
        EXPECT_EQ(stringByReplacingOccurrencesOfNewline(text), expected);
    }
}

TEST(MSPITextExtensions, characterReferencesStayInATextThatBeginsAsACDataSection) {
    EXPECT_EQ(stringByReplacingOccurrencesOfNewline("<![CDATA[a&#x0A;b\nc]]>"), "<![CDATA[a&#x0A;b c]]>");
    EXPECT_EQ(stringByReplacingOccurrencesOfNewline("<![CDATA[a&#x0A;b]]>"), "<![CDATA[a&#x0A;b]]>");
    EXPECT_EQ(stringByReplacingOccurrencesOfNewline(" <![CDATA[a&#x0A;b]]>"), " <![CDATA[a b]]>");
}
