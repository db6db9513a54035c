#include <gtest/gtest.h>

#include "PlanImport.h"

// Plans in the encodings that mail and old programs bring along: the texts arrive as UTF-8.

namespace {

// The basic and the supplementary planes, as far as an encoding holds them.
std::u32string wideTextOf(std::string_view ascii, std::u32string_view name) {
    std::u32string text;
    for (const char character : ascii) {
        if (character == '@') {
            text += name;
        } else {
            text += static_cast<char32_t>(character);
        }
    }
    return text;
}

std::string planWithName(const std::string& declaration) {
    return planOf({"<Tasks>" + taskElement("1", "<Name>@</Name>") + "</Tasks>", "", declaration});
}

std::string planWithName(const std::string& declaration, const std::string& name) {
    auto plan = planWithName(declaration);
    return plan.replace(plan.find('@'), 1, name);
}

void appendNumber(std::string& bytes, std::uint32_t number, int size, bool bigEndian) {
    for (int i = 0; i < size; ++i) {
        bytes += static_cast<char>(number >> (8 * (bigEndian ? size - 1 - i : i)) & 0xFFU);
    }
}

std::string inUtf16(const std::u32string& text, bool bigEndian) {
    std::string bytes;
    for (const char32_t character : text) {
        if (character >= 0x10000) {
            appendNumber(bytes, 0xD800 + ((character - 0x10000) >> 10U), 2, bigEndian);
            appendNumber(bytes, 0xDC00 + ((character - 0x10000) & 0x3FFU), 2, bigEndian);
        } else {
            appendNumber(bytes, character, 2, bigEndian);
        }
    }
    return bytes;
}

std::string inUtf32(const std::u32string& text, bool bigEndian) {
    std::string bytes;
    for (const char32_t character : text) {
        appendNumber(bytes, character, 4, bigEndian);
    }
    return bytes;
}

void expectName(const std::string& plan, const std::string& name, const std::string& what) {
    const PlanImport import("encoding", plan);
    EXPECT_EQ(import.status(), 0) << what << import.log();
    EXPECT_EQ(import.texts("title"), std::vector<std::string>{name}) << what;
    EXPECT_FALSE(import.logHolds("WARNING")) << what << import.log();
}

// Umlaut, euro sign, a Japanese character, a face from beyond the basic plane.
constexpr std::u32string_view WideName = U"\u00E4\u20AC\u65E5\U0001F600";
const std::string WideNameInUtf8 = "\xC3\xA4\xE2\x82\xAC\xE6\x97\xA5\xF0\x9F\x98\x80";

}  // namespace

TEST(Encodings, utf16BothWaysWithAndWithoutMark) {
    for (const std::string declaration : {"", R"(<?xml version="1.0" encoding="UTF-16"?>)"}) {
        const auto plan = wideTextOf(planWithName(declaration), WideName);
        const auto marked = U'\uFEFF' + plan;
        expectName(inUtf16(plan, false), WideNameInUtf8, "little endian" + declaration);
        expectName(inUtf16(plan, true), WideNameInUtf8, "big endian" + declaration);
        expectName(inUtf16(marked, false), WideNameInUtf8, "little endian with mark" + declaration);
        expectName(inUtf16(marked, true), WideNameInUtf8, "big endian with mark" + declaration);
    }
}

TEST(Encodings, utf32BothWaysWithAndWithoutMark) {
    const auto plan = wideTextOf(planWithName(""), WideName);
    const auto marked = U'\uFEFF' + plan;
    expectName(inUtf32(plan, false), WideNameInUtf8, "little endian");
    expectName(inUtf32(plan, true), WideNameInUtf8, "big endian");
    expectName(inUtf32(marked, false), WideNameInUtf8, "little endian with mark");
    expectName(inUtf32(marked, true), WideNameInUtf8, "big endian with mark");
}

TEST(Encodings, utf8WithMark) {
    expectName("\xEF\xBB\xBF" + planWithName("", WideNameInUtf8), WideNameInUtf8, "UTF-8");
}

TEST(Encodings, encodingsOfOneAndTwoBytes) {
    struct Case {
        const char* encoding;
        const char* bytes;
        const char* utf8;
    };
    constexpr Case cases[] = {
        {"windows-1252", "\xE4\x80\x93", "\xC3\xA4\xE2\x82\xAC\xE2\x80\x9C"},
        {"ISO-8859-15", "\xE4\xA4", "\xC3\xA4\xE2\x82\xAC"},
        {"iso-8859-1", "\xE4\xA4", "\xC3\xA4\xC2\xA4"},
        {"Shift_JIS", "\x93\xFA\x96\x7B", "\xE6\x97\xA5\xE6\x9C\xAC"},
    };
    for (const auto& [encoding, bytes, utf8] : cases) {
        const auto declaration = std::string("<?xml version=\"1.0\" encoding=\"") + encoding + "\"?>";
        expectName(planWithName(declaration, bytes), utf8, encoding);
    }
}

TEST(Encodings, aDeclarationThatIsWrongAboutWideBytesIsNotBelieved) {
    const auto declared = [](const std::string& encoding) {
        return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>";
    };
    expectName(planWithName(declared("UTF-16"), WideNameInUtf8), WideNameInUtf8, "UTF-8 that says UTF-16");
    expectName(inUtf16(wideTextOf(planWithName(declared("UTF-8")), WideName), false), WideNameInUtf8,
               "UTF-16 that says UTF-8");
    expectName(inUtf16(wideTextOf(planWithName(declared("windows-1252")), WideName), true), WideNameInUtf8,
               "UTF-16 that says windows-1252");
}

TEST(Encodings, bytesThatAreNoUtf8AreReplacedWithAWarning) {
    const PlanImport import("latin-as-utf-8", planWithName("", "a\xE4z"));
    EXPECT_EQ(import.status(), 0);
    EXPECT_EQ(import.texts("title"), std::vector<std::string>{"a\xEF\xBF\xBDz"});
    EXPECT_TRUE(import.logHolds("WARNING: Replaced 1 characters that XML cannot hold in '")) << import.log();
}

TEST(Encodings, anUnknownEncodingIsAFailure) {
    const PlanImport import("unknown-encoding", planWithName(R"(<?xml version="1.0" encoding="x-none"?>)", "a"));
    EXPECT_EQ(import.status(), 1);
    EXPECT_TRUE(import.logHolds("MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data."));
}
