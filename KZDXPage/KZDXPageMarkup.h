#pragma once

#include <string>
#include <string_view>

#include "KZDXPageDocument.h"

// A text as the content of an HTML element or of an attribute in quotation marks. Bytes that are no UTF-8, and controls
// that HTML does not know, become U+FFFD.
[[nodiscard]] std::string KZDXPageEscaped(std::string_view text);
// The outline as a plain table, for browsers without scripts.
[[nodiscard]] std::string KZDXPageTable(const KZDXPageOpenScenario& scenario);
