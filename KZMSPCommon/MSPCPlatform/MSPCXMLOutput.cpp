#include "MSPCXMLOutput.h"

#include <array>
#include <cstdint>

#include "MSPCFileSystem.h"

namespace {

constexpr std::size_t BlockSize = std::size_t{1} << 16;
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

bool isContinuation(unsigned byte) { return (byte & 0xC0U) == 0x80U; }

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
            kinds[byte] = byte >= 0x80 ? Byte::Lead : byte < 0x20 ? Byte::Forbidden : Byte::Plain;
        }
        for (const char allowed : {'\t', '\n', '\r'}) {
            kinds[static_cast<unsigned char>(allowed)] = Byte::Plain;
        }
        for (const char character : escaped) {
            kinds[static_cast<unsigned char>(character)] = Byte::Escaped;
        }
    }
};

MSPCXMLOutput::MSPCXMLOutput(MSPCByteSink& sink) : _sink(sink) { _block.reserve(2 * BlockSize); }

void MSPCXMLOutput::raw(std::string_view markup) {
    _block += markup;
    if (_block.size() >= BlockSize) {
        flush();
    }
}

void MSPCXMLOutput::newLine(std::size_t level) {
    _block += '\n';
    _block.append(4 * (level < MostIndentedLevels ? level : MostIndentedLevels), ' ');
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
    for (std::size_t index = 0; index < text.size();) {
        const auto kind = table.kinds[static_cast<unsigned char>(text[index])];
        if (kind == Byte::Plain) {
            ++index;
        } else if (kind == Byte::Escaped) {
            endRun(index, 1);
            raw(escapeOf(text[index++]));
        } else if (kind == Byte::Forbidden) {
            endRun(index++, 1);
            replace();
        } else if (const auto point = codePointAt(text, index);
                   point.size == 0 || point.value == 0xFFFE || point.value == 0xFFFF) {
            const auto skipped = point.size == 0 ? 1 : point.size;
            endRun(index, skipped);
            index += skipped;
            replace();
        } else {
            index += point.size;
        }
    }
    endRun(text.size(), 0);
}

void MSPCXMLOutput::replace() {
    raw(Replacement);
    ++_replaced;
}

void MSPCXMLOutput::flush() {
    if (!_block.empty()) {
        _sink.write(_block);
        _block.clear();
    }
}
