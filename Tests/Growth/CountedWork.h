#pragma once

#include <cstdint>

// What the importer has done since the program began, in units that no clock and no other process changes.
struct CountedWork {
    std::uint64_t steps = 0;  // basic blocks run, and nodes passed in the tree's look-ups by name
    std::uint64_t bytes = 0;  // taken from the free store, what was given back included
};

[[nodiscard]] CountedWork countedWork();
