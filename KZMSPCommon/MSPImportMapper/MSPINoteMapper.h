#pragma once

#include <string_view>

#include "MSPCXMLDocument.h"
#include "MSPCXMLNode.h"

// Turns the plain text of MSPDI `Notes` into the target's rich text.
class MSPINoteMapper {
public:
    // A `note` element of the given document, owned by the caller: one `p` with one `run` and one `lit` per line of the
    // note. Line terminators are LF, CR, CR LF, U+0085, U+2028 and U+2029; one at the very end opens no further line.
    // An empty note gives an empty `text`.
    [[nodiscard]] MSPCXMLNewElement newNoteFromMSPNotes(std::string_view notes, MSPCXMLDocument& document) const;
};
