#include "MSPCXMLPieces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

class Written final : public MSPCXMLPieceVisitor {
public:
    void value(std::string_view name) override { text += "value " + std::string(name) + "; "; }
    void beginList(std::string_view name) override { text += "list " + std::string(name) + "; "; }
    void piece(const MSPCXMLNode& element) override { text += element.markup() + "; "; }
    void endList() override { text += "end; "; }
    void root(const MSPCXMLNode& element) override { text += element.markup(); }

    std::string text;
};

// What is shown of a document that is read so many bytes at a time; "(not plain)" behind it for one that is not.
std::string shown(const std::string& document, std::size_t step = 1 << 20) {
    std::size_t at = 0;
    Written written;
    const bool isPlain = visitXMLPieces(
        [&](char* buffer, std::size_t capacity) {
            const auto count = std::min({step, capacity, document.size() - at});
            document.copy(buffer, count, at);
            at += count;
            return count;
        },
        written);
    return isPlain ? written.text : written.text + "(not plain)";
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

TEST(MSPCXMLPiecesTest, leavesOtherDocumentsToOthers) {
    EXPECT_EQ(shown("<!DOCTYPE P><P/>"), "(not plain)");
    EXPECT_EQ(shown("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><P/>"), "(not plain)");
    EXPECT_EQ(shown(""), "(not plain)");
    EXPECT_EQ(shown("<P><L><E>"), "list L; (not plain)");
    EXPECT_EQ(shown("<P><L><E>a & b</E></L></P>"), "list L; (not plain)");
    EXPECT_EQ(shown(std::string("<\0P\0/\0>\0", 8)), "(not plain)");
}
