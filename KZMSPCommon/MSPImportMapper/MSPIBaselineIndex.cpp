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
        _elements.push_back(element);
        if (const auto baseline = element.firstChildElement("Baseline")) {
            addBaselines(baseline, element, count);
        }
    }
}

void MSPIBaselineIndex::addBaselines(MSPCXMLNode baseline, const MSPCFields& element,
                                     std::size_t MSPIBaselineCounts::*count) {
    const auto position = _elements.size() - 1;
    std::string buffer;
    for (; baseline; baseline = baseline.nextSiblingElement("Baseline")) {
        for (auto child = baseline.firstChildElement("Number"); child; child = child.nextSiblingElement("Number")) {
            const auto number = xpathNumber(child.stringValue(buffer));
            const auto whole = number && *number >= 0 && *number < BaselineCount ? static_cast<std::size_t>(*number) : 0;
            if (number != static_cast<double>(whole)) {
                continue;
            }
            auto& [counts, entries, values] = _byNumber[whole];
            if (!entries.empty() && entries.back().baseline == baseline) {
                continue;  // said twice
            }
            if (!entries.empty() && entries.back().elementPosition == position) {
                values.resize(entries.back().startOfValues);  // the last of several counts
                entries.pop_back();
            } else {
                ++(counts.*count);
            }
            entries.push_back({position, baseline, values.size()});
            appendBaselineValues(element, baseline, values);
        }
    }
}

std::vector<MSPIBaselineIndex::Target> MSPIBaselineIndex::targets(std::int32_t number) const {
    std::vector<Target> targets;
    targets.reserve(_elements.size());
    for (const auto& element : _elements) {
        targets.push_back({element, {}, {}});
    }
    const auto& [counts, entries, values] = of(number);
    auto endOfValues = values.size();
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        auto& target = targets[entry->elementPosition];
        target.baseline = entry->baseline;
        target.values = std::span(values).subspan(entry->startOfValues, endOfValues - entry->startOfValues);
        endOfValues = entry->startOfValues;
    }
    return targets;
}
