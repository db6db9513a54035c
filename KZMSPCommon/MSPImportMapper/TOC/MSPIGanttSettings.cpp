#include "MSPIGanttSettings.h"

#include <algorithm>
#include <array>

#include "MSPCException.h"
#include "MSPCExtensions.h"

namespace {

constexpr std::array<std::string_view, 19> ganttSettings = {
    "date-display",         "numbering-style",     "no-numbers",         "auto-level",           "critical-path-slack",
    "currency-format",      "duration-format",     "effort-format",      "base-style",           "column-title-style",
    "note-style",           "standard-task-style", "overdue-task-style", "completed-task-style", "group-task-style",
    "milestone-task-style", "resource-style",      "not-editable-style", "named-styles"};

}  // namespace

std::size_t ganttSettingsCount() {
    return ganttSettings.size();
}

MSPCXMLNode getGanttSettingsElementProjectTOC(std::string_view name, MSPCXMLNode project) {
    if (const auto element = singleObjectForXQuery(project, name)) {
        return element;
    }
    const auto found = std::find(ganttSettings.begin(), ganttSettings.end(), name);
    if (found == ganttSettings.end()) {
        return {};
    }
    const auto index = static_cast<std::size_t>(found - ganttSettings.begin());
    const auto preceding = getPrevGanttSettingsElementForNameIndexProjectTOC(index, project);
    if (!preceding) {
        throw MSPCInternalInconsistency(
            "Failed to find preceeding element to insert element into TOC Project Gantt Settings section.");
    }
    return project.insertChildAfter(project.newElement(name), preceding);
}

MSPCXMLNode getPrevGanttSettingsElementForNameIndexProjectTOC(std::size_t index, const MSPCXMLNode& project) {
    while (index > 0) {
        if (const auto element = singleObjectForXQuery(project, ganttSettings.at(--index))) {
            return element;
        }
    }
    return getLastElementBeforeGanttSettingsInProjectTOC(project);
}

MSPCXMLNode getLastElementBeforeGanttSettingsInProjectTOC(const MSPCXMLNode& project) {
    if (const auto lastScenario = singleObjectForXQuery(project, "scenario")) {
        return lastScenario;
    }
    const auto nextResourceId = singleObjectForXQuery(project, "next-resource-id");
    if (!nextResourceId) {
        throw MSPCInternalInconsistency("Failed to find element preceeding TOC Project Gantt Settings section.");
    }
    return nextResourceId;
}
