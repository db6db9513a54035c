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
    };
    for (const auto& [name, markup, isMended] : cases) {
        SCOPED_TRACE(name);
        const PlanImport import("broken", planEndingWith([&pieces = markup](std::ostream& file) {
                                    write(file, pieces);
                                }));
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
