#include "MSPCCharacters.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstdint>

namespace {

bool isContinuation(char byte) noexcept {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// The length of the character at the start of a text as its first byte tells it; 0 when no character begins so.
std::size_t announcedLength(unsigned char first) noexcept {
    if (first < 0x80U) {
        return 1;
    }
    if (first >= 0xC2U && first < 0xE0U) {
        return 2;
    }
    if ((first & 0xF0U) == 0xE0U) {
        return 3;
    }
    return first >= 0xF0U && first < 0xF5U ? 4 : 0;
}

// Whether the first two bytes of a character leave the range of Unicode, name a surrogate, or are longer than needed.
bool isOutOfRange(unsigned char first, unsigned char second) noexcept {
    return (first == 0xE0U && second < 0xA0U) || (first == 0xEDU && second > 0x9FU) ||
           (first == 0xF0U && second < 0x90U) || (first == 0xF4U && second > 0x8FU);
}

// The length of the terminator that starts at a position; 0 when none does.
std::size_t terminatorLength(std::string_view text) {
    for (const std::string_view terminator : {"\r\n", "\n", "\r", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        if (text.starts_with(terminator)) {
            return terminator.size();
        }
    }
    return 0;
}

}  // namespace

std::optional<std::u32string> MSPCCharactersOf(std::string_view utf8) {
    std::u16string units(utf8.size(), u'\0');  // UTF-16 never takes more units than UTF-8 takes bytes
    const auto size = static_cast<std::int32_t>(utf8.size());
    std::int32_t count = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(units.data(), size, &count, utf8.data(), size, &status);
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    const icu::UnicodeString text(false, units.data(), count);
    std::u32string characters;
    for (std::int32_t position = 0; position < count; position = text.moveIndex32(position, 1)) {
        characters += static_cast<char32_t>(text.char32At(position));
    }
    return characters;
}

std::size_t MSPCLengthOfCharacter(std::string_view utf8) noexcept {
    if (utf8.empty()) {
        return 0;
    }
    const auto first = static_cast<unsigned char>(utf8.front());
    const auto length = announcedLength(first);
    const bool isComplete = length != 0 && length <= utf8.size() &&
                            std::ranges::all_of(utf8.substr(1, length - 1), isContinuation) &&
                            (length <= 2 || !isOutOfRange(first, static_cast<unsigned char>(utf8[1])));
    return isComplete ? length : 0;
}

char32_t MSPCCharacterOfLength(std::string_view utf8, std::size_t length) noexcept {
    const auto first = static_cast<unsigned char>(utf8.front());
    // The first byte of several gives away as many bits as there are bytes, and one.
    char32_t character = length == 1 ? first : first & (0x7FU >> length);
    for (const char byte : utf8.substr(1, length - 1)) {
        character = (character << 6U) | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    return character;
}

bool MSPCIsUTF8(std::string_view text) noexcept {
    while (!text.empty()) {
        const auto length = MSPCLengthOfCharacter(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

bool MSPCIsLetter(char32_t character) noexcept {
    return u_isalpha(static_cast<UChar32>(character));
}

bool MSPCIsLetterOrDigit(char32_t character) noexcept {
    return u_isalnum(static_cast<UChar32>(character));
}

MSPCLineBreak nextLineBreak(std::string_view text, std::size_t from) {
    constexpr std::string_view firstBytes = "\n\r\xC2\xE2";
    for (auto at = text.find_first_of(firstBytes, from); at != std::string_view::npos;
         at = text.find_first_of(firstBytes, at + 1)) {
        if (const auto length = terminatorLength(text.substr(at)); length > 0) {
            return {at, at + length};
        }
    }
    return {text.size(), text.size()};
}
