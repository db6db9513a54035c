#include "MSPCXMLSurvey.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace {

constexpr auto npos = std::string_view::npos;

enum class Reference {
    Stray,      // a bare "&"
    Forbidden,  // a reference to a character that no document may hold
    Good,
};

bool isXMLCharacter(std::uint32_t code) {
    return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code <= 0xD7FF) ||
           (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
}

Reference characterReference(std::string_view digits) {
    const int base = digits.starts_with('x') ? 16 : 10;
    digits.remove_prefix(base == 16 ? 1 : 0);
    std::uint32_t code = 0;
    const auto* end = digits.data() + digits.size();
    const auto [stop, problem] = std::from_chars(digits.data(), end, code, base);
    if (stop != end || problem == std::errc::invalid_argument) {
        return Reference::Stray;
    }
    return problem == std::errc() && isXMLCharacter(code) ? Reference::Good : Reference::Forbidden;
}

bool isEntityName(std::string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](char character) {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
               (character >= '0' && character <= '9') || std::strchr("_:-.", character) != nullptr ||
               static_cast<unsigned char>(character) >= 0x80;
    });
}

struct FoundReference {
    Reference kind = Reference::Stray;
    std::size_t size = 1;  // with "&" and ";"; 1 for a bare "&"
};

FoundReference referenceAt(std::string_view bytes, std::size_t ampersand, MSPCXMLEntities entities) {
    constexpr std::size_t longest = 256;
    constexpr std::string_view predefined[] = {"amp", "lt", "gt", "quot", "apos"};
    const auto rest = bytes.substr(ampersand + 1, longest);
    const auto end = rest.find(';');
    if (end == npos) {
        return {};
    }
    const auto name = rest.substr(0, end);
    auto kind = Reference::Stray;
    if (name.starts_with('#')) {
        kind = characterReference(name.substr(1));
    } else if (std::find(std::begin(predefined), std::end(predefined), name) != std::end(predefined) ||
               (entities == MSPCXMLEntities::AnyName && isEntityName(name))) {
        kind = Reference::Good;
    }
    return kind == Reference::Stray ? FoundReference{} : FoundReference{kind, end + 2};
}

// The offset behind a document type; `hasSubset` tells whether it holds declarations, and the offset is then that of
// their bracket.
std::size_t endOfDocumentType(std::string_view bytes, std::size_t start, bool& hasSubset) {
    char quote = '\0';
    for (std::size_t index = start; index < bytes.size(); ++index) {
        const char character = bytes[index];
        if (quote != '\0') {
            quote = character == quote ? '\0' : quote;
        } else if (character == '"' || character == '\'') {
            quote = character;
        } else if (character == '[' || character == '>') {
            hasSubset = character == '[';
            return hasSubset ? index : index + 1;
        }
    }
    return bytes.size();
}

// The offset of the root element, or of whatever stands in its place.
std::size_t endOfProlog(std::string_view bytes, bool& hasSubset) {
    std::size_t index = bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0;
    for (;;) {
        index = std::min(bytes.find_first_not_of(" \t\r\n", index), bytes.size());
        const auto next = bytes.substr(index).starts_with("<!DOCTYPE") ? endOfDocumentType(bytes, index, hasSubset)
                                                                       : endOfXMLSection(bytes, index);
        if (next == index || hasSubset) {
            return next;
        }
        index = next;
    }
}

bool holdsAfter(std::string_view bytes, std::size_t start, std::size_t end, char character, char before) {
    while (start < end) {
        const auto* found = static_cast<const char*>(std::memchr(bytes.data() + start, character, end - start));
        if (found == nullptr) {
            return false;
        }
        const auto index = static_cast<std::size_t>(found - bytes.data());
        if (index > 0 && bytes[index - 1] == before) {
            return true;
        }
        start = index + 1;
    }
    return false;
}

bool holdsBareAmpersand(std::string_view bytes, std::size_t start, std::size_t end) {
    while (start < end) {
        const auto* found = static_cast<const char*>(std::memchr(bytes.data() + start, '&', end - start));
        if (found == nullptr) {
            return false;
        }
        const auto index = static_cast<std::size_t>(found - bytes.data());
        if (referenceAt(bytes, index, MSPCXMLEntities::Predefined).kind != Reference::Good) {
            return true;
        }
        start = index + 1;
    }
    return false;
}

bool isAllBlank(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char character) {
        return character == ' ' || character == '\n' || character == '\t' || character == '\r';
    });
}

