#include "MSPDIMarkup.h"

#include <fmt/format.h>

#include <algorithm>

#include "MSPCXMLLexis.h"

namespace {

constexpr auto npos = std::string_view::npos;

bool isEndTag(std::string_view bytes, std::size_t tag) {
    return tag + 1 < bytes.size() && bytes[tag + 1] == '/';
}

}  // namespace

std::size_t MSPDIEndOfTag(std::string_view bytes, std::size_t begin) {
    constexpr std::string_view quotes = "\"'";
    // Few tags have attributes.
    const auto first = bytes.find('>', begin);
    const auto tag = bytes.substr(begin, first == npos ? npos : first - begin);
    if (first != npos && tag.find(quotes[0]) == npos && tag.find(quotes[1]) == npos) {
        return first + 1;
    }
    auto index = bytes.find_first_of(">\"'", begin);
    while (index != npos && bytes[index] != '>') {
        const auto closing = bytes.find(bytes[index], index + 1);
        index = closing == npos ? npos : bytes.find_first_of(">\"'", closing + 1);
    }
    return index == npos ? bytes.size() : index + 1;
}

MSPDIExtent MSPDIExtentOfElement(std::string_view bytes, std::size_t begin) {
    MSPDIExtent extent;
    extent.begin = begin;
    extent.contentBegin = MSPDIEndOfTag(bytes, begin);
    extent.contentEnd = extent.contentBegin;
    extent.end = extent.contentBegin;
    extent.isSelfClosed = bytes.substr(begin, extent.end - begin).ends_with("/>");
    std::size_t depth = extent.isSelfClosed ? 0 : 1;
    for (auto index = extent.end; depth > 0;) {
        const auto tag = bytes.find('<', index);
        if (tag == npos) {
            extent.contentEnd = extent.end = bytes.size();
            break;
        }
        const auto sectionEnd = MSPCXMLLexis::endOfSection(bytes, tag);
        index = sectionEnd == tag ? MSPDIEndOfTag(bytes, tag) : sectionEnd;
        if (sectionEnd != tag) {
            continue;
        }
        if (isEndTag(bytes, tag)) {
            --depth;
            extent.contentEnd = tag;
            extent.end = index;
        } else if (bytes[index - 2] != '/') {
            ++depth;
        }
    }
    return extent;
}

std::optional<MSPDIChildMarkup> MSPDINextChild(std::string_view bytes, std::size_t offset) {
    for (auto tag = bytes.find('<', offset); tag != npos && !isEndTag(bytes, tag);) {
        const auto sectionEnd = MSPCXMLLexis::endOfSection(bytes, tag);
        if (sectionEnd == tag) {
            const auto name = bytes.substr(tag + 1, MSPCXMLLexis::endOfName(bytes.substr(tag + 1)));
            return MSPDIChildMarkup{name, tag, MSPDIExtentOfElement(bytes, tag).end};
        }
        tag = bytes.find('<', sectionEnd);
    }
    return std::nullopt;
}

std::vector<MSPDIChildMarkup> MSPDIChildrenIn(std::string_view bytes, const MSPDIExtent& parent) {
    std::vector<MSPDIChildMarkup> children;
    const auto content = bytes.substr(0, parent.contentEnd);
    for (auto child = MSPDINextChild(content, parent.contentBegin); child;
         child = MSPDINextChild(content, child->end)) {
        children.push_back(*child);
    }
    return children;
}

std::string MSPDIEscapedText(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        switch (character) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '\r':
                escaped += "&#13;";
                break;
            default:
                escaped += character;
        }
    }
    return escaped;
}

std::string MSPDIElementMarkup(std::string_view name, std::string_view text) {
    return fmt::format("<{0}>{1}</{0}>", name, MSPDIEscapedText(text));
}

std::string MSPDIWithUtf8Declared(std::string utf8) {
    constexpr std::string_view keyword = "encoding";
    const auto end = utf8.starts_with("<?xml") ? utf8.find("?>") : std::string::npos;
    const auto found = end == std::string::npos ? end : utf8.substr(0, end).find(keyword);
    const auto opening = found == std::string::npos ? found : utf8.find_first_of("\"'", found);
    const auto closing = opening == std::string::npos ? opening : utf8.find(utf8[opening], opening + 1);
    if (closing != std::string::npos && closing < end) {
        utf8.replace(opening + 1, closing - opening - 1, "UTF-8");
    }
    return utf8;
}
