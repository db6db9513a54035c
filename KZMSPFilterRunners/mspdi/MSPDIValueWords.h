#pragma once

#include <string>

#include "MSPDIAccount.h"

// A value of a plan in words for people, by the element at its path: "40 hours", "50%", "Wed 1 Feb 2012 17:00",
// "finish no earlier than". The value itself, in one line and not much longer than that, where there are no words for
// it.
[[nodiscard]] std::string MSPDIValueInWords(const MSPDIPlace& place);

// A text of a plan as people may see it, on one line: its beginning where it is longer than a line.
[[nodiscard]] std::string MSPDIShownValue(std::string_view text);
// A path, without its middle where it is very long.
[[nodiscard]] std::string MSPDIShownPath(std::string_view path);
