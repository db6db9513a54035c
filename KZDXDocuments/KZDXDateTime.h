#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "MSPCGregorianCalendar.h"

// A date-time of a document: "2012-03-05T08:00:00+01:00", or with "Z" for the offset 0 (ISO 8601). The year has no
// fixed number of digits.
struct KZDXDateTime {
    MSPCDateFields fields;         // as the clock on the wall shows them
    MSPCInstant wallClock;         // these fields as if they were of Greenwich, for differences that people see
    int secondsFromGreenwich = 0;  // positive to the east

    [[nodiscard]] MSPCInstant instant() const;
    // Whether both may be dates of one place: its clock is changed by two hours at most.
    [[nodiscard]] bool mayBeOfOneZone(const KZDXDateTime& other) const;
    // Whether it lies behind another one beyond doubt: where both may be of one zone, on its wall clock, too.
    [[nodiscard]] bool isBehind(const KZDXDateTime& other) const;
};

// None for a text of any other form, and for a day or a time that no calendar has.
[[nodiscard]] std::optional<KZDXDateTime> KZDXDateTimeFrom(std::string_view text);
