#include "ChangedPlan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

#include "MSPCByteStreams.h"
#include "MSPCXMLLoader.h"
#include "MSPDIAccountOfPlan.h"
#include "MSPDIMemoryImport.h"

namespace {

constexpr const char* planPath = "/plans/Plan.xml";

class SameNumbers final : public MSPCRandomSource {
public:
    std::optional<std::uint64_t> draw64Bits() override { return ++_last * 0x9E3779B97F4A7C15U; }

private:
    std::uint64_t _last = 0;
};

std::string localName(const MSPCXMLNode& node) {
    const std::string name(node.name());
    return name.substr(name.find(':') == std::string::npos ? 0 : name.find(':') + 1);
}

std::vector<MSPCXMLNode> elementsIn(const MSPCXMLNode& parent) {
    std::vector<MSPCXMLNode> elements;
    for (auto child = parent.firstChild(); child; child = child.nextSibling()) {
        if (child.isElement()) {
            elements.push_back(child);
        }
    }
    return elements;
}

// Calls `visit` with every leaf and its path.
void visitLeaves(const MSPCXMLNode& node, const std::string& path,
                 const std::function<void(const MSPCXMLNode&, const std::string&)>& visit) {
    const auto children = elementsIn(node);
    if (children.empty()) {
        visit(node, path);
    }
    std::map<std::string, int> counts;
    for (const auto& child : children) {
        const auto name = localName(child);
        visitLeaves(child, path + "/" + name + "[" + std::to_string(++counts[name]) + "]", visit);
    }
}

}  // namespace

std::string withoutNumbers(const std::string& path) {
    std::string result;
    bool isNumber = false;
    for (const auto character : path) {
        isNumber = character == '[' || (isNumber && character != ']');
        if (!isNumber && character != ']') {
            result += character;
        }
    }
    constexpr std::string_view project = "/Project/";
    return result.starts_with(project) ? result.substr(project.size()) : result;
}

ChangedPlan::ChangedPlan(std::string bytes) : _bytes(std::move(bytes)) {
    const auto plan = copy();
    _original = importOf(plan);
    visitLeaves(plan.root(), "/Project", [this](const MSPCXMLNode& leaf, const std::string& path) {
        _texts[path] = leaf.stringValue();
        _values[withoutNumbers(path)].push_back(leaf.stringValue());
    });
    ServicesInMemory outside;
    outside.machine.addFile(planPath, _bytes);
    MSPDIAccountOptions options;
    MSPDIFatesByPath fates;
    options.fates = &fates;
    const auto account = MSPDIAccountOfPlan(planPath, outside.services, options);
    fates.forEach([this](const std::string& path, MSPDIFate fate) { _fates.emplace_back(path, fate); });
    EXPECT_EQ(account.total(), _fates.size());
    outside.log.ignoreLines();
}

const std::vector<std::string>& ChangedPlan::valuesAt(const std::string& elementPath) const {
    static const std::vector<std::string> none;
    const auto found = _values.find(elementPath);
    return found == _values.end() ? none : found->second;
}

bool ChangedPlan::isSameWithout(const std::vector<std::string>& paths) const {
    const std::set<std::string> wanted(paths.begin(), paths.end());
    auto plan = copy();
    std::vector<MSPCXMLNode> found;
    visitLeaves(plan.root(), "/Project", [&](const MSPCXMLNode& leaf, const std::string& path) {
        if (wanted.contains(path)) {
            found.push_back(leaf);
        }
    });
    EXPECT_EQ(found.size(), wanted.size());
    for (auto& leaf : found) {
        static_cast<void>(leaf.detach());
    }
    return importOf(plan) == _original;
}

bool ChangedPlan::isSameWith(const std::string& path, const std::string& value) const {
    auto plan = copy();
    visitLeaves(plan.root(), "/Project", [&](const MSPCXMLNode& leaf, const std::string& at) {
        if (at == path) {
            MSPCXMLNode(leaf).setStringValue(value);
        }
    });
    return importOf(plan) == _original;
}

std::pair<std::string, std::string> ChangedPlan::withUnknownElement(unsigned seed) const {
    constexpr std::string_view unknown = "Zebra";
    std::mt19937 random(seed);
    const auto drawn = [&random](std::size_t below) {
        return std::uniform_int_distribution<std::size_t>(0, below - 1)(random);
    };
    auto plan = copy();
    std::vector<MSPCXMLNode> owners{plan.root()};
    for (std::size_t at = 0; at < owners.size(); ++at) {
        const auto children = elementsIn(owners[at]);
        owners.insert(owners.end(), children.begin(), children.end());
    }
    auto owner = owners[drawn(owners.size())];
    auto element = owner.newElement(unknown);
    element.node().setStringValue("7");
    const auto children = elementsIn(owner);
    owner.insertChildBefore(std::move(element), children.empty() ? MSPCXMLNode() : children[drawn(children.size())]);
    std::string found;
    visitLeaves(plan.root(), "/Project", [&](const MSPCXMLNode& leaf, const std::string& path) {
        found = leaf.name() == unknown ? path : found;
    });
    return {plan.serialized(), found};
}

MSPCXMLDocument ChangedPlan::copy() const {
    auto loaded = MSPCXMLLoader(MSPCXMLContent::DataOnly, "Project").loadBytes(_bytes);
    return loaded ? std::move(loaded->document) : MSPCXMLDocument();
}

std::optional<ChangedPlan::Bundle> ChangedPlan::importOf(const MSPCXMLDocument& plan) const {
    ServicesInMemory outside;
    outside.machine.addFile(planPath, plan.serialized());
    SameNumbers numbers;
    const MSPCServices services{outside.clock,    outside.services.timeZone, outside.log,
                                outside.settings, outside.machine,           numbers};
    auto result = MSPDIImportInMemory(planPath, services);
    outside.log.ignoreLines();
    return result.isImported() ? std::optional(std::move(result.bundle)) : std::nullopt;
}
