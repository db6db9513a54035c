#include "MSPCXMLSelectiveReader.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCXMLDocument.h"
#include "PiecewiseSource.h"

namespace {

using namespace std::string_literals;

constexpr std::size_t pieceSizes[] = {1, 2, 3, 7, 1 << 20};

std::optional<MSPCXMLSelected> selected(const std::string& text, std::size_t pieceSize = 1 << 20) {
    static const auto selection =
        MSPCXMLSelection::fromText("Plan(Title Task(UID Name Notes *Baseline(Number)) Empty())");
    PiecewiseSource source(text, pieceSize);
    return selectedXML(source, selection);
}

// What is kept of a text, the same for every way of cutting it; "(refused)" when it has to be read as a whole.
std::string keptOf(const std::string& text) {
    std::string kept;
    for (const auto pieceSize : pieceSizes) {
        const auto result = selected(text, pieceSize);
        const auto bytes = result ? result->bytes : "(refused)";
        if (pieceSize == pieceSizes[0]) {
            kept = bytes;
        }
        EXPECT_EQ(bytes, kept) << pieceSize << " bytes at a time: " << text;
    }
    return kept;
}

struct Case {
    const char* behaviour;
    std::string text;
    std::string kept;
};

void expectKept(const std::vector<Case>& cases) {
    for (const auto& [behaviour, text, kept] : cases) {
        EXPECT_EQ(keptOf(text), kept) << behaviour << ": " << text;
    }
}

void expectRefused(const std::vector<Case>& cases) {
    for (const auto& [behaviour, text, kept] : cases) {
        EXPECT_EQ(keptOf(text), "(refused)") << behaviour << ": " << text;
    }
}

}  // namespace

TEST(MSPCXMLSelectiveReader, keepsSelectedElementsAsTheyStandAndNothingElse) {
    expectKept({
        {"selected leaves", "<Plan><Title>a</Title><Task><UID>1</UID></Task></Plan>",
         "<Plan><Title>a</Title><Task><UID>1</UID></Task></Plan>"},
        {"an unselected leaf", "<Plan><Title>a</Title><Other>b</Other></Plan>", "<Plan><Title>a</Title></Plan>"},
        {"an unselected branch", "<Plan><Other><Task><UID>1</UID></Task></Other><Title>a</Title></Plan>",
         "<Plan><Title>a</Title></Plan>"},
        {"a selected name at the wrong level", "<Plan><UID>1</UID><Task><Title>b</Title></Task></Plan>",
         "<Plan><Task></Task></Plan>"},
        {"blanks of an element of which only children are kept", "<Plan> \n<Task>\t<UID>1</UID>\r\n</Task> </Plan>",
         "<Plan><Task><UID>1</UID></Task></Plan>"},
        {"a root that is not selected", "<Other><Plan/></Other>", ""},
        {"an element of which nothing is kept", "<Plan><Empty> <Title>y</Title></Empty></Plan>",
         "<Plan><Empty></Empty></Plan>"},
        {"children with names of siblings, whole",
         "<Plan><Task><Baseline><Name>b</Name><Other>c</Other><Number>1</Number></Baseline></Task></Plan>",
         "<Plan><Task><Baseline><Name>b</Name><Number>1</Number></Baseline></Task></Plan>"},
        {"an element that is kept whole", "<Plan><Title>a<b>c</b>  <d/> </Title></Plan>",
         "<Plan><Title>a<b>c</b>  <d/> </Title></Plan>"},
    });
}

