#include "MSPDIJSON.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
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

void writeEscaped(std::string_view json, std::ostream& out) {
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
            out << json.substr(written, position - written)
                << fmt::format("\\u{:04x}", static_cast<std::uint32_t>(character));
            written = position + length;
        }
        position += length;
    }
    out << json.substr(written);
}

// Most texts are paths and names that need no look at their characters.
bool isPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return byte >= ' ' && byte < '\x7F' && byte != '"' && byte != '\\'; });
}

void writeText(std::string_view text, std::ostream& out) {
    if (isPlain(text)) {
        out << '"' << text << '"';
        return;
    }
    const nlohmann::ordered_json json = text;
    writeEscaped(json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace), out);
}

}  // namespace

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
    writeText(name, _out);
    _out << ": ";
    _isBehindKey = true;
}

void MSPDIJSONWriter::text(std::string_view text) {
    separate();
    writeText(text, _out);
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
        _out << json.dump();
    }
}

void MSPDIJSONWriter::finish() {
    _out << '\n';
}

void MSPDIJSONWriter::begin(char bracket) {
    separate();
    _out << bracket;
    _hold.push_back(false);
}

void MSPDIJSONWriter::end(char bracket) {
    const bool isEmpty = !_hold.back();
    _hold.pop_back();
    if (!isEmpty) {
        breakLine();
    }
    _out << bracket;
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
        _out << ',';
    }
    _hold.back() = true;
    breakLine();
}

void MSPDIJSONWriter::breakLine() {
    _out << '\n';
    for (std::size_t level = 0; level < _hold.size(); ++level) {
        _out << "  ";
    }
}

void MSPDIWriteJSON(const nlohmann::ordered_json& json, std::ostream& out) {
    MSPDIJSONWriter writer(out);
    writer.value(json);
    writer.finish();
}
