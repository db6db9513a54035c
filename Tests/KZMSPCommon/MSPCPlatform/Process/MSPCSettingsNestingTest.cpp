#include "MSPCSettingsNesting.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// The deepest level of a text, as the smallest limit that it keeps.
std::size_t levelsOf(std::string_view toml) {
    std::size_t limit = 0;
    while (MSPCLineNestedDeeperThan(limit, toml)) {
        ++limit;
    }
    return limit;
}

std::string repeated(std::string_view piece, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}

}  // namespace

TEST(MSPCSettingsNesting, settingsAreNotNested) {
    EXPECT_EQ(levelsOf(""), 0U);
    EXPECT_EQ(levelsOf("IncludeInputExtension = true\nOverwriteFilterTarget = false\n"), 0U);
}

TEST(MSPCSettingsNesting, countsArraysInlineTablesHeadersAndDottedKeys) {
    EXPECT_EQ(levelsOf("a = []"), 1U);
    EXPECT_EQ(levelsOf("a = [[], [[]]]"), 3U);
    EXPECT_EQ(levelsOf("a = {b = {c = 1}, d = 2}"), 2U);
    EXPECT_EQ(levelsOf("a = [{b = [{}]}]"), 4U);
    EXPECT_EQ(levelsOf("a.b.c = 1"), 2U);
    EXPECT_EQ(levelsOf("a . b\t.c = 1"), 2U);
    EXPECT_EQ(levelsOf("\"a\".'b'.c = 1"), 2U);
    EXPECT_EQ(levelsOf("[a]\nb = 1"), 1U);
    EXPECT_EQ(levelsOf("[a.b.c]\n"), 3U);
    EXPECT_EQ(levelsOf("[[a]]\n"), 2U);
    EXPECT_EQ(levelsOf("[a.b]\nc.d = {e.f = [1]}"), 6U);
}

TEST(MSPCSettingsNesting, beginsAnewWhereSomethingEnds) {
    EXPECT_EQ(levelsOf("a.b = 1\nc.d = 1\ne.f = 1"), 1U);
    EXPECT_EQ(levelsOf("[a.b]\n[c.d]\n[e.f]"), 2U);
    EXPECT_EQ(levelsOf("a = [1, 2]\nb = [3]\n" + repeated("c = [[]]\n", 100)), 2U);
    EXPECT_EQ(levelsOf("a = {b.c = 1, d.e = 2, f.g = 3}"), 2U);
    EXPECT_EQ(levelsOf("a = [" + repeated("[1], ", 100) + "]"), 2U);
    EXPECT_EQ(levelsOf("a = [\n1,\n[\n2\n],\n]\nb.c = 1"), 2U);
}

TEST(MSPCSettingsNesting, dotsOfNumbersAndTimesAreNoLevels) {
    EXPECT_EQ(levelsOf("a = 1.5"), 0U);
    EXPECT_EQ(levelsOf("a = [" + repeated("1.5, ", 100) + "2.5]"), 1U);
    EXPECT_EQ(levelsOf("a = {b = 1.5, c = 07:32:00.999}"), 1U);
}

TEST(MSPCSettingsNesting, textsAndCommentsAreNoLevels) {
    const auto brackets = repeated("[{.", 100);
    EXPECT_EQ(levelsOf("# " + brackets + "\na = true # " + brackets), 0U);
    EXPECT_EQ(levelsOf("a = \"" + brackets + "\""), 0U);
    EXPECT_EQ(levelsOf("a = '" + brackets + "'"), 0U);
    EXPECT_EQ(levelsOf("\"" + brackets + "\" = 1"), 0U);
    EXPECT_EQ(levelsOf("a = \"\\\"" + brackets + "\\\\\"\nb = []"), 1U);
    EXPECT_EQ(levelsOf("a = '\\'\nb = []"), 1U) << "no escapes here";
    EXPECT_EQ(levelsOf("a = \"\"\"\n" + brackets + "\n\"\" \\\"\"\"\" # \"\n" + "b = []"), 1U);
    EXPECT_EQ(levelsOf("a = '''\n" + brackets + "\n'' '''\nb = []"), 1U);
    EXPECT_EQ(levelsOf("a = \"# no comment\" # \"no text\nb = []"), 1U);
}

TEST(MSPCSettingsNesting, quotesBeforeTheEndOfATextBelongToIt) {
    EXPECT_EQ(levelsOf("a = \"\"\"x\"\"\"\"\"\nb = []"), 1U);
    EXPECT_EQ(levelsOf("a = '''x''''\nb = []"), 1U);
    EXPECT_EQ(levelsOf("a = \"\"\"\"\"\"\nb = []"), 1U);
    EXPECT_EQ(levelsOf("a = ''\nb = []"), 1U);
}

TEST(MSPCSettingsNesting, brokenTextsEnd) {
    for (const std::string_view text : {"\"", "'", "\"\"\"", "'''", "\"\\", "#", "a = \"\"\"\\", "]", "}", "=", "[",
                                        "\"\n", "a = \"\"\"x\"\"", "}}]]\na.b = 1"}) {
        EXPECT_LE(levelsOf(text), 1U) << text;
    }
}

TEST(MSPCSettingsNesting, tellsTheLine) {
    EXPECT_EQ(MSPCLineNestedDeeperThan(1, "a = [\n[\n]]"), 2U);
    EXPECT_EQ(MSPCLineNestedDeeperThan(0, "a = \"\"\"\n\n\"\"\"\n# x\nb.c = 1"), 5U);
}
