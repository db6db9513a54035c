#include "MSPCMessage.h"

#include <algorithm>
#include <cstdint>

#include "MSPCCharacters.h"

namespace {

// Most texts consist of these alone.
bool isPlain(char byte) {
    return byte >= ' ' && byte <= '~';
}

bool isShownAsEscape(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character <= 0x9F) || character == 0x061C || character == 0x200E ||
           character == 0x200F || (character >= 0x2028 && character <= 0x202E) ||
           (character >= 0x2066 && character <= 0x2069);
}

std::string escapeOf(char32_t character) {
    switch (character) {
        case U'\n':
            return "\\n";
        case U'\r':
            return "\\r";
        case U'\t':
            return "\\t";
        default:
            return character < 0x80 ? fmt::format("\\x{:02x}", static_cast<std::uint32_t>(character))
                                    : fmt::format("\\u{:04x}", static_cast<std::uint32_t>(character));
    }
}

std::string escapedText(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    while (!text.empty()) {
        const auto length = MSPCLengthOfCharacter(text);
        const auto character = length == 0 ? U'\0' : MSPCCharacterOfLength(text, length);
        if (length == 0) {
            escaped += fmt::format("\\x{:02x}", static_cast<unsigned char>(text.front()));
        } else if (isShownAsEscape(character)) {
            escaped += escapeOf(character);
        } else {
            escaped += text.substr(0, length);
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return escaped;
}

}  // namespace

MSPCShownText::MSPCShownText(std::string_view text) : _text(text) {
    if (!std::ranges::all_of(text, isPlain)) {
        _escaped = escapedText(text);
    }
}
