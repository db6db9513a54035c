#include "MSPDIJSON.h"

#include <fmt/format.h>

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

}  // namespace

void MSPDIWriteJSON(const nlohmann::ordered_json& json, std::ostream& out) {
    constexpr int indentation = 2;
    writeEscaped(json.dump(indentation, ' ', false, nlohmann::ordered_json::error_handler_t::replace), out);
    out << '\n';
}