TEST(MSPCXMLSelectiveReader, keepsTagsAndTextsAsTheyAreWritten) {
    expectKept({
        {"text of blanks alone", "<Plan><Title>   </Title></Plan>", "<Plan><Title>   </Title></Plan>"},
        {"references", "<Plan><Title>&lt;&#13;&amp;</Title></Plan>", "<Plan><Title>&lt;&#13;&amp;</Title></Plan>"},
        {"a greater-than sign in a text", "<Plan><Title>a>b]]>c</Title></Plan>", "<Plan><Title>a>b]]>c</Title></Plan>"},
        {"empty elements", "<Plan><Title/><Task><UID /></Task><Other/></Plan>",
         "<Plan><Title/><Task><UID /></Task></Plan>"},
        {"blanks in tags", "<Plan\n><Title >a</Title\t></Plan >", "<Plan\n><Title >a</Title\t></Plan >"},
        {"attributes of kept elements", "<Plan xmlns=\"urn:p\"><Title a=\"1\" b=\"&amp;\"/></Plan>",
         "<Plan xmlns=\"urn:p\"><Title a=\"1\" b=\"&amp;\"/></Plan>"},
        {"names that end or begin like others", "<Plan><MyTitle>a</MyTitle><Titles>b</Titles><Title>c</Title></Plan>",
         "<Plan><Title>c</Title></Plan>"},
        {"names of one length in one slot", "<Plan><Xitle>a</Xitle><Title>b</Title></Plan>",
         "<Plan><Title>b</Title></Plan>"},
        {"names with letters beyond ASCII", "<Plan><\xC3\x84>a</\xC3\x84><Title>b</Title></Plan>",
         "<Plan><Title>b</Title></Plan>"},
        {"an element inside one of its name", "<Plan><Other><Other>a</Other></Other><Title>b</Title></Plan>",
         "<Plan><Title>b</Title></Plan>"},
    });
}

TEST(MSPCXMLSelectiveReader, leavesOutCommentsAndInstructionsAndKeepsSections) {
    expectKept({
        {"a comment in a kept text", "<Plan><Title>a<!-- <x> & --- -->b</Title></Plan>",
         "<Plan><Title>ab</Title></Plan>"},
        {"an instruction in a kept text", "<Plan><Title>a<?p <x> & ?>b</Title></Plan>",
         "<Plan><Title>ab</Title></Plan>"},
        {"a section in a kept text", "<Plan><Title>a<![CDATA[<&]]]>b</Title></Plan>",
         "<Plan><Title>a<![CDATA[<&]]]>b</Title></Plan>"},
        {"all three in what is left out",
         "<Plan><Other><!--</Other>--><?q </Other>?><![CDATA[</Other>]]></Other><Title>a</Title></Plan>",
         "<Plan><Title>a</Title></Plan>"},
        {"comments around the root", "<!--a--><Plan/><!--b-->\n", "<Plan/>"},
        {"a comment without text", "<Plan><!----><Title>a</Title></Plan>", "<Plan><Title>a</Title></Plan>"},
        {"an instruction without data", "<Plan><?p?><Title>a</Title></Plan>", "<Plan><Title>a</Title></Plan>"},
    });
}

TEST(MSPCXMLSelectiveReader, tellsWhetherTheContentHadSections) {
    EXPECT_FALSE(selected("<?xml version=\"1.0\"?><!--a--><?p?><Plan><Title>a</Title></Plan>")->reading.hasSections);
    EXPECT_TRUE(selected("<Plan><Title><![CDATA[a]]></Title></Plan>")->reading.hasSections);
    EXPECT_TRUE(selected("<Plan><Other><![CDATA[a]]></Other></Plan>")->reading.hasSections);
    EXPECT_TRUE(selected("<Plan><Other><!--a--></Other></Plan>")->reading.hasSections);
    EXPECT_TRUE(selected("<Plan><?p?></Plan>")->reading.hasSections);
    EXPECT_TRUE(selected("<Plan/><!--a-->")->reading.hasSections);
}

TEST(MSPCXMLSelectiveReader, tellsWhatValuesHoldBesideText) {
    struct Case {
        const char* document;
        bool hasNestedValues;
        bool hasMixedContent;
    };
    constexpr Case cases[] = {
        {"<Plan><Title>a</Title> <Title> </Title></Plan>", false, false},
        {"<Plan><Other>a<b/></Other></Plan>", false, false},
        {"<Plan><Title><b/></Title></Plan>", true, false},
        {"<Plan><Title> <b>a</b> </Title></Plan>", true, false},
        {"<Plan><Title>a<b/></Title></Plan>", true, true},
        {"<Plan><Title><b/>a</Title></Plan>", true, true},
        {"<Plan><Title><b><c>a</c>b</b></Title></Plan>", true, true},
        {"<Plan><Title>&#32;<b/></Title></Plan>", true, true},
        {"<Plan><Title xml:space=\"preserve\"> </Title></Plan>", false, true},
    };
    for (const auto& [document, hasNestedValues, hasMixedContent] : cases) {
        const auto result = selected(document);
        ASSERT_TRUE(result) << document;
        EXPECT_EQ(result->reading.hasNestedValues, hasNestedValues) << document;
        EXPECT_EQ(result->reading.hasMixedContent, hasMixedContent) << document;
    }
}

