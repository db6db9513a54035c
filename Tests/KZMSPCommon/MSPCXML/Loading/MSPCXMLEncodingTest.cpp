#include "MSPCXMLEncoding.h"

#include <gtest/gtest.h>

#include "MSPCXMLLoader.h"
#include "XMLText.h"

namespace {

using namespace std::string_literals;

// ASCII text in a wide encoding, `width` bytes a character.
std::string wide(std::string_view text, std::size_t width, bool isBigEndian) {
    std::string bytes;
    for (const char character : text) {
        const std::string zeros(width - 1, '\0');
        bytes += isBigEndian ? zeros + character : character + zeros;
    }
    return bytes;
}

std::string declared(std::string_view encoding, std::string_view content) {
    return "<?xml version='1.0' encoding='" + std::string(encoding) + "'?><a>" + std::string(content) + "</a>";
}

std::string textOf(std::string bytes) {
    const auto loaded = MSPCXMLLoader(MSPCXMLContent::DataOnly).loadBytes(std::move(bytes));
    return loaded ? loaded->document.root().stringValue() : "(none)";
}

TEST(MSPCXMLEncoding, declaredEncodingsAreConverted) {
    struct Case {
        std::string_view encoding;
        std::string_view bytes;
        std::string_view utf8;
    };
    constexpr Case cases[] = {
        {"windows-1252", "\xE4\x80\x93", "\xC3\xA4\xE2\x82\xAC\xE2\x80\x9C"},
        {"Windows-1252", "\xE4", "\xC3\xA4"},
        {"ISO-8859-1", "\xE4\xFF", "\xC3\xA4\xC3\xBF"},
        {"ISO-8859-15", "\xA4", "\xE2\x82\xAC"},
        {"windows-1251", "\xCF", "\xD0\x9F"},
        {"Shift_JIS", "\x83\x65\xB1", "\xE3\x83\x86\xEF\xBD\xB1"},
        {"GB18030", "\xD6\xD0", "\xE4\xB8\xAD"},
        {"UTF-8", "\xC3\xA4", "\xC3\xA4"},
        {"utf-8", "\xC3\xA4", "\xC3\xA4"},
        {"US-ASCII", "a", "a"},
        {"UTF-16", "\xC3\xA4", "\xC3\xA4"},  // said of bytes that cannot be it
    };
    for (const auto& [encoding, bytes, utf8] : cases) {
        EXPECT_EQ(textOf(declared(encoding, bytes)), utf8) << encoding;
    }
}

TEST(MSPCXMLEncoding, anUnknownEncodingIsAFailure) {
    EXPECT_FALSE(xmlBytesAsUtf8(declared("x-klingon", "a")));
    EXPECT_EQ(textOf(declared("x-klingon", "a")), "(none)");
}

TEST(MSPCXMLEncoding, marksAndFirstBytesTellWideEncodings) {
    const std::string_view text = "<a>bc</a>";
    const std::string cases[] = {
        "\xFF\xFE"s + wide(text, 2, false),
        "\xFE\xFF"s + wide(text, 2, true),
        "\xFF\xFE\0\0"s + wide(text, 4, false),
        "\0\0\xFE\xFF"s + wide(text, 4, true),
        wide(text, 2, false),
        wide(text, 2, true),
        wide(text, 4, false),
        wide(text, 4, true),
        "\xEF\xBB\xBF"s + std::string(text),
        wide(declared("UTF-16", "bc"), 2, false),
        wide(declared("windows-1252", "bc"), 2, true),
        "\xEF\xBB\xBF"s + declared("windows-1252", "bc"),
    };
    for (const auto& bytes : cases) {
        EXPECT_EQ(textOf(bytes), "bc") << testing::PrintToString(bytes);
    }
}

TEST(MSPCXMLEncoding, charactersBeyondTheBasicPlaneSurvive) {
    const auto bytes = "\xFF\xFE"s + wide("<a>", 2, false) + "\x3D\xD8\x00\xDE"s + wide("</a>", 2, false);
    EXPECT_EQ(textOf(bytes), "\xF0\x9F\x98\x80");
}

TEST(MSPCXMLEncoding, whatIsNoTextInItsEncodingIsReplaced) {
    const auto loneSurrogate = "\xFF\xFE"s + wide("<a>", 2, false) + "\x3D\xD8"s + wide("</a>", 2, false);
    EXPECT_EQ(textOf(loneSurrogate), "\xEF\xBF\xBD");
    EXPECT_EQ(textOf(declared("Shift_JIS", "a\x83")).substr(0, 1), "a");
}

TEST(MSPCXMLEncoding, longTextsAreConvertedWhole) {
    std::string content;
    std::string expected;
    for (int count = 0; count < 100'000; ++count) {
        content += "a\xE4";
        expected += "a\xC3\xA4";
    }
    EXPECT_EQ(textOf(declared("windows-1252", content)), expected);
}

TEST(MSPCXMLEncoding, anAmpersandIsFoundInAnyEncoding) {
    const MSPCXMLLoader loader(MSPCXMLContent::DataOnly, "Project");
    const auto loaded = loader.loadBytes(wide("<Project>A & B</Project>", 2, false));
    ASSERT_TRUE(loaded && loaded->repair);
    EXPECT_EQ(loaded->document.root().stringValue(), "A & B");
    EXPECT_EQ(loaded->repair->message, "xmlParseEntityRef: no name");
}

TEST(MSPCXMLEncoding, writtenFilesAreUtf8WhateverWasRead) {
    const auto loaded = MSPCXMLLoader(MSPCXMLContent::Everything).loadBytes(declared("ISO-8859-1", "\xE4"));
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->document.serialized(), XMLDeclaration + "<a>\xC3\xA4</a>\n");
}

}  // namespace
