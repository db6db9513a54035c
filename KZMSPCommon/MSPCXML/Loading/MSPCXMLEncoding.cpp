#include "MSPCXMLEncoding.h"

#include <unicode/ucnv.h>
#include <unicode/udata.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "MSPCPath.h"

namespace {

using namespace std::string_view_literals;

constexpr auto npos = std::string_view::npos;

struct Signature {
    std::string_view bytes;
    std::string_view encoding;
    std::size_t markSize;  // bytes that are no part of the text
};

// The longer ones first: the mark of UTF-16 also begins that of UTF-32.
constexpr Signature Signatures[] = {
    {"\xFF\xFE\0\0"sv, "UTF-32LE", 4}, {"\0\0\xFE\xFF"sv, "UTF-32BE", 4}, {"<\0\0\0"sv, "UTF-32LE", 0},
    {"\0\0\0<"sv, "UTF-32BE", 0},      {"\xEF\xBB\xBF"sv, "UTF-8", 0},    {"\xFF\xFE"sv, "UTF-16LE", 2},
    {"\xFE\xFF"sv, "UTF-16BE", 2},     {"<\0"sv, "UTF-16LE", 0},          {"\0<"sv, "UTF-16BE", 0},
};

// The value of "encoding" in an XML declaration at the start; empty where there is none.
std::string_view declaredEncoding(std::string_view bytes) {
    if (!bytes.starts_with("<?xml")) {
        return {};
    }
    const auto declaration = bytes.substr(0, bytes.find("?>"));
    const auto keyword = declaration.find("encoding");
    const auto opening = keyword == npos ? npos : declaration.find_first_of("\"'", keyword);
    if (opening == npos) {
        return {};
    }
    const auto closing = declaration.find(declaration[opening], opening + 1);
    return closing == npos ? std::string_view() : declaration.substr(opening + 1, closing - opening - 1);
}

// Bytes whose declaration could be read one by one are not in a wide encoding, whatever they say of themselves.
bool meansUtf8(std::string_view encoding) {
    constexpr std::string_view starts[] = {"utf-8",  "utf8",   "us-ascii", "ascii",
                                           "utf-16", "utf-32", "ucs-",     "iso-10646-ucs"};
    const auto lower = lowerCased(encoding);
    return lower.empty() || std::any_of(std::begin(starts), std::end(starts),
                                        [&](auto start) { return std::string_view(lower).starts_with(start); });
}

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

// A name of an encoding as XML allows it. To the library others could be paths or options.
bool isEncodingName(std::string_view name) {
    const auto isLetter = [](char character) {
        return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
    };
    return !name.empty() && isLetter(name.front()) && std::all_of(name.begin(), name.end(), [&](char character) {
        return isLetter(character) || (character >= '0' && character <= '9') || character == '.' || character == '_' ||
               character == '-';
    });
}

Converter openConverter(const std::string& encoding) {
    // The library knows the encodings that it brings along. Others it would look for in files, where the environment
    // says.
    static const bool looksForNoFiles = [] {
        UErrorCode ignored = U_ZERO_ERROR;
        udata_setFileAccess(UDATA_NO_FILES, &ignored);
        return U_SUCCESS(ignored);
    }();
    UErrorCode problem = U_ZERO_ERROR;
    if (!looksForNoFiles || !isEncodingName(encoding) || ucnv_countAliases(encoding.c_str(), &problem) == 0) {
        return {nullptr, &ucnv_close};
    }
    Converter converter(ucnv_open(encoding.c_str(), &problem), &ucnv_close);
    return U_SUCCESS(problem) ? std::move(converter) : Converter(nullptr, &ucnv_close);
}

std::optional<std::string> converted(std::string_view bytes, std::string_view encoding) {
    const auto from = openConverter(std::string(encoding));
    const auto to = openConverter("UTF-8");
    if (!from || !to) {
        return std::nullopt;
    }
    std::string result;
    result.reserve(bytes.size() + bytes.size() / 8);
    UChar pivot[1024];
    UChar* pivotSource = pivot;
    UChar* pivotTarget = pivot;
    char block[8192];
    const char* source = bytes.data();
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    for (bool isFirst = true; status == U_BUFFER_OVERFLOW_ERROR; isFirst = false) {
        char* target = block;
        status = U_ZERO_ERROR;
        ucnv_convertEx(to.get(), from.get(), &target, std::end(block), &source, bytes.data() + bytes.size(), pivot,
                       &pivotSource, &pivotTarget, std::end(pivot), static_cast<UBool>(isFirst), true, &status);
        result.append(block, target);
    }
    return U_SUCCESS(status) ? std::optional(std::move(result)) : std::nullopt;
}

}  // namespace

std::optional<std::string> xmlBytesAsUtf8(std::string bytes) {
    std::string encoding(declaredEncoding(bytes));
    std::size_t markSize = 0;
    const auto* signature = std::find_if(std::begin(Signatures), std::end(Signatures), [&](const auto& candidate) {
        return std::string_view(bytes).starts_with(candidate.bytes);
    });
    if (signature != std::end(Signatures)) {
        encoding = signature->encoding;
        markSize = signature->markSize;
    } else if (meansUtf8(encoding)) {
        return bytes;
    }
    return encoding == "UTF-8" ? std::move(bytes) : converted(std::string_view(bytes).substr(markSize), encoding);
}

bool isDeclaredUtf8(std::string_view declaration) {
    return meansUtf8(declaredEncoding(declaration));
}
