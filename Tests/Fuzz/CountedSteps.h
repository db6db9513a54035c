#pragma once

#include <cstdint>

// How many comparisons of numbers the program and the XML libraries have made so far: steps that do not depend on how
// busy the machine is. Only the fuzz targets themselves count, where each of these is told to the fuzzer; always 0 in
// their replay programs.
[[nodiscard]] std::uint64_t countedSteps() noexcept;
