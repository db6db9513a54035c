#include "MSPCTextScanner.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

namespace {

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

std::string_view withoutLeadingBlanks(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    return text;
}

// A sign and what follows it.
struct Signed {
    bool isNegative = false;
    std::string_view rest;
};

Signed splitSign(std::string_view text) {
    const auto trimmedText = withoutLeadingBlanks(text);
    const bool isNegative = trimmedText.starts_with('-');
    const bool hasSign = isNegative || trimmedText.starts_with('+');
    return {isNegative, trimmedText.substr(hasSign ? 1 : 0)};
}

template <typename Integer>
std::optional<Integer> scanInteger(std::string_view text) {
    const auto [isNegative, digits] = splitSign(text);
    if (digits.empty() || !isDigit(digits.front())) {
        return std::nullopt;
    }
    // With its sign in front, or the lowest value would be out of reach.
    const char* start = digits.data() - (isNegative ? 1 : 0);
    Integer value = 0;
    if (std::from_chars(start, digits.data() + digits.size(), value).ec == std::errc::result_out_of_range) {
        return isNegative ? std::numeric_limits<Integer>::min() : std::numeric_limits<Integer>::max();
    }
    return value;
}

// Whether a number that no double holds is too large rather than too small: where its first digit other than 0 stands,
// moved by the exponent, decides.
bool isTooLarge(std::string_view number) {
    const auto mantissa = number.substr(0, number.find_first_of("eE"));
    const auto exponentText = number.substr(std::min(mantissa.size() + 1, number.size()));
    const auto exponent = scanInteger32(exponentText).value_or(0);
    const auto integerPart = mantissa.substr(0, mantissa.find('.'));
    const auto firstInteger = integerPart.find_first_not_of('0');
    if (firstInteger != std::string_view::npos) {
        return static_cast<std::int64_t>(integerPart.size() - firstInteger) + exponent > 0;
    }
    const auto fraction = mantissa.substr(std::min(integerPart.size() + 1, mantissa.size()));
    const auto zeros = std::min(fraction.find_first_not_of('0'), fraction.size());
    return exponent - static_cast<std::int64_t>(zeros) > 0;
}

}  // namespace

std::optional<std::int64_t> scanInteger64(std::string_view text) {
    return scanInteger<std::int64_t>(text);
}

std::optional<std::int32_t> scanInteger32(std::string_view text) {
    return scanInteger<std::int32_t>(text);
}

std::optional<double> scanDouble(std::string_view text) {
    const auto [isNegative, number] = splitSign(text);
    const auto firstDigit = number.starts_with('.') ? std::size_t{1} : std::size_t{0};
    if (number.size() <= firstDigit || !isDigit(number[firstDigit])) {
        return std::nullopt;  // also what the library would take for infinity or no number
    }
    double value = 0;
    const auto [end, problem] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (problem == std::errc::result_out_of_range) {
        const auto taken = number.substr(0, static_cast<std::size_t>(end - number.data()));
        value = isTooLarge(taken) ? std::numeric_limits<double>::max() : 0.0;
    }
    return isNegative ? -value : value;
}

std::string_view trimmed(std::string_view text) {
    text = withoutLeadingBlanks(text);
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}
