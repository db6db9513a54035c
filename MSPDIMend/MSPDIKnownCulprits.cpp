#include "MSPDIKnownCulprits.h"

#include <algorithm>
#include <iterator>

#include "MSPCException.h"
#include "MSPCNodeValues.h"

namespace {

// What raises a failure whose reason begins so. A task's mapper reads numbers as it asks for them, and dates and
// durations whenever it has asked for their texts.
struct Reader {
    std::string_view reason;
    void (*read)(const MSPCXMLNode& leaf, const MSPIUtilities& conversions);
    bool tellsName;  // of the leaf, beside its text
};

constexpr Reader readers[] = {
    {"Failed to get int value", [](const auto& leaf, const auto&) { static_cast<void>(intValueOf(leaf)); }, true},
    {"Failed to get float value", [](const auto& leaf, const auto&) { static_cast<void>(floatValueOf(leaf)); }, true},
    {"Failed to get boolean value", [](const auto& leaf, const auto&) { static_cast<void>(boolValueOf(leaf)); }, true},
    {"Failed to convert MSPDI duration",
     [](const auto& leaf, const auto&) {
         static_cast<void>(MSPIUtilities::mspdiDurationInSecs(MSPCNodeText(leaf).textOrEmpty()));
     },
     false},
    {"Failed to make MSPCDateComponents",
     [](const auto& leaf, const auto& conversions) {
         static_cast<void>(conversions.mspdiToKdzxDateTime(MSPCNodeText(leaf).textOrEmpty()));
     },
     false},
};

bool raises(const Reader& reader, const MSPCXMLNode& leaf, const MSPIUtilities& conversions) {
    try {
        reader.read(leaf, conversions);
    } catch (const MSPCException&) {
        return true;
    }
    return false;
}

// Whether failures of both are the same.
bool areAlike(const MSPDIKnownCulprits::Suspect& one, const MSPDIKnownCulprits::Suspect& other) {
    return one.reader == other.reader && !readers[one.reader].tellsName &&
           one.leaf.stringValue() == other.leaf.stringValue();
}

}  // namespace

void MSPDIKnownCulprits::learn(const MSPCXMLNode& leaf, const std::string& reason, const MSPIUtilities& conversions) {
    const auto* reader = std::find_if(std::begin(readers), std::end(readers),
                                      [&](const auto& known) { return reason.starts_with(known.reason); });
    if (reader != std::end(readers) && leaf.parent().name() == "Task" && raises(*reader, leaf, conversions)) {
        _byName.try_emplace(std::string(leaf.name()),
                            Known{static_cast<std::size_t>(reader - std::begin(readers)), {}});
    }
}

// Telling that a text cannot be read takes longer than remembering it.
bool MSPDIKnownCulprits::isUnreadable(const MSPCXMLNode& leaf, Known& known, const MSPIUtilities& conversions) {
    constexpr std::size_t mostTexts = 1000;
    std::string buffer;
    const auto text = leaf.stringValue(buffer);
    if (known.texts.contains(text)) {
        return true;
    }
    const bool isUnreadable = raises(readers[known.reader], leaf, conversions);
    if (isUnreadable && known.texts.size() < mostTexts) {
        known.texts.emplace(text);
    }
    return isUnreadable;
}

std::vector<MSPDIKnownCulprits::Suspect> MSPDIKnownCulprits::among(const MSPCXMLNode& task,
                                                                   const MSPIUtilities& conversions) {
    std::vector<Suspect> suspects;
    if (_byName.empty()) {
        return suspects;
    }
    std::map<std::string_view, std::string> texts;  // of the fields that are known, by their names
    std::set<std::string_view> ambiguous;
    std::size_t place = 0;
    for (auto child = task.firstChild(); child; child = child.nextSibling(), ++place) {
        const auto known = _byName.find(child.name());
        if (known == _byName.end()) {
            continue;
        }
        const auto [first, isFirst] = texts.try_emplace(known->first, child.stringValue());
        if (!isFirst && first->second != child.stringValue()) {
            ambiguous.insert(known->first);
        }
        if (isUnreadable(child, known->second, conversions)) {
            suspects.push_back({child, known->second.reader, place});
        }
    }
    std::erase_if(suspects, [&](const auto& suspect) { return ambiguous.contains(suspect.leaf.name()); });
    return suspects;
}

std::vector<MSPCXMLNode> MSPDIKnownCulprits::askedFor(std::span<const Suspect> suspects,
                                                      std::span<const std::string_view> missing) {
    std::vector<Suspect> asked;
    std::set<std::string_view> seen;
    for (const auto& name : missing) {
        if (seen.insert(name).second) {
            std::copy_if(suspects.begin(), suspects.end(), std::back_inserter(asked),
                         [&](const auto& suspect) { return suspect.leaf.name() == name; });
        }
    }
    for (auto first = asked.begin(); first != asked.end();) {
        const auto end =
            std::find_if_not(first, asked.end(), [&](const auto& other) { return areAlike(*first, other); });
        const auto next = end == first ? std::next(first) : end;
        std::sort(first, next, [](const auto& one, const auto& other) { return one.place < other.place; });
        first = next;
    }
    std::vector<MSPCXMLNode> leaves;
    std::transform(asked.begin(), asked.end(), std::back_inserter(leaves),
                   [](const auto& suspect) { return suspect.leaf; });
    return leaves;
}
