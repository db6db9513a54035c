#include "MSPDICulprit.h"

#include <fmt/format.h>

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "MSPDITakenOut.h"

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

bool contains(std::string_view text, std::string_view piece) {
    return text.find(piece) != std::string_view::npos;
}

// Failures show the node, or its text in quotes or at their end. Where they show a node, another one of the same text
// is not meant.
bool isQuoted(const MSPCXMLNode& leaf, const std::string& reason) {
    if (contains(reason, "XML node: <")) {
        // Writing the node takes longer than looking for its name first.
        return contains(reason, leaf.name()) && contains(reason, leaf.markup());
    }
    const auto text = leaf.stringValue();
    return reason.ends_with(": " + text) || contains(reason, fmt::format("'{}'", text));
}

// What a failure is about, as far as it tells; one that says nothing is one of dates.
bool isOfDate(const MSPDIMappingFailure& failure) {
    return failure.reason.empty() || contains(failure.reason, "date-time");
}

bool isOfDuration(const MSPDIMappingFailure& failure) {
    return contains(failure.reason, "MSPDI duration");
}

bool endsWithOneOf(std::string_view name, std::initializer_list<std::string_view> ends) {
    return std::any_of(ends.begin(), ends.end(), [&](auto end) { return name.ends_with(end); });
}

// Whether a leaf, by its name, holds what the failure is about; a custom field's value may be anything.
bool isOfKind(const MSPCXMLNode& leaf, const MSPDIMappingFailure& failure) {
    const auto name = leaf.name();
    if (isOfDate(failure)) {
        return name != "ScheduleFromStart" &&
               endsWithOneOf(name, {"Date", "Time", "Start", "Finish", "Stop", "Resume", "Deadline", "Value"});
    }
    return !isOfDuration(failure) || endsWithOneOf(name, {"Duration", "Work", "Value"});
}

// What is never a date nor a duration; without it others would not be read.
bool isNeverOfKind(const MSPCXMLNode& leaf, const MSPDIMappingFailure& failure) {
    const auto name = leaf.name();
    return (isOfDate(failure) || isOfDuration(failure)) &&
           (name == "IsBaseCalendar" || name == "Type" || name == "Name");
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
    MSPDITakenOut takenOut;
    for (const auto& leaf : leaves) {
        takenOut.take(leaf);
    }
    return trial();
}

bool isOther(const std::optional<MSPDIMappingFailure>& rest, const MSPDIMappingFailure& failure) {
    return !rest || rest->reason != failure.reason || rest->subject != failure.subject;
}

// Values of one text fail alike, so that none of them seems to be to blame alone: as many of them as it takes.
MSPDICulprit culpritsTogether(std::vector<MSPCXMLNode> suspects, const MSPDIMappingFailure& failure,
                              const MSPDITrial& trial) {
    auto rest = failureWithout(suspects, trial);
    if (suspects.size() < 2 || !isOther(rest, failure)) {
        return {};
    }
    for (std::size_t index = 0; index < suspects.size();) {
        auto fewer = suspects;
        fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(index));
        auto restOfFewer = failureWithout(fewer, trial);
        if (isOther(restOfFewer, failure)) {
            suspects = std::move(fewer);
            rest = std::move(restOfFewer);
        } else {
            ++index;
        }
    }
    return {std::move(suspects), std::move(rest)};
}

// One of the suspects, the ones of the failure's kind before all others. Of these the one is better without which
// nothing fails: without a type, the value that is to blame may just not be read.
MSPDICulprit culpritAlone(const std::vector<MSPCXMLNode>& suspects, const MSPDIMappingFailure& failure,
                          const MSPDITrial& trial) {
    MSPDICulprit second;
    for (const auto& leaf : suspects) {
        auto alike = alikeBeside(leaf);
        auto rest = failureWithout(alike, trial);
        if (!rest || (isOfKind(leaf, failure) && isOther(rest, failure))) {
            return {std::move(alike), std::move(rest)};
        }
        if (second.leaves.empty() && isOther(rest, failure)) {
            second = {std::move(alike), std::move(rest)};
        }
    }
    return second;
}

}  // namespace

MSPDICulprit MSPDICulpritAmong(const std::vector<MSPCXMLNode>& elements, const MSPDIMappingFailure& failure,
                               const MSPDITrial& trial, const std::function<bool(const std::string&)>& isUnreadable) {
    std::vector<MSPCXMLNode> leaves;
    for (const auto& element : elements) {
        collectLeaves(element, leaves);
    }
    leaves.erase(
        std::remove_if(leaves.begin(), leaves.end(), [&](const auto& leaf) { return isNeverOfKind(leaf, failure); }),
        leaves.end());
    std::stable_partition(leaves.begin(), leaves.end(), [&](const auto& leaf) { return isOfKind(leaf, failure); });
    // A failure that says nothing is one of dates.
    const auto isSuspect = [&](const MSPCXMLNode& leaf) {
        return failure.reason.empty() ? isUnreadable(leaf.stringValue()) : isQuoted(leaf, failure.reason);
    };
    const auto others = std::stable_partition(leaves.begin(), leaves.end(), isSuspect);
    auto single = culpritAlone({leaves.begin(), others}, failure, trial);
    if (!single.leaves.empty()) {
        return single;
    }
    if (const auto count = others - leaves.begin(); count > 1 && count <= static_cast<std::ptrdiff_t>(mostTries)) {
        auto together = culpritsTogether({leaves.begin(), others}, failure, trial);
        if (!together.leaves.empty()) {
            return together;
        }
    }
    // A value that says nothing is missed the least.
    std::stable_partition(others, leaves.end(), [](const auto& leaf) { return leaf.stringValue().empty(); });
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
