#include "MSPCFields.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "ExpectRaises.h"
#include "MSPCExtensions.h"
#include "XMLText.h"

namespace {

constexpr std::array<std::string_view, 5> names = {"UID", "Name", "Names", "Type", "x.y"};
constexpr std::array<std::string_view, 14> texts = {"",
                                                    "1",
                                                    " 12 ",
                                                    "-7h",
                                                    "3.5e1",
                                                    "true",
                                                    " YES ",
                                                    "No",
                                                    "abc",
                                                    "  ",
                                                    "&#13;",
                                                    "0x10",
                                                    "99999999999999999999",
                                                    "<![CDATA[4]]>2"};

// An element with children of few names, so that several bear the same one, and with what else may stand between.
std::string randomElement(std::mt19937& random) {
    const auto below = [&](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    std::string text = "<Task UID=\"5\">";
    for (auto left = below(7); left > 0; --left) {
        switch (below(8)) {
            case 0:
                text += "<!--UID-->";
                break;
            case 1:
                text += "<?UID 1?>";
                break;
            case 2:
                text += "<Other><UID>8</UID></Other>";
                break;
            default: {
                const auto name = names[below(names.size())];
                text.append("<").append(name).append(">").append(texts[below(texts.size())]);
                text.append("</").append(name).append(">");
            }
        }
    }
    return text + "</Task>";
}

// What an operation gives or raises, and the error that it reports.
template <typename Operation>
std::string outcomeOf(Operation&& operation) {
    Error error;
    std::string outcome;
    try {
        outcome = operation(&error);
    } catch (const MSPCInternalInconsistency& raised) {
        outcome = "raised: " + raised.reason();
    }
    return outcome + " / " + std::to_string(error.code) + " " + std::string(error.domain);
}

std::string textOrNone(const MSPCNodeText& text) {
    return text ? std::string(text.textOrEmpty()) : "(none)";
}

// Whoever takes fields is not given an element by the way: the walk over its children is seen where it is paid for.
static_assert(!std::is_convertible_v<MSPCXMLNode, MSPCFields>);
static_assert(std::is_constructible_v<MSPCFields, const MSPCXMLNode&>);

}  // namespace

TEST(MSPCFields, giveTheLastChildOfANameAndReportSeveral) {
    const auto document = xmlDocument("<Task><UID>1</UID><Name>a</Name><UID>2</UID></Task>");
    const MSPCFields fields(document.root());
    Error error;
    EXPECT_EQ(fields.intValue("UID", &error), 2);
    EXPECT_EQ(error.code, MSPCXQueryMoreThanOneMatch);
    EXPECT_EQ(fields.intValue("UID"), 2);
    EXPECT_EQ(fields.nodes("UID").size(), 2U);
}

TEST(MSPCFields, reportANameThatNoChildBears) {
    const auto document = xmlDocument("<Task><Names>1</Names><Other><UID>2</UID></Other></Task>");
    const MSPCFields fields(document.root());
    for (const std::string_view name : {"UID", "Name", ""}) {
        Error error;
        const auto text = fields.text(name, &error);
        EXPECT_FALSE(text);
        EXPECT_EQ(text.textOrEmpty(), "");
        EXPECT_EQ(error.code, MSPCXQueryNoMatch);
        EXPECT_EQ(fields.intValue(name), 0);
        EXPECT_EQ(fields.floatValue(name), 0.0);
        EXPECT_FALSE(fields.boolValue(name));
        EXPECT_FALSE(fields.singleObject(name));
        EXPECT_TRUE(fields.nodes(name).empty());
    }
}

TEST(MSPCFields, leaveTheErrorAloneWhereOneChildMatches) {
    const auto document = xmlDocument("<Task><UID>1</UID></Task>");
    Error error{MSPCGeneralErrorDomain, MSPCNotPortedXQuery, "from before"};
    EXPECT_EQ(MSPCFields(document.root()).intValue("UID", &error), 1);
    EXPECT_EQ(error.code, MSPCNotPortedXQuery);
}

TEST(MSPCFields, giveTextsThatMayBeMissing) {
    const auto document = xmlDocument("<Task><Empty/><Name>a</Name><Notes>a<![CDATA[b]]>c</Notes></Task>");
    const MSPCFields fields(document.root());
    const auto empty = fields.text("Empty");
    EXPECT_TRUE(empty);
    EXPECT_EQ(empty.textOrEmpty(), "");
    EXPECT_EQ(fields.text("Name").textOrEmpty(), "a");
    const auto notes = fields.text("Notes");
    const auto copy = notes;  // holds what was put together itself
    EXPECT_EQ(notes.textOrEmpty(), "abc");
    EXPECT_EQ(copy.textOrEmpty(), "abc");
    EXPECT_NE(copy.textOrEmpty().data(), notes.textOrEmpty().data());
    EXPECT_EQ(fields.text("Other").textOrEmpty(), "");
    EXPECT_FALSE(MSPCNodeText());
    EXPECT_EQ(MSPCNodeText().textOrEmpty(), "");
}

TEST(MSPCFields, ofNothingRaise) {
    EXPECT_RAISES(MSPCFields(MSPCXMLNode()), MSPCInternalInconsistency,
                  "Sent message singleObjectForXQuery:error: to an object which is not NSXMLNodeProxy.");
}

TEST(MSPCFields, raiseForTextsThatHoldNoNumber) {
    const auto document = xmlDocument("<Task><UID>abc</UID></Task>");
    const MSPCFields fields(document.root());
    EXPECT_RAISES(fields.intValue("UID"), MSPCInternalInconsistency,
                  "Failed to get int value from XML node: <UID>abc</UID>");
    EXPECT_RAISES(fields.floatValue("UID"), MSPCInternalInconsistency,
                  "Failed to get float value from XML node: <UID>abc</UID>");
    EXPECT_RAISES(fields.boolValue("UID"), MSPCInternalInconsistency,
                  "Failed to get boolean value from XML node: <UID>abc</UID>");
}

TEST(MSPCFields, answerAsTheQueriesDo) {
    constexpr int elements = 20'000;
    std::mt19937 random(3);
    for (int index = 0; index < elements && !testing::Test::HasFailure(); ++index) {
        const auto text = randomElement(random);
        const auto document = xmlDocument(text, index % 2 == 0 ? MSPCXMLContent::Everything : MSPCXMLContent::DataOnly);
        const auto element = document.root();
        const MSPCFields fields(element);
        for (const auto name : names) {
            EXPECT_EQ(fields.nodes(name), nodesForXQuery(element, name)) << text;
            EXPECT_EQ(fields.singleObject(name), singleObjectForXQuery(element, name)) << text;
            const auto last = fields.lastPosition(name);
            const bool isThere = last < fields.elements().size();
            EXPECT_EQ(isThere ? fields.elements()[last].element : MSPCXMLNode(), fields.singleObject(name)) << text;
            EXPECT_EQ(
                outcomeOf([&](Error* error) { return textOrNone(fields.text(name, error)); }),
                outcomeOf([&](Error* error) { return stringValueForXQuery(element, name, error).value_or("(none)"); }))
                << text;
            EXPECT_EQ(outcomeOf([&](Error* error) { return textOrNone(fields.text(name, error)); }),
                      outcomeOf([&](Error* error) { return textOrNone(textForXQuery(element, name, error)); }))
                << text;
            EXPECT_EQ(outcomeOf([&](Error* error) { return std::to_string(fields.intValue(name, error)); }),
                      outcomeOf([&](Error* error) { return std::to_string(intValueForXQuery(element, name, error)); }))
                << text;
            EXPECT_EQ(
                outcomeOf([&](Error* error) { return std::to_string(fields.floatValue(name, error)); }),
                outcomeOf([&](Error* error) { return std::to_string(floatValueForXQuery(element, name, error)); }))
                << text;
            EXPECT_EQ(outcomeOf([&](Error* error) { return std::to_string(fields.boolValue(name, error)); }),
                      outcomeOf([&](Error* error) { return std::to_string(boolValueForXQuery(element, name, error)); }))
                << text;
        }
    }
}

// Elements of a hostile plan have so many fields that names are looked up another way; the answers are the same.
TEST(MSPCFields, ofVeryManyFieldsTheLastOfAName) {
    std::string xml = "<Task><Name>first</Name>";
    for (int i = 0; i < 1000; ++i) {
        xml += "<n" + std::to_string(i) + ">" + std::to_string(i) + "</n" + std::to_string(i) + ">";
    }
    const auto document =
        MSPCXMLDocument::read(xml + "<Name>last</Name></Task>", {.content = MSPCXMLContent::DataOnly});
    ASSERT_TRUE(document);
    const MSPCFields fields(document->root());
    Error error;
    EXPECT_EQ(fields.intValue("n999", &error), 999);
    EXPECT_FALSE(error);
    EXPECT_EQ(fields.text("Name", &error).textOrEmpty(), "last");
    EXPECT_EQ(error.code, MSPCXQueryMoreThanOneMatch);
    EXPECT_FALSE(fields.text("n1000", &error));
    EXPECT_EQ(error.code, MSPCXQueryNoMatch);
    EXPECT_EQ(fields.nodes("Name").size(), 2U);
    EXPECT_EQ(fields.lastPosition("n0"), 1U);
    EXPECT_EQ(fields.lastPosition("Name"), 1001U);
    EXPECT_EQ(fields.lastPosition("n1000"), 1002U);
}

TEST(MSPCFieldsTest, tellsTheNamesThatAreAskedForAndMissing) {
    const auto document = xmlDocument("<Task><UID>1</UID><Name/></Task>");
    MSPCFields fields(document.root());
    std::vector<std::string_view> missing;
    static_cast<void>(fields.text("Start"));
    fields.tellMissing(missing);
    static_cast<void>(fields.intValue("UID"));
    static_cast<void>(fields.text("Name"));
    static_cast<void>(fields.boolValue("Summary"));
    static_cast<void>(fields.text("Start"));
    static_cast<void>(fields.floatValue("Summary"));
    EXPECT_EQ(missing, (std::vector<std::string_view>{"Summary", "Start", "Summary"}));
}
