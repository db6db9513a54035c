#pragma once

#include <cstddef>
#include <cstdint>

// The steps of one input, counted from the making of this on: the stretches of code between two branches that the
// program and the XML libraries go through, and what they let the C library copy, compare and search, sixteen bytes to
// a step. No clock and no other process changes them. Only fuzz targets count; in their replay programs it is always 0.
class CountedSteps {
public:
    CountedSteps() noexcept;
    [[nodiscard]] std::uint64_t count() const noexcept;

private:
    std::uint64_t _before;
};

// What an input may take: so much whatever it is, and so much for each byte that is read or written.
struct StepBound {
    std::uint64_t ofAny;
    std::uint64_t ofByte;
};

// Ends the run where more steps were taken: something grows faster than the input, which shows in its steps long
// before it takes time that anybody would notice.
void requireStepsThatGrowWith(std::size_t bytes, std::uint64_t taken, StepBound bound);
