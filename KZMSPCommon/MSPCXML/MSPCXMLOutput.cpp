#include "MSPCXMLOutput.h"

#include <algorithm>
#include <array>

#include "MSPCByteStreams.h"
#include "MSPCXMLLexis.h"

namespace {

std::string_view escapeOf(char character) {
    switch (character) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\t':
            return "&#9;";
        case '\n':
            return "&#10;";
        default:
            return "&#13;";
    }
}

}  // namespace

struct MSPCXMLOutput::ByteTable {
    std::array<Byte, 256> kinds{};

    explicit constexpr ByteTable(std::string_view escaped) {
        for (std::size_t byte = 0; byte < kinds.size(); ++byte) {
            kinds[byte] = byte >= 0x80                                                  ? Lead
                          : MSPCXMLLexis::isCharacter(static_cast<std::uint32_t>(byte)) ? Plain
                                                                                        : Forbidden;
        }
        for (const char character : escaped) {
            kinds[static_cast<unsigned char>(character)] = Escaped;
        }
    }

    [[nodiscard]] Byte kindOf(char character) const { return kinds[static_cast<unsigned char>(character)]; }

    // The offset of the first byte from `index` on that is not plain; the size of the text when all are.
    [[nodiscard]] std::size_t endOfPlainRun(std::string_view text, std::size_t index) const {
        const char* at = text.data();
        while (index + 4 <= text.size() &&
               (kindOf(at[index]) | kindOf(at[index + 1]) | kindOf(at[index + 2]) | kindOf(at[index + 3])) == Plain) {
            index += 4;
        }
        while (index < text.size() && kindOf(at[index]) == Plain) {
            ++index;
        }
        return index;
    }
};

MSPCXMLOutput::MSPCXMLOutput(MSPCByteWriter& writer) : _writer(writer) {
}

void MSPCXMLOutput::newLine(std::size_t level) {
    static constexpr auto lineEndAndBlanks = [] {
        std::array<char, 1 + 4 * MostIndentedLevels> characters{};
        characters.fill(' ');
        characters.front() = '\n';
        return characters;
    }();
    raw({lineEndAndBlanks.data(), 1 + 4 * std::min(level, MostIndentedLevels)});
}

void MSPCXMLOutput::text(std::string_view text) {
    static constexpr ByteTable table("&<>\r");
    content(text, table);
}

void MSPCXMLOutput::attributeValue(std::string_view value) {
    static constexpr ByteTable table("&<>\"\t\n\r");
    content(value, table);
}

void MSPCXMLOutput::unescaped(std::string_view text) {
    static constexpr ByteTable table("");
    content(text, table);
}

void MSPCXMLOutput::comment(std::string_view text) {
    for (auto pair = text.find("--"); pair != std::string_view::npos; pair = text.find("--")) {
        unescaped(text.substr(0, pair + 1));
        raw(" ");
        text.remove_prefix(pair + 1);
    }
    unescaped(text);
    if (text.ends_with('-')) {
        raw(" ");
    }
}

void MSPCXMLOutput::content(std::string_view text, const ByteTable& table) {
    std::size_t runStart = 0;
    const auto endRun = [&](std::size_t index, std::size_t skipped) {
        raw(text.substr(runStart, index - runStart));
        runStart = index + skipped;
    };
    for (auto index = table.endOfPlainRun(text, 0); index < text.size(); index = table.endOfPlainRun(text, index)) {
        const auto kind = table.kindOf(text[index]);
        const auto character =
            kind == Lead ? MSPCXMLLexis::characterAt(text, index) : MSPCXMLLexis::Character{1, kind != Forbidden};
        if (kind == Escaped) {
            endRun(index, character.size);
            raw(escapeOf(text[index]));
        } else if (!character.isAllowed) {
            endRun(index, character.size);
            replace();
        }
        index += character.size;
    }
    endRun(text.size(), 0);
}

void MSPCXMLOutput::replace() {
    raw(MSPCXMLLexis::Replacement);
    ++_replaced;
}

void MSPCXMLOutput::writeThrough(std::string_view bytes) {
    _writer.write(bytes);
}

void MSPCXMLOutput::flush() {
    if (_used > 0) {
        _writer.write({_block.get(), _used});
        _used = 0;
    }
}
