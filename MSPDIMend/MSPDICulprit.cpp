#include "MSPDICulprit.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "MSPDIAside.h"

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
    // Writing the node takes longer than looking for its name first.
    const bool mayBeShown = reason.find(leaf.name()) != std::string::npos;
    return (mayBeShown && reason.find(leaf.markup()) != std::string::npos) || reason.ends_with(": " + text) ||
           reason.find(fmt::format("'{}'", text)) != std::string::npos;
}

// A leaf with those of its siblings that have its name and its text.
std::vector<MSPCXMLNode> alikeBeside(const MSPCXMLNode& leaf) {
    std::vector<MSPCXMLNode> alike;
    for (const auto& sibling : leaf.parent().childElements(leaf.name())) {
        if (sibling == leaf || sibling.stringValue() == leaf.stringValue()) {
            alike.push_back(sibling);
        }
    }
    return alike;
}

// What the mapping fails with without some leaves.
std::optional<MSPDIMappingFailure> failureWithout(const std::vector<MSPCXMLNode>& leaves, const MSPDITrial& trial) {
    MSPDIAside aside;
    for (const auto& leaf : leaves) {
        aside.take(leaf);
    }
    return trial();
}

}  // namespace

MSPDICulprit MSPDICulpritAmong(const std::vector<MSPCXMLNode>& elements, const MSPDIMappingFailure& failure,
                               const MSPDITrial& trial, const std::function<bool(const std::string&)>& isUnreadable) {
    std::vector<MSPCXMLNode> leaves;
    for (const auto& element : elements) {
        collectLeaves(element, leaves);
    }
    // A failure that says nothing is one of dates.
    const auto isSuspect = [&](const MSPCXMLNode& leaf) {
        return failure.reason.empty() ? isUnreadable(leaf.stringValue()) : isQuoted(leaf, failure.reason);
    };
    const auto others = std::stable_partition(leaves.begin(), leaves.end(), isSuspect);
    for (auto leaf = leaves.begin(); leaf != others; ++leaf) {
        auto alike = alikeBeside(*leaf);
        auto rest = failureWithout(alike, trial);
        if (!rest || rest->reason != failure.reason || rest->subject != failure.subject) {
            return {std::move(alike), std::move(rest)};
        }
    }
    const auto mostOthers = static_cast<std::ptrdiff_t>(mostTries);
    const auto end = others + std::min(mostOthers, leaves.end() - others);
    const auto helping = std::find_if(others, end, [&](const auto& leaf) { return !failureWithout({leaf}, trial); });
    if (helping != end) {
        return {{*helping}, std::nullopt};
    }
    // Several of them together stand in the way.
    const bool isOfDates = failure.reason.empty() && others != leaves.begin();
    return isOfDates ? MSPDICulprit{{leaves.front()}, failure} : MSPDICulprit{};
}
