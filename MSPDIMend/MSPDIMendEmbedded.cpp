#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "MSPCXMLEncoding.h"
#include "MSPCXMLLexis.h"
#include "MSPDIMarkup.h"
#include "MSPDIMendPasses.h"

namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::string_view planNamespace = "http://schemas.microsoft.com/project";

bool isPlansTag(std::string_view tag) {
    const auto found = tag.find(planNamespace);
    const auto end = found + planNamespace.size();
    return found != npos && end < tag.size() && (tag[end] == '"' || tag[end] == '\'');
}

// Behind the prolog that begins at an offset: a declaration, comments, processing instructions and a document type.
std::size_t endOfProlog(std::string_view bytes, std::size_t begin) {
    const auto prolog = MSPCXMLLexis::prologOf(bytes.substr(begin));
    const auto end = begin + prolog.end;
    if (!prolog.hasInternalSubset) {
        return end;
    }
    // Declarations stand between brackets, of which a text may hold more.
    const auto closing = bytes.rfind(']');
    const auto bracket =
        closing == npos || closing < end ? npos : bytes.find_first_not_of(MSPCXMLLexis::Blanks, closing + 1);
    return bracket == npos ? npos : bytes.find_first_not_of(MSPCXMLLexis::Blanks, bracket + 1);
}

// Where the XML declaration begins that stands before an offset, with nothing but the rest of a prolog between them;
// the offset itself without one.
std::size_t withDeclaration(std::string_view bytes, std::size_t offset) {
    constexpr std::string_view opening = "<?xml";
    auto declaration = bytes.substr(0, offset).rfind(opening);
    while (declaration != npos && !MSPCXMLLexis::hasClass(bytes[declaration + opening.size()], MSPCXMLLexis::Blank)) {
        declaration = declaration == 0 ? npos : bytes.rfind(opening, declaration - 1);
    }
    return declaration != npos && endOfProlog(bytes.substr(0, offset + 2), declaration) == offset ? declaration
                                                                                                  : offset;
}

// Where the tag begins that has this name, with a prefix or without; none where that is no name of a start tag.
std::size_t tagOfName(std::string_view bytes, std::size_t name, std::size_t size) {
    constexpr std::size_t longestPrefix = 64;
    if (name == 0 || name + size >= bytes.size() || !MSPCXMLLexis::hasClass(bytes[name + size], MSPCXMLLexis::Blank)) {
        return npos;
    }
    if (bytes[name - 1] == '<') {
        return name - 1;
    }
    const auto first = name > longestPrefix ? name - longestPrefix : 0;
    const auto opening = bytes[name - 1] == ':' ? bytes.substr(first, name - first).rfind('<') : npos;
    const bool isPrefix =
        opening != npos && first + opening + 2 < name &&
        first + opening + 1 + MSPCXMLLexis::endOfName(bytes.substr(first + opening + 1)) == name + size;
    return isPrefix ? first + opening : npos;
}

// One that stands there as it is.
std::optional<std::string> planAmong(std::string_view bytes) {
    constexpr std::string_view name = "Project";
    for (auto found = bytes.find(name); found != npos; found = bytes.find(name, found + 1)) {
        constexpr std::size_t longestTag = 4096;
        const auto begin = tagOfName(bytes, found, name.size());
        if (begin == npos) {
            continue;
        }
        const auto tagEnd = MSPDIEndOfTag(bytes.substr(0, begin + longestTag), begin);
        if (!isPlansTag(bytes.substr(begin, tagEnd - begin))) {
            continue;
        }
        const auto end = MSPDIExtentOfElement(bytes, begin).end;
        const auto start = withDeclaration(bytes, begin);
        // The whole of it is no other file's.
        const bool isWhole = start == 0 && end == bytes.size();
        return isWhole ? std::nullopt : std::optional(std::string(bytes.substr(start, end - start)));
    }
    return std::nullopt;
}

// One in UTF-16, whose units begin anywhere.
std::optional<std::string> planInUtf16Among(std::string_view bytes) {
    using namespace std::string_view_literals;
    constexpr std::string_view marks[] = {"\xFF\xFE"sv, "\xFE\xFF"sv};
    constexpr std::string_view names[] = {"P\0r\0o\0j\0e\0c\0t\0"sv, "\0P\0r\0o\0j\0e\0c\0t"sv};
    for (std::size_t order = 0; order < std::size(marks); ++order) {
        const auto found = bytes.find(names[order]);
        if (found == npos) {
            continue;
        }
        const auto size = (bytes.size() - found % 2) / 2 * 2;
        auto utf8 = xmlBytesAsUtf8(std::string(marks[order]).append(bytes.substr(found % 2, size)));
        if (auto plan = utf8 ? planAmong(*utf8) : std::nullopt) {
            return MSPDIWithUtf8Declared(std::move(*plan));
        }
    }
    return std::nullopt;
}

// A character by its name or its number in a text that begins with "&"; none where it is none of those that every
// document knows.
struct Reference {
    std::size_t size;
    char character;
};
std::optional<Reference> referenceAt(std::string_view text) {
    constexpr std::pair<std::string_view, char> names[] = {
        {"&lt;", '<'},   {"&gt;", '>'},   {"&quot;", '"'}, {"&apos;", '\''}, {"&amp;", '&'},  {"&#60;", '<'},
        {"&#62;", '>'},  {"&#34;", '"'},  {"&#39;", '\''}, {"&#38;", '&'},   {"&#xD;", '\r'}, {"&#13;", '\r'},
        {"&#xA;", '\n'}, {"&#10;", '\n'}, {"&#x9;", '\t'}, {"&#9;", '\t'}};
    for (const auto& [name, character] : names) {
        if (text.starts_with(name)) {
            return Reference{name.size(), character};
        }
    }
    return std::nullopt;
}

// One whose markup is escaped: the text of an element, or of an attribute.
std::optional<std::string> planInTextAmong(std::string_view bytes) {
    const auto first = std::min(bytes.find("&lt;"), bytes.find("&#60;"));
    if (first == npos || bytes.find("Project", first) == npos) {
        return std::nullopt;
    }
    std::string text;
    for (auto rest = bytes.substr(first); !rest.empty();) {
        const auto plain = rest.substr(0, rest.find('&'));
        text += plain;
        rest.remove_prefix(plain.size());
        const auto reference = referenceAt(rest);
        if (reference) {
            text += reference->character;
        } else {
            text += rest.substr(0, 1);
        }
        rest.remove_prefix(reference ? reference->size : std::min<std::size_t>(1, rest.size()));
    }
    return planAmong(text);
}

}  // namespace

std::optional<MSPDITakenOutPlan> MSPDIEmbeddedPlan(std::string_view bytes) {
    if (auto plan = planAmong(bytes)) {
        return MSPDITakenOutPlan{std::move(*plan)};
    }
    if (auto plan = planInUtf16Among(bytes)) {
        return MSPDITakenOutPlan{std::move(*plan), true};
    }
    auto plan = planInTextAmong(bytes);
    return plan ? std::optional(MSPDITakenOutPlan{std::move(*plan)}) : std::nullopt;
}