TEST(MSPCXMLSelectiveReader, skipsTheMarkAndTheDeclarationOfUtf8) {
    expectKept({
        {"a byte-order mark", "\xEF\xBB\xBF<Plan/>", "<Plan/>"},
        {"a declaration", "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n<Plan/>", "<Plan/>"},
        {"both", "\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?><Plan/>", "<Plan/>"},
        {"a declaration without an encoding", "<?xml version=\"1.0\"?><Plan/>", "<Plan/>"},
        {"a plain subset of it", "<?xml version=\"1.0\" encoding=\"US-ASCII\"?><Plan/>", "<Plan/>"},
    });
}

TEST(MSPCXMLSelectiveReader, refusesOtherEncodings) {
    expectRefused({
        {"a code page", "<?xml version=\"1.0\" encoding=\"windows-1252\"?><Plan/>", {}},
        {"a code page beside the name of UTF-8", "<?xml encoding=\"windows-1252\" standalone=\"utf-8\"?><Plan/>", {}},
        {"the mark of UTF-16", "\xFF\xFE<\0P\0l\0a\0n\0/\0>\0"s, {}},
        {"UTF-16 without a mark", "<\0P\0l\0a\0n\0/\0>\0"s, {}},
        {"UTF-16 the other way round", "\0<\0P\0l\0a\0n\0/\0>"s, {}},
    });
}

TEST(MSPCXMLSelectiveReader, refusesWhatDoesNotMatch) {
    expectRefused({
        {"nothing at all", "", {}},
        {"blanks alone", "  \n", {}},
        {"no element", "<!--a-->", {}},
        {"an element without an end", "<Plan><Title>a</Title>", {}},
        {"the wrong end tag in a kept part", "<Plan><Title>a</Titel></Plan>", {}},
        {"the wrong end tag in a part that is left out", "<Plan><Other>a</Othre></Plan>", {}},
        {"an end tag that is longer than its element", "<Plan><Other>a</Others></Plan>", {}},
        {"an end tag that is shorter than its element", "<Plan><Other>a</Othe></Plan>", {}},
        {"crossing elements in a part that is left out", "<Plan><Other><a><b></a></b></Other></Plan>", {}},
        {"an end tag of an inner name that ends in the outer one", "<Plan><er><Oth></Other></er></Plan>", {}},
        {"one end tag too many", "<Plan/></Plan>", {}},
        {"a second root", "<Plan/><Plan/>", {}},
        {"text before the root", "x<Plan/>", {}},
        {"text behind the root", "<Plan/>x", {}},
        {"a reference behind the root", "<Plan/>&#32;", {}},
        {"a section behind the root", "<Plan/><![CDATA[ ]]>", {}},
        {"a NUL behind the root", "<Plan/>\0"s, {}},
    });
}

TEST(MSPCXMLSelectiveReader, refusesMarkupThatAParserWouldRefuse) {
    expectRefused({
        {"a tag without a name", "<Plan><>a</></Plan>", {}},
        {"a blank before a name", "<Plan>< Other/></Plan>", {}},
        {"a digit at the start of a name", "<Plan><1/></Plan>", {}},
        {"a name with a sign in it", "<Plan><a+b/></Plan>", {}},
        {"a tag without an end", "<Plan><Title", {}},
        {"a tag that the end tag follows instead of its own end", "<Plan><Other</Other></Plan>", {}},
        {"an end tag without an end", "<Plan></Plan", {}},
        {"a comment without an end", "<Plan><!-- </Plan>", {}},
        {"a comment that ends too early", "<Plan><!-></Plan>", {}},
        {"an instruction without an end", "<Plan><? </Plan>", {}},
        {"an instruction without a target", "<Plan><? x?></Plan>", {}},
        {"an instruction without anything",
         "<Plan><?"
         "?></Plan>",
         {}},
        {"a target with a sign in it", "<Plan><?a+b?></Plan>", {}},
        {"a declaration without an end", "<?xml version=\"1.0\"><Plan/>", {}},
        {"a section without an end", "<Plan><Title><![CDATA[a</Title></Plan>", {}},
        {"a keyword of no section", "<Plan><![cdata[a]]></Plan>", {}},
        {"the beginning of a section", "<Plan><![CD", {}},
        {"a less-than sign at the end", "<Plan/><", {}},
    });
}

