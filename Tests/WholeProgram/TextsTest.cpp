#include <gtest/gtest.h>

#include "PlanImport.h"

// Every text of a plan comes back unchanged from the written documents.

namespace {

// Each text as it is, and as it is written in the plan.
struct Text {
    std::string_view text;
    std::string_view markup;
};

constexpr Text Texts[] = {
    {"plain", "plain"},
    {"  blanks at both ends  ", "  blanks at both ends  "},
    {"   ", "   "},
    {"\ttab\tand\ttab\t", "\ttab\tand&#9;tab\t"},
    {"a\rb", "a&#13;b"},
    {"\ra\r\n\r", "&#13;a&#xD;&#10;&#xd;"},
    {"line\nfeed", "line\nfeed"},
    {"line\nfeed", "line\r\nfeed"},
    {"\n\n", "&#10;\n"},
    {"<a> & \"b\" 'c' ]]>", "&lt;a&gt; &amp; &quot;b&quot; &apos;c&apos; ]]&gt;"},
    {"&amp;&#13;", "&amp;amp;&amp;#13;"},
    {"a]]>b", "<![CDATA[a]]]]><![CDATA[>b]]>"},
    {"\xF0\x9F\x98\x80 \xF4\x8F\xBF\xBD", "\xF0\x9F\x98\x80 &#x10FFFD;"},
    {"\xC2\x85\xE2\x80\xA8\xE2\x80\xA9\xEF\xBB\xBF\xC2\xA0", "\xC2\x85\xE2\x80\xA8\xE2\x80\xA9\xEF\xBB\xBF\xC2\xA0"},
    {"e\xCC\x81 \xD7\xA9\xD7\x9C", "e\xCC\x81 \xD7\xA9\xD7\x9C"},
    {"\x7F\xC2\x80\xC2\x9F", "\x7F\xC2\x80\xC2\x9F"},
    {"\xEF\xBF\xBD", "\xEF\xBF\xBD"},
};

std::vector<std::string> texts() {
    std::vector<std::string> texts;
    for (const auto& text : Texts) {
        texts.emplace_back(text.text);
    }
    return texts;
}

// One element per text, with the text in the place of "@" and a number in that of "#".
std::string elementPerText(std::string_view pattern) {
    std::string elements;
    int number = 0;
    for (const auto& text : Texts) {
        ++number;
        for (const char character : pattern) {
            if (character == '@') {
                elements += text.markup;
            } else if (character == '#') {
                elements += std::to_string(number);
            } else {
                elements += character;
            }
        }
    }
    return elements;
}

const std::string FieldDefinition =
    "<ExtendedAttributes><ExtendedAttribute><FieldID>1</FieldID><FieldName>Text1</FieldName><CFType>0</CFType>"
    "</ExtendedAttribute></ExtendedAttributes>";


}  // namespace

TEST(Texts, namesOfTasks) {
    const PlanImport import(
        "task-names",
        planOf({"<Tasks>" + elementPerText("<Task><UID>#</UID><OutlineLevel>1</OutlineLevel><Name>@</Name></Task>") +
                    "</Tasks>",
                "", ""}));
    EXPECT_EQ(import.texts("title"), texts());
    EXPECT_FALSE(import.logHolds("WARNING")) << import.log();
}

TEST(Texts, namesOfTasksInABaseline) {
    const PlanImport import("task-names-of-baseline",
                            planOf({"<Tasks>" +
                                        elementPerText("<Task><UID>#</UID><OutlineLevel>1</OutlineLevel><Name>@</Name>"
                                                       "<Baseline><Number>0</Number></Baseline></Task>") +
                                        "</Tasks>",
                                    "", ""}));
    EXPECT_EQ(import.texts("title", "Baseline.xml"), texts());
}

TEST(Texts, namesOfResources) {
    const PlanImport import(
        "resource-names",
        planOf({"<Resources>" + elementPerText("<Resource><UID>#</UID><Name>@</Name></Resource>") + "</Resources>", "",
                ""}));
    EXPECT_EQ(import.texts("name"), texts());
}

TEST(Texts, valuesOfCustomFields) {
    const PlanImport import(
        "field-values",
        planOf({FieldDefinition + "<Tasks>" +
                    elementPerText("<Task><UID>#</UID><OutlineLevel>1</OutlineLevel><Name>n</Name><ExtendedAttribute>"
                                   "<FieldID>1</FieldID><Value>@</Value></ExtendedAttribute></Task>") +
                    "</Tasks>",
                "", ""}));
    EXPECT_EQ(import.texts("string"), texts());
}

TEST(Texts, namesOfCustomFields) {
    const PlanImport import(
        "field-names",
        planOf({"<ExtendedAttributes>" +
                    elementPerText("<ExtendedAttribute><FieldID>#</FieldID><Alias>@ #</Alias></ExtendedAttribute>") +
                    "</ExtendedAttributes><Tasks>" +
                    elementPerText("<Task><UID>#</UID><OutlineLevel>1</OutlineLevel><Name>n</Name><ExtendedAttribute>"
                                   "<FieldID>#</FieldID><Value>v</Value></ExtendedAttribute></Task>") +
                    "</Tasks>",
                "", ""}));
    auto expected = texts();
    for (std::size_t i = 0; i < expected.size(); ++i) {
        expected[i].append(" ").append(std::to_string(i + 1));
    }
    EXPECT_EQ(import.texts("key"), expected);
}

TEST(Texts, theProjectsTitle) {
    for (const auto& [text, markup] : Texts) {
        const PlanImport import("title", planOf({"<Title>" + std::string(markup) + "</Title>", "", ""}));
        EXPECT_EQ(import.texts("title", "__TOC.xml"), std::vector<std::string>{std::string(text)}) << markup;
    }
}

// A note's line ends become paragraphs; everything between them stays.
TEST(Texts, linesOfNotes) {
    for (const auto& [text, markup] : Texts) {
        const bool holdsLineEnd = text.find_first_of("\r\n\f") != std::string_view::npos ||
                                  text.find("\xE2\x80\xA8") != std::string_view::npos ||
                                  text.find("\xC2\x85") != std::string_view::npos;
        if (!holdsLineEnd) {
            const PlanImport import("note", planOf({"<Tasks>" +
                                                        taskElement("1", "<Notes>first&#10;" + std::string(markup) +
                                                                             "&#10;last</Notes>") +
                                                        "</Tasks>",
                                                    "", ""}));
            EXPECT_EQ(import.texts("lit"), (std::vector<std::string>{"first", std::string(text), "last"})) << markup;
        }
    }
}
