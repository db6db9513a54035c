#pragma once

#include <string>
#include <string_view>

class MSPCRandomSource;

// A new identifier: 11 characters over "a" to "z", "A" to "Z", "0" to "9", "-" and "_", the first one from "a" to "p";
// it carries 64 random bits. Raises `MSPCInternalInconsistency` "MSPIUtilities VFXMLCreateID: Failed to generate random
// Big Number." when the source gives no number of at least 57 significant bits in 1000 attempts.
[[nodiscard]] std::string VFXMLCreateID(MSPCRandomSource& randomSource);

// Whether a text may be an identifier in the target format: a letter of any script, ":" or "_" first, then letters and
// digits of any script and ".-_:". An empty text, or one that is no UTF-8, may not.
[[nodiscard]] bool VFXMLIsValidID(std::string_view text);
