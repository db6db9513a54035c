#include "KZDXXMLFile.h"

#include <gtest/gtest.h>

namespace {

// The name of the root, or "<line>: <reason>".
std::string readingOf(const std::string& bytes) {
    KZDXXMLError error;
    const auto file = KZDXXMLFile::read("Actual.xml", bytes, error);
    return file ? std::string(file->root().name()) : std::to_string(error.line) + ": " + error.reason;
}

}  // namespace

TEST(KZDXXMLFile, knowsTheLinesOfItsElements) {
    KZDXXMLError error;
    const auto file =
        KZDXXMLFile::read("Actual.xml", "<?xml version=\"1.0\"?>\n<a>\n  <b/><c\n x='1'/>\r\n<d>t\nu</d></a>", error);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->name(), "Actual.xml");
    EXPECT_EQ(file->lineOf(file->root()), 2);
    EXPECT_EQ(file->lineOf(file->root().firstChildElement("b")), 3);
    EXPECT_EQ(file->lineOf(file->root().firstChildElement("c")), 3);
    EXPECT_EQ(file->lineOf(file->root().firstChildElement("d")), 5);
    EXPECT_EQ(file->lineOf({}), 0);
}

TEST(KZDXXMLFile, takesWhatIsWellFormed) {
    EXPECT_EQ(readingOf("<a/>"), "a");
    EXPECT_EQ(readingOf("\xEF\xBB\xBF<a/>"), "a");
    EXPECT_EQ(readingOf("<!DOCTYPE a><a>&lt;&#65;<![CDATA[<]]><!--c--></a>\n"), "a");
    EXPECT_EQ(readingOf("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>"), "a");
    EXPECT_EQ(readingOf(std::string("<\0a\0/\0>\0", 8)), "a");
}

TEST(KZDXXMLFile, refusesWhatIsNot) {
    for (const std::string wrong : {"",
                                    "text",
                                    "<a>",
                                    "<a></b>",
                                    "<a/><b/>",
                                    "<a/>text",
                                    "<a x='1' x='2'/>",
                                    "<a x=1/>",
                                    "<a x='<'/>",
                                    "<a>&b;</a>",
                                    "<a>&</a>",
                                    "<a>&#0;</a>",
                                    "<a>]]></a>",
                                    "<a><!-- -- --></a>",
                                    "<1/>",
                                    "<a>\x01</a>",
                                    "<a>\xFF</a>",
                                    "<b:a/>",
                                    "<a b:c='1'/>",
                                    "<?xml version='1.0' encoding='no-such'?><a/>",
                                    "<a xmlns:b='u' xmlns:c='u' b:x='1' c:x='2'/>",
                                    "<!DOCTYPE a SYSTEM 'x'><a>&b;</a>",
                                    " <?xml version='1.0'?><a/>"}) {
        KZDXXMLError error;
        EXPECT_FALSE(KZDXXMLFile::read("Actual.xml", wrong, error)) << wrong;
        EXPECT_FALSE(error.reason.empty()) << wrong;
    }
}

TEST(KZDXXMLFile, namesTheLineOfTheFirstError) {
    EXPECT_EQ(readingOf("<a>\n<b>\n</c></a>"), "3: Opening and ending tag mismatch: b line 2 and c");
}

// Entities can multiply text beyond measure, and a document of ours has none.
TEST(KZDXXMLFile, takesNoDeclarations) {
    EXPECT_EQ(readingOf("<!DOCTYPE a [<!ENTITY b 'c'>]><a>&b;</a>"), "0: The document type declares something");
}

TEST(KZDXXMLFile, boundsAttributesAndNamespaces) {
    std::string tag = "<a";
    for (int i = 0; i < 2'000; ++i) {
        tag += " a" + std::to_string(i) + "=''";
    }
    EXPECT_EQ(readingOf(tag + "/>"), "0: beyond measure: too many attributes, namespaces or names, or too large");
    std::string nested;
    std::string ends;
    for (int i = 0; i < 2'000; ++i) {
        nested += "<a xmlns:n" + std::to_string(i) + "='u'>";
        ends += "</a>";
    }
    EXPECT_EQ(readingOf(nested + ends), "0: beyond measure: too many attributes, namespaces or names, or too large");
}

TEST(KZDXXMLFile, goesAsDeepAsTheFile) {
    std::string nested;
    std::string ends;
    for (int i = 0; i < 200'000; ++i) {
        nested += "<a>";
        ends += "</a>";
    }
    EXPECT_EQ(readingOf(nested + ends), "a");
}

TEST(KZDXNumbers, areDecimalAndNothingElse) {
    EXPECT_EQ(KZDXInteger("12"), 12);
    EXPECT_EQ(KZDXInteger("-1"), -1);
    EXPECT_EQ(KZDXInteger("0012"), 12);
    for (const auto* const wrong : {"", "+1", "1.0", "0x1", " 1", "1 ", "9223372036854775808"}) {
        EXPECT_EQ(KZDXInteger(wrong), std::nullopt) << wrong;
    }
    EXPECT_EQ(KZDXNumber("0.50"), 0.5);
    EXPECT_EQ(KZDXNumber("-3"), -3.0);
    for (const auto* const wrong : {"", "nan", "inf", "1e3", "1,5", "-", "."}) {
        EXPECT_EQ(KZDXNumber(wrong), std::nullopt) << wrong;
    }
}