TEST(MSPCXMLSelectiveReader, refusesDocumentTypesWithAndWithoutDeclarations) {
    expectRefused({
        {"with entities", "<!DOCTYPE Plan [<!ENTITY e 'x'>]><Plan><Title>&e;</Title></Plan>", {}},
        {"with a name alone", "<!DOCTYPE Plan><Plan/>", {}},
        {"inside the root", "<Plan><!DOCTYPE x></Plan>", {}},
    });
}

TEST(MSPCXMLSelectiveReader, refusesStrayAmpersandsAndForbiddenReferencesWhereverTheyStand) {
    for (const std::string stray : {"&", "&&amp;", "a & b", "&unknown;", "&amp", "&#;", "&#x;", "&#1;", "&#xFFFF;"}) {
        expectRefused({
            {"in a kept text", "<Plan><Title>" + stray + "</Title></Plan>", {}},
            {"in a kept attribute", "<Plan><Title a=\"" + stray + "\"/></Plan>", {}},
            {"in a text that is left out", "<Plan><Other>" + stray + "</Other></Plan>", {}},
            {"beside kept elements", "<Plan>" + stray + "<Title>a</Title></Plan>", {}},
        });
    }
    expectRefused({{"on both sides of a comment", "<Plan><Title>&am<!---->p;</Title></Plan>", {}}});
}

TEST(MSPCXMLSelectiveReader, refusesANulWhereverItStands) {
    expectRefused({
        {"in a kept text", "<Plan><Title>a\0b</Title></Plan>"s, {}},
        {"in a text that is left out", "<Plan><Other>a\0b</Other></Plan>"s, {}},
        {"in a name", "<Plan><Ti\0tle/></Plan>"s, {}},
        {"in an end tag", "<Plan><Title>a</Title\0></Plan>"s, {}},
        {"in an attribute", "<Plan><Title a=\"\0\"/></Plan>"s, {}},
        {"in a comment", "<Plan><!--a\0b--></Plan>"s, {}},
        {"in an instruction", "<Plan><?p a\0b?></Plan>"s, {}},
        {"in a kept section", "<Plan><Title><![CDATA[\0]]></Title></Plan>"s, {}},
        {"in a section that is left out", "<Plan><Other><![CDATA[\0]]></Other></Plan>"s, {}},
        {"in the declaration", "<?xml version=\"1.0\"\0?><Plan/>"s, {}},
    });
}

TEST(MSPCXMLSelectiveReader, refusesAttributesThatItWouldHaveToUnderstand) {
    expectRefused({
        {"on an element that is left out", "<Plan><Other a=\"1\">b</Other></Plan>", {}},
        {"with single quotes", "<Plan><Title a='1'/></Plan>", {}},
        {"with the end of the tag in the value", "<Plan><Title a=\"x>y\"/></Plan>", {}},
        {"with a less-than sign in the value", "<Plan><Title a=\"<\"/></Plan>", {}},
    });
}

TEST(MSPCXMLSelectiveReader, leavesOtherFaultsOfKeptTagsToTheParser) {
    for (const std::string tag : {"<Title/x>", "<Title a>", "<Title a=1>", "<Title \"a\">", "<Title a=\"1\"b=\"2\">"}) {
        auto result = selected("<Plan>" + tag + "</Title></Plan>");
        EXPECT_TRUE(!result || !MSPCXMLDocument::read(std::move(result->bytes), result->reading)) << tag;
    }
}

TEST(MSPCXMLSelectiveReader, refusesTextBetweenKeptElements) {
    expectRefused({
        {"text", "<Plan>x<Title>a</Title></Plan>", {}},
        {"a reference to a blank", "<Plan><Task><UID>1</UID>&#32;</Task></Plan>", {}},
        {"a section", "<Plan><Task><![CDATA[ ]]></Task></Plan>", {}},
        {"text where nothing is kept", "<Plan><Empty>x</Empty></Plan>", {}},
    });
}

