#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCXMLNode.h"
#include "MSPIUtilities.h"

// Fields of tasks that were to blame: what is wrong in one task is often wrong in all.
class MSPDIKnownCulprits {
public:
    struct Suspect {
        MSPCXMLNode leaf;
        std::size_t reader = 0;  // which cannot take its text
        std::size_t place = 0;   // among the others of the task
    };

    // A leaf that is to blame for a failure with that reason, still in its task. One of another kind teaches nothing.
    void learn(const MSPCXMLNode& leaf, const std::string& reason, const MSPIUtilities& conversions);
    // The children of a task that are wrong in a way that was learned, in their order. Of a name that the task has
    // several times only where all say the same.
    [[nodiscard]] std::vector<Suspect> among(const MSPCXMLNode& task, const MSPIUtilities& conversions);
    // Those of them that a mapper missed which was tried without them, in the order in which it would have stumbled
    // over them one after the other; those that no reader tells from each other in the order of the task.
    [[nodiscard]] static std::vector<MSPCXMLNode> askedFor(std::span<const Suspect> suspects,
                                                           std::span<const std::string_view> missing);

private:
    struct Known {
        std::size_t reader = 0;
        std::set<std::string, std::less<>> texts;  // that the reader cannot take
    };

    [[nodiscard]] static bool isUnreadable(const MSPCXMLNode& leaf, Known& known, const MSPIUtilities& conversions);

    std::map<std::string, Known, std::less<>> _byName;
};
