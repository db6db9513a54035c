#include "MSPCCharacters.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <cstdint>

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

bool MSPCIsLetter(char32_t character) noexcept {
    return u_isalpha(static_cast<UChar32>(character));
}

bool MSPCIsLetterOrDigit(char32_t character) noexcept {
    return u_isalnum(static_cast<UChar32>(character));
}