TEST(MSPCXMLSelectiveReader, refusesALineEndThatACommentCutsInTwo) {
    expectRefused({
        {"a comment", "<Plan><Title>a\r<!--x-->\nb</Title></Plan>", {}},
        {"an instruction", "<Plan><Title>a\r<?x?>\nb</Title></Plan>", {}},
    });
    EXPECT_EQ(keptOf("<Plan><Title>a\r\n<!--x-->b</Title></Plan>"), "<Plan><Title>a\r\nb</Title></Plan>");
    EXPECT_EQ(keptOf("<Plan>\r<!--x-->\n<Title/></Plan>"), "<Plan><Title/></Plan>");
}

TEST(MSPCXMLSelectiveReader, readsTokensThatAreLongerThanItsWindow) {
    constexpr std::size_t size = 300'000;
    const auto title = "<Title>" + std::string(size, 'x') + "</Title>";
    const auto text = "<Plan><Other>" + std::string(size, 'y') + "</Other><!--" + std::string(size, 'z') + "-->" +
                      std::string(size, ' ') + title + "</Plan>";
    for (const std::size_t pieceSize : {4096U, 65'536U, 1U << 20U}) {
        const auto result = selected(text, pieceSize);
        ASSERT_TRUE(result);
        EXPECT_EQ(result->bytes, "<Plan>" + title + "</Plan>");
    }
}

TEST(MSPCXMLSelectiveReader, readsWhatIsLongerOrShorterThanWasExpected) {
    const auto selection = MSPCXMLSelection::fromText("Plan(Title)");
    const std::string text = "<Plan><Title>a</Title></Plan>";
    for (const std::size_t expectedSize : {0U, 1U, 28U, 29U, 30U, 1'000'000U}) {
        PiecewiseSource source(text, 7, expectedSize);
        const auto result = selectedXML(source, selection);
        ASSERT_TRUE(result);
        EXPECT_EQ(result->bytes, text);
    }
}

TEST(MSPCXMLSelectiveReader, nestsAMillionLevelsDeep) {
    constexpr int levels = 1'000'000;
    std::string text = "<Plan>";
    for (int level = 0; level < levels; ++level) {
        text += "<a>";
    }
    for (int level = 0; level < levels; ++level) {
        text += "</a>";
    }
    const auto result = selected(text + "<Title>b</Title></Plan>");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->bytes, "<Plan><Title>b</Title></Plan>");
}

namespace {

// What is deferred of the elements at "Task", one line for each of the first `parents`.
std::string deferredOf(const std::string& text, int parents) {
    static const auto selection = MSPCXMLSelection::fromText("Plan(Title Task(UID ~*Baseline(Number) ~Log))");
    std::string all;
    for (const auto pieceSize : pieceSizes) {
        PiecewiseSource source(text, pieceSize);
        auto result = selectedXML(source, selection);
        std::string found = "(refused)";
        if (result) {
            found = "kept ";
            found += result->bytes;
        }
        auto walk = result ? result->deferred.take("Task") : MSPCXMLDeferredElements().take("Task");
        for (int parent = 0; parent < parents; ++parent) {
            const auto document = walk.next();
            found.append("\n").append(document ? document->root().markup() : "none");
        }
        all = all.empty() ? found : all;
        EXPECT_EQ(found, all) << pieceSize << " bytes at a time: " << text;
    }
    return all;
}

}  // namespace

TEST(MSPCXMLSelectiveReader, defersElementsByTheElementTheyWereIn) {
    EXPECT_EQ(
        deferredOf("<Plan><Task><UID>1</UID><Baseline><Number>0</Number><Cost>9</Cost><UID>7</UID></Baseline>"
                   "<Name>n</Name>\n<Baseline ><Number>1</Number ></Baseline></Task><Task/><Task><UID>3</UID></Task>"
                   "<Title>t</Title><Task><Log> a &amp; b </Log><Baseline/></Task></Plan>",
                   5),
        "kept <Plan><Task><UID>1</UID></Task><Task/><Task><UID>3</UID></Task><Title>t</Title><Task></Task></Plan>\n"
        "<deferred><Baseline><Number>0</Number><UID>7</UID></Baseline><Baseline><Number>1</Number></Baseline>"
        "</deferred>\nnone\nnone\n<deferred><Log> a &amp; b </Log><Baseline/></deferred>\nnone");
}

