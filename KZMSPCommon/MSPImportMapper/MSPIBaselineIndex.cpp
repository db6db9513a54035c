#include "MSPIBaselineIndex.h"

#include <string>

#include "MSPCExtensions.h"
#include "MSPCFields.h"
#include "MSPIXPathNumber.h"

MSPIBaselineIndex::MSPIBaselineIndex(const MSPCXMLNode& mspProject) {
    addList(mspProject, "Assignments/Assignment", &MSPIBaselineCounts::assignments);
    addList(mspProject, "Resources/Resource", &MSPIBaselineCounts::resources);
    addList(mspProject, "Tasks/Task", &MSPIBaselineCounts::tasks);
}

void MSPIBaselineIndex::addList(const MSPCXMLNode& mspProject, std::string_view path,
                                std::size_t MSPIBaselineCounts::*count) {
    for (const auto& element : nodesForXQuery(mspProject, path)) {
        _elements.push_back({element, 0});
        if (const auto baseline = element.firstChildElement("Baseline")) {
            addChildrenNamedBy(baseline, element);
            addBaselines(baseline, count);
        }
        _elements.back().endOfChildren = _children.size();
    }
}

void MSPIBaselineIndex::addChildrenNamedBy(const MSPCXMLNode& baseline, const MSPCXMLNode& element) {
    const MSPCFields fields(element);
    for (const auto& value : baseline.childElements()) {
        _children.push_back({value.name, fields.singleObject(value.name)});
    }
}

void MSPIBaselineIndex::addBaselines(MSPCXMLNode baseline, std::size_t MSPIBaselineCounts::*count) {
    const auto position = _elements.size() - 1;
    std::string buffer;
    for (; baseline; baseline = baseline.nextSiblingElement("Baseline")) {
        for (auto child = baseline.firstChildElement("Number"); child; child = child.nextSiblingElement("Number")) {
            const auto number = xpathNumber(child.stringValue(buffer));
            const auto whole = number && *number >= 0 && *number < BaselineCount ? static_cast<std::size_t>(*number) : 0;
            if (number != static_cast<double>(whole)) {
                continue;
            }
            auto& [counts, entries] = _byNumber[whole];
            if (entries.empty() || entries.back().elementPosition != position) {
                entries.push_back({position, baseline});
                ++(counts.*count);
            } else {
                entries.back().baseline = baseline;  // the last of several counts
            }
        }
    }
}

std::vector<MSPIBaselineIndex::Target> MSPIBaselineIndex::targets(std::int32_t number) const {
    std::vector<Target> targets;
    targets.reserve(_elements.size());
    std::size_t startOfChildren = 0;
    for (const auto& [node, endOfChildren] : _elements) {
        targets.push_back({node, {}, std::span(_children).subspan(startOfChildren, endOfChildren - startOfChildren)});
        startOfChildren = endOfChildren;
    }
    for (const auto& [position, baseline] : of(number).entries) {
        targets[position].baseline = baseline;
    }
    return targets;
}
