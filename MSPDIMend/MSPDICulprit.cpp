#include "MSPDICulprit.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace {

// Trying costs as much as mapping; elements with more leaves than that are no task's, nor an assignment's.
constexpr std::size_t mostTries = 300;

void collectLeaves(const MSPCXMLNode& element, std::vector<MSPCXMLNode>& leaves) {
    const auto children = element.childElements();
    if (children.empty() && element.name() != "UID") {
        leaves.push_back(element);
    }
    for (const auto& [name, child] : children) {
        if (name != "Baseline") {
            collectLeaves(child, leaves);
        }
    }
}

// Failures show the node, or its text in quotes or at their end.
bool isQuoted(const MSPCXMLNode& leaf, const std::string& reason) {
    const auto text = leaf.stringValue();
    return reason.find(leaf.markup()) != std::string::npos || reason.ends_with(": " + text) ||
           reason.find(fmt::format("'{}'", text)) != std::string::npos;
}

// Only what is no longer there can be ruled out.
bool isToBlame(MSPCXMLNode leaf, const MSPDIMappingFailure& failure, const MSPDITrial& trial) {
    auto parent = leaf.parent();
    const auto before = leaf.previousSibling();
    auto removed = leaf.detach();
    const auto rest = trial();
    parent.insertChildAfter(std::move(removed), before);
    return !rest || rest->reason != failure.reason || rest->subject != failure.subject;
}

}  // namespace

MSPCXMLNode MSPDICulpritAmong(const std::vector<MSPCXMLNode>& elements, const MSPDIMappingFailure& failure,
                              const MSPDITrial& trial, bool onlyQuoted) {
    std::vector<MSPCXMLNode> leaves;
    for (const auto& element : elements) {
        collectLeaves(element, leaves);
    }
    const auto firstOther = std::stable_partition(leaves.begin(), leaves.end(),
                                                  [&](const auto& leaf) { return isQuoted(leaf, failure.reason); });
    if (onlyQuoted) {
        leaves.erase(firstOther, leaves.end());
    }
    leaves.resize(std::min(leaves.size(), mostTries));
    const auto found =
        std::find_if(leaves.begin(), leaves.end(), [&](const auto& leaf) { return isToBlame(leaf, failure, trial); });
    return found == leaves.end() ? MSPCXMLNode() : *found;
}
