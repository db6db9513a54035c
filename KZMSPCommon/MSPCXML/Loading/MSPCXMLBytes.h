#pragma once

#include <array>
#include <cstddef>

// What the bytes of markup are, for the readers that look at markup without a parser.
namespace MSPCXMLBytes {

enum CharacterClass : unsigned char {
    NameStart = 1,
    NamePart = 2,
    Blank = 4,
    PlainText = 8,  // neither markup nor a reference, nor the NUL behind the window
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

inline bool hasClass(char character, CharacterClass wanted) {
    return (characterClasses[static_cast<unsigned char>(character)] & wanted) != 0;
}

// The first character that is not of a class. The text must end with one.
inline const char* skip(const char* text, CharacterClass skipped) {
    constexpr std::size_t stride = 4;  // short enough to be unrolled
    for (;; text += stride) {
        for (std::size_t offset = 0; offset < stride; ++offset) {
            if (!hasClass(text[offset], skipped)) {
                return text + offset;
            }
        }
    }
}

}  // namespace MSPCXMLBytes
