#include "MSPITextExtensions.h"

#include <array>
#include <iterator>

namespace {

constexpr std::array<std::string_view, 10> lineBreakPatterns = {
    "&#x0D;", "&#x0d;", "&#x2028;", "&#x0A;", "&#x0a;", "&#x2029;", "\r", "\xE2\x80\xA8", "\n", "\xE2\x80\xA9"};
constexpr std::ptrdiff_t referenceCount = 6;

std::string replacingAll(std::string_view text, std::string_view pattern) {
    std::string result;
    std::size_t copied = 0;
    for (auto found = text.find(pattern); found != std::string_view::npos; found = text.find(pattern, copied)) {
        result.append(text, copied, found - copied).append(" ");
        copied = found + pattern.size();
    }
    return result.append(text, copied);
}

}  // namespace

std::string stringValue(std::string_view text) {
    return std::string(text);
}

std::string stringByReplacingOccurrencesOfNewline(std::string_view text) {
    const bool isCData = text.starts_with("<![CDATA[");
    std::string_view lastFound;
    for (auto pattern = lineBreakPatterns.begin() + (isCData ? referenceCount : 0); pattern != lineBreakPatterns.end();
         ++pattern) {
        if (text.find(*pattern) != std::string_view::npos) {
            lastFound = *pattern;
        }
    }
    return lastFound.empty() ? std::string(text) : replacingAll(text, lastFound);
}
