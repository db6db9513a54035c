#include "MSPCXMLOutput.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "MSPCFileSystem.h"

namespace {

constexpr std::string_view Replacement = "\xEF\xBF\xBD";

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

unsigned byteAt(std::string_view text, std::size_t index) {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : 0U;
}

bool isContinuation(unsigned byte) {
    return (byte & 0xC0U) == 0x80U;
}

// The code point that starts with the lead byte at `index`, with its number of bytes; no bytes when it is no UTF-8.
struct CodePoint {
    std::uint32_t value = 0;
    std::size_t size = 0;
};

CodePoint codePointAt(std::string_view text, std::size_t index) {
    const unsigned lead = byteAt(text, index);
    const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4) {
        return {};
    }
    std::uint32_t value = lead & (0xFFU >> (size + 1));
    for (std::size_t offset = 1; offset < size; ++offset) {
        const unsigned byte = byteAt(text, index + offset);
        if (!isContinuation(byte)) {
            return {};
        }
        value = (value << 6U) | (byte & 0x3FU);
    }
    const bool isOverlong = (size == 3 && value < 0x800) || (size == 4 && value < 0x10000);
    const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
    return isOverlong || isSurrogate || value > 0x10FFFF ? CodePoint{} : CodePoint{value, size};
}

}  // namespace

struct MSPCXMLOutput::ByteTable {
    std::array<Byte, 256> kinds{};

    explicit constexpr ByteTable(std::string_view escaped) {
        for (std::size_t byte = 0; byte < kinds.size(); ++byte) {
            kinds[byte] = byte >= 0x80 ? Lead : byte < 0x20 ? Forbidden : Plain;
        }
        for (const char allowed : {'\t', '\n', '\r'}) {
            kinds[static_cast<unsigned char>(allowed)] = Plain;
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

MSPCXMLOutput::MSPCXMLOutput(MSPCByteSink& sink) : _sink(sink) {
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
        const auto point = kind == Lead ? codePointAt(text, index) : CodePoint{0, 1};
        const auto size = std::max(point.size, std::size_t{1});
        if (kind == Escaped) {
            endRun(index, size);
            raw(escapeOf(text[index]));
        } else if (kind == Forbidden || point.size == 0 || point.value == 0xFFFE || point.value == 0xFFFF) {
            endRun(index, size);
            replace();
        }
        index += size;
    }
    endRun(text.size(), 0);
}

void MSPCXMLOutput::replace() {
    raw(Replacement);
    ++_replaced;
}

void MSPCXMLOutput::writeThrough(std::string_view bytes) {
    _sink.write(bytes);
}

void MSPCXMLOutput::flush() {
    if (_used > 0) {
        _sink.write({_block.get(), _used});
        _used = 0;
    }
}
