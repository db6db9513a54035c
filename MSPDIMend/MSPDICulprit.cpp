#include "MSPDICulprit.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <set>
#include <string_view>
#include <utility>

#include "MSPDITakenOut.h"

namespace {

// Trying costs as much as mapping; elements with more leaves than that are no task's, nor an assignment's.
constexpr std::size_t mostTries = 300;

void collectLeaves(const MSPCXMLNode& element, std::vector<MSPCXMLNode>& leaves) {
    bool isLeaf = true;
    for (auto child = element.firstChild(); child; child = child.nextSibling()) {
        if (child.isElement()) {
            isLeaf = false;
            if (child.name() != "Baseline") {
                collectLeaves(child, leaves);
            }
        }
    }
    // A value of the project that holds elements but no text says as little as an empty one.
    const bool isEmptyValue = !isLeaf && element.parent().name() == "Project" && element.stringValue().empty();
    if ((isLeaf || isEmptyValue) && element.name() != "UID") {
        leaves.push_back(element);
    }
}

bool contains(std::string_view text, std::string_view piece) {
    return text.find(piece) != std::string_view::npos;
}

bool isQuotedText(std::string_view text, std::string_view reason) {
    constexpr char quote = '\'';
    if (reason.ends_with(text) && reason.substr(0, reason.size() - text.size()).ends_with(": ")) {
        return true;
    }
    for (auto found = reason.find(text); found != std::string_view::npos; found = reason.find(text, found + 1)) {
        const auto end = found + text.size();
        if (found > 0 && end < reason.size() && reason[found - 1] == quote && reason[end] == quote) {
            return true;
        }
    }
    return false;
}

// Failures show the node, or its text in quotes or at their end. Where they show a node, another one of the same text
// is not meant.
bool isQuoted(const MSPCXMLNode& leaf, const std::string& reason) {
    if (contains(reason, "XML node: <")) {
        // Writing the node takes longer than looking for its name first.
        return contains(reason, leaf.name()) && contains(reason, leaf.markup());
    }
    std::string buffer;
    return isQuotedText(leaf.stringValue(buffer), reason);
}

// What a failure is about, as far as it tells; one that says nothing is one of dates.
enum class Topic { Date, Duration, Other };

Topic topicOf(const MSPDIMappingFailure& failure) {
    if (failure.reason.empty() || contains(failure.reason, "date-time")) {
        return Topic::Date;
    }
    return contains(failure.reason, "MSPDI duration") ? Topic::Duration : Topic::Other;
}

bool endsWithOneOf(std::string_view name, std::initializer_list<std::string_view> ends) {
    return std::any_of(ends.begin(), ends.end(), [&](auto end) { return name.ends_with(end); });
}

// Whether a leaf, by its name, holds what a failure is about; a custom field's value may be anything.
bool isOfTopic(const MSPCXMLNode& leaf, Topic topic) {
    const auto name = leaf.name();
    if (topic == Topic::Date) {
        return name != "ScheduleFromStart" &&
               endsWithOneOf(name, {"Date", "Time", "Start", "Finish", "Stop", "Resume", "Deadline", "Value"});
    }
    return topic != Topic::Duration || endsWithOneOf(name, {"Duration", "Work", "Value"});
}

// What is never a date nor a duration; without it others would not be read.
bool isNeverOfTopic(const MSPCXMLNode& leaf, Topic topic) {
    const auto name = leaf.name();
    return topic != Topic::Other && (name == "IsBaseCalendar" || name == "Type" || name == "Name");
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

// Whether a leaf is to blame beyond doubt, for what the mapping fails with without it.
bool isProof(const std::optional<MSPDIMappingFailure>& rest, const MSPDIMappingFailure& failure,
             const MSPCXMLNode& leaf) {
    return !rest || (isOfTopic(leaf, topicOf(failure)) && isOther(rest, failure));
}

// One of the suspects, the ones of the failure's kind before all others. Of these the one is better without which
// nothing fails: without a type, the value that is to blame may just not be read.
MSPDICulprit culpritAlone(const std::vector<MSPCXMLNode>& suspects, const MSPDIMappingFailure& failure,
                          const MSPDITrial& trial) {
    MSPDICulprit second;
    for (const auto& leaf : suspects) {
        auto alike = alikeBeside(leaf);
        auto rest = failureWithout(alike, trial);
        if (isProof(rest, failure, leaf)) {
            return {std::move(alike), std::move(rest)};
        }
        if (second.leaves.empty() && isOther(rest, failure)) {
            second = {std::move(alike), std::move(rest)};
        }
    }
    return second;
}

}  // namespace

bool MSPDIIsBeyondMeasure(std::string_view reason) {
    return reason.starts_with("Too much") || reason.starts_with("Too many");
}

MSPDICulprit MSPDICulpritAmong(const std::vector<MSPCXMLNode>& elements, const MSPDIMappingFailure& failure,
                               const MSPDITrial& trial, const std::function<bool(const std::string&)>& isUnreadable) {
    std::vector<MSPCXMLNode> leaves;
    for (const auto& element : elements) {
        collectLeaves(element, leaves);
    }
    const auto topic = topicOf(failure);
    const auto isOfItsTopic = [topic](const auto& leaf) { return isOfTopic(leaf, topic); };
    std::erase_if(leaves, [topic](const auto& leaf) { return isNeverOfTopic(leaf, topic); });
    // A failure that says nothing is one of dates.
    const auto isSuspect = [&](const MSPCXMLNode& leaf) {
        return failure.reason.empty() ? isUnreadable(leaf.stringValue()) : isQuoted(leaf, failure.reason);
    };
    std::vector<MSPCXMLNode> suspects;
    std::copy_if(leaves.begin(), leaves.end(), std::back_inserter(suspects), isSuspect);
    std::stable_partition(suspects.begin(), suspects.end(), isOfItsTopic);
    if (auto single = culpritAlone(suspects, failure, trial); !single.leaves.empty()) {
        return single;
    }
    if (suspects.size() > 1 && suspects.size() <= mostTries) {
        auto together = culpritsTogether(suspects, failure, trial);
        if (!together.leaves.empty()) {
            return together;
        }
    }
    const std::set<MSPCXMLNode> tried(suspects.begin(), suspects.end());
    std::erase_if(leaves, [&](const auto& leaf) { return tried.contains(leaf); });
    // A value that says nothing is missed the least.
    std::stable_partition(leaves.begin(), leaves.end(), isOfItsTopic);
    std::stable_partition(leaves.begin(), leaves.end(), [](const auto& leaf) { return leaf.stringValue().empty(); });
    const auto end = leaves.begin() + static_cast<std::ptrdiff_t>(std::min(mostTries, leaves.size()));
    const auto helping =
        std::find_if(leaves.begin(), end, [&](const auto& leaf) { return !failureWithout({leaf}, trial); });
    if (helping != end) {
        return {{*helping}, std::nullopt};
    }
    // Several of them together stand in the way.
    const bool isOfDates = failure.reason.empty() && !suspects.empty();
    return isOfDates ? MSPDICulprit{{suspects.front()}, failure} : MSPDICulprit{};
}

MSPDICulprit MSPDICulpritNamed(const std::vector<std::string>& names, const std::vector<MSPCXMLNode>& elements,
                               const MSPDIMappingFailure& failure, const MSPDITrial& trial) {
    for (const auto& name : names) {
        for (const auto& element : elements) {
            const auto leaf = element.lastChildElement(name).element;
            if (!leaf || isNeverOfTopic(leaf, topicOf(failure)) || !isQuoted(leaf, failure.reason)) {
                continue;
            }
            auto alike = alikeBeside(leaf);
            if (auto rest = failureWithout(alike, trial); isProof(rest, failure, leaf)) {
                return {std::move(alike), std::move(rest)};
            }
        }
    }
    return {};
}
