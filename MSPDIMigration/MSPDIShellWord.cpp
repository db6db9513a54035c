#include "MSPDIShellWord.h"

#include <fmt/format.h>

#include <charconv>

namespace {

constexpr std::size_t digits = 3;
constexpr int octal = 8;

bool isPlain(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || std::string_view("/._-").find(character) != std::string_view::npos;
}

}  // namespace

std::string MSPDIShellWordOf(std::string_view text) {
    std::string word;
    for (const char character : text) {
        word += isPlain(character) ? std::string(1, character)
                                   : fmt::format("%{:03o}", static_cast<unsigned char>(character));
    }
    return word.empty() ? "%" : word;
}

std::optional<std::string> MSPDITextOfShellWord(std::string_view word) {
    std::string text;
    if (word == "%") {
        return text;
    }
    for (std::size_t at = 0; at < word.size(); ++at) {
        if (isPlain(word[at])) {
            text += word[at];
            continue;
        }
        unsigned char value = 0;
        const auto code = word.substr(at + 1, digits);
        const auto result = std::from_chars(code.data(), code.data() + code.size(), value, octal);
        if (word[at] != '%' || code.size() != digits || result.ec != std::errc() ||
            result.ptr != code.data() + code.size()) {
            return std::nullopt;
        }
        text += static_cast<char>(value);
        at += digits;
    }
    return text.empty() ? std::nullopt : std::optional(std::move(text));
}
