#include "MSPCXPathNumber.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>

#include "MappingFixture.h"

namespace {

struct NumberCase {
    std::string text;
    std::optional<double> number;
};

TEST(MSPCXPathNumber, ReadsWhatXPathCallsANumber) {
    const NumberCase cases[] = {
        {"0", 0},         {"12", 12},
        {" 12 ", 12},     {"012", 12},
        {"\t\r\n7\n", 7}, {"-3", -3},
        {"1.5", 1.5},     {"5.", 5},
        {".5", 0.5},      {"-.25", -0.25},
        {"-0", 0},        {"10.0", 10},
        {"0000", 0},      {"4294967296", 4294967296.0},
    };
    for (const auto& [text, number] : cases) {
        EXPECT_EQ(xpathNumber(text), number) << "'" << text << "'";
    }
}

TEST(MSPCXPathNumber, FindsNoNumberInAnythingElse) {
    for (const std::string text : {"",
                                   " ",
                                   "12h",
                                   "+12",
                                   "1e3",
                                   "0x10",
                                   "- 1",
                                   "1 2",
                                   ".",
                                   "-",
                                   "-.",
                                   "1.2.3",
                                   "--1",
                                   "1-",
                                   "inf",
                                   "nan",
                                   "NaN",
                                   "Infinity",
                                   "\v1",
                                   "1,5",
                                   "\xC2\xA0"
                                   "1"}) {
        EXPECT_EQ(xpathNumber(text), std::nullopt) << "'" << text << "'";
    }
}

TEST(MSPCXPathNumber, RoundsNumbersTooSmallForADoubleToZero) {
    EXPECT_EQ(xpathNumber("0." + std::string(400, '0') + "1"), 0.0);
    EXPECT_EQ(xpathNumber("-." + std::string(400, '0') + "1"), 0.0);
}

TEST(MSPCXPathNumber, HasNoneForNumbersTooLargeForADouble) {
    EXPECT_EQ(xpathNumber(std::string(400, '9')), std::nullopt);
    EXPECT_EQ(xpathNumber("-" + std::string(400, '9') + ".5"), std::nullopt);
}

struct ChildCase {
    std::string content;
    std::int64_t number;
    bool isThere;
};

TEST(MSPCXPathNumber, FindsAChildByItsNumber) {
    const ChildCase cases[] = {
        {"<Number>3</Number>", 3, true},
        {"<Number>3</Number>", 0, false},
        {"<Number> 03.0 </Number>", 3, true},
        {"<Number>1</Number><Number>3</Number>", 3, true},
        {"<Number>1</Number><Number>3</Number>", 1, true},
        {"<Number/>", 0, false},
        {"", 0, false},
        {"<Other>3</Other>", 3, false},
        {"<Number>1<!--x--><![CDATA[0]]></Number>", 10, true},
        {"<Inner><Number>3</Number></Inner>", 3, false},
    };
    for (const auto& [content, number, isThere] : cases) {
        const auto document = documentFromXML("<Baseline>" + content + "</Baseline>");
        EXPECT_EQ(hasChildWithNumber(document.root(), "Number", number), isThere) << content << " " << number;
    }
}

// Texts that look like numbers, some of them cut into pieces by comments and CDATA sections.
std::string randomNumberMarkup(std::mt19937& random) {
    constexpr std::string_view alphabet = "00112345678910..-- \n\te+h";
    std::string markup;
    for (auto length = random() % 7; length > 0; --length) {
        const auto character = alphabet[random() % alphabet.size()];
        switch (random() % 12) {
            case 0:
                markup += std::string("<![CDATA[") + character + "]]>";
                break;
            case 1:
                markup += std::string("<!--1-->") + character;
                break;
            default:
                markup += character;
        }
    }
    return markup;
}

std::set<std::size_t> positionsOf(const MSPCXMLNode& root, const std::string& query) {
    std::set<std::size_t> positions;
    const auto nodes = root.nodesForXPath(query);
    for (const auto& node : nodes.value()) {
        positions.insert(std::stoul(node.attribute("at").stringValue()));
    }
    return positions;
}

TEST(MSPCXPathNumber, AnswersAsTheXPathEngineOnGeneratedTexts) {
    std::mt19937 random(20120110);
    std::string markup;
    for (std::size_t at = 0; at < 20000; ++at) {
        markup += "<a at=\"" + std::to_string(at) + "\"><n>" + randomNumberMarkup(random) + "</n>";
        markup += random() % 4 == 0 ? "<n>" + randomNumberMarkup(random) + "</n></a>" : "</a>";
    }
    const auto document = documentFromXML("<r>" + markup + "</r>", MSPCXMLContent::Everything);
    const auto root = document.root();
    // The functions keep the query out of reach of any look-up that is not the engine's own.
    for (int number = -2; number <= 12; ++number) {
        std::set<std::size_t> found;
        for (auto node = root.firstChildElement("a"); node; node = node.nextSiblingElement("a")) {
            if (hasChildWithNumber(node, "n", number)) {
                found.insert(std::stoul(node.attribute("at").stringValue()));
            }
        }
        EXPECT_EQ(found, positionsOf(root, "a[boolean(n=" + std::to_string(number) + ") or false()]")) << number;
        EXPECT_EQ(number < -1 || number > 10 || !found.empty(), true) << number << " was never generated";
    }
    std::set<std::size_t> numbers;
    for (auto node = root.firstChildElement("a"); node; node = node.nextSiblingElement("a")) {
        if (xpathNumber(node.firstChildElement("n").stringValue())) {
            numbers.insert(std::stoul(node.attribute("at").stringValue()));
        }
    }
    EXPECT_EQ(numbers, positionsOf(root, "a[number(n[1])=number(n[1])]"));
}

}  // namespace
