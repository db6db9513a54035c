#pragma once

#include <string>

class ChangedPlan;

// Another value that a plan may have at that place.
[[nodiscard]] std::string otherValue(const ChangedPlan& plan, const std::string& path, const std::string& value);