TEST(MSPCXMLSelectiveReader, keepsSectionsOfWhatIsDeferred) {
    EXPECT_EQ(deferredOf("<Plan><Task><Log>a<![CDATA[<b>]]><!--c-->d</Log></Task></Plan>", 1),
              "kept <Plan><Task></Task></Plan>\n<deferred><Log>a<![CDATA[<b>]]>d</Log></deferred>");
}

TEST(MSPCXMLSelectiveReader, leavesAttributesOfWhatIsDeferredToTheParser) {
    EXPECT_EQ(deferredOf("<Plan><Task><Baseline a=\"1\"/></Task></Plan>", 0), "(refused)");
    EXPECT_EQ(deferredOf("<Plan><Task><Log><b c=\"1\"/></Log></Task></Plan>", 0), "(refused)");
    EXPECT_EQ(deferredOf("<Plan><Task a=\"1\"><Log/></Task></Plan>", 1),
              "kept <Plan><Task a=\"1\"></Task></Plan>\n<deferred><Log/></deferred>");
}

TEST(MSPCXMLSelectiveReader, leavesDocumentsThatSayWhatBlanksMeanToTheParser) {
    EXPECT_EQ(deferredOf("<Plan><Task xml:space=\"preserve\"><Log> <b>c</b> </Log></Task></Plan>", 0), "(refused)");
    EXPECT_EQ(deferredOf("<Plan xml:space=\"preserve\"><Task><Log> <b>c</b> </Log></Task></Plan>", 0), "(refused)");
    EXPECT_EQ(deferredOf("<Plan><Title xml:space=\"preserve\"> a </Title></Plan>", 0),
              "kept <Plan><Title xml:space=\"preserve\"> a </Title></Plan>");
}

// More than fits into one block of memory, by the thousand and each alone.
TEST(MSPCXMLSelectiveReader, defersAnyNumberAndSize) {
    static const auto selection = MSPCXMLSelection::fromText("Plan(Task(~Log))");
    std::string text = "<Plan>";
    for (int task = 0; task < 20'000; ++task) {
        text += "<Task><Log>" + std::to_string(task) + "</Log><Log>of that task</Log></Task>";
    }
    text += "<Task><Log>" + std::string(3'000'000, 'x') + "</Log></Task><Task><Log>last</Log></Task></Plan>";
    PiecewiseSource source(text, 100'000);
    auto result = selectedXML(source, selection);
    ASSERT_TRUE(result);
    auto walk = result->deferred.take("Task");
    for (int task = 0; task < 20'000; ++task) {
        ASSERT_EQ(walk.next()->root().stringValue(), std::to_string(task) + "of that task");
    }
    EXPECT_EQ(walk.next()->root().stringValue(), std::string(3'000'000, 'x'));
    EXPECT_EQ(walk.next()->root().stringValue(), "last");
    EXPECT_FALSE(walk.next());
}

// The window is smaller than the text, and slides over it.
TEST(MSPCXMLSelectiveReader, tellsWhereTheKeptBytesStood) {
    std::string text = "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<Plan a=\"b\">";
    for (int number = 0; number < 500; ++number) {
        text += "\n  <Task><Other>x</Other>\t<UID> 1 <!-- c --><![CDATA[2]]>&lt;</UID ><Name/><More>y</More></Task>";
    }
    text += "</Plan>";
    const auto selection = MSPCXMLSelection::fromText("Plan(Task(UID Name))");
    for (const auto pieceSize : pieceSizes) {
        PiecewiseSource source(text, pieceSize);
        const auto kept = selectedXML(source, selection, true);
        ASSERT_TRUE(kept && !kept->places.empty()) << pieceSize;
        EXPECT_EQ(kept->places.front().kept, 0U);
        for (std::size_t index = 0; index < kept->places.size(); ++index) {
            const auto& [begin, original] = kept->places[index];
            const auto end = index + 1 < kept->places.size() ? kept->places[index + 1].kept : kept->bytes.size();
            ASSERT_EQ(kept->bytes.substr(begin, end - begin), text.substr(original, end - begin)) << pieceSize;
        }
    }
    PiecewiseSource source(text, 1 << 20);
    EXPECT_TRUE(selectedXML(source, selection)->places.empty());
    PiecewiseSource fromTheRootOn("<Plan><Task/></Plan>", 1 << 20);
    EXPECT_EQ(selectedXML(fromTheRootOn, selection, true)->places.size(), 1U);
}
