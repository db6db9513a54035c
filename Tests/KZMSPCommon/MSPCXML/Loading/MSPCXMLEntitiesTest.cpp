#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <utility>
#include <vector>

#include "MSPCXMLLoader.h"
#include "ProcessorTime.h"

namespace {

// The root's markup, and the words of a repair behind it; "(none)" for bytes that are refused.
std::string markupOf(const std::string& bytes) {
    const auto loaded = MSPCXMLLoader(MSPCXMLContent::Everything, "Project").loadBytes(bytes);
    if (!loaded) {
        return "(none)";
    }
    return loaded->document.root().markup() + (loaded->repair ? " " + loaded->repair->message : "");
}

std::string markupWith(const std::string& declarations, const std::string& content) {
    return markupOf("<!DOCTYPE Project [" + declarations + "]><Project>" + content + "</Project>");
}

TEST(MSPCXMLEntities, eachReferenceGetsTheElementsOfItsEntity) {
    EXPECT_EQ(markupWith("<!ENTITY t '<Task><UID>1</UID></Task>'>", "&t;&t;<Task/>&t;"),
              "<Project><Task><UID>1</UID></Task><Task><UID>1</UID></Task><Task/><Task><UID>1</UID></Task></Project>");
}

TEST(MSPCXMLEntities, textBesideAReferenceStaysBesideIt) {
    EXPECT_EQ(markupWith("<!ENTITY t '1&#38;amp;<b/>2'>", "x&t;y&t;z&t;"),
              "<Project>x1&amp;<b/>2y1&amp;<b/>2z1&amp;<b/>2</Project>");
    EXPECT_EQ(markupWith("<!ENTITY t ']]&#38;gt;'>", "&t;&t;"), "<Project>]]&gt;]]&gt;</Project>");
}

TEST(MSPCXMLEntities, entitiesWithinEntitiesAreWrittenOut) {
    EXPECT_EQ(markupWith("<!ENTITY c '[&b;&b;&b;]'><!ENTITY b '(&a;&a;)'><!ENTITY a '<x/>'>", "&c;&c;&a;"),
              "<Project>[(<x/><x/>)(<x/><x/>)(<x/><x/>)][(<x/><x/>)(<x/><x/>)(<x/><x/>)]<x/></Project>");
}

TEST(MSPCXMLEntities, anEntityMayHaveAnyNameAndContent) {
    EXPECT_EQ(
        markupWith("<!ENTITY a.b-c '<![CDATA[<&#38;]]>'><!ENTITY \xc3\xa9 ''>", "&a.b-c;&\xc3\xa9;&a.b-c;&\xc3\xa9;!"),
        "<Project><![CDATA[<&]]><![CDATA[<&]]>!</Project>");
    EXPECT_EQ(markupWith("<!ENTITY n '<p:x xmlns:p=\"urn:p\" p:y=\"&#38;lt;\"/>'>", "&n;&n;"),
              "<Project><p:x xmlns:p=\"urn:p\" p:y=\"&lt;\"/><p:x xmlns:p=\"urn:p\" p:y=\"&lt;\"/></Project>");
}

TEST(MSPCXMLEntities, valuesOfAttributesAreWrittenOutToo) {
    EXPECT_EQ(markupWith("<!ENTITY a 'v'><!ENTITY b '<x y=\"&a;&a;\"/>'>", "&a;&b;&b;<z a='&a;&a;'/>"),
              "<Project>v<x y=\"vv\"/><x y=\"vv\"/><z a=\"vv\"/></Project>");
}

TEST(MSPCXMLEntities, noTextOfThePlanPassesForAReference) {
    const std::string declaration = "<!ENTITY a '<b/>'>";
    EXPECT_EQ(markupWith(declaration, "&a;&a;<![CDATA[&a;]]>&amp;a;"),
              "<Project><b/><b/><![CDATA[&a;]]>&amp;a;</Project>");
    // Characters that XML forbids, which the repair replaces.
    EXPECT_EQ(markupWith(declaration,
                         "&a;&a;\x01"
                         "a\x02"),
              "<Project><b/><b/>\xef\xbf\xbd"
              "a\xef\xbf\xbd</Project> PCDATA invalid Char value 1");
    EXPECT_EQ(markupWith(declaration, "&a;&a;&#1;a&#2;").find("<b/><b/><b/>"), std::string::npos);
    EXPECT_EQ(markupWith("<!ENTITY a '<b/>'><!ENTITY c '&#38;#1;a&#38;#2;'>", "&a;&a;&c;").find("<b/><b/><b/>"),
              std::string::npos);
}

TEST(MSPCXMLEntities, aBrokenEntityIsNotWrittenOut) {
    const auto markup = markupWith("<!ENTITY a '<b>'><!ENTITY c '<d/>'>", "&c;&c;&a;&a;");
    EXPECT_EQ(markup.find("<Project><d/><d/>"), 0u) << markup;
}

TEST(MSPCXMLEntities, whatReferencesMakeIsTenMegabytesAtMost) {
    // The first reference shows the parser what the entity holds, and is its own affair.
    const auto sizeOf = [](std::size_t references) {
        std::string content;
        for (std::size_t i = 0; i < references; ++i) {
            content += "&a;";
        }
        return markupWith("<!ENTITY a '<b>" + std::string(993, 'x') + "</b>'>", content).size();
    };
    constexpr std::size_t root = 19;
    EXPECT_EQ(sizeOf(10'001), root + 1'000 * 10'001);
    EXPECT_EQ(sizeOf(10'002), std::string_view("(none)").size());
}

std::string times(std::size_t count, std::string_view piece) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) {
        all += piece;
    }
    return all;
}

TEST(MSPCXMLEntities, referencesBehindBrokenMarkupKeepTheirText) {
    const std::string declarations = "<!ENTITY e 'x y'><!ENTITY t '<Task/>'>";
    EXPECT_EQ(markupWith(declarations, "<X a=b/>&e;&t;&e;"),
              "<Project><X/>b/&gt;x y<Task/>x y</Project> AttValue: \" or ' expected");
    EXPECT_EQ(markupWith(declarations, "A&nbsp;B&e;"), "<Project>A&amp;nbsp;Bx y</Project> Entity 'nbsp' not defined");
    EXPECT_EQ(
        markupWith(declarations, "\xff&e;"),
        "<Project>\xef\xbf\xbdx y</Project> Input is not proper UTF-8, indicate encoding !\nBytes: 0xFF 0x26 0x65 "
        "0x3B");
}

// Of references that are no errors, too, since the document type leaves open what is declared elsewhere.
TEST(MSPCXMLEntities, referencesToWhatIsNotDeclaredStayAsTheyAreWritten) {
    constexpr int count = 20'000;
    const auto references = times(count, "&u;");
    const auto markup = "<Project>" + times(count, "&amp;u;") + "</Project>";
    EXPECT_EQ(markupWith("<!ENTITY e 'x'>", references), markup + " Entity 'u' not defined");
    EXPECT_EQ(markupWith("<!ENTITY % p ''>%p;<!ENTITY e 'x'>", references), markup);
    EXPECT_EQ(markupWith("<!ENTITY e 'x'>", "&u;a&e;&v;<b/>&u;"),
              "<Project>&amp;u;ax&amp;v;<b/>&amp;u;</Project> Entity 'u' not defined");
    EXPECT_EQ(markupWith("<!ENTITY e 'x&u;y'>", "&e;&e;"),
              "<Project>x&amp;u;yx&amp;u;y</Project> Entity 'u' not defined");
}

TEST(MSPCXMLEntities, carriageReturnsOfReferencesStay) {
    EXPECT_EQ(markupWith("<!ENTITY r 'a&#13;b&#xD;&#10;c'><!ENTITY s '(&r;)'>", "&r;&#13;&s;"),
              "<Project>a&#13;b&#13;\nc&#13;(a&#13;b&#13;\nc)</Project>");
    EXPECT_EQ(markupWith("<!ENTITY r 'a\rb\r\nc'>", "&r;"), "<Project>a\nb\nc</Project>");
}

// Three bytes of a surrogate are no UTF-8.
TEST(MSPCXMLEntities, whatNoDocumentMayHoldIsReplacedAsWithoutADocumentType) {
    const auto replacedIn = [](const std::string& content) {
        const auto markup = markupWith("<!ENTITY e 'x'>", content);
        return markup.substr(0, markup.find("</Project>"));
    };
    const std::string replacement = "\xef\xbf\xbd";
    for (const auto& [forbidden, count] :
         {std::pair("\xef\xbf\xbe", 1U), std::pair("\xef\xbf\xbf", 1U), std::pair("\x0b", 1U), std::pair("\xff", 1U),
          std::pair("\xe2\x82", 2U), std::pair("\xed\xa0\x80", 3U), std::pair("\xf4\x90\x80\x80", 4U)}) {
        EXPECT_EQ(replacedIn("a" + std::string(forbidden) + "b&e;"), "<Project>a" + times(count, replacement) + "bx");
    }
}

TEST(MSPCXMLEntities, loopsAreRefusedBehindBrokenMarkupToo) {
    const std::string loop = "<!ENTITY a '&b;&b;'><!ENTITY b '&a;&a;'>";
    EXPECT_EQ(markupWith(loop, "&a;"), "(none)");
    EXPECT_EQ(markupWith(loop, "<X a=b/>&a;"), "(none)");
}

// Nothing may come of them, but the parser looks at them each time.
TEST(MSPCXMLEntities, referencesToNothingCostNoMoreThanOthers) {
    const auto start = processorTime();
    const auto declarations = "<!ENTITY e ''><!ENTITY f '" + times(15'000, "&e;") + "'>";
    EXPECT_EQ(markupWith(declarations, "<a/>" + times(200'000, "&f;")), "<Project><a/></Project>");
    EXPECT_EQ(markupWith(declarations, "<a b='" + times(200'000, "&f;") + "'/>"), "(none)");
    EXPECT_LT(processorTime() - start, std::chrono::seconds(5));
}

TEST(MSPCXMLEntities, entitiesOfDeclarationsMultiplyNothing) {
    std::string nested = "<!ENTITY % e0 ''>";
    for (int level = 1; level <= 4; ++level) {
        nested += "<!ENTITY % e" + std::to_string(level) + " '" +
                  times(10, "&#37;e" + std::to_string(level - 1) + ";") + "'>";
    }
    EXPECT_EQ(markupWith(nested + "%e4;", ""), "(none)");
    EXPECT_EQ(markupWith("<!ENTITY % a '" + times(1'000, "<!---->") + "'>" + times(2'000, "%a;"), ""), "(none)");
    EXPECT_EQ(markupWith("<!ENTITY % a '<!ENTITY b \"c\">'>%a;", "&b;"), "<Project>c</Project>");
}

// What stands for a reference is what its entity was declared as, so writing the references out by hand beforehand
// gives the same document.
class Drawn {
public:
    explicit Drawn(unsigned seed) : _random(seed) {}

    std::string declarations() const {
        std::string all;
        for (std::size_t i = 0; i < _values.size(); ++i) {
            all += "<!ENTITY e" + std::to_string(i) + " '" + _values[i] + "'>";
        }
        return all;
    }

    void drawEntities() {
        constexpr int few = 4;  // the parser takes what multiplies hundreds of times for a loop
        for (int i = 0; i < few; ++i) {
            _values.push_back(content(few));
        }
    }

    // Well-formed pieces, with references to entities that stand already.
    std::string content(int pieces) {
        std::string all;
        for (int i = 0; i < pieces; ++i) {
            switch (drawBelow(5)) {
                case 0:
                    all += "t";
                    break;
                case 1:
                    all += "<n a=\"v\"/>";
                    break;
                case 2:
                    all += "<m>u" + content(pieces - 1) + "</m>";
                    break;
                default:
                    all += _values.empty() ? "" : "&e" + std::to_string(drawBelow(_values.size())) + ";";
            }
        }
        return all;
    }

    std::string writtenOut(std::string content) const {
        for (auto at = content.find('&'); at != std::string::npos; at = content.find('&', at)) {
            const auto end = content.find(';', at);
            content.replace(at, end + 1 - at, _values[std::stoul(content.substr(at + 2, end - at - 2))]);
        }
        return content;
    }

private:
    std::size_t drawBelow(std::size_t bound) { return _random() % bound; }

    std::mt19937 _random;
    std::vector<std::string> _values;
};

TEST(MSPCXMLEntities, giveWhatReferencesWrittenOutByHandGive) {
    for (unsigned seed = 0; seed < 500; ++seed) {
        Drawn drawn(seed);
        drawn.drawEntities();
        const auto content = drawn.content(8);
        const auto byHand = "<Project>" + drawn.writtenOut(content) + "</Project>";
        EXPECT_TRUE(markupWith(drawn.declarations(), content) == byHand)
            << "seed " << seed << ", " << byHand.size() << " bytes";
    }
}

}  // namespace
