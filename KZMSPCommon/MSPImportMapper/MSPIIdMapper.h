#pragma once

#include <string>
#include <string_view>

#include "MSPCUID.h"

// Makes target identifiers from MSPDI UIDs. The UID text is taken as it stands, leading zeros included; an empty text
// gives an empty id.
class MSPIIdMapper {
public:
    // "t12" for the UID "12". Raises `MSPCInternalInconsistency` "Invalid format of MSPDI Task ID (can not be negative
    // number): <text>" for a text that begins with "-".
    [[nodiscard]] std::string taskIdFromMspdiUID(std::string_view mspdiUID) const;
    // "r3" for the UID "3". Raises "Invalid format of MSPDI Resource ID (can not be negative number): <text>" alike.
    [[nodiscard]] std::string resourceIdFromMspdiUID(std::string_view mspdiUID) const;
    // The same of the number, in decimal.
    [[nodiscard]] std::string taskIdFromMspdiUID(MSPCTaskUID mspdiUID) const;
    [[nodiscard]] std::string resourceIdFromMspdiUID(MSPCResourceUID mspdiUID) const;
};
