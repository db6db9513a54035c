#pragma once

#include <array>
#include <cstddef>
#include <string_view>

// What becomes of a leaf of a plan: an element without child elements. Each has exactly one fate.
enum class MSPDIFate {
    Carried,  // its value stands in the document, converted perhaps: another one gives another document
    Changed,  // something of it arrives, but it says something else now
    Shaping,  // decides how others arrive
    Default,  // not carried, and says nothing that a planner would miss; without it the document is the same
    Derived,  // not carried, but computed from others by the planning program; without it the document is the same
    Lost,     // not carried, and says something; without it the document is the same
};

inline constexpr std::array<std::string_view, 6> MSPDIFateNames = {"carried", "changed", "shaping",
                                                                   "default", "derived", "lost"};

[[nodiscard]] constexpr std::size_t MSPDIFateIndex(MSPDIFate fate) {
    return static_cast<std::size_t>(fate);
}
