#include "MSPCXMLLexis.h"

#include <gtest/gtest.h>

namespace {

using namespace MSPCXMLLexis;
using namespace std::string_view_literals;

TEST(MSPCXMLLexis, namesEndWhereTheTreeLibraryEndsThem) {
    struct Case {
        std::string_view text;
        std::size_t size;
    };
    constexpr Case cases[] = {
        {"", 0},  {"a", 1},   {"a>", 1},        {"Start:x-1.2_y z", 13}, {"1a", 0},   {"-a", 0},       {" a", 0},
        {"_", 1}, {"a+b", 1}, {"\xC3\x84/", 2}, {"a\0b"sv, 1},           {"a&b;", 1}, {":a=\"1\"", 2}, {"a\tb", 1}};
    for (const auto& [text, size] : cases) {
        EXPECT_EQ(endOfName(text), size) << text;
    }
}

TEST(MSPCXMLLexis, blanksAreFourCharacters) {
    for (const char* blank : {"", " ", "\t", "\r\n", " \n\t\r    \n"}) {
        EXPECT_TRUE(isAllBlank(blank)) << testing::PrintToString(blank);
        EXPECT_TRUE(isAllBlank(std::string_view(blank))) << testing::PrintToString(blank);
    }
    for (const char* other : {"a", " a", "    \v", "\f", "\xC2\xA0", "\x01"}) {
        EXPECT_FALSE(isAllBlank(other)) << testing::PrintToString(other);
        EXPECT_FALSE(isAllBlank(std::string_view(other))) << testing::PrintToString(other);
    }
    EXPECT_FALSE(isAllBlank(" \0"sv)) << "a NUL is none";
}

TEST(MSPCXMLLexis, charactersOfADocumentLeaveOutControlsSurrogatesAndTheLastTwoOfThePlane) {
    for (const std::uint32_t code : {0x9U, 0xAU, 0xDU, 0x20U, 0x7FU, 0xD7FFU, 0xE000U, 0xFFFDU, 0x10000U, 0x10FFFFU}) {
        EXPECT_TRUE(isCharacter(code)) << code;
    }
    for (const std::uint32_t code : {0x0U, 0x8U, 0xBU, 0x1FU, 0xD800U, 0xDFFFU, 0xFFFEU, 0xFFFFU, 0x110000U}) {
        EXPECT_FALSE(isCharacter(code)) << code;
    }
}

TEST(MSPCXMLLexis, referencesAreGoodForbiddenOrStray) {
    using enum Reference::Kind;
    struct Case {
        std::string_view text;
        Reference::Kind kind;
        std::size_t size;
        Reference::Kind kindWithEntities;
    };
    constexpr Case cases[] = {
        {"&amp;", Good, 5, Good},
        {"&apos;x", Good, 6, Good},
        {"&#65;", Good, 5, Good},
        {"&#x10FFFF;", Good, 10, Good},
        {"&#0;", Forbidden, 4, Forbidden},
        {"&#xD800;", Forbidden, 8, Forbidden},
        {"&#99999999999;", Forbidden, 14, Forbidden},
        {"&", Stray, 1, Stray},
        {"&;", Stray, 1, Stray},
        {"& b;", Stray, 1, Stray},
        {"&amp", Stray, 1, Stray},
        {"&#;", Stray, 1, Stray},
        {"&#X41;", Stray, 1, Stray},
        {"&#xG;", Stray, 1, Stray},
        {"&nbsp;", Stray, 1, Good},
        {"&a-b.c:d_e1;", Stray, 1, Good},
        {"&a b;", Stray, 1, Stray},
        {"&a\0b;"sv, Stray, 1, Stray},
    };
    for (const auto& [text, kind, size, kindWithEntities] : cases) {
        const auto reference = referenceAt(text, 0, Entities::Predefined);
        EXPECT_EQ(reference.kind, kind) << text;
        EXPECT_EQ(reference.size, size) << text;
        EXPECT_EQ(referenceAt(text, 0, Entities::AnyName).kind, kindWithEntities) << text;
    }
}

TEST(MSPCXMLLexis, aStrayAmpersandIsLookedForInAPieceAndItsReferenceBehindThat) {
    constexpr std::string_view text = "a & b &amp; c";
    EXPECT_TRUE(holdsStrayAmpersand(text, 0, 3));
    EXPECT_FALSE(holdsStrayAmpersand(text, 0, 2));
    EXPECT_FALSE(holdsStrayAmpersand(text, 3, text.size()));
    EXPECT_FALSE(holdsStrayAmpersand(text, 3, 7)) << "the reference ends behind the piece";
}

TEST(MSPCXMLLexis, textIsPlainWithoutNulsAndStrayAmpersands) {
    EXPECT_TRUE(isPlainText("a &lt; &#32; > ]]> <"));
    EXPECT_TRUE(isPlainText(""));
    EXPECT_FALSE(isPlainText("a & b"));
    EXPECT_FALSE(isPlainText("a\0"sv));
}

TEST(MSPCXMLLexis, sectionsEndBehindTheirMark) {
    struct Case {
        std::string_view text;
        std::size_t start;
        std::size_t end;
    };
    constexpr Case cases[] = {
        {"<!--a-->b", 0, 8},  {"<!-->-->", 0, 8},     {"x<![CDATA[<!--]]>-->", 1, 17},
        {"<?p?>", 0, 5},      {"<!--a--", 0, 7},      {"<![CDATA[]>", 0, 11},
        {"<a><!---->", 0, 0}, {"<!DOCTYPE a>", 0, 0}, {"", 0, 0},
    };
    for (const auto& [text, start, end] : cases) {
        EXPECT_EQ(endOfSection(text, start), end) << text;
    }
}

TEST(MSPCXMLLexis, aPrologEndsAtTheRootOrAtTheDeclarationsOfADocumentType) {
    struct Case {
        std::string_view text;
        std::size_t end;
        bool hasInternalSubset;
    };
    constexpr Case cases[] = {
        {"<a/>", 0, false},
        {"\xEF\xBB\xBF \n<a/>", 5, false},
        {"<?xml version='1.0'?><!--c--><a/>", 29, false},
        {"<!DOCTYPE a><a/>", 12, false},
        {"<!DOCTYPE a SYSTEM '[>'> <a/>", 25, false},
        {"<!DOCTYPE a [<!ENTITY b 'c'>]><a/>", 12, true},
        {"<!DOCTYPE a", 11, false},
        {"", 0, false},
    };
    for (const auto& [text, end, hasInternalSubset] : cases) {
        const auto prolog = prologOf(text);
        EXPECT_EQ(prolog.end, end) << text;
        EXPECT_EQ(prolog.hasInternalSubset, hasInternalSubset) << text;
    }
}

}  // namespace
