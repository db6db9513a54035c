#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "MSPCXMLNode.h"

// A failure of a mapper: its reason, and what it was about.
struct MSPDIMappingFailure {
    std::string reason;
    std::string subject;
};

// What a mapping that is tried fails with; none when it succeeds.
using MSPDITrial = std::function<std::optional<MSPDIMappingFailure>()>;

// Finds the value that a mapping stumbles over: the leaf of these elements without which the failure is gone, or is
// about something else. Leaves that the failure quotes are looked at first; with `onlyQuoted` no others are. A UID is
// never to blame. The elements are as before. Empty when no single leaf is to blame.
[[nodiscard]] MSPCXMLNode MSPDICulpritAmong(const std::vector<MSPCXMLNode>& elements,
                                            const MSPDIMappingFailure& failure, const MSPDITrial& trial,
                                            bool onlyQuoted = false);
