#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "MSPCXMLLexis.h"

// What had to be mended in broken markup, or could not be taken.
struct MSPCXMLRepair {
    int line = 0;         // of the first error, from 1
    std::string message;  // the parser's own words, without a line end
};

// A document that only the thorough parser understands, written anew as markup that any parser does.
struct MSPCXMLMended {
    std::string bytes;                    // UTF-8, entities expanded
    std::optional<MSPCXMLRepair> repair;  // none when the markup was sound all along
};

// Whether UTF-8 bytes without declarations in their document type are well-formed in every respect, names included,
// which the quick parser does not look at.
[[nodiscard]] bool isWellFormedXML(std::string_view bytes);
// What is wrong with such bytes first, prefixes without a namespace included; none when nothing is. Makes no tree. The
// line is 0 where the bytes as a whole are beyond measure.
[[nodiscard]] std::optional<MSPCXMLRepair> firstErrorInXML(std::string_view bytes);

// Parses UTF-8 bytes with internal entities, or with broken markup, which is mended where that yields a root element
// named `repairableRoot`. None otherwise, and for entities that expand beyond measure. Opens no file and no connection.
[[nodiscard]] std::optional<MSPCXMLMended> mendedXML(std::string_view bytes, bool hasInternalSubset,
                                                     std::string_view repairableRoot);

// The same bytes with each stray "&" written as "&amp;" and references to characters that XML forbids as U+FFFD; none
// when there is nothing to mend.
[[nodiscard]] std::optional<std::string> escapedStrayAmpersands(std::string_view bytes,
                                                                MSPCXMLLexis::Entities entities);

// The same bytes with what no document may hold as U+FFFD, each "]]>" outside sections as "]]&gt;", and no "--"
// within a comment: a mending parser would end the document at the first, lose the text around the second, and copy the
// comment for each of the third.
[[nodiscard]] std::string withMendableText(std::string_view bytes);
