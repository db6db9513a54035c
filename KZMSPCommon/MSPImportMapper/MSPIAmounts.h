#pragma once

#include <string>

// How amounts of a plan stand in a document: rounded to a fixed number of decimals.
namespace MSPIAmounts {

// A task's fixed cost, and a resource's units: six decimals, "5.000000".
[[nodiscard]] std::string fixedCostText(double mspdi);
[[nodiscard]] std::string unitsText(double mspdi);

// What each use of a resource costs, which MSPDI keeps in hundredths, and its text with two decimals: 150 is 1.5,
// "1.50".
[[nodiscard]] double costPerUse(double mspdi);
[[nodiscard]] std::string costPerUseText(double mspdi);

}  // namespace MSPIAmounts
