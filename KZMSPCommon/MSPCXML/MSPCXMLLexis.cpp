#include "MSPCXMLLexis.h"

#include <charconv>
#include <cstring>
#include <iterator>
#include <system_error>

namespace MSPCXMLLexis {

namespace {

constexpr auto npos = std::string_view::npos;

Reference::Kind characterReference(std::string_view digits) noexcept {
    const int base = digits.starts_with('x') ? 16 : 10;
    digits.remove_prefix(base == 16 ? 1 : 0);
    std::uint32_t code = 0;
    const auto* end = digits.data() + digits.size();
    const auto [stop, problem] = std::from_chars(digits.data(), end, code, base);
    if (stop != end || problem == std::errc::invalid_argument) {
        return Reference::Kind::Stray;
    }
    return problem == std::errc() && isCharacter(code) ? Reference::Kind::Good : Reference::Kind::Forbidden;
}

bool isEntityName(std::string_view name) noexcept {
    return !name.empty() &&
           std::all_of(name.begin(), name.end(), [](char character) { return hasClass(character, NamePart); });
}

// The offset behind a document type, or that of the bracket where its own declarations begin.
Prolog documentTypeAt(std::string_view bytes, std::size_t start) noexcept {
    char quote = '\0';
    for (std::size_t index = start; index < bytes.size(); ++index) {
        const char character = bytes[index];
        if (quote != '\0') {
            quote = character == quote ? '\0' : quote;
        } else if (character == '"' || character == '\'') {
            quote = character;
        } else if (character == '[') {
            return {index, true};
        } else if (character == '>') {
            return {index + 1, false};
        }
    }
    return {bytes.size(), false};
}

}  // namespace

std::size_t endOfName(std::string_view text) noexcept {
    if (text.empty() || !hasClass(text.front(), NameStart)) {
        return 0;
    }
    std::size_t end = 1;
    while (end < text.size() && hasClass(text[end], NamePart)) {
        ++end;
    }
    return end;
}

Reference referenceAt(std::string_view bytes, std::size_t ampersand, Entities entities) noexcept {
    constexpr std::size_t longest = 256;
    constexpr std::string_view predefined[] = {"amp", "lt", "gt", "quot", "apos"};
    const auto rest = bytes.substr(ampersand + 1, longest);
    const auto end = rest.find(';');
    if (end == npos) {
        return {};
    }
    const auto name = rest.substr(0, end);
    auto kind = Reference::Kind::Stray;
    if (name.starts_with('#')) {
        kind = characterReference(name.substr(1));
    } else if (std::find(std::begin(predefined), std::end(predefined), name) != std::end(predefined) ||
               (entities == Entities::AnyName && isEntityName(name))) {
        kind = Reference::Kind::Good;
    }
    return kind == Reference::Kind::Stray ? Reference{} : Reference{kind, end + 2};
}

bool holdsStrayAmpersand(std::string_view bytes, std::size_t start, std::size_t end) noexcept {
    while (start < end) {
        const auto* found = static_cast<const char*>(std::memchr(bytes.data() + start, '&', end - start));
        if (found == nullptr) {
            return false;
        }
        const auto index = static_cast<std::size_t>(found - bytes.data());
        if (referenceAt(bytes, index, Entities::Predefined).kind != Reference::Kind::Good) {
            return true;
        }
        start = index + 1;
    }
    return false;
}

std::size_t endOfSection(std::string_view bytes, std::size_t start) noexcept {
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

Prolog prologOf(std::string_view bytes) noexcept {
    std::size_t index = bytes.starts_with(ByteOrderMark) ? ByteOrderMark.size() : 0;
    for (;;) {
        index = std::min(bytes.find_first_not_of(Blanks, index), bytes.size());
        const auto next = bytes.substr(index).starts_with("<!DOCTYPE") ? documentTypeAt(bytes, index)
                                                                       : Prolog{endOfSection(bytes, index), false};
        if (next.end == index || next.hasInternalSubset) {
            return next;
        }
        index = next.end;
    }
}

}  // namespace MSPCXMLLexis
