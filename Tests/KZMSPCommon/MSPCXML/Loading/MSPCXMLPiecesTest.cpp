#include "MSPCXMLPieces.h"

#include <gtest/gtest.h>

#include <string>

#include "PiecewiseSource.h"

namespace {

class Written final : public MSPCXMLPieceVisitor {
public:
    explicit Written(std::string_view taken) : _taken(taken) {}

    bool isList(std::string_view name) override { return !name.starts_with('V'); }
    void value(std::string_view name) override { text += "value " + std::string(name) + "; "; }
    void beginList(std::string_view name) override { text += "list " + std::string(name) + "; "; }
    void endList() override { text += "end; "; }
    void root(const MSPCXMLNode& element) override { text += element.markup(); }
    bool wantsLeavesOf(std::string_view /*name*/) override { return !_taken.empty(); }
    void beginElement(std::string_view name) override { _leaves += std::string(name) + "("; }
    void endElement() override { _leaves += ")"; }
    bool takeLeaf(std::string_view name, std::string_view content) override {
        const bool isTaken = _taken.find(name) != std::string_view::npos;
        _leaves += std::string(name) + (isTaken ? "=" : "-") + std::string(content) + " ";
        return isTaken;
    }
    void passLeaf(std::string_view name) override { _leaves += std::string(name) + "& "; }
    void forgetLeaves() override { _leaves.clear(); }
    bool restOfPiece(const MSPCXMLNode& element) override {
        // A piece named W is wanted as a whole.
        if (element.name() == "W") {
            _leaves.clear();
            return false;
        }
        text += "leaves " + _leaves + "rest " + element.markup() + "; ";
        _leaves.clear();
        return true;
    }
    void piece(const MSPCXMLNode& element) override { text += _leaves + element.markup() + "; "; }

    std::string text;

private:
    std::string_view _taken;  // the names of leaves
    std::string _leaves;
};

// What is shown of a document that is read so many bytes at a time; "(not plain)" behind it for one that is not.
std::string shown(const std::string& document, std::size_t step = 1 << 20, std::string_view taken = {}) {
    PiecewiseSource source(document, step);
    Written written(taken);
    return visitXMLPieces(source, written) ? written.text : written.text + "(not plain)";
}

}  // namespace

TEST(MSPCXMLPiecesTest, showsListsElementByElementAndValuesAtTheEnd) {
    const std::string document =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<P "
        "xmlns=\"u\"><A>1</A><L><E><n>1</n></E><E/></L><B/><L><F>x</F></L></P>\n";
    const std::string expected =
        "value A; list L; <E><n>1</n></E>; <E/>; end; value B; list L; <F>x</F>; end; "
        "<P xmlns=\"u\"><A>1</A><L/><B/><L/></P>";
    EXPECT_EQ(shown(document), expected);
    EXPECT_EQ(shown(document, 1), expected);
    EXPECT_EQ(shown(document, 7), expected);
}

TEST(MSPCXMLPiecesTest, takesNoTagFromTextThatIsNone) {
    EXPECT_EQ(shown("<P><!-- <L><E> --><A><![CDATA[<x>]]></A><L><?go <E>?><E a=\"/>\" b='>'>t</E></L></P>"),
              "value A; list L; <E a=\"/&gt;\" b=\"&gt;\">t</E>; end; <P><A><![CDATA[<x>]]></A><L/></P>");
}

TEST(MSPCXMLPiecesTest, showsADocumentWithoutChildren) {
    EXPECT_EQ(shown("<P></P>"), "<P/>");
    EXPECT_EQ(shown("\xEF\xBB\xBF<P>text</P>"), "<P>text</P>");
}

TEST(MSPCXMLPiecesTest, showsTextBesideChildrenAndPiecesAtTheEnd) {
    const std::string document =
        "<P> a <L>b &amp;<!-- <x> --><E>in it</E> \n <![CDATA[<c>]]><E/>d</L><A>1</A> <![CDATA[e]]><?go?></P>";
    const std::string expected =
        "list L; <E>in it</E>; <E/>; end; value A; <P> a <L>b &amp;<![CDATA[<c>]]>d</L><A>1</A><![CDATA[e]]></P>";
    EXPECT_EQ(shown(document), expected);
    EXPECT_EQ(shown(document, 1), expected);
    EXPECT_EQ(shown(document, 7), expected);
}

