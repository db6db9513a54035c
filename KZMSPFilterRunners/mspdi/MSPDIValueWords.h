#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "KZDXDateTime.h"
#include "MSPDIAccount.h"

// What a value of a plan means, to be said in any language.
struct MSPDIWork {
    double seconds;  // below zero for a lead
};
struct MSPDIPercentage {
    double percent;
};
struct MSPDIConstraint {
    std::size_t type;  // the number that MSPDI gives it, 0 to 7
};
// Who is meant by a number.
struct MSPDITarget {
    std::string_view kind;  // "task", "resource", "calendar"
    std::string uid;
    std::string name;  // empty where none is known
};
// Nothing where the value is but a text.
using MSPDIMeaning =
    std::variant<std::monostate, MSPDIWork, MSPDIPercentage, MSPDIConstraint, MSPDITarget, KZDXDateTime>;

// What a value means, by the element at its path.
[[nodiscard]] MSPDIMeaning MSPDIMeaningOf(const MSPDIPlace& place);
// The task at the other end of the link whose lag it is; none for other values.
[[nodiscard]] std::optional<MSPDITarget> MSPDILinkOf(const MSPDIPlace& place);

// A value of a plan in words for people, by the element at its path: "40 hours", "50%", "Wed 1 Feb 2012 17:00",
// "finish no earlier than". The value itself, in one line and not much longer than that, where there are no words for
// it.
[[nodiscard]] std::string MSPDIValueInWords(const MSPDIPlace& place);

// A text of a plan as people may see it, on one line: its beginning where it is longer than a line.
[[nodiscard]] std::string MSPDIShownValue(std::string_view text);
// A path, without its middle where it is very long.
[[nodiscard]] std::string MSPDIShownPath(std::string_view path);
