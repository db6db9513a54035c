#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "MSPCXMLNode.h"

// Which of MSPDI's baselines an element `Baseline` is, and which of several counts. Numbers are read as XPath reads
// them: those of the children `Number` that are 0 to 10.

inline constexpr std::int32_t MSPIBaselineCount = 11;  // numbers 0 to 10

// The number that a `Baseline` goes by, the last of several; none when it is no baseline that is imported.
[[nodiscard]] std::optional<std::size_t> MSPIBaselineNumber(const MSPCXMLNode& baseline);

// For each number the last `Baseline` that has it, be it as one of several numbers; empty where none has. `baseline` is
// the first of those of one element, or empty.
[[nodiscard]] std::array<MSPCXMLNode, MSPIBaselineCount> MSPILastBaselines(MSPCXMLNode baseline);