// Whether text other than blanks stands anywhere but between a start tag and the end tag behind it. Says yes in doubt.
bool mayMixContent(std::string_view bytes) {
    for (auto tag = bytes.find('<'); tag != npos;) {
        const auto tagEnd = bytes.find('>', tag);
        if (tagEnd == npos) {
            return true;
        }
        const bool behindStartTag = bytes[tag + 1] != '/' && bytes[tagEnd - 1] != '/';
        const auto next = std::min(bytes.find('<', tagEnd), bytes.size());
        const bool beforeEndTag = next + 1 < bytes.size() && bytes[next + 1] == '/';
        if (!(behindStartTag && beforeEndTag) && !isAllBlank(bytes.substr(tagEnd + 1, next - tagEnd - 1))) {
            return true;
        }
        tag = next < bytes.size() ? next : npos;
    }
    return bytes.find("xml:space") != npos;
}

}  // namespace

std::size_t endOfXMLSection(std::string_view bytes, std::size_t start) {
    struct Section {
        std::string_view opening;
        std::string_view closing;
    };
    constexpr Section sections[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
    const auto rest = bytes.substr(start);
    for (const auto& section : sections) {
        if (rest.starts_with(section.opening)) {
            const auto closing = bytes.find(section.closing, start + section.opening.size());
            return closing == npos ? bytes.size() : closing + section.closing.size();
        }
    }
    return start;
}

MSPCXMLSurvey surveyXML(std::string_view bytes) {
    // A block at a time, so that the three searches over it find it in the cache.
    constexpr std::size_t blockSize = std::size_t{1} << 16;
    MSPCXMLSurvey survey;
    bool suspicious = false;
    const auto root = endOfProlog(bytes, survey.hasInternalSubset);
    for (auto start = root; start < bytes.size(); start += blockSize) {
        const auto end = std::min(start + blockSize, bytes.size());
        survey.hasSections =
            survey.hasSections || holdsAfter(bytes, start, end, '!', '<') || holdsAfter(bytes, start, end, '?', '<');
        suspicious = suspicious || holdsBareAmpersand(bytes, start, end);
    }
    // Where there are sections, contents are looked at one by one anyway.
    survey.hasMixedContent = !survey.hasSections && mayMixContent(bytes.substr(root));
    survey.hasStrayAmpersand = suspicious && escapedStrayAmpersands(bytes, MSPCXMLEntities::Predefined).has_value();
    return survey;
}

bool hasStrayAmpersand(std::string_view text) {
    return holdsBareAmpersand(text, 0, text.size());
}

std::optional<std::string> escapedStrayAmpersands(std::string_view bytes, MSPCXMLEntities entities) {
    std::string escaped;
    std::size_t copied = 0;
    bool hasSubset = false;
    auto index = bytes.find_first_of("&<", endOfProlog(bytes, hasSubset));
    while (index != npos) {
        auto next = index + 1;
        if (bytes[index] == '<') {
            next = std::max(next, endOfXMLSection(bytes, index));
        } else if (const auto reference = referenceAt(bytes, index, entities); reference.kind != Reference::Good) {
            escaped += bytes.substr(copied, index - copied);
            escaped += reference.kind == Reference::Stray ? "&amp;" : "\xEF\xBF\xBD";
            next = copied = index + reference.size;
        }
        index = bytes.find_first_of("&<", next);
    }
    if (copied == 0) {
        return std::nullopt;
    }
    escaped += bytes.substr(copied);
    return escaped;
}

std::string withMendableText(std::string_view bytes) {
    std::string mendable;
    std::size_t copied = 0;
    std::size_t sectionEnd = 0;
    auto commentStart = npos;
    const auto write = [&](std::size_t index, std::string_view replacement) {
        mendable.append(bytes, copied, index - copied).append(replacement);
        copied = index + 1;
    };
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        const char character = bytes[index];
        if (const auto code = static_cast<unsigned char>(character); code < ' ' && !isXMLCharacter(code)) {
            write(index, "\xEF\xBF\xBD");
        } else if (character == '<' && index >= sectionEnd) {
            sectionEnd = endOfXMLSection(bytes, index);
            commentStart = bytes.substr(index).starts_with("<!--") ? index + 4 : npos;
        } else if (character == '-' && index >= commentStart && index + 3 < sectionEnd && bytes[index + 1] == '-') {
            write(index, " ");  // each of these errors would cost a copy of the comment
        } else if (character == '>' && index >= sectionEnd && bytes.substr(0, index).ends_with("]]")) {
            write(index, "&gt;");
        }
    }
    return mendable.append(bytes, copied);
}
