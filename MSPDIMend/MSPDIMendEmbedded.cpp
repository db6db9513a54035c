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

struct Extent {
    std::size_t begin;
    std::size_t end;
};

bool holdsBehindTag(std::string_view bytes, char character) {
    auto found = bytes.find(character);
    while (found != npos && (found == 0 || bytes[found - 1] != '<')) {
        found = bytes.find(character, found + 1);
    }
    return found != npos;
}

// The end tag of an element that begins there, where no tags have to be counted for it: no section hides any, and none
// of that name begins another element before it. None otherwise.
std::optional<std::size_t> plainEndOf(std::string_view bytes, std::size_t begin) {
    const auto name = bytes.substr(begin + 1, MSPCXMLLexis::endOfName(bytes.substr(begin + 1)));
    for (auto found = bytes.find(name, begin + 1 + name.size()); found != npos; found = bytes.find(name, found + 1)) {
        const bool isEndTag = bytes.substr(found - 2, 2) == "</";
        const auto behind = found + name.size();
        if (isEndTag && behind < bytes.size() && bytes[behind] == '>') {
            const auto element = bytes.substr(begin, behind + 1 - begin);
            const bool isPlain = !holdsBehindTag(element, '!') && !holdsBehindTag(element, '?');
            return isPlain ? std::optional(behind + 1) : std::nullopt;
        }
        const bool mayBeTag = isEndTag || bytes[found - 1] == '<';
        if (mayBeTag && MSPCXMLLexis::endOfName(bytes.substr(found)) == name.size()) {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

// One that stands there as it is.
std::optional<Extent> planAmong(std::string_view bytes) {
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
        const auto plainEnd = plainEndOf(bytes, begin);
        const auto end = plainEnd ? *plainEnd : MSPDIExtentOfElement(bytes, begin).end;
        const auto start = withDeclaration(bytes, begin);
        // The whole of it is no other file's.
        const bool isWhole = start == 0 && end == bytes.size();
        return isWhole ? std::nullopt : std::optional(Extent{start, end});
    }
    return std::nullopt;
}

// In its own place: it may be nearly all of the bytes.
std::optional<MSPDITakenOutPlan> planTakenOutOf(std::string& bytes) {
    const auto plan = planAmong(bytes);
    if (!plan) {
        return std::nullopt;
    }
    MSPDITakenOutPlan takenOut;
    // A declaration within a document is an error of its own.
    const bool isDeclared = bytes.compare(plan->begin, 2, "<?") == 0;
    takenOut.around = isDeclared ? bytes : bytes.substr(0, plan->begin).append(bytes, plan->end);
    bytes.resize(plan->end);
    bytes.erase(0, plan->begin);
    takenOut.bytes = std::move(bytes);
    return takenOut;
}

// One in UTF-16, whose units begin anywhere.
std::optional<MSPDITakenOutPlan> planInUtf16Among(std::string_view bytes) {
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
        if (auto plan = utf8 ? planTakenOutOf(*utf8) : std::nullopt) {
            return MSPDITakenOutPlan{MSPDIWithUtf8Declared(std::move(plan->bytes)), std::string(bytes), true};
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
std::optional<MSPDITakenOutPlan> planInTextAmong(std::string_view bytes) {
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
    auto plan = planTakenOutOf(text);
    if (plan) {
        plan->around = bytes;
    }
    return plan;
}

}  // namespace

std::optional<MSPDITakenOutPlan> MSPDIEmbeddedPlan(std::string& bytes) {
    auto plan = planTakenOutOf(bytes);
    if (!plan) {
        plan = planInUtf16Among(bytes);
    }
    return plan ? std::move(plan) : planInTextAmong(bytes);
}
