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

bool holdsLineEnd(std::string_view text) {
    for (const std::string_view lineEnd : {"\r", "\n", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        if (text.find(lineEnd) != std::string_view::npos) {
            return true;
        }
    }
    return false;
}

std::string resourceWith(const std::string& children) {
    return "<Resources><Resource><UID>1</UID><Name>n</Name>" + children + "</Resource></Resources>";
}

// A place of a plan that takes any text, and where it goes.
struct Place {
    std::string_view name;
    std::string content;  // of the plan, with the text in the place of "@"
    std::string document;
    std::string element;
    std::string_view behind = "";  // what follows the text there
};

const Place Places[] = {
    {"title", "<Title>@</Title>", "__TOC.xml", "title"},
    {"currency symbol",
     "<CurrencySymbol>@</CurrencySymbol><CurrencyDigits>2</CurrencyDigits>"
     "<CurrencySymbolPosition>0</CurrencySymbolPosition>",
     "__TOC.xml", "currency-format", "1,234.56"},
    {"task", "<Tasks>" + taskElement("1", "<Name>@</Name>") + "</Tasks>", "Actual.xml", "title"},
    {"task note", "<Tasks>" + taskElement("1", "<Notes>@</Notes>") + "</Tasks>", "Actual.xml", "lit"},
    {"resource e-mail", resourceWith("<EmailAddress>@</EmailAddress>"), "Actual.xml", "email-address"},
    {"resource note", resourceWith("<Notes>@</Notes>"), "Actual.xml", "lit"},
    {"custom field of a resource",
     FieldDefinition + resourceWith("<ExtendedAttribute><FieldID>1</FieldID><Value>@</Value></ExtendedAttribute>"),
     "Actual.xml", "string"},
    {"name of a custom field",
     "<ExtendedAttributes><ExtendedAttribute><FieldID>1</FieldID><Alias>@</Alias></ExtendedAttribute>"
     "</ExtendedAttributes>" +
         resourceWith("<ExtendedAttribute><FieldID>1</FieldID><Value>v</Value></ExtendedAttribute>"),
     "Actual.xml", "key"},
    {"name of a custom field in the table of contents",
     "<ExtendedAttributes><ExtendedAttribute><FieldID>1</FieldID><Alias>@</Alias></ExtendedAttribute>"
     "</ExtendedAttributes>" +
         resourceWith("<ExtendedAttribute><FieldID>1</FieldID><Value>v</Value></ExtendedAttribute>"),
     "__TOC.xml", "key"},
};

std::string planWithTextAt(const Place& place, std::string_view markup) {
    auto content = place.content;
    content.replace(content.find('@'), 1, markup);
    return planOf({content, "", ""});
}

// The text that arrived; what follows it is the place's own.
std::string textAt(const Place& place, const PlanImport& import) {
    const auto texts = import.texts(place.element, place.document);
    if (texts.size() != 1 || !texts.front().ends_with(place.behind)) {
        ADD_FAILURE() << place.name << ": no such text arrived\n" << import.log();
        return {};
    }
    return texts.front().substr(0, texts.front().size() - place.behind.size());
}

}  // namespace

TEST(Texts, ofEveryKindAreUnchanged) {
    for (const auto& place : Places) {
        for (const auto& [text, markup] : Texts) {
            if (place.element == "lit" && holdsLineEnd(text)) {
                continue;  // the lines of a note become paragraphs
            }
            const PlanImport import("kind", planWithTextAt(place, markup));
            EXPECT_EQ(textAt(place, import), text) << place.name << ": " << markup;
            EXPECT_FALSE(import.logHolds("WARNING")) << import.log();
        }
    }
}

TEST(Texts, thatXMLCannotHoldAreReplacedWithAWarning) {
    struct Case {
        std::string_view markup;
        std::string_view text;
    };
    constexpr Case cases[] = {
        {"a\x01\x1F"
         "b",
         "a\xEF\xBF\xBD\xEF\xBF\xBD"
         "b"},
        {"a&#2;b&#xFFFF;",
         "a\xEF\xBF\xBD"
         "b\xEF\xBF\xBD"},
        {"a\xFF"
         "b",
         "a\xEF\xBF\xBD"
         "b"},
    };
    for (const auto& place : Places) {
        for (const auto& [markup, text] : cases) {
            const PlanImport import("unholdable", planWithTextAt(place, markup));
            EXPECT_EQ(textAt(place, import), text) << place.name << ": " << markup;
            EXPECT_TRUE(import.logHolds("WARNING: Replaced ") || import.logHolds("WARNING: Repaired "))
                << place.name << import.log();
        }
    }
}

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

// A note's line ends become paragraphs; everything between them stays.
TEST(Texts, linesOfNotes) {
    for (const auto& [text, markup] : Texts) {
        if (!holdsLineEnd(text)) {
            const PlanImport import(
                "note",
                planOf({"<Tasks>" + taskElement("1", "<Notes>first&#10;" + std::string(markup) + "&#10;last</Notes>") +
                            "</Tasks>",
                        "", ""}));
            EXPECT_EQ(import.texts("lit"), (std::vector<std::string>{"first", std::string(text), "last"})) << markup;
        }
    }
}
