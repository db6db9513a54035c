#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "MSPCXMLEncoding.h"
#include "MSPCXMLLexis.h"
#include "MSPCXMLRepair.h"
#include "MSPDIMarkup.h"
#include "MSPDIMendPasses.h"

namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::string_view planNamespace = "http://schemas.microsoft.com/project";
constexpr std::string_view cdataBegin = "<![CDATA[";
constexpr std::string_view cdataEnd = "]]>";

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

// Where the XML declaration begins that stands before an offset and not before another one, with nothing but the rest
// of a prolog between them; the offset itself without one.
std::size_t withDeclaration(std::string_view bytes, std::size_t first, std::size_t offset) {
    constexpr std::string_view opening = "<?xml";
    const auto before = bytes.substr(first, offset - first);
    auto declaration = before.rfind(opening);
    while (declaration != npos &&
           !MSPCXMLLexis::hasClass(bytes[first + declaration + opening.size()], MSPCXMLLexis::Blank)) {
        declaration = declaration == 0 ? npos : before.rfind(opening, declaration - 1);
    }
    const auto prologAndTag = bytes.substr(first, offset + 2 - first);
    return declaration != npos && endOfProlog(prologAndTag, declaration) == offset - first ? first + declaration
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

// The sections of character data in a text, asked for from its beginning on.
class Sections {
public:
    explicit Sections(std::string_view bytes) : _bytes(bytes) {}
    // The end of the one that an offset lies in; the offset itself where it lies in none.
    std::size_t endAround(std::size_t offset) {
        while (_end <= offset && _begin != npos) {
            _begin = _bytes.find(cdataBegin, _end);
            _end = _begin == npos ? npos : std::min(_bytes.find(cdataEnd, _begin), _bytes.size());
        }
        return _begin < offset && offset < _end ? _end : offset;
    }

private:
    std::string_view _bytes;
    std::size_t _begin = 0;
    std::size_t _end = 0;
};

// One that stands there as it is; the first that holds tasks where there are several. In a section of character data it
// is text, of which there may be more outside.
std::optional<Extent> planAmong(std::string_view bytes, bool isInSections) {
    constexpr std::string_view name = "Project";
    std::optional<Extent> first;
    std::size_t passed = 0;  // the end of the last one that was looked at
    Sections sections(bytes);
    for (auto found = bytes.find(name); found != npos; found = bytes.find(name, found + 1)) {
        constexpr std::size_t longestTag = 4096;
        const auto begin = tagOfName(bytes, found, name.size());
        if (begin == npos) {
            continue;
        }
        if (const auto end = isInSections ? begin : sections.endAround(begin); end != begin) {
            found = end;
            continue;
        }
        const auto tagEnd = MSPDIEndOfTag(bytes.substr(0, begin + longestTag), begin);
        if (!isPlansTag(bytes.substr(begin, tagEnd - begin))) {
            continue;
        }
        const auto plainEnd = plainEndOf(bytes, begin);
        const auto end = plainEnd ? *plainEnd : MSPDIExtentOfElement(bytes, begin).end;
        const Extent extent{withDeclaration(bytes, passed, begin), end};
        // The whole of it is no other file's.
        if (extent.begin == 0 && end == bytes.size()) {
            return std::nullopt;
        }
        if (bytes.substr(begin, end - begin).find("Task>") != npos) {
            return extent;
        }
        first = first.value_or(extent);
        passed = end;
        found = end - 1;
    }
    return first;
}

// In its own place: it may be nearly all of the bytes.
std::optional<MSPDITakenOutPlan> planTakenOutOf(std::string& bytes, bool isInSections = false) {
    const auto plan = planAmong(bytes, isInSections);
    if (!plan) {
        return std::nullopt;
    }
    MSPDITakenOutPlan takenOut;
    // A declaration within a document is an error of its own; what begins with text is none anyway.
    const auto first = bytes.find_first_not_of(MSPCXMLLexis::Blanks);
    const bool isDocument = bytes[first] == '<';
    const bool isDeclared = bytes.compare(plan->begin, 2, "<?") == 0;
    takenOut.around = isDocument && isDeclared ? bytes : bytes.substr(0, plan->begin).append(bytes, plan->end);
    bytes.resize(plan->end);
    bytes.erase(0, plan->begin);
    takenOut.bytes = std::move(bytes);
    return takenOut;
}

// Of two readings of bytes in UTF-16, which differ by one byte, the better one. Both show plain letters, but markup
// next to any other character breaks in the wrong one, and its beginning may; else the units begin where they mostly
// do, at an even offset.
bool isBetter(const std::string& plan, std::size_t offset, const std::string& other) {
    const bool isWellFormed = isWellFormedXML(plan);
    if (isWellFormed != isWellFormedXML(other)) {
        return isWellFormed;
    }
    const bool isDeclared = plan.starts_with("<?");
    return isDeclared != other.starts_with("<?") ? isDeclared : offset % 2 == 0;
}

// One in UTF-16, whose units begin anywhere.
std::optional<MSPDITakenOutPlan> planInUtf16Among(std::string_view bytes) {
    using namespace std::string_view_literals;
    constexpr std::string_view marks[] = {"\xFF\xFE"sv, "\xFE\xFF"sv};
    constexpr std::string_view names[] = {"P\0r\0o\0j\0e\0c\0t\0"sv, "\0P\0r\0o\0j\0e\0c\0t"sv};
    std::optional<MSPDITakenOutPlan> best;
    for (std::size_t order = 0; order < std::size(marks); ++order) {
        const auto found = bytes.find(names[order]);
        if (found == npos) {
            continue;
        }
        const auto begin = found % 2;
        const auto size = (bytes.size() - begin) / 2 * 2;
        auto utf8 = xmlBytesAsUtf8(std::string(marks[order]).append(bytes.substr(begin, size)));
        auto plan = utf8 ? planTakenOutOf(*utf8) : std::nullopt;
        if (plan && (!best || (plan->bytes != best->bytes && isBetter(plan->bytes, found, best->bytes)))) {
            best = MSPDITakenOutPlan{std::move(plan->bytes), std::string(bytes), true};
        }
    }
    if (best) {
        best->bytes = MSPDIWithUtf8Declared(std::move(best->bytes));
    }
    return best;
}

// A character by its name or its number in a text that begins with "&"; none where it is none of those that every
// document knows, or beyond ASCII: that one may stay as it is.
struct Reference {
    std::size_t size;
    char character;
};
std::optional<Reference> referenceAt(std::string_view text) {
    constexpr std::pair<std::string_view, char> names[] = {
        {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}, {"&amp;", '&'}};
    for (const auto& [name, character] : names) {
        if (text.starts_with(name)) {
            return Reference{name.size(), character};
        }
    }
    const bool isHexadecimal = text.starts_with("&#x");
    const auto begin = std::min<std::size_t>(isHexadecimal ? 3 : 2, text.size());
    unsigned code = 0;
    const auto* const end = text.data() + text.size();
    const auto [rest, problem] = std::from_chars(text.data() + begin, end, code, isHexadecimal ? 16 : 10);
    constexpr unsigned mostASCII = 0x7F;
    const bool isNumber = text.starts_with("&#") && problem == std::errc() && rest != end && *rest == ';';
    const auto size = static_cast<std::size_t>(rest - text.data()) + 1;
    return isNumber && code > 0 && code <= mostASCII ? std::optional(Reference{size, static_cast<char>(code)})
                                                     : std::nullopt;
}

// Appends a text to another one, with its references as the characters that they stand for.
void appendUnescaped(std::string& text, std::string_view escaped) {
    while (!escaped.empty()) {
        const auto plain = escaped.substr(0, escaped.find('&'));
        text += plain;
        escaped.remove_prefix(plain.size());
        const auto reference = referenceAt(escaped);
        if (reference) {
            text += reference->character;
        } else {
            text += escaped.substr(0, 1);
        }
        escaped.remove_prefix(reference ? reference->size : std::min<std::size_t>(1, escaped.size()));
    }
}

// The text between two tags, from an offset on, as a parser gives it: with sections of character data, and without
// comments and instructions. `offset` becomes that of the next tag.
std::string textFrom(std::string_view bytes, std::size_t& offset) {
    std::string text;
    while (offset < bytes.size()) {
        const auto tag = std::min(bytes.find('<', offset), bytes.size());
        appendUnescaped(text, bytes.substr(offset, tag - offset));
        offset = tag;
        const auto sectionEnd = tag < bytes.size() ? MSPCXMLLexis::endOfSection(bytes, tag) : tag;
        if (sectionEnd == tag) {
            break;
        }
        const auto section = bytes.substr(tag, sectionEnd - tag);
        if (section.starts_with(cdataBegin)) {
            const auto size = section.size() - (section.ends_with(cdataEnd) ? cdataEnd.size() : 0);
            text += section.substr(cdataBegin.size(), std::max(size, cdataBegin.size()) - cdataBegin.size());
        }
        offset = sectionEnd;
    }
    return text;
}

// One whose markup is text to the file that it lies in: that of an element, or of an attribute.
std::optional<MSPDITakenOutPlan> planInTextAmong(std::string_view bytes) {
    const auto inPlan = [&](std::string text) {
        auto plan = text.find(planNamespace) == npos ? std::nullopt : planTakenOutOf(text, true);
        if (plan) {
            plan->around = bytes;
        }
        return plan;
    };
    if (bytes.find(planNamespace) == npos || std::min(bytes.find('&'), bytes.find(cdataBegin)) == npos) {
        return std::nullopt;
    }
    for (std::size_t offset = 0; offset < bytes.size();) {
        if (auto plan = inPlan(textFrom(bytes, offset))) {
            return plan;
        }
        const auto tagEnd = MSPDIEndOfTag(bytes, offset);
        std::string tag;
        appendUnescaped(tag, bytes.substr(offset, tagEnd - offset));
        if (auto plan = inPlan(std::move(tag))) {
            return plan;
        }
        offset = tagEnd;
    }
    // Where what looks like a tag is none, in a file that is no document.
    std::string all;
    appendUnescaped(all, bytes.substr(std::min({bytes.find('&'), bytes.find(cdataBegin), bytes.size()})));
    return inPlan(std::move(all));
}

}  // namespace

std::optional<MSPDITakenOutPlan> MSPDIEmbeddedPlan(std::string& bytes) {
    auto plan = planTakenOutOf(bytes);
    if (!plan) {
        plan = planInUtf16Among(bytes);
    }
    return plan ? std::move(plan) : planInTextAmong(bytes);
}
