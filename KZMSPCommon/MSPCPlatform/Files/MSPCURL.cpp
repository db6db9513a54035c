#include "MSPCURL.h"

#include <algorithm>

#include "MSPCPath.h"

namespace {

constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view digits = "0123456789";
constexpr std::string_view hexDigits = "0123456789ABCDEF";
// What a path may hold unencoded besides letters and digits (RFC 3986).
constexpr std::string_view pathMarks = "-._~!$&'()*+,;=:@/";
constexpr std::string_view schemeMarks = "+-.";

bool isIn(std::string_view set, char character) {
    return set.find(character) != std::string_view::npos;
}
bool isAlphanumeric(char character) {
    return isIn(letters, character) || isIn(digits, character);
}

std::string percentEncoded(std::string_view path) {
    std::string result;
    for (const char character : path) {
        if (isAlphanumeric(character) || isIn(pathMarks, character)) {
            result += character;
        } else {
            const auto byte = static_cast<unsigned char>(character);
            result.append({'%', hexDigits[byte >> 4U], hexDigits[byte & 0xFU]});
        }
    }
    return result;
}

// The value of a hexadecimal digit; 16 when it is none.
unsigned hexValue(char digit) {
    const char upper = digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - 'a' + 'A') : digit;
    return static_cast<unsigned>(std::min(hexDigits.find(upper), hexDigits.size()));
}

// A percent sign that no two digits follow stands for itself.
std::string percentDecoded(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isEncoded =
            text[at] == '%' && at + 2 < text.size() && hexValue(text[at + 1]) < 16 && hexValue(text[at + 2]) < 16;
        if (isEncoded) {
            result += static_cast<char>(hexValue(text[at + 1]) << 4U | hexValue(text[at + 2]));
            at += 2;
        } else {
            result += text[at];
        }
    }
    return result;
}

std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) {
        path.remove_suffix(1);
    }
    return path;
}

// The length of the scheme at the start of a URL text; 0 when it has none.
std::size_t schemeLength(std::string_view text) {
    const auto colon = text.find(':');
    if (colon == std::string_view::npos || colon == 0 || !isIn(letters, text.front())) {
        return 0;
    }
    const auto isAllowed = [](char character) { return isAlphanumeric(character) || isIn(schemeMarks, character); };
    return std::ranges::all_of(text.substr(0, colon), isAllowed) ? colon : 0;
}

}  // namespace

MSPCURL MSPCURL::fileURL(std::string_view path, bool isDirectory) {
    MSPCURL url;
    url._scheme = "file";
    url._path = isDirectory ? withoutTrailingSlashes(path) : path;
    url._isDirectory = isDirectory;
    return url;
}

MSPCURL MSPCURL::fromString(std::string_view text) {
    MSPCURL url;
    if (const auto length = schemeLength(text); length != 0) {
        url._scheme = text.substr(0, length);
        text.remove_prefix(length + 1);
    }
    text = text.substr(0, text.find_first_of("?#"));
    if (text.starts_with("//")) {
        text.remove_prefix(2);
        const auto slash = std::min(text.find('/'), text.size());
        url._host = text.substr(0, slash);
        text.remove_prefix(slash);
    }
    url._isDirectory = text.ends_with('/');
    url._path = percentDecoded(withoutTrailingSlashes(text));
    return url;
}

bool MSPCURL::isFileURL() const noexcept {
    return lowerCased(_scheme) == "file";
}

std::string MSPCURL::absoluteString() const {
    std::string result = _scheme.empty() ? std::string() : _scheme + ":";
    if (!_host.empty() || (!_scheme.empty() && _path.starts_with('/'))) {
        result += "//" + _host;
    }
    result += percentEncoded(_path);
    return _isDirectory && !result.ends_with('/') ? result + "/" : result;
}
