#pragma once

#include <string>
#include <string_view>

// The SHA-256 digest of some bytes, in base64 (RFC 4648) with its padding.
[[nodiscard]] std::string MSPCSHA256InBase64(std::string_view bytes);
