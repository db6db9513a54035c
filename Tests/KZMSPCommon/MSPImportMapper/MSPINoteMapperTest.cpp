#include "MSPINoteMapper.h"

#include "MappingFixture.h"

namespace {

std::string noteOf(std::string_view notes) {
    MSPCXMLDocument document;
    return markupOf(MSPINoteMapper().newNoteFromMSPNotes(notes, document));
}

// What the note should be: one paragraph per line.
std::string paragraphs(std::initializer_list<std::string_view> lines) {
    std::string markup = "<note><text>";
    for (const auto line : lines) {
        const auto lit = line.empty() ? "<lit/>" : "<lit>" + std::string(line) + "</lit>";
        markup += "<p><run>" + lit + "</run></p>";
    }
    return markup + "</text></note>";
}

}  // namespace

TEST(MSPINoteMapper, makesOneParagraphPerLine) {
    EXPECT_EQ(noteOf("First\nSecond"),
              "<note><text><p><run><lit>First</lit></run></p><p><run><lit>Second</lit></run></p></text></note>");
}

TEST(MSPINoteMapper, endsALineAtEveryTerminatorAndTakesCarriageReturnWithLineFeedAsOne) {
    for (const auto* terminator : {"\n", "\r", "\r\n", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        const auto text = std::string("a").append(terminator).append("b");
        EXPECT_EQ(noteOf(text), paragraphs({"a", "b"})) << testing::PrintToString(text);
        EXPECT_EQ(noteOf(text + terminator), paragraphs({"a", "b"})) << testing::PrintToString(text);
    }
}

TEST(MSPINoteMapper, makesNoParagraphAfterATerminatorAtTheEnd) {
    EXPECT_EQ(noteOf("a\n"), paragraphs({"a"}));
}

TEST(MSPINoteMapper, makesAnEmptyParagraphOfAnEmptyLine) {
    EXPECT_EQ(noteOf("a\n\nb"), paragraphs({"a", "", "b"}));
    EXPECT_EQ(noteOf("\na"), paragraphs({"", "a"}));
    EXPECT_EQ(noteOf("a\r\n\r\n"), paragraphs({"a", ""}));
    EXPECT_EQ(noteOf("\n"), paragraphs({""}));
    EXPECT_EQ(noteOf("a\n\rb"), paragraphs({"a", "", "b"}));
}

TEST(MSPINoteMapper, makesAnEmptyTextOfAnEmptyNote) {
    EXPECT_EQ(noteOf(""), "<note><text/></note>");
}

TEST(MSPINoteMapper, keepsTheCharactersOfALineAsTheyAre) {
    EXPECT_EQ(noteOf("<b>R&D</b>"), paragraphs({"&lt;b&gt;R&amp;D&lt;/b&gt;"}));

    MSPCXMLDocument document;
    const auto note = MSPINoteMapper().newNoteFromMSPNotes("  \ta &#x0A; \xE2\x82\xAC  \n ", document);
    const auto lits = note.node().nodesForXPath("text/p/run/lit").value();
    ASSERT_EQ(lits.size(), 2u);
    EXPECT_EQ(lits[0].stringValue(), "  \ta &#x0A; \xE2\x82\xAC  ");
    EXPECT_EQ(lits[1].stringValue(), " ");
}

// A reader turns the line ends of a file into line feeds; only a reference brings a carriage return this far.
TEST(MSPINoteMapper, breaksAtACarriageReturnThatStoodAsAReference) {
    const auto document = documentFromXML("<Notes>a&#13;b\r\nc</Notes>");
    EXPECT_EQ(noteOf(document.root().stringValue()), paragraphs({"a", "b", "c"}));
}