TEST(MSPCXMLPiecesTest, showsValuesWithAllThatTheyHoldAtTheEnd) {
    const std::string document = "<P><V>a<E><n>1</n></E>b<E/></V><L><E>2</E></L><V><E/></V></P>";
    const std::string expected =
        "value V; list L; <E>2</E>; end; value V; <P><V>a<E><n>1</n></E>b<E/></V><L/><V><E/></V></P>";
    EXPECT_EQ(shown(document), expected);
    EXPECT_EQ(shown(document, 1), expected);
    EXPECT_EQ(shown(document, 7), expected);
}

TEST(MSPCXMLPiecesTest, leavesOtherDocumentsToOthers) {
    EXPECT_EQ(shown("<!DOCTYPE P><P/>"), "(not plain)");
    EXPECT_EQ(shown("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><P/>"), "(not plain)");
    EXPECT_EQ(shown(""), "(not plain)");
    EXPECT_EQ(shown("<P><L><E>"), "list L; (not plain)");
    EXPECT_EQ(shown("<P><L><E>a & b</E></L></P>"), "list L; (not plain)");
    EXPECT_EQ(shown(std::string("<\0P\0/\0>\0", 8)), "(not plain)");
}

TEST(MSPCXMLPiecesTest, offersTheLeavesOfPiecesAndShowsTheRest) {
    const std::string document =
        "<P><L>\n<E><a>1</a>\n  <b>2</b><c><a/><b> </b></c><a>3</a></E><E><b>x &amp; y</b></E></L></P>";
    const std::string expected =
        "list L; leaves a=1 b-2 c(a= b-  )a=3 rest <E><b>2</b><c><b> </b></c></E>; "
        "leaves b& rest <E><b>x &amp; y</b></E>; end; <P><L/></P>";
    EXPECT_EQ(shown(document, 1 << 20, "a"), expected);
    EXPECT_EQ(shown(document, 1, "a"), expected);
    EXPECT_EQ(shown(document, 7, "a"), expected);
}

TEST(MSPCXMLPiecesTest, tellsWhatLooksLikeALeafSinceItsLeavesWereTaken) {
    EXPECT_EQ(shown("<P><L><E><c><a>1</a></c><c/><b/></E><E><a/></E></L></P>", 1 << 20, "a"),
              "list L; leaves c(a=1 )c- b- rest <E><c emptied=\"\"/><c/><b/></E>; "
              "leaves a= rest <E emptied=\"\"/>; end; <P><L/></P>");
}

TEST(MSPCXMLPiecesTest, showsAPieceAsAWholeThatIsNotOfThePlainestKind) {
    for (const std::string piece :
         {"<E><a>1</a><b x=\"1\"/></E>", "<E><a>1</a>text</E>", "<E><a>1</a><b>t<c/></b></E>", "<W><a>1</a></W>"}) {
        EXPECT_EQ(shown("<P><L>" + piece + "</L></P>", 1 << 20, "a"), "list L; " + piece + "; end; <P><L/></P>");
        EXPECT_EQ(shown("<P><L>" + piece + "</L></P>", 1, "a"), "list L; " + piece + "; end; <P><L/></P>");
    }
    EXPECT_EQ(shown("<P><L><E><a>1</a><!-- c --><b><![CDATA[2]]></b></E></L></P>", 1 << 20, "a"),
              "list L; <E><a>1</a><b><![CDATA[2]]></b></E>; end; <P><L/></P>");
    EXPECT_EQ(shown("<P><L><E x=\"1\"><a>1</a></E></L></P>", 1 << 20, "a"),
              "list L; <E x=\"1\"><a>1</a></E>; end; <P><L/></P>");
}

// Windows are small at first and grow, up to one of a megabyte; a piece may be longer than any.
TEST(MSPCXMLPiecesTest, goesThroughPiecesOfAnySize) {
    std::string document = "<P><L>";
    std::string whole = "list L; ";
    std::string taken = whole;
    for (const unsigned size : {1U, 8'000U, 8'192U, 10'000U, 100'000U, 1'200'000U, 5U, 70'000U}) {
        const std::string text(size, 'x');
        const auto piece = "<E><a>" + text + "</a><b>" + text + "</b></E>";
        document += piece;
        whole += piece + "; ";
        taken += "leaves a=" + text + " b-" + text + " rest <E><b>" + text + "</b></E>; ";
    }
    document += "</L></P>";
    for (const unsigned step : {1U << 20U, 4'095U, 100'000U}) {
        EXPECT_TRUE(shown(document, step) == whole + "end; <P><L/></P>") << step;
        EXPECT_TRUE(shown(document, step, "a") == taken + "end; <P><L/></P>") << step;
    }
}
