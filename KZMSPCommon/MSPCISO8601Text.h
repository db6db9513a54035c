#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "MSPCDateComponents.h"
#include "MSPCISO8601Reader.h"

// ISO 8601 texts of date-times and durations, read into components and printed from them. The readers find the first
// piece of a text that looks right, leave what the text does not hold untouched in the components and answer with the
// units that it held, or not found. Numbers out of range become the nearest 32-bit integer.

// A date ("2012-01-05"), a time ("08:30:00") or both with a "T" between them, with or without a zone ("Z", "+01:00").
// The offset behind a fraction of seconds is dropped ("08:00:00.000+02:00" has no zone), the fraction too. Only an
// empty text is not found; one without date and time gives no unit. A date that is followed by a time but not by "T"
// and the time ("2012-01-05X08:00:00") raises `MSPCInternalInconsistency` with an empty reason.
MSPCUnitFlags updateDateTimeComponentsFromISODateTime(MSPCDateComponents& components, std::string_view text);

// The units of a date-time text, for recognising one: as above, but not found where that raises.
[[nodiscard]] MSPCUnitFlags unitsOfISODateTime(std::string_view text);

// A duration with its "P" and "T" ("PT8H0M0S", "P2DT0H"); anything else ("8H", "P1D") is not found.
MSPCUnitFlags updateDateTimeComponentsFromISODuration(MSPCDateComponents& components, std::string_view text);

// The duration form of MSPDI, "PTnHnMnS" with all three letters, anywhere in a text; none when it is not there. Unlike
// the operation above it does not take "PT8H".
[[nodiscard]] std::optional<MSPCHoursMinutesSeconds> hoursMinutesSecondsFromMSPDIDuration(std::string_view text);

// The units that the flags name, in ISO form: "2012-01-05T08:00:00+01:00". The year is not padded, undefined fields
// print as 0. The zone prints as "Z" when that unit is asked for and the components are in UTC, else as a signed
// offset. None for not found, an empty text for no units.
[[nodiscard]] std::optional<std::string> stringFromComponentsUnitFlags(const MSPCDateComponents& components,
                                                                       MSPCUnitFlags units);

// The instant of the clock fields in the calendar's zone; the components' own offset is not read. None without year,
// month and day.
[[nodiscard]] std::optional<MSPCInstant> dateFromComponents(const MSPCDateComponents& components,
                                                            const MSPCGregorianCalendar& gregorian);
