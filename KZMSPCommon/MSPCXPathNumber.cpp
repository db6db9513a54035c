#include "MSPCXPathNumber.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>

namespace {

// The number of a text of a few digits and nothing else: every usual UID.
std::optional<double> fewDigits(std::string_view text) {
    constexpr std::size_t mostDigits = 9;
    if (text.empty() || text.size() > mostDigits) {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    for (const char character : text) {
        if (character < '0' || character > '9') {
            return std::nullopt;
        }
        number = number * 10 + static_cast<std::uint32_t>(character - '0');
    }
    return number;
}

}  // namespace

std::optional<double> xpathNumber(std::string_view text) {
    if (const auto number = fewDigits(text)) {
        return number;
    }
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return std::nullopt;
    }
    text = text.substr(first, text.find_last_not_of(blanks) - first + 1);
    const auto digits = text.substr(text.starts_with('-') ? 1 : 0);
    const bool isPlain = digits.find_first_not_of("0123456789.") == std::string_view::npos &&
                         digits.find_first_of("0123456789") != std::string_view::npos &&
                         std::count(digits.begin(), digits.end(), '.') <= 1;
    if (!isPlain) {
        return std::nullopt;
    }
    double number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
    if (read.ec == std::errc()) {
        return number;
    }
    // Out of range at either end: a number below 1 in size is too small for a double and rounds to 0.
    const bool isBelowOne = digits.find_first_not_of('0') == digits.find('.');
    return isBelowOne ? std::optional(0.0) : std::nullopt;
}

bool hasChildWithNumber(const MSPCXMLNode& element, std::string_view name, std::int64_t number) {
    std::string buffer;
    for (auto child = element.firstChildElement(name); child; child = child.nextSiblingElement(name)) {
        if (xpathNumber(child.stringValue(buffer)) == static_cast<double>(number)) {
            return true;
        }
    }
    return false;
}
