#include "MSPIBaselineIndex.h"

#include <string>

#include "MSPCExtensions.h"
#include "MSPIXPathNumber.h"

MSPIBaselineIndex::MSPIBaselineIndex(const MSPCXMLNode& mspProject) {
    addList(mspProject, "Assignments/Assignment", &MSPIBaselineCounts::assignments);
    addList(mspProject, "Resources/Resource", &MSPIBaselineCounts::resources);
    addList(mspProject, "Tasks/Task", &MSPIBaselineCounts::tasks);
}

void MSPIBaselineIndex::addList(const MSPCXMLNode& mspProject, std::string_view path,
                                std::size_t MSPIBaselineCounts::*count) {
    for (const auto& element : nodesForXQuery(mspProject, path)) {
        _elements.push_back(element);
        addBaselines(element, count);
    }
}

void MSPIBaselineIndex::addBaselines(const MSPCXMLNode& element, std::size_t MSPIBaselineCounts::*count) {
    const auto position = _elements.size() - 1;
    std::string buffer;
    for (auto baseline = element.firstChildElement("Baseline"); baseline;
         baseline = baseline.nextSiblingElement("Baseline")) {
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
    for (const auto& element : _elements) {
        targets.push_back({element, {}});
    }
    for (const auto& [position, baseline] : of(number).entries) {
        targets[position].baseline = baseline;
    }
    return targets;
}
