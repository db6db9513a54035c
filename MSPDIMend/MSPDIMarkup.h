#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Where an element stands in the bytes of a well-formed document.
struct MSPDIExtent {
    std::size_t begin = 0;         // of its start tag
    std::size_t contentBegin = 0;  // behind its start tag
    std::size_t contentEnd = 0;    // of what it holds; an element without an end tag holds nothing
    std::size_t end = 0;           // behind its end tag
    bool isSelfClosed = false;     // "<Summary/>"
};

// The extent of the element whose start tag begins at an offset. Where the document ends before the element does, so
// does the extent.
[[nodiscard]] MSPDIExtent MSPDIExtentOfElement(std::string_view bytes, std::size_t begin);

// A child element: its name, where its start tag begins, and the place behind its end tag.
struct MSPDIChildMarkup {
    std::string_view name;
    std::size_t begin;
    std::size_t end;
};

// The first child element that begins at an offset or behind it, which lies within the parent; none where the parent
// ends before.
[[nodiscard]] std::optional<MSPDIChildMarkup> MSPDINextChild(std::string_view bytes, std::size_t offset);
// The child elements of an element, in order.
[[nodiscard]] std::vector<MSPDIChildMarkup> MSPDIChildrenIn(std::string_view bytes, const MSPDIExtent& parent);

// Behind the ">" of the tag that begins at an offset; attributes may hold others.
[[nodiscard]] std::size_t MSPDIEndOfTag(std::string_view bytes, std::size_t begin);

// A text as it stands between tags.
[[nodiscard]] std::string MSPDIEscapedText(std::string_view text);
// An element that holds a text.
[[nodiscard]] std::string MSPDIElementMarkup(std::string_view name, std::string_view text);

// The same document with UTF-8 named where its declaration names the encoding that it had before.
[[nodiscard]] std::string MSPDIWithUtf8Declared(std::string utf8);
