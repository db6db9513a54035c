#pragma once

#include <optional>
#include <string>
#include <string_view>

// Writes a file that is to be new: it appears under its name when it is complete. Where anything has that name by then,
// a link that points nowhere too, that stays as it is and `isTaken` is set (it is cleared otherwise). None, or the
// system's description of the failure.
[[nodiscard]] std::optional<std::string> MSPCWriteNewFile(const std::string& path, std::string_view bytes,
                                                          bool& isTaken);
