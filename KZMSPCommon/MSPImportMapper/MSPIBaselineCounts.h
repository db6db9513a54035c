#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "MSPCXMLNode.h"

// How many tasks, resources and assignments of a project carry data for each of MSPDI's baselines.
struct MSPIBaselineCounts {
    static constexpr std::int32_t BaselineCount = 11;  // numbers 0 to 10

    struct Counts {
        std::size_t tasks = 0;
        std::size_t resources = 0;
        std::size_t assignments = 0;

        [[nodiscard]] bool areZero() const { return tasks + resources + assignments == 0; }
    };

    // Counts them all in one walk over the lists, with the meaning of "Tasks/Task[Baseline[Number=<n>]]" and its like.
    [[nodiscard]] static MSPIBaselineCounts ofProject(const MSPCXMLNode& mspProject);

    std::array<Counts, BaselineCount> byNumber;
};
