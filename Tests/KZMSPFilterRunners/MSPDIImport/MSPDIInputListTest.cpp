#include "MSPDIInputList.h"

#include <gtest/gtest.h>

#include "ExpectRaises.h"
#include "InMemoryFileSystem.h"
#include "PiecewiseSource.h"

namespace {

using Lines = std::vector<std::string>;

}  // namespace

TEST(MSPDILinesOfText, endAtEveryNewlineCharacter) {
    const std::pair<std::string, Lines> table[] = {
        {"", {""}},
        {"a", {"a"}},
        {"a\nb", {"a", "b"}},
        {"a\n", {"a", ""}},
        {"a\r\nb\r\n", {"a", "", "b", "", ""}},
        {"a\rb", {"a", "b"}},
        {"a\xC2\x85"
         "b",
         {"a", "b"}},
        {"a\xE2\x80\xA8"
         "b\xE2\x80\xA9"
         "c",
         {"a", "b", "c"}},
        {"a\tb c\x0B\x0C", {"a\tb c\x0B\x0C"}},
        {" a \n\t", {" a ", "\t"}},
        {"\xC2\xA0\xE2\x80\xAA", {"\xC2\xA0\xE2\x80\xAA"}},
    };
    for (const auto& [text, expected] : table) {
        EXPECT_EQ(MSPDILinesOfText(text), expected) << text;
    }
}

TEST(MSPDIForEachLine, tellsTheLinesHoweverTheTextComes) {
    for (const std::string text : {"", "a", "\xEF\xBB\xBF",
                                   "\xEF\xBB\xBF"
                                   "a\nb",
                                   "ab\r\nc\n\n\xC2\x85"
                                   "d\xE2\x80\xA8\xE2\x80\xA9"
                                   "e\xE2\x80\xAA",
                                   "a\n\xEF\xBB\xBF"
                                   "b\n",
                                   "\n", "\r", "a\xC2\x85", "\xE4\xB8\xAD\xF0\x9F\x98\x80\n"}) {
        for (std::size_t size = 1; size <= text.size() + 1; ++size) {
            PiecewiseSource source(text, size);
            Lines lines;
            EXPECT_TRUE(MSPDIForEachLine(source, [&](const auto& line) { lines.push_back(line); }));
            EXPECT_EQ(lines, MSPDILinesOfText(text)) << text << " by " << size;
        }
    }
    for (const std::string text : {"a\n\xE4.xml\nb", "\xE2\x80",
                                   "a\xF0\xE2\x80\xA8"
                                   "b",
                                   "\xC2\n"}) {
        PiecewiseSource source(text, 2);
        EXPECT_FALSE(MSPDIForEachLine(source, [](const auto&) {})) << text;
    }
}

TEST(MSPDILinesOfText, doNotHoldTheByteOrderMark) {
    EXPECT_EQ(MSPDILinesOfText("\xEF\xBB\xBF"
                               "a.xml\nb.xml"),
              (Lines{"a.xml", "b.xml"}));
    EXPECT_EQ(MSPDILinesOfText("a\n\xEF\xBB\xBF"
                               "b"),
              (Lines{"a",
                     "\xEF\xBB\xBF"
                     "b"}))
        << "only at the start";
}

TEST(MSPDIIsInputEntry, leavesOutEmptyLinesAndComments) {
    const std::pair<const char*, bool> table[] = {{"", false},      {"::", false}, {":: a.xml", false},
                                                  {":a.xml", true}, {" ", true},   {" ::a.xml", true},
                                                  {"a.xml", true}};
    for (const auto& [line, expected] : table) {
        EXPECT_EQ(MSPDIIsInputEntry(line), expected) << line;
    }
}

TEST(MSPDIReadInputList, givesAllLines) {
    InMemoryFileSystem files;
    files.addFile("/list", "a.xml\n\n:: note\nb.mspxml");
    EXPECT_EQ(MSPDIReadInputList("/list", files), (Lines{"a.xml", "", ":: note", "b.mspxml"}));
    files.addFile("/empty");
    EXPECT_EQ(MSPDIReadInputList("/empty", files), Lines{""});
}

TEST(MSPDIReadInputList, failsWithoutAFile) {
    InMemoryFileSystem files;
    files.addFolder("/folder");
    EXPECT_RAISES(MSPDIReadInputList("/none", files), FileNotFoundException,
                  "Input list not found or it is a directory: /none");
    EXPECT_RAISES(MSPDIReadInputList("/folder", files), FileNotFoundException,
                  "Input list not found or it is a directory: /folder");
}

TEST(MSPDIReadInputList, failsWhereTheFileCannotBeRead) {
    InMemoryFileSystem files;
    files.addFile("/list", "a.xml");
    files.failAtCall(1, "Permission denied");
    EXPECT_RAISES(MSPDIReadInputList("/list", files), FileNotFoundException,
                  "Input list file could not be read or empty: /list");
}

TEST(MSPDIReadInputList, failsOnWhatIsNotUTF8) {
    for (const auto* bytes : {"\xFF\xFE"
                              "a",
                              "B\xFCro.xml", "\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF0\x80\x80\xAF",
                              "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\x80", "\xE2\x80"}) {
        InMemoryFileSystem files;
        files.addFile("/list", bytes);
        EXPECT_RAISES(MSPDIReadInputList("/list", files), FileNotFoundException,
                      "Input list file could not be read or empty: /list");
    }
}

TEST(MSPDIReadInputList, takesCharactersOfEveryLength) {
    const std::string text =
        "a\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";
    InMemoryFileSystem files;
    files.addFile("/list", text);
    EXPECT_EQ(MSPDIReadInputList("/list", files), Lines{text});
}

TEST(MSPDICheckedLines, refuseAListWithoutLines) {
    EXPECT_EQ(MSPDICheckedLines({"a"}, "/list"), Lines{"a"});
    EXPECT_RAISES(MSPDICheckedLines({}, "/list"), FileNotFoundException,
                  "Input list could not be built or empty: /list");
}

TEST(MSPDICheckInputFiles, refusesHavingNothingToDo) {
    EXPECT_NO_THROW(MSPDICheckInputFiles({""})) << "an empty line is skipped later";
    EXPECT_RAISES(MSPDICheckInputFiles({}), MSPCInternalInconsistency, "Failed to build input files list.");
}
