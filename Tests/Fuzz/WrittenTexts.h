#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class MSPCXMLDocument;

// The elements of a document, each with its name, attributes and texts, one entry for each of them in document order:
// what must be the same in a document and in a strict reading of its bytes. Blanks between elements do not count, and
// what XML cannot hold counts as U+FFFD, several in a row as one.
using WrittenTexts = std::vector<std::string>;

[[nodiscard]] WrittenTexts textsOf(const MSPCXMLDocument& document);
// Read by a parser that no other part of the program uses. Ends the run where the bytes are no well-formed XML in
// UTF-8; nothing where they are, but with letters in names that this parser does not know.
[[nodiscard]] std::optional<WrittenTexts> textsOfStrictReading(std::string_view bytes);
