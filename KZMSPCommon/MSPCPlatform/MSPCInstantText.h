#pragma once

#include <string>

#include "MSPCInstant.h"

// The display form of an instant: "2011-05-04 13:22:10 +0000", in UTC whatever the machine's zone.
[[nodiscard]] std::string displayText(MSPCInstant instant);
