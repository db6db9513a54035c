#include <gtest/gtest.h>

#include "PlanImport.h"

// Plans that are no XML: mended with a warning where a `Project` can be seen in them, refused otherwise. No crash, and
// no bundle that a strict parser would refuse.

namespace fs = std::filesystem;

namespace {

const std::string Refusal = "MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.";

std::string planWithName(const std::string& name) {
    return planOf({"<Tasks>" + taskElement("1", "<Name>" + name + "</Name>") + "</Tasks>", "", ""});
}

}  // namespace

TEST(BrokenMarkup, aPlanCutOffAnywhereEndsWithOneVerdict) {
    const auto plan = bytesOf(fs::path(KZMSP_SOURCE) / "examples" / "OfficeMove2003.xml");
    int mended = 0;
    for (std::size_t size = 0; size < plan.size(); size += 1000) {
        const PlanImport import("cut-off", std::string_view(plan).substr(0, size));
        EXPECT_EQ(import.result().signal, 0) << size;
        EXPECT_EQ(import.complaints(), "") << size;
        if (import.status() == 0) {
            EXPECT_TRUE(import.logHolds("WARNING: Repaired malformed XML in '")) << size;
            EXPECT_TRUE(import.logHolds("### Importer SUCCEEDED.")) << size;
            ++mended;
        } else {
            EXPECT_EQ(import.status(), 1) << size;
            EXPECT_TRUE(import.logHolds("Exception: ")) << size;
            EXPECT_TRUE(import.logHolds("### Importer FAILED.")) << size;
        }
    }
    EXPECT_GT(mended, 0);
}

TEST(BrokenMarkup, whatCanBeMendedIsMendedWithAWarning) {
    struct Case {
        const char* name;
        const char* title;
    };
    constexpr Case cases[] = {
        {"a & b", "a & b"},
        {"a &amp b", "a &amp b"},
        {"&unknown;", "&unknown;"},
        {"a<b>c</Name", "a"},
    };
    for (const auto& [name, title] : cases) {
        const PlanImport import("mended", planWithName(name));
        EXPECT_EQ(import.status(), 0) << name << import.log();
        EXPECT_TRUE(import.logHolds("WARNING: Repaired malformed XML in '")) << name << import.log();
        ASSERT_EQ(import.texts("title").size(), 1U) << name;
        EXPECT_EQ(import.texts("title").front().substr(0, std::string_view(title).size()), title) << name;
    }
}

TEST(BrokenMarkup, mismatchedTagsAreMendedWithAWarning) {
    for (const std::string name : {"a</b>c", "a</Name></b><Name>d", "<i>a<b>c</i></b>"}) {
        const PlanImport import("mismatched", planWithName(name));
        EXPECT_EQ(import.status(), 0) << name << import.log();
        EXPECT_EQ(import.complaints(), "") << name;
        EXPECT_TRUE(import.logHolds("WARNING: Repaired malformed XML in '")) << name << import.log();
    }
}

TEST(BrokenMarkup, controlCharactersAreReplacedWithAWarning) {
    const PlanImport import("control-characters", planWithName("a\x01\x1F\x7F"
                                                               "b"));
    EXPECT_EQ(import.status(), 0);
    EXPECT_EQ(import.texts("title"), std::vector<std::string>{"a\xEF\xBF\xBD\xEF\xBF\xBD\x7F"
                                                              "b"});
    EXPECT_TRUE(import.logHolds("WARNING: Replaced 2 characters that XML cannot hold in '")) << import.log();
}

TEST(BrokenMarkup, referencesToForbiddenCharactersAreReplacedWithAWarning) {
    for (const std::string reference : {"&#0;", "&#1;", "&#xD800;", "&#xFFFE;", "&#x110000;", "&#99999999999999;"}) {
        const PlanImport import("forbidden-reference", planWithName("a" + reference + "b"));
        EXPECT_EQ(import.status(), 0) << reference;
        EXPECT_EQ(import.texts("title"), std::vector<std::string>{"a\xEF\xBF\xBD"
                                                                  "b"})
            << reference;
        EXPECT_TRUE(import.logHolds("WARNING: ")) << reference << import.log();
    }
}

TEST(BrokenMarkup, whatHoldsNoProjectIsRefused) {
    for (const std::string_view plan :
         {"", " ", "plain text", "<", "<Project", "<Other/>", "<Project/><Project/>", "{\"Project\": 1}", "\xFF\xFE",
          "<!DOCTYPE Project>", "<?xml version=\"1.0\"?>"}) {
        const PlanImport import("refused", plan);
        EXPECT_EQ(import.status(), 1) << plan;
        EXPECT_TRUE(import.logHolds("Exception: ")) << plan;
        EXPECT_EQ(import.complaints(), "") << plan;
    }
    const PlanImport empty("refused-empty", std::string_view());
    EXPECT_TRUE(empty.logHolds(Refusal)) << empty.log();
}

TEST(BrokenMarkup, zeroBytesAreNoCharacters) {
    const PlanImport inside("zero-inside", planWithName(std::string("a\0b", 3)));
    EXPECT_EQ(inside.status(), 0) << inside.log();
    EXPECT_EQ(inside.texts("title"), std::vector<std::string>{"a\xEF\xBF\xBD"
                                                              "b"});
    const PlanImport behind("zeros-behind", planWithName("a") + std::string(100, '\0'));
    EXPECT_EQ(behind.status(), 0) << behind.log();
    EXPECT_EQ(behind.texts("title"), std::vector<std::string>{"a"});
    const PlanImport between(
        "zero-between",
        planOf({"<Tasks>" + std::string(1, '\0') + taskElement("1", "<Name>a</Name>") + "</Tasks>", "", ""}));
    EXPECT_EQ(between.texts("title"), std::vector<std::string>{"a"});
    for (const auto* const import : {&inside, &between}) {
        EXPECT_TRUE(import->logHolds("WARNING: Repaired malformed XML in '")) << import->log();
        EXPECT_EQ(import->complaints(), "");
    }
    const PlanImport alone("zeros-alone", std::string(1000, '\0'));
    EXPECT_EQ(alone.status(), 1);
    EXPECT_TRUE(alone.logHolds(Refusal)) << alone.log();
}
