#pragma once

#include <optional>
#include <string>
#include <string_view>

// The bytes of a document as UTF-8, from the encoding that its byte-order mark, its first bytes or its XML declaration
// tell, in this order; without any of them it is UTF-8 already. UTF-8 passes through untouched, its mark and bytes that
// are no UTF-8 included. In other encodings such bytes become U+FFFD. None for an encoding nobody knows. The
// declaration keeps naming the former encoding.
[[nodiscard]] std::optional<std::string> xmlBytesAsUtf8(std::string bytes);

// Whether an XML declaration leaves the bytes that follow it UTF-8: it names no encoding, or one that means UTF-8 here.
[[nodiscard]] bool isDeclaredUtf8(std::string_view declaration);
