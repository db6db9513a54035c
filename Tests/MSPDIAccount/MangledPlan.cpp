#include "MangledPlan.h"

#include <random>
#include <string_view>
#include <vector>

#include "MSPCXMLLoader.h"
#include "MSPIElementsRead.h"

namespace {

using Random = std::mt19937;

std::size_t drawn(Random& random, std::size_t below) {
    return std::uniform_int_distribution<std::size_t>(0, below - 1)(random);
}

// The leaves that the importer may read, and baselines' values.
void collectLeaves(const MSPCXMLNode& node, const MSPCXMLSelection* selection, std::vector<MSPCXMLNode>& leaves) {
    bool hasElements = false;
    for (auto child = node.firstChild(); child; child = child.nextSibling()) {
        if (child.isElement()) {
            hasElements = true;
            const auto* below = selection->isWhole() ? nullptr : selection->child(child.name());
            if (below != nullptr || child.name() == "Start" || child.name() == "Work") {
                collectLeaves(child, below != nullptr ? below : selection, leaves);
            }
        }
    }
    if (!hasElements) {
        leaves.push_back(node);
    }
}

constexpr std::string_view oddValues[] = {
    "0",        "1",       "2",   "3",  "5",        "6",        "7",
    "-1",       "",        "100", "50", "PT8H0M0S", "PT0H0M0S", "2012-03-05T08:00:00",
    "00:00:00", "Standard"};

// A baseline with some of the fields of its owner.
void addBaseline(MSPCXMLNode owner, Random& random) {
    auto baseline = owner.newElement("Baseline");
    baseline.node().appendElement("Number", std::to_string(drawn(random, 12)));
    for (const auto* name : {"Start", "Finish", "Duration", "Work", "FixedCost", "PercentComplete"}) {
        if (drawn(random, 2) == 0) {
            const auto own = owner.lastChildElement(name).element;
            baseline.node().appendElement(name, own ? own.stringValue() : "PT16H0M0S");
        }
    }
    owner.appendChild(std::move(baseline));
}

void mangle(MSPCXMLNode leaf, const std::vector<MSPCXMLNode>& leaves, Random& random) {
    const auto owner = leaf.parent();
    switch (drawn(random, 7)) {
        case 0:  // again, with the same value
            MSPCXMLNode(owner).insertChildAfter(owner.newCopyOf(leaf), leaf);
            return;
        case 1: {  // again, with another one
            auto copy = owner.newCopyOf(leaf);
            MSPCXMLNode(copy.node()).setStringValue(oddValues[drawn(random, std::size(oddValues))]);
            MSPCXMLNode(owner).insertChildBefore(std::move(copy), leaf);
            return;
        }
        case 2:
            static_cast<void>(leaf.detach());
            return;
        case 3: {  // the value of another leaf of that name
            for (int attempt = 0; attempt < 200; ++attempt) {
                const auto& other = leaves[drawn(random, leaves.size())];
                if (other.name() == leaf.name()) {
                    leaf.setStringValue(other.stringValue());
                    return;
                }
            }
            return;
        }
        case 4:
            leaf.setStringValue(oddValues[drawn(random, std::size(oddValues))]);
            return;
        case 5:
            if (owner.name() == "Task" || owner.name() == "Resource" || owner.name() == "Assignment") {
                addBaseline(owner, random);
            }
            return;
        default:  // an element of another kind of owner
            MSPCXMLNode(owner).appendChild(owner.newCopyOf(leaves[drawn(random, leaves.size())]));
    }
}

}  // namespace

std::string mangledPlan(const std::string& bytes, unsigned seed) {
    const auto loaded = MSPCXMLLoader(MSPCXMLContent::DataOnly, "Project").loadBytes(bytes);
    if (!loaded) {
        return bytes;
    }
    const auto& plan = loaded->document;
    Random random(seed);
    const auto count = 1 + drawn(random, 12);
    for (std::size_t step = 0; step < count; ++step) {
        std::vector<MSPCXMLNode> leaves;
        collectLeaves(plan.root(), MSPIElementsRead().child("Project"), leaves);
        mangle(leaves[drawn(random, leaves.size())], leaves, random);
    }
    return plan.serialized();
}
