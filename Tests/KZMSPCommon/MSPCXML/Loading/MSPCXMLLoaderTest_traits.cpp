#include "MSPCXMLLoader.h"

#include <gtest/gtest.h>

// What is found out before a document is parsed.

namespace {

TEST(MSPCXMLTraits, tellsStrayAmpersandsFromReferences) {
    for (const std::string_view stray :
         {"<a>&</a>", "<a>& b</a>", "<a>&;</a>", "<a>&nbsp;</a>", "<a>&amp</a>", "<a>&#;</a>", "<a>&#x;</a>",
          "<a>&#xG;</a>", "<a>&#X41;</a>", "<a>&AMP;</a>", "<a b='&'/>", "<a><!--&-->&</a>", "<a>&#0;</a>",
          "<a>&#x110000;</a>", "<a>&#99999999999999;</a>", "<a>&#xD800;</a>", "<a>&#xFFFE;</a>", "<a>&"}) {
        EXPECT_TRUE(traitsOfXML(stray).hasStrayAmpersand) << stray;
    }
    for (const std::string_view good :
         {"<a>&amp;&lt;&gt;&quot;&apos;</a>", "<a>&#65;&#x41;&#x10FFFF;&#13;</a>", "<a><![CDATA[&]]></a>",
          "<a><!--&--></a>", "<a><?t &?></a>", "<!--&--><a/>", "<?t &?><a/>", "<a><![CDATA[&</a>"}) {
        EXPECT_FALSE(traitsOfXML(good).hasStrayAmpersand) << good;
    }
}

TEST(MSPCXMLTraits, findsWhatStandsFarInside) {
    const std::string filler(200'000, 'x');
    EXPECT_TRUE(traitsOfXML("<a>" + filler + "& " + filler + "</a>").hasStrayAmpersand);
    EXPECT_TRUE(traitsOfXML("<a>" + filler + "<!---->" + filler + "</a>").hasSections);
    EXPECT_FALSE(traitsOfXML("<a>" + filler + "! ? &amp;</a>").hasSections);
    // Both halves of the mark in different blocks.
    for (std::size_t size = 65'520; size < 65'550; ++size) {
        EXPECT_TRUE(traitsOfXML("<a>" + filler.substr(0, size) + "<![CDATA[x]]></a>").hasSections) << size;
    }
}

TEST(MSPCXMLTraits, seesTextBesideElements) {
    for (const std::string_view mixed :
         {"<a>t<b/></a>", "<a><b/>t</a>", "<a><b></b>t</a>", "<a><b> </b>\n t</a>", "<a>t<b>u</b></a>",
          "<a>&#32;<b>u</b></a>", "<a xml:space='preserve'> <b/> </a>", "<a/>t", "<a>t<b",
          "<a><b c='/'>t<d/></b></a>"}) {
        EXPECT_TRUE(traitsOfXML(mixed).hasMixedContent) << mixed;
    }
    for (const std::string_view plain :
         {"<a/>", "<a>t</a>", "<a> </a>", "<a> <b>t</b>\r\n\t<c/> </a> ", "<a><b c='>'>t</b></a>",
          "<?p q?>\n<a>t</a>\n", "<a><b><c>&#32;</c></b></a>", ""}) {
        EXPECT_FALSE(traitsOfXML(plain).hasMixedContent) << plain;
    }
}

TEST(MSPCXMLTraits, findsAnInternalSubsetOnlyInTheDocumentType) {
    for (const std::string_view with : {"<!DOCTYPE a [<!ENTITY b 'c'>]><a/>",
                                        "\xEF\xBB\xBF<?xml version='1.0'?>\n<!--[--> <!DOCTYPE a SYSTEM '>' []><a/>"}) {
        EXPECT_TRUE(traitsOfXML(with).hasInternalSubset) << with;
    }
    for (const std::string_view without : {"<a/>", "<!DOCTYPE a><a b='['/>", "<!DOCTYPE a SYSTEM '['><a/>",
                                           "<!--<!DOCTYPE a [-->  <a/>", "<a><!DOCTYPE a []></a>", ""}) {
        EXPECT_FALSE(traitsOfXML(without).hasInternalSubset) << without;
    }
}

}  // namespace
