#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

class MSPCByteWriter;

// XML bytes on their way to a writer, collected in blocks. Text is checked and escaped a run of plain bytes at a time.
// What XML 1.0 cannot hold, and each byte that is no UTF-8, becomes U+FFFD and is counted.
class MSPCXMLOutput {
public:
    explicit MSPCXMLOutput(MSPCByteWriter& writer);

    // Markup as it stands. Inline, since writing is made of a great many small pieces.
    void raw(std::string_view markup) {
        if (markup.size() > BlockSize - _used) {
            flush();
            if (markup.size() > BlockSize) {
                writeThrough(markup);
                return;
            }
        }
        std::memcpy(_block.get() + _used, markup.data(), markup.size());
        _used += markup.size();
    }
    // A line end and the indentation of a level. Deeper than `MostIndentedLevels` the indentation stays the same, or a
    // million nested elements would be a million times a million blanks.
    void newLine(std::size_t level);
    // Text between tags: "&", "<", ">" and carriage returns are escaped.
    void text(std::string_view text);
    // An attribute's value between double quotes: quotes, tabs and line feeds are escaped too.
    void attributeValue(std::string_view value);
    // Content that knows no escapes (CDATA sections, comments, processing instructions).
    void unescaped(std::string_view content);
    // A comment's text: "--" becomes "- -" and a "-" at the end gets a blank behind it, since XML forbids both.
    void comment(std::string_view text);

    // Hands the rest to the writer.
    void flush();
    [[nodiscard]] std::size_t replacedCharacters() const noexcept { return _replaced; }

    static constexpr std::size_t MostIndentedLevels = 64;

private:
    // What a byte means in one kind of content.
    enum Byte : unsigned char { Plain = 0, Escaped, Forbidden, Lead };
    struct ByteTable;
    void content(std::string_view text, const ByteTable& table);
    void replace();
    void writeThrough(std::string_view bytes);

    static constexpr std::size_t BlockSize = std::size_t{1} << 16;

    MSPCByteWriter& _writer;
    // Not cleared: nothing is read that was not written, and a single element is written with a block of its own.
    std::unique_ptr<char[]> _block = std::make_unique_for_overwrite<char[]>(BlockSize);
    std::size_t _used = 0;
    std::size_t _replaced = 0;
};
