#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCXMLNode.h"

// A failure of a mapper: its reason, and what it was about.
struct MSPDIMappingFailure {
    std::string reason;
    std::string subject;
};

// Whether a failure with that reason tells that a plan would grow beyond all measure, which no single value is to blame
// for.
[[nodiscard]] bool MSPDIIsBeyondMeasure(std::string_view reason);

// What a mapping that is tried fails with; none when it succeeds.
using MSPDITrial = std::function<std::optional<MSPDIMappingFailure>()>;

// The leaf that is to blame, none where no single one is, with those beside it that say the same: of several the last
// one counts. And what the mapping fails with when they are gone.
struct MSPDICulprit {
    std::vector<MSPCXMLNode> leaves;
    std::optional<MSPDIMappingFailure> rest;
};

// Finds the value that a mapping stumbles over. A leaf of these elements that the failure quotes is to blame when the
// failure is gone without it, or is about something else; any other one only when it is gone. Of a failure that says
// nothing those that `isUnreadable` are taken for quoted. A UID is never to blame. The elements are
// as before.
[[nodiscard]] MSPDICulprit MSPDICulpritAmong(const std::vector<MSPCXMLNode>& elements,
                                             const MSPDIMappingFailure& failure, const MSPDITrial& trial,
                                             const std::function<bool(const std::string&)>& isUnreadable);

// The same where a child of the elements with one of these names is to blame beyond doubt; nothing is tried that the
// failure does not quote. No leaves where the search has to look at everything.
[[nodiscard]] MSPDICulprit MSPDICulpritNamed(const std::vector<std::string>& names,
                                             const std::vector<MSPCXMLNode>& elements,
                                             const MSPDIMappingFailure& failure, const MSPDITrial& trial);
