#pragma once

#include <iosfwd>
#include <nlohmann/json_fwd.hpp>

// Writes a result as one document of JSON (RFC 8259) with a line feed at its end. What could drive a terminal or turn
// the order of what is read around (see MSPCShownText) stands in its texts as "\u009b", which is the same text to
// whoever reads JSON; bytes that are no UTF-8 become U+FFFD.
void MSPDIWriteJSON(const nlohmann::ordered_json& json, std::ostream& out);
