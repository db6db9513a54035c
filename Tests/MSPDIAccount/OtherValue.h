#pragma once

#include <string>
#include <vector>

class ChangedPlan;

// Other values that a plan may have at that place.
[[nodiscard]] std::vector<std::string> otherValues(const ChangedPlan& plan, const std::string& path,
                                                   const std::string& value);
