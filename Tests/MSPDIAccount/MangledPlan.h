#pragma once

#include <string>

// A plan with some leaves repeated, emptied, taken out, exchanged or given odd values, at random from a seed. It may be
// refused.
[[nodiscard]] std::string mangledPlan(const std::string& bytes, unsigned seed);
