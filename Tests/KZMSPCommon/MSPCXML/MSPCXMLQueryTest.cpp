#include "MSPCXMLQuery.h"

#include <gtest/gtest.h>

#include <random>

#include "XMLText.h"

namespace {

// The markup of all matches in one text; "(malformed)" for a query that is none.
std::string answer(const MSPCXMLNode& node, std::string_view query) {
    const auto nodes = node.nodesForXPath(query);
    if (!nodes) {
        return "(malformed)";
    }
    std::string text;
    for (const auto& match : *nodes) {
        text += match.markup() + ";";
    }
    return text;
}

TEST(MSPCXMLQuery, selectsInDocumentOrder) {
    const auto document = xmlDocument("<p><t i='1'><u>12</u></t><t i='2'><u> 12 </u></t><t i='3'><u>012</u></t></p>");
    struct Case {
        std::string_view query;
        std::string_view answer;
    };
    constexpr Case cases[] = {
        {"t/@i", "i=\"1\";i=\"2\";i=\"3\";"},
        {"t[u=12]/@i", "i=\"1\";i=\"2\";i=\"3\";"},
        {"t[u='12']/@i", "i=\"1\";"},
        {"t[last()]/u", "<u>012</u>;"},
        {"t[3]/u | t[1]/u", "<u>12</u>;<u>012</u>;"},
        {"t[3]/preceding-sibling::t/@i", "i=\"1\";i=\"2\";"},
        {"/p/t[2]/@i", "i=\"2\";"},
        {"//u[.='12']", "<u>12</u>;"},
        {"none", ""},
        {"t/u/none", ""},
    };
    for (const auto& [query, expected] : cases) {
        EXPECT_EQ(answer(document.root(), query), expected) << query;
    }
}

TEST(MSPCXMLQuery, aMalformedQueryAndOneThatSelectsNoNodesGiveNone) {
    const auto document = xmlDocument("<p><t/></p>");
    for (const std::string_view query : {"t[", "", "t//", "/t/", "count(t)", "'text'", "t/", "$variable", "1t"}) {
        EXPECT_EQ(answer(document.root(), query), "(malformed)") << query;
        EXPECT_EQ(answer(document.root(), query), "(malformed)") << query << ", asked again";
    }
}

TEST(MSPCXMLQuery, runsFromAttributesAndDocumentsToo) {
    const auto document = xmlDocument("<p><t i='1'/></p>");
    const auto attribute = document.root().firstChild().attribute("i");
    EXPECT_EQ(answer(attribute, ".."), "<t i=\"1\"/>;");
    EXPECT_EQ(answer(attribute, "t"), "");
    EXPECT_EQ(answer(document.root().parent(), "p/t"), "<t i=\"1\"/>;");
    EXPECT_EQ(answer(document.root().parent(), "*"), "<p><t i=\"1\"/></p>;");
}

TEST(MSPCXMLQuery, freeElementsAreFoundFromNowhereOutside) {
    const auto document = xmlDocument("<p><t><FromDate>in</FromDate></t><u k='1'/></p>");
    auto root = document.root();
    const auto free = root.newElement("t");
    free.node().appendElement("FromDate").setStringValue("out");
    const auto attribute = root.lastChild().attribute("k");
    struct Case {
        MSPCXMLNode node;
        std::string_view query;
        std::string_view answer;
    };
    const Case cases[] = {
        {root, "//FromDate", "<FromDate>in</FromDate>;"},
        {root, "/descendant::FromDate", "<FromDate>in</FromDate>;"},
        {root, "(//FromDate)[last()]", "<FromDate>in</FromDate>;"},
        {root, "following::FromDate", ""},
        {root, "preceding::FromDate", ""},
        {root, "u/preceding::FromDate", "<FromDate>in</FromDate>;"},
        {root, "../*/u", "<u k=\"1\"/>;"},
        {root, "/*/*[2]/@k", "k=\"1\";"},
        {root, "u[1 and//t]", "<u k=\"1\"/>;"},
        {root.parent(), "*/u", "<u k=\"1\"/>;"},
        {root.parent(), ".//FromDate", "<FromDate>in</FromDate>;"},
        {attribute, "../../t/FromDate", "<FromDate>in</FromDate>;"},
    };
    for (const auto& [node, query, expected] : cases) {
        EXPECT_EQ(answer(node, query), expected) << query;
    }
}

TEST(MSPCXMLQuery, fromAFreeElementOnlyItsInsideIsFound) {
    const auto document = xmlDocument("<p><t><d>in</d></t></p>");
    const auto free = document.root().newElement("f");
    const auto sibling = document.root().newElement("g");
    free.node().appendElement("d").setStringValue("out");
    EXPECT_EQ(answer(free.node(), "d"), "<d>out</d>;");
    EXPECT_EQ(answer(free.node(), "//d"), "<d>out</d>;");
    EXPECT_EQ(answer(free.node(), ".."), "");
    EXPECT_EQ(answer(free.node(), "ancestor::*"), "");
    EXPECT_EQ(answer(free.node(), "following-sibling::*"), "");
    EXPECT_EQ(answer(free.node().firstChild(), ".."), "<f><d>out</d></f>;");
    EXPECT_EQ(answer(free.node().firstChild(), "ancestor::*"), "<f><d>out</d></f>;");
}

TEST(MSPCXMLQuery, matchesBesideFreeElementsAreTheNodesThemselves) {
    const auto document = xmlDocument("<p><t/><t i='1'/></p>");
    const auto free = document.root().newElement("t");
    const auto nodes = document.root().nodesForXPath("//t");
    ASSERT_TRUE(nodes && nodes->size() == 2);
    EXPECT_EQ((*nodes)[0], document.root().firstChild());
    EXPECT_EQ((*nodes)[1], document.root().lastChild());
    const auto attributes = document.root().nodesForXPath("//@i");
    ASSERT_TRUE(attributes && attributes->size() == 1);
    EXPECT_EQ((*attributes)[0], document.root().lastChild().attribute("i"));
}

TEST(MSPCXMLQuery, textsWithIdsInThemAreAnsweredHoweverManyThereAre) {
    const auto document = xmlDocument("<p><t>7</t><t>1999</t></p>");
    for (int id = 0; id < 2000; ++id) {
        const auto expected = id == 7 ? "<t>7</t>;" : id == 1999 ? "<t>1999</t>;" : "";
        EXPECT_EQ(answer(document.root(), "t[.=" + std::to_string(id) + "]"), expected);
    }
}

TEST(MSPCXMLQuery, recognisesPlainChildPaths) {
    for (const std::string_view path : {"a", "Tasks/Task", "_a-1.b/c", "div", "a/mod"}) {
        EXPECT_TRUE(isPlainChildPath(path)) << path;
    }
    for (const std::string_view path : {"", "/a", "a/", "a//b", ".", "..", "a/..", "1a", "a b", "a/-b", "@a", "*",
                                        "p:a", "a[1]", "text()", "\xC3\xA4"}) {
        EXPECT_FALSE(isPlainChildPath(path)) << path;
    }
}

// A tree of the names a, b and c, some of them names of processing instructions, with text and comments in between.
std::string randomTree(std::mt19937& random, int depth) {
    const auto pick = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    std::string text;
    for (int child = pick(5); child > 0; --child) {
        const std::string name(1, static_cast<char>('a' + pick(3)));
        switch (pick(depth > 0 ? 6 : 3)) {
            case 0:
                text += "<?" + name + " x?>";
                break;
            case 1:
                text += "text";
                break;
            case 2:
                text += "<!--" + name + "-->";
                break;
            default:
                text += "<" + name + ">" + randomTree(random, depth - 1) + "</" + name + ">";
        }
    }
    return text;
}

TEST(MSPCXMLQuery, plainPathsGiveWhatTheEngineGives) {
    std::mt19937 random(20120110);
    std::size_t matches = 0;
    for (int round = 0; round < 2000; ++round) {
        const auto content = round % 2 == 0 ? MSPCXMLContent::Everything : MSPCXMLContent::DataOnly;
        const auto document = xmlDocument("<a>" + randomTree(random, 4) + "</a>", content);
        for (const std::string path : {"a", "b", "c", "a/b", "b/a/c", "c/c", "a/a/a/a", "none", "a/none"}) {
            ASSERT_TRUE(isPlainChildPath(path));
            std::string explicitPath = "child::" + path;
            for (auto slash = explicitPath.find('/'); slash != std::string::npos;
                 slash = explicitPath.find('/', slash + 1)) {
                explicitPath.insert(slash + 1, "child::");
            }
            ASSERT_FALSE(isPlainChildPath(explicitPath));
            const auto walked = document.root().nodesForXPath(path);
            ASSERT_EQ(walked, document.root().nodesForXPath(explicitPath)) << path << " in " << document.serialized();
            matches += walked->size();
        }
    }
    EXPECT_GT(matches, 1000U);
}

}  // namespace
