#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <iosfwd>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

// Whether a text stands in JSON as it is: ASCII without control characters, quotation marks and backslashes.
[[nodiscard]] bool MSPDIIsPlainInJSON(std::string_view text);

// Bytes on their way to a stream, which gets them by large pieces.
class MSPDIUnwrittenBytes {
public:
    // The stream outlives this object.
    explicit MSPDIUnwrittenBytes(std::ostream& out) : _out(out) {}
    MSPDIUnwrittenBytes(const MSPDIUnwrittenBytes&) = delete;
    MSPDIUnwrittenBytes& operator=(const MSPDIUnwrittenBytes&) = delete;

    // One behind the other: there may be hundreds of megabytes of short pieces.
    template <std::convertible_to<std::string_view>... Pieces>
    void add(const Pieces&... pieces) {
        addAll(std::string_view(pieces)...);
    }
    // All that was added reaches the stream.
    void flush();

private:
    template <typename... Views>
    void addAll(Views... views) {
        makeRoom((views.size() + ...));
        ((_end = std::copy(views.begin(), views.end(), _end)), ...);
    }
    void makeRoom(std::size_t size) {
        if (size > static_cast<std::size_t>(_bytes.data() + _bytes.size() - _end)) {
            flushAndReserve(size);
        }
    }
    void flushAndReserve(std::size_t size);

    std::ostream& _out;
    std::vector<char> _bytes;
    char* _end = _bytes.data();  // of those that are not written
};

// Writes a document of JSON (RFC 8259) bit by bit, with two blanks of indentation a level, so that none as a whole is
// in the memory. What could drive a terminal or turn the order of what is read around (see MSPCShownText) stands in its
// texts as "\u009b", which is the same text to whoever reads JSON; bytes that are no UTF-8 become U+FFFD.
//
// A value is written where the document, an array, or a key expects one; nothing checks the order of the calls. What
// was written reaches the stream by large pieces, the last of them when the object or array around all ends.
class MSPDIJSONWriter {
public:
    // The stream outlives the writer.
    explicit MSPDIJSONWriter(std::ostream& out) : _unwritten(out) {}

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    void key(std::string_view name);
    void text(std::string_view text);
    void value(const nlohmann::ordered_json& json);
    // A key and its text.
    void member(std::string_view name, std::string_view text);
    // What stands before the name of a member of the present object, quotation mark included; it begins with the comma
    // that the first one lacks.
    [[nodiscard]] std::string startOfMember() const { return _separator + '"'; }
    // Members as they are to stand in the document, each in two pieces, of which the first one begins with that.
    void plainMember(std::string_view start, std::string_view end) {
        _unwritten.add(start.substr(_hold.back() ? 0 : 1), end);
        _hold.back() = 1;
    }
    // The line feed behind the document.
    void finish();

private:
    void begin(char bracket);
    void end(char bracket);
    // What stands between this value or key and what comes before; it counts as written.
    [[nodiscard]] std::string_view separator();
    void separate() { _unwritten.add(separator()); }

    MSPDIUnwrittenBytes _unwritten;
    std::string _separator = ",\n";  // with the indentation of what the innermost open object or array holds
    std::vector<char> _hold;         // whether the open objects and arrays hold anything so far
    bool _isBehindKey = false;
};

// Writes a result as one document.
void MSPDIWriteJSON(const nlohmann::ordered_json& json, std::ostream& out);
