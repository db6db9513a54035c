#include "MSPCTextScanner.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

namespace {

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

// Blank, tab, LF, VT, FF, CR.
bool isASCIIWhiteSpace(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

// The others with Unicode's property White_Space. In UTF-8 none of them is found within another character.
constexpr std::string_view OtherWhiteSpace[] = {"\u0085", "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003",
                                                "\u2004", "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200A",
                                                "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"};

bool isASCII(char character) {
    return (static_cast<unsigned char>(character) & 0x80U) == 0;
}

// The bytes of the white space character that begins a text; 0 where none does.
std::size_t whiteSpaceAtStart(std::string_view text) {
    if (text.empty() || isASCII(text.front())) {
        return !text.empty() && isASCIIWhiteSpace(text.front()) ? 1 : 0;
    }
    for (const auto space : OtherWhiteSpace) {
        if (text.starts_with(space)) {
            return space.size();
        }
    }
    return 0;
}

// The bytes of the one that ends it.
std::size_t whiteSpaceAtEnd(std::string_view text) {
    if (text.empty() || isASCII(text.back())) {
        return !text.empty() && isASCIIWhiteSpace(text.back()) ? 1 : 0;
    }
    for (const auto space : OtherWhiteSpace) {
        if (text.ends_with(space)) {
            return space.size();
        }
    }
    return 0;
}

std::string_view withoutLeadingWhiteSpace(std::string_view text) {
    while (const auto bytes = whiteSpaceAtStart(text)) {
        text.remove_prefix(bytes);
    }
    return text;
}

// A sign and what follows it.
struct Signed {
    bool isNegative = false;
    std::string_view rest;
};

Signed splitSign(std::string_view text) {
    const auto trimmedText = withoutLeadingWhiteSpace(text);
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
    text = withoutLeadingWhiteSpace(text);
    while (const auto bytes = whiteSpaceAtEnd(text)) {
        text.remove_suffix(bytes);
    }
    return text;
}
