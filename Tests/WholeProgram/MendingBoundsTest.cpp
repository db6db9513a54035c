#include <sstream>

#include "AttackBounds.h"
#include "BundleMask.h"

// What a mending parser compares, copies or looks for once more with each of its kind would take the square of a plan's
// size; what a document type declares once would count for each element.

namespace {

constexpr int Many = 1'000'000;
constexpr std::string_view Refusal = "Failed to build XML DOM from source data.";

// A piece of markup so many times, with a new number in the place of each "#".
struct Repeated {
    std::string_view markup;
    int times = 1;
};

void write(std::ostream& file, const std::vector<Repeated>& pieces) {
    for (const auto& [markup, times] : pieces) {
        const auto at = markup.find('#');
        for (int i = 0; i < times; ++i) {
            if (at == std::string_view::npos) {
                file << markup;
            } else {
                file << markup.substr(0, at) << i << markup.substr(at + 1);
            }
        }
    }
}

std::string textOf(const std::vector<Repeated>& pieces) {
    std::ostringstream stream;
    write(stream, pieces);
    return stream.str();
}

std::string planWithDeclarations(const std::string& declarations, const std::string& content) {
    return planOf({content, "", "<!DOCTYPE Project [" + declarations + "]>"});
}

}  // namespace

TEST(MendingBounds, timeGrowsWithTheSizeOfABrokenPlan) {
    struct Case {
        std::string_view name;
        std::vector<Repeated> markup;
        bool isMended;
    };
    const auto manyTags = textOf({{"<a"}, {" a#=\"\"", 900}, {"/>"}});
    const Case cases[] = {
        {"attributes of one tag", {{"&<a"}, {" a#=\"\"", Many}, {"/>"}}, false},
        {"attributes of many tags", {{"&"}, {manyTags, 500}}, true},
        {"open namespaces", {{"&"}, {"<a xmlns:b=\"c\">", Many / 5}}, false},
        {"prefixes declared far outside",
         {{"&<a xmlns:x=\"a\" xmlns:y=\"b\">"}, {"<x:a>", Many / 5}, {"<y:b y:c=\"\"/>", Many / 5}},
         true},
        {"hyphens in a comment", {{"&<!--"}, {"--x", Many}, {"-->"}}, true},
        {"comments without end", {{"<!--", Many}}, true},
        {"sections without end", {{"<![CDATA[", Many}}, true},
        {"tags without end", {{"<a b=\"", Many}}, true},
        {"end tags in a long name", {{"<"}, {"n", Many}, {">"}, {"</b>", Many}}, false},
        {"end tags of nothing", {{"</b>", Many}}, true},
        {"bare ampersands", {{"&", 5 * Many}}, true},
        {"elements of many names", {{"&"}, {"<a#/>", Many}}, false},
        {"prefixes of many names", {{"&"}, {"<a#:x/>", Many}}, false},
        {"attributes of many names", {{"&"}, {"<a b#=\"\"/>", Many}}, false},
        {"namespaces of many names", {{"&"}, {"<a xmlns:b#=\"c#\"/>", Many}}, false},
        {"instructions of many names", {{"&"}, {"<?a# ?>", Many}}, false},
        {"unfinished tags of many names", {{"&"}, {"<a# ", Many}}, false},
    };
    for (const auto& [name, markup, isMended] : cases) {
        SCOPED_TRACE(name);
        const PlanImport import("broken",
                                planEndingWith([&pieces = markup](std::ostream& file) { write(file, pieces); }));
        EXPECT_EQ(import.status(), isMended ? 0 : 1);
        EXPECT_TRUE(import.logHolds(isMended ? "WARNING: Repaired malformed XML in '" : Refusal))
            << import.log().substr(0, 2000);
        EXPECT_EQ(import.complaints(), "");
        expectWithin(import, 5, 600);
    }
}

