#include <optional>
#include <string>
#include <string_view>

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

// Where the XML declaration begins that stands before an offset, with nothing but blanks between them; the offset
// itself without one.
std::size_t withDeclaration(std::string_view bytes, std::size_t offset) {
    const auto before = bytes.substr(0, offset).find_last_not_of(MSPCXMLLexis::Blanks);
    if (before == npos || !bytes.substr(0, before + 1).ends_with("?>")) {
        return offset;
    }
    const auto declaration = bytes.rfind("<?xml", before);
    const bool isOne = declaration != npos && MSPCXMLLexis::endOfSection(bytes, declaration) == before + 1;
    return isOne ? declaration : offset;
}

}  // namespace

std::optional<std::string> MSPDIEmbeddedPlan(std::string_view bytes) {
    constexpr std::string_view opening = "<Project";
    for (auto begin = bytes.find(opening); begin != npos; begin = bytes.find(opening, begin + 1)) {
        constexpr std::size_t longestTag = 4096;
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
