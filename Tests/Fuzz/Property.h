#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

// Ends the run with a message where a property does not hold, so that the fuzzer keeps the input.
inline void require(bool holds, std::string_view property) {
    if (!holds) {
        std::fprintf(stderr, "PROPERTY BROKEN: %.*s\n", static_cast<int>(property.size()), property.data());
        std::abort();
    }
}
