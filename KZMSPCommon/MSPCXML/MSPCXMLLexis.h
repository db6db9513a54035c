#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "MSPCCharacters.h"

// The lexical rules of XML 1.0, for all that looks at markup without a parser and for what writes it. Texts are UTF-8.
namespace MSPCXMLLexis {

inline constexpr std::string_view Blanks = " \t\r\n";
inline constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
// U+FFFD, which stands for what no document may hold.
inline constexpr std::string_view Replacement = "\xEF\xBF\xBD";
// The attribute that says what the blanks of an element mean, and its value for blanks that all count.
inline constexpr std::string_view SpaceAttribute = "xml:space";
inline constexpr std::string_view SpacePreserved = "preserve";

enum CharacterClass : unsigned char {
    NameStart = 1,
    NamePart = 2,
    Blank = 4,
    PlainText = 8,  // neither markup nor a reference, nor a NUL
};

// The classes that the tree library sees in a byte, so that what passes here is what it would take.
inline constexpr std::array<unsigned char, 256> characterClasses = [] {
    std::array<unsigned char, 256> classes = {};
    for (std::size_t byte = 0; byte < classes.size(); ++byte) {
        const bool isLetter =
            (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_' || byte == ':' || byte >= 0x80;
        const bool isLater = (byte >= '0' && byte <= '9') || byte == '-' || byte == '.';
        const bool isBlank = byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
        const bool isPlain = byte != '<' && byte != '&' && byte != '\0';
        classes[byte] = static_cast<unsigned char>((isLetter ? NameStart | NamePart : 0) | (isLater ? NamePart : 0) |
                                                   (isBlank ? Blank : 0) | (isPlain ? PlainText : 0));
    }
    return classes;
}();

[[nodiscard]] inline bool hasClass(char character, CharacterClass wanted) noexcept {
    return (characterClasses[static_cast<unsigned char>(character)] & wanted) != 0;
}

// The first character that is not of a class. The text must end with one; a NUL is of none.
[[nodiscard]] inline const char* skip(const char* text, CharacterClass skipped) noexcept {
    constexpr std::size_t stride = 4;  // short enough to be unrolled
    for (;; text += stride) {
        for (std::size_t offset = 0; offset < stride; ++offset) {
            if (!hasClass(text[offset], skipped)) {
                return text + offset;
            }
        }
    }
}

// Whether a text holds only blanks, tabs and line ends; true for an empty one.
[[nodiscard]] inline bool isAllBlank(std::string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char character) { return hasClass(character, Blank); });
}
// The same of a text that a NUL ends, which is not looked at behind the first other character.
[[nodiscard]] inline bool isAllBlank(const char* text) noexcept {
    return *skip(text, Blank) == '\0';
}

// The document ends at a NUL for the tree library, wherever it stands.
[[nodiscard]] inline bool hasNoNul(std::string_view text) noexcept {
    return text.find('\0') == std::string_view::npos;
}

// The size of the name that a text begins with; 0 when none does.
[[nodiscard]] std::size_t endOfName(std::string_view text) noexcept;

// Whether a document may hold a character.
[[nodiscard]] constexpr bool isCharacter(std::uint32_t code) noexcept {
    return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code <= 0xD7FF) ||
           (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
}

// The bytes of the character at an offset, and whether a document may hold it. What is no UTF-8 is one byte that it may
// not hold.
struct Character {
    std::size_t size = 1;
    bool isAllowed = false;
};
[[nodiscard]] inline Character characterAt(std::string_view text, std::size_t index) noexcept {
    if (const auto byte = static_cast<unsigned char>(text[index]); byte < 0x80) {
        return {1, isCharacter(byte)};
    }
    const auto rest = text.substr(index);
    const auto size = MSPCLengthOfCharacter(rest);
    return size == 0 ? Character{} : Character{size, isCharacter(MSPCCharacterOfLength(rest, size))};
}

// Which named references are good.
enum class Entities {
    Predefined,  // the five of XML
    AnyName,     // any name, in a document that declares entities
};

struct Reference {
    enum class Kind {
        Stray,      // a bare "&"
        Forbidden,  // a reference to a character that no document may hold
        Good,
    };
    Kind kind = Kind::Stray;
    std::size_t size = 1;  // with "&" and ";"; 1 for a bare "&"
};

// What the "&" at an offset begins.
[[nodiscard]] Reference referenceAt(std::string_view bytes, std::size_t ampersand, Entities entities) noexcept;

// Whether an "&" from one offset to another, where there are no sections, begins no good reference (to a predefined
// entity or a character that a document may hold).
[[nodiscard]] bool holdsStrayAmpersand(std::string_view bytes, std::size_t start, std::size_t end) noexcept;

// Text that any parser takes as it is: references are good, and there is no NUL.
[[nodiscard]] inline bool isPlainText(std::string_view text) noexcept {
    return hasNoNul(text) && !holdsStrayAmpersand(text, 0, text.size());
}

// The end of a comment, CDATA section or processing instruction that starts at `start`; the end of the bytes for one
// without an end; `start` itself when none starts there.
[[nodiscard]] std::size_t endOfSection(std::string_view bytes, std::size_t start) noexcept;

// Where the root element of a document begins, or whatever stands in its place.
struct Prolog {
    std::size_t end = 0;
    bool hasInternalSubset = false;  // the document type brings declarations of its own; `end` is their bracket then
};
[[nodiscard]] Prolog prologOf(std::string_view bytes) noexcept;

}  // namespace MSPCXMLLexis
