#pragma once

#include <string>

#include "MSPCGregorianCalendar.h"

// The display form of an instant: "2011-05-04 13:22:10 +0000", in UTC whatever the machine's zone.
[[nodiscard]] std::string displayText(MSPCInstant instant);
// The same on the clocks of a calendar's zone, with the whole hours and minutes of its offset: "2011-05-04 15:22:10
// +0200", "2011-05-04 09:52:10 -0330".
[[nodiscard]] std::string displayText(MSPCInstant instant, const MSPCGregorianCalendar& gregorian);