// What looks like a monstrous tag in a comment or CDATA section is text, as far as the parser agrees where that ends.
TEST(MendingBounds, textInSectionsIsNoTag) {
    const auto longName = "<" + std::string(1'100, 'x');
    const auto manyQuotes = textOf({{"<b "}, {"\"q\" ", 1'001}});
    struct Case {
        std::string_view name;
        std::string content;
        bool isMended;
    };
    const Case cases[] = {
        {"a long name in a CDATA section", "&<Notes><![CDATA[a " + longName + "]]></Notes>", true},
        {"a long name in a comment", "&<!-- " + longName + " -->", true},
        {"quoted words in a CDATA section", "&<Notes><![CDATA[" + manyQuotes + "]]></Notes>", true},
        {"behind a forbidden character", "&<Notes><![CDATA[\xEF\xBF\xBE" + manyQuotes + "/>]]></Notes>", false},
        {"in an instruction without a name", "&<? " + manyQuotes + "/> ?>", false},
        {"in a comment without an end", "&<!-- " + manyQuotes + "/>", false},
        {"in the content", "&" + manyQuotes + "/>", false},
    };
    for (const auto& [name, content, isMended] : cases) {
        SCOPED_TRACE(name);
        const PlanImport import("sections", planOf({content, "", ""}));
        EXPECT_EQ(import.status(), isMended ? 0 : 1);
        EXPECT_TRUE(import.logHolds(isMended ? "WARNING: Repaired malformed XML in '" : Refusal)) << import.log();
        EXPECT_EQ(import.complaints(), "");
    }
}

TEST(MendingBounds, hyphensInACommentBeforeTheRootAreMended) {
    const PlanImport import("prolog", planOf({"<Title>a & b</Title>", "", textOf({{"<!--"}, {"--x", Many}, {"-->"}})}));
    EXPECT_EQ(import.texts("title", "__TOC.xml"), std::vector<std::string>{"a & b"}) << import.log();
    expectWithin(import, 5, 200);
}

TEST(MendingBounds, attributesThatADocumentTypeGivesToElementsDoNotMultiply) {
    const auto declarations = textOf({{"<!ATTLIST a "}, {"a# CDATA 'x' ", 500}, {">"}});
    const auto elements = textOf({{"<Title>"}, {"<a/>", Many / 5}, {"</Title>"}});
    const PlanImport import("attributes", planWithDeclarations(declarations, elements));
    EXPECT_EQ(import.status(), 0) << import.log();
    expectWithin(import, 2, 100);
}

TEST(MendingBounds, manyDeclarationsAreRefused) {
    for (const std::string_view declaration : {"<!ENTITY e# ''>", "<!ATTLIST a# b CDATA 'x'>"}) {
        const PlanImport import("declarations", planWithDeclarations(textOf({{declaration, Many / 5}}), ""));
        EXPECT_EQ(import.status(), 1) << declaration;
        EXPECT_TRUE(import.logHolds(Refusal)) << import.log();
        expectWithin(import, 2, 100);
    }
}

TEST(MendingBounds, theRootMayHaveItsNamespaceFromTheDocumentType) {
    auto plan = planWithDeclarations("<!ATTLIST Project xmlns CDATA #FIXED 'http://schemas.microsoft.com/project'>",
                                     "<Tasks>" + taskElement("1", "<Name>a</Name>") + "</Tasks>");
    replaceAll(plan, "<Project xmlns=\"http://schemas.microsoft.com/project\">", "<Project>");
    const PlanImport import("namespace", plan);
    EXPECT_EQ(import.texts("title"), std::vector<std::string>{"a"}) << import.log();
}

TEST(MendingBounds, timeGrowsWithTheTextThatEntitiesMake) {
    struct Case {
        std::string_view name;
        std::string_view value;
        std::string_view piece;
        std::string_view text;
    };
    constexpr Case cases[] = {
        {"an entity", "x", "&e;", "x"},
        {"an entity beside text", "x", "y&e;", "yx"},
        {"an entity that holds a reference", "x&#38;amp;", "y&e;", "yx&"},
        {"an entity that holds an entity", "x&f;", "y&e;", "yxz"},
    };
    for (const auto& [name, value, piece, text] : cases) {
        SCOPED_TRACE(name);
        const auto plan = planWithDeclarations(
            "<!ENTITY f 'z'><!ENTITY e '" + std::string(value) + "'>",
            "<Tasks>" + taskElement("1", "<Name>" + textOf({{piece, Many}}) + "</Name>") + "</Tasks>");
        const PlanImport import("text-of-entities", plan);
        EXPECT_EQ(import.status(), 0) << import.log().substr(0, 2000);
        EXPECT_TRUE(import.texts("title") == std::vector<std::string>{textOf({{text, Many}})});
        expectWithin(import, 5, static_cast<long>(16 + 64 * plan.size() / 1024 / 1024));
    }
}

TEST(MendingBounds, entitiesMakeTenMegabytesAtMostOfASmallPlan) {
    for (const std::string& piece : {std::string(900, 'x'), textOf({{"<b/>", 225}})}) {
        const auto planWith = [&piece](int references) {
            return planWithDeclarations("<!ENTITY e '" + piece + "'>", "<X>" + textOf({{"&e;", references}}) + "</X>");
        };
        const PlanImport inside("entities", planWith(9'000));
        EXPECT_EQ(inside.status(), 0) << inside.log();
        expectWithin(inside, 3, 16 + 64 * 8);
        const PlanImport beyond("entities", planWith(12'000));
        EXPECT_EQ(beyond.status(), 1);
        EXPECT_TRUE(beyond.logHolds(Refusal)) << beyond.log();
        expectWithin(beyond, 3, 16 + 64 * 10);
    }
}

TEST(MendingBounds, memoryGrowsWithWhatEntitiesMake) {
    const std::string elements = "<b/><b/><b/><b/><b/><b/><b/>";
    constexpr int references = 100'000;
    const PlanImport import("elements", planWithDeclarations("<!ENTITY e '" + elements + "'>",
                                                             "<X>" + textOf({{"&e;", references}}) + "</X>"));
    EXPECT_EQ(import.status(), 0) << import.log();
    expectWithin(import, 3, static_cast<long>(16 + 64 * elements.size() * references / 1024 / 1024));
}
