#pragma once

#include <string_view>

#include "MSPDIElement.h"

// What becomes of a value that is carried over: it is converted as the importer does it, and what comes out is compared
// with what was read. Carried where both say the same; else changed, with the kind of change.
namespace MSPDIArrival {

// A date: without seconds its time does not arrive. In summer all get another offset.
[[nodiscard]] MSPDIJudgement ofDate(const MSPDIPlanFacts& plan, std::string_view text);
// Work, or a duration: its sign, its days and its fractions of seconds do not arrive, and hours without end are cut.
[[nodiscard]] MSPDIJudgement ofDuration(std::string_view text);
// Amounts, which are rounded.
[[nodiscard]] MSPDIJudgement ofFixedCost(std::string_view text);
[[nodiscard]] MSPDIJudgement ofCostPerUse(std::string_view text);
[[nodiscard]] MSPDIJudgement ofUnits(std::string_view text);
// A rate, which arrives as it is written, number or not.
[[nodiscard]] MSPDIJudgement ofRate(std::string_view text);
// Whether a text holds what no document can: other characters than XML has, or bytes that are no UTF-8.
[[nodiscard]] bool isUnreadable(std::string_view text);

}  // namespace MSPDIArrival
