#include "MSPITOCUpdater.h"

#include <fmt/format.h>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPIGanttSettings.h"

namespace {

// The child of that name; raises the failure where there is none.
MSPCXMLNode required(const MSPCXMLNode& parent, std::string_view name, const MSPCInternalInconsistency& failure) {
    const auto child = singleObjectForXQuery(parent, name);
    if (!child) {
        throw failure;
    }
    return child;
}

MSPCXMLNode editingScenarioOf(const MSPCXMLNode& window) {
    return required(window, "editing-scenario",
                    MSPCInternalInconsistency("Failed to get 'window/editing-scenario' from TOC XML DOM."));
}

// The last `scenario` of that name; names are compared here because a name in a query could hold quotes.
MSPCXMLNode scenarioEntryNamed(const MSPCXMLNode& project, std::string_view name) {
    MSPCXMLNode found;
    for (auto entry = project.firstChildElement("scenario"); entry; entry = entry.nextSiblingElement("scenario")) {
        if (entry.attribute("name").stringValue() == name) {
            found = entry;
        }
    }
    return found;
}

// Puts a new element of that name right after another.
MSPCXMLNode insertedAfter(MSPCXMLNode parent, std::string_view name, const MSPCXMLNode& sibling) {
    return parent.insertChildAfter(parent.newElement(name), sibling);
}

}  // namespace

MSPITOCUpdater::MSPITOCUpdater(const MSPCXMLNode& tocRoot)
    : _window(required(tocRoot, "window",
                       MSPCInternalInconsistency("Failed to get 'scenario/window' element from TOC XML DOM"))),
      _project(required(tocRoot, "project",
                        MSPCInternalInconsistency("Failed to get 'scenario/project' element from TOC XML DOM"))) {
}

void MSPITOCUpdater::setScenarioEntry(std::string_view scenarioName, std::string_view scenarioId) {
    auto entry = scenarioEntryNamed(_project, scenarioName);
    if (!entry) {
        auto anchor = singleObjectForXQuery(_project, "scenario");
        if (!anchor) {
            anchor = required(
                _project, "next-resource-id",
                MSPCInternalInconsistency("Failed to find insertion point for 'scenario' element in TOC XML DOM."));
        }
        entry = insertedAfter(_project, "scenario", anchor);
        setAttributeWithNameStringValue(entry, "id", "");
        setAttributeWithNameStringValue(entry, "name", scenarioName);
        setAttributeWithNameStringValue(entry, "filename", fmt::format("{}.xml", scenarioName));
    }
    setAttributeWithNameStringValue(entry, "id", scenarioId);
}

void MSPITOCUpdater::raiseNextIds(std::int64_t maxTaskId, std::int64_t maxResourceId) {
    raiseNextId("next-task-id", maxTaskId);
    raiseNextId("next-resource-id", maxResourceId);
}

void MSPITOCUpdater::raiseNextId(std::string_view name, std::int64_t maxId) {
    auto nextId =
        required(_project, name,
                 MSPCInternalInconsistency(fmt::format("Failed to get 'project/{}' element from TOC XML DOM", name)));
    if (intValueForXQuery(_project, name) <= maxId) {
        // Unsigned, so that the number after the largest one can be written.
        nextId.setStringValue(fmt::format("{}", static_cast<std::uint64_t>(maxId) + 1));
    }
}

void MSPITOCUpdater::setComparisonScenario(std::string_view scenarioId) {
    auto comparison = singleObjectForXQuery(_window, "comparison-scenario");
    if (!comparison) {
        comparison = insertedAfter(_window, "comparison-scenario", editingScenarioOf(_window));
    }
    comparison.setStringValue(scenarioId);
}

void MSPITOCUpdater::setEditingScenario(std::string_view scenarioId) {
    editingScenarioOf(_window).setStringValue(scenarioId);
}

void MSPITOCUpdater::setTitle(std::string_view title) {
    auto element = singleObjectForXQuery(_project, "title");
    if (!element) {
        element = insertChildElementWithNameAtIndex(_project, "title", 0);
    }
    element.setStringValue(title);
}

void MSPITOCUpdater::setCurrencyFormat(std::string_view sampleAmount) {
    auto element = getGanttSettingsElementProjectTOC("currency-format", _project);
    if (!element) {
        throw MSPCInternalInconsistency("Failed to get/create 'project/currency-format' element from TOC XML DOM");
    }
    element.setStringValue(sampleAmount);
}

void MSPITOCUpdater::setWorkingTimeUnits(const MSPIWorkingTimeUnits& units) {
    for (const std::string_view name : {"duration-format", "effort-format"}) {
        const auto format =
            required(_project, name,
                     MSPCInternalInconsistency(fmt::format("Failed to get 'project/{}' from TOC XML DOM.", name)));
        setAttributeWithNameStringValue(format, "hours-per-day", fmt::format("{}", units.hoursPerDay));
        setAttributeWithNameStringValue(format, "hours-per-week", fmt::format("{}", units.hoursPerWeek));
        setAttributeWithNameStringValue(format, "hours-per-month", fmt::format("{}", units.hoursPerMonth));
        setAttributeWithNameStringValue(format, "hours-per-year", fmt::format("{}", units.hoursPerYear));
    }
}
