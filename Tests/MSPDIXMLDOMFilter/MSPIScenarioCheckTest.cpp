#include "MSPIScenarioCheck.h"

#include <gtest/gtest.h>

#include <string>

#include "MSPCXMLDocument.h"

namespace {

constexpr std::string_view kdzxNamespace = "urn:kadenza:document:2";

// A scenario that passes; each test says what it changes.
std::string validScenario() {
    return R"(<scenario xmlns="urn:kadenza:document:2" id="aScenarioId"><top-resource idref="r-1"/>)"
           R"(<resource id="r-1"><type>Group</type></resource><resource id="r1"/><top-task idref="t-1"/>)"
           R"(<task id="t-1"><type>group</type></task><task id="t1"/></scenario>)";
}

std::string with(const std::string& piece, const std::string& replacement) {
    auto text = validScenario();
    const auto position = text.find(piece);
    EXPECT_NE(position, std::string::npos) << piece;
    return text.replace(position, piece.size(), replacement);
}

bool passes(const std::string& text) {
    const auto document = MSPCXMLDocument::read(text);
    EXPECT_TRUE(document) << text;
    return document && MSPIScenarioCheck(*document, kdzxNamespace);
}

}  // namespace

TEST(MSPIScenarioCheck, aScenarioWithItsFramePasses) {
    EXPECT_TRUE(passes(validScenario()));
}

TEST(MSPIScenarioCheck, aDocumentWithoutRootFails) {
    EXPECT_FALSE(MSPIScenarioCheck(MSPCXMLDocument(), kdzxNamespace));
}

TEST(MSPIScenarioCheck, everyMissingPartFails) {
    const struct {
        const char* piece;
        const char* replacement;
    } table[] = {
        {R"( id="aScenarioId")", ""},
        {R"(id="aScenarioId")", R"(id="")"},
        {R"(<top-resource idref="r-1"/>)", ""},
        {R"(<top-resource idref="r-1"/>)", R"(<top-resource idref="r1"/>)"},
        {R"(<top-resource idref="r-1"/>)", "<top-resource/>"},
        {R"(<resource id="r-1"><type>Group</type></resource>)", ""},
        {R"(<resource id="r-1">)", "<resource>"},
        {"<type>Group</type>", ""},
        {R"(<top-task idref="t-1"/>)", ""},
        {R"(<top-task idref="t-1"/>)", R"(<top-task idref="t1"/>)"},
        {R"(<task id="t-1"><type>group</type></task>)", ""},
        {R"(<task id="t-1">)", "<task>"},
        {"<type>group</type>", ""},
    };
    for (const auto& row : table) {
        EXPECT_FALSE(passes(with(row.piece, row.replacement))) << row.piece << " -> " << row.replacement;
    }
}

TEST(MSPIScenarioCheck, anotherRootFails) {
    EXPECT_FALSE(passes(R"(<Scenario xmlns="urn:kadenza:document:2" id="a"/>)"));
}

TEST(MSPIScenarioCheck, theTwoGroupTypesAreSpeltDifferently) {
    EXPECT_FALSE(passes(with("<type>Group</type>", "<type>group</type>")));
    EXPECT_FALSE(passes(with("<type>group</type>", "<type>Group</type>")));
}

TEST(MSPIScenarioCheck, exactlyOneNamespaceIsDeclared) {
    EXPECT_FALSE(passes(with(R"( xmlns="urn:kadenza:document:2")", "")));
    EXPECT_FALSE(passes(with(R"( id="aScenarioId")", R"( xmlns:x="urn:x" id="aScenarioId")")));
}

TEST(MSPIScenarioCheck, theNamespaceIsComparedWithAWholeDeclaration_soAnyUriPasses) {
    EXPECT_TRUE(passes(with("urn:kadenza:document:2", "urn:something:else")));
    EXPECT_FALSE(passes(with("urn:kadenza:document:2", "xmlns=&quot;urn:kadenza:document:2&quot;")));
}
