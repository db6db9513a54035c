#include "MSPDIJSON.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string_view>

#include "MSPCCharacters.h"
#include "MSPCMessage.h"

namespace {

// What nlohmann-json leaves: it writes the control characters below the blank as escapes itself, and between the values
// there are line feeds, which are to stay.
bool isLeftAsItIs(char byte) {
    return byte >= '\0' && byte < '\x7F';
}

void appendEscaped(std::string_view json, std::string& out) {
    std::size_t written = 0;
    for (std::size_t position = 0; position < json.size();) {
        if (isLeftAsItIs(json[position])) {
            ++position;
            continue;
        }
        const auto rest = json.substr(position);
        const auto length = MSPCLengthOfCharacter(rest);
        if (MSPCShownText(rest.substr(0, length)).view() != rest.substr(0, length)) {
            const auto character = MSPCCharacterOfLength(rest, length);
            out += json.substr(written, position - written);
            out += fmt::format("\\u{:04x}", static_cast<std::uint32_t>(character));
            written = position + length;
        }
        position += length;
    }
    out += json.substr(written);
}

bool isPlain(char byte) {
    return byte >= ' ' && byte < '\x7F' && byte != '"' && byte != '\\';
}

void appendText(std::string_view text, std::string& out) {
    if (MSPDIIsPlainInJSON(text)) {
        out += '"';
        out += text;
        out += '"';
        return;
    }
    const nlohmann::ordered_json json = text;
    appendEscaped(json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace), out);
}

}  // namespace

// Most texts are paths and names that need no look at their characters; there may be millions of them, so that eight
// bytes are looked at in one. Each test may find more than it looks for, but only where there is something to be found.
bool MSPDIIsPlainInJSON(std::string_view text) {
    constexpr std::uint64_t each = 0x0101'0101'0101'0101U;
    constexpr std::uint64_t highest = each * 0x80U;
    const auto holdsBelow = [](std::uint64_t bytes, std::uint64_t limit) {
        return (bytes - each * limit) & ~bytes & highest;
    };
    const auto holds = [&holdsBelow](std::uint64_t bytes, std::uint64_t byte) {
        return holdsBelow(bytes ^ (each * byte), 1);
    };
    std::uint64_t found = 0;
    std::uint64_t bytes = 0;
    for (; text.size() >= sizeof bytes; text.remove_prefix(sizeof bytes)) {
        std::memcpy(&bytes, text.data(), sizeof bytes);
        found |=
            (bytes & highest) | holdsBelow(bytes, ' ') | holds(bytes, 0x7FU) | holds(bytes, '"') | holds(bytes, '\\');
    }
    return found == 0 && std::all_of(text.begin(), text.end(), [](char byte) { return isPlain(byte); });
}

void MSPDIJSONWriter::beginObject() {
    begin('{');
}

void MSPDIJSONWriter::endObject() {
    end('}');
}

void MSPDIJSONWriter::beginArray() {
    begin('[');
}

void MSPDIJSONWriter::endArray() {
    end(']');
}

void MSPDIJSONWriter::key(std::string_view name) {
    separate();
    appendText(name, _unwritten);
    _unwritten += ": ";
    _isBehindKey = true;
}

void MSPDIJSONWriter::text(std::string_view text) {
    separate();
    appendText(text, _unwritten);
}

void MSPDIJSONWriter::plainMember(std::string_view name, std::string_view text) {
    separate();
    _unwritten += '"';
    _unwritten += name;
    _unwritten += "\": \"";
    _unwritten += text;
    _unwritten += '"';
}

void MSPDIJSONWriter::value(const nlohmann::ordered_json& json) {
    if (json.is_object()) {
        beginObject();
        for (const auto& [name, member] : json.items()) {
            key(name);
            value(member);
        }
        endObject();
    } else if (json.is_array()) {
        beginArray();
        for (const auto& element : json) {
            value(element);
        }
        endArray();
    } else if (json.is_string()) {
        text(json.get_ref<const std::string&>());
    } else {
        separate();
        _unwritten += json.dump();
    }
}

void MSPDIJSONWriter::finish() {
    _unwritten += '\n';
    flush();
}

void MSPDIJSONWriter::begin(char bracket) {
    separate();
    _unwritten += bracket;
    _hold.push_back(false);
}

void MSPDIJSONWriter::end(char bracket) {
    const bool isEmpty = !_hold.back();
    _hold.pop_back();
    if (!isEmpty) {
        breakLine();
    }
    _unwritten += bracket;
    if (_hold.empty()) {
        flush();
    }
}

void MSPDIJSONWriter::separate() {
    if (_isBehindKey) {
        _isBehindKey = false;
        return;
    }
    if (_hold.empty()) {
        return;
    }
    if (_hold.back()) {
        _unwritten += ',';
    }
    _hold.back() = true;
    breakLine();
}

void MSPDIJSONWriter::breakLine() {
    constexpr std::size_t mostUnwritten = 65'536;
    if (_unwritten.size() >= mostUnwritten) {
        flush();
    }
    _unwritten += '\n';
    _unwritten.append(2 * _hold.size(), ' ');
}

void MSPDIJSONWriter::flush() {
    _out << _unwritten;
    _unwritten.clear();
}

void MSPDIWriteJSON(const nlohmann::ordered_json& json, std::ostream& out) {
    MSPDIJSONWriter writer(out);
    writer.value(json);
    writer.finish();
}
