#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "MSPCXMLDocument.h"

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
