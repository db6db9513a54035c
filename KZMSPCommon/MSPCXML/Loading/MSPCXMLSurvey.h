#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// What has to be known about the bytes of a document (UTF-8) before they are parsed, found without parsing them.
struct MSPCXMLSurvey {
    bool hasInternalSubset = false;  // the document type brings declarations of its own, entities perhaps
    bool hasStrayAmpersand = false;  // an "&" that begins no reference, outside CDATA sections and comments
    bool hasSections = false;        // CDATA sections, comments or processing instructions in the content
    bool hasMixedContent = false;    // text beside elements perhaps, or "xml:space"; looked for without sections only
};

[[nodiscard]] MSPCXMLSurvey surveyXML(std::string_view bytes);

// The end of a comment, CDATA section or processing instruction that starts at `start`; the end of the bytes for one
// without an end; `start` itself when none starts there.
[[nodiscard]] std::size_t endOfXMLSection(std::string_view bytes, std::size_t start);

// Whether a text without sections holds an "&" that begins no reference, or a reference to a forbidden character.
[[nodiscard]] bool hasStrayAmpersand(std::string_view text);

// Which named references an escaping leaves alone.
enum class MSPCXMLEntities {
    Predefined,  // the five of XML
    AnyName,     // any name, since the document declares entities
};

// The same bytes with each stray "&" written as "&amp;" and references to characters that XML forbids as U+FFFD; none
// when there is nothing to mend.
[[nodiscard]] std::optional<std::string> escapedStrayAmpersands(std::string_view bytes, MSPCXMLEntities entities);

// The same bytes with characters that XML forbids as U+FFFD, each "]]>" outside sections as "]]&gt;", and no "--"
// within a comment: a mending parser would end the document at the first, lose the text around the second, and copy the
// comment for each of the third.
[[nodiscard]] std::string withMendableText(std::string_view bytes);
