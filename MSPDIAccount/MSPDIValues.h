#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "MSPCFields.h"

// Reading values of a plan that may be refused: other than the importer's own getters these never raise, and an
// unreadable value is none.

// The number of a field, none when it is missing, there more than once, or no number.
[[nodiscard]] std::optional<std::int64_t> MSPDISingleInteger(const MSPCFields& fields, std::string_view name);
// The same of an element's children of one name.
[[nodiscard]] std::optional<std::int64_t> MSPDISingleInteger(const MSPCXMLLastChild& child);
// The same of the last field of that name.
[[nodiscard]] std::optional<std::int64_t> MSPDILastInteger(const MSPCFields& fields, std::string_view name);
// The truth of a text: "1", "true", "yes" and numbers but 0, in any case of letters; false for anything else.
[[nodiscard]] bool MSPDIIsTrue(std::string_view text);
[[nodiscard]] bool MSPDIIsTrueField(const MSPCFields& fields, std::string_view name);
// Hours, minutes and seconds of an MSPDI duration in seconds; -1 for an empty text, none for one that cannot be read.
[[nodiscard]] std::optional<std::int64_t> MSPDISeconds(std::string_view duration);
// A text that is a decimal number from its beginning to its end.
[[nodiscard]] std::optional<double> MSPDIWholeNumber(std::string_view text);
// Whether a text is one of those in a list ("0|1.0|"), numbers and durations compared by value; blanks around it do not
// count.
[[nodiscard]] bool MSPDIIsOneOf(std::string_view text, std::string_view list);
