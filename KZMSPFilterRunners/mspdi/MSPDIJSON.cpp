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

void addEscaped(std::string_view json, MSPDIUnwrittenBytes& out) {
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
            out.add(json.substr(written, position - written),
                    fmt::format("\\u{:04x}", static_cast<std::uint32_t>(character)));
            written = position + length;
        }
        position += length;
    }
    out.add(json.substr(written));
}

bool isPlain(char byte) {
    return byte >= ' ' && byte < '\x7F' && byte != '"' && byte != '\\';
}

void addText(std::string_view text, MSPDIUnwrittenBytes& out) {
    if (MSPDIIsPlainInJSON(text)) {
        out.add("\"", text, "\"");
        return;
    }
    const nlohmann::ordered_json json = text;
    addEscaped(json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace), out);
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
    const auto look = [&](const char* at) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, at, sizeof bytes);
        found |=
            (bytes & highest) | holdsBelow(bytes, ' ') | holds(bytes, 0x7FU) | holds(bytes, '"') | holds(bytes, '\\');
    };
    if (text.size() < sizeof each) {
        return std::all_of(text.begin(), text.end(), isPlain);
    }
    const auto last = text.size() - sizeof each;
    for (std::size_t position = 0; position < last; position += sizeof each) {
        look(text.data() + position);
    }
    look(text.data() + last);  // some of them again
    return found == 0;
}

void MSPDIUnwrittenBytes::flushAndReserve(std::size_t size) {
    constexpr std::size_t room = 65'536;
    flush();
    _bytes.resize(std::max({_bytes.size(), room, size}));
    _end = _bytes.data();
}

void MSPDIUnwrittenBytes::flush() {
    _out << std::string_view(_bytes.data(), static_cast<std::size_t>(_end - _bytes.data()));
    _end = _bytes.data();
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
    addText(name, _unwritten);
    _unwritten.add(": ");
    _isBehindKey = true;
}

void MSPDIJSONWriter::text(std::string_view text) {
    separate();
    addText(text, _unwritten);
}

void MSPDIJSONWriter::member(std::string_view name, std::string_view text) {
    if (MSPDIIsPlainInJSON(name) && MSPDIIsPlainInJSON(text)) {
        _unwritten.add(separator(), "\"", name, "\": \"", text, "\"");
    } else {
        key(name);
        this->text(text);
    }
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
        _unwritten.add(json.dump());
    }
}

void MSPDIJSONWriter::finish() {
    _unwritten.add("\n");
    _unwritten.flush();
}

void MSPDIJSONWriter::begin(char bracket) {
    separate();
    _unwritten.add(std::string_view(&bracket, 1));
    _hold.push_back(0);
    _separator += "  ";
}

void MSPDIJSONWriter::end(char bracket) {
    const bool isEmpty = _hold.back() == 0;
    _hold.pop_back();
    _separator.resize(_separator.size() - 2);
    if (!isEmpty) {
        _unwritten.add(std::string_view(_separator).substr(1));
    }
    _unwritten.add(std::string_view(&bracket, 1));
    if (_hold.empty()) {
        _unwritten.flush();
    }
}

std::string_view MSPDIJSONWriter::separator() {
    if (_isBehindKey) {
        _isBehindKey = false;
        return {};
    }
    if (_hold.empty()) {
        return {};
    }
    const bool isFirst = _hold.back() == 0;
    _hold.back() = 1;
    return std::string_view(_separator).substr(isFirst ? 1 : 0);
}

void MSPDIWriteJSON(const nlohmann::ordered_json& json, std::ostream& out) {
    MSPDIJSONWriter writer(out);
    writer.value(json);
    writer.finish();
}
