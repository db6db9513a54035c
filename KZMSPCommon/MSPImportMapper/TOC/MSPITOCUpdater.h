#pragma once

#include <cstdint>
#include <string_view>

#include "MSPCXMLNode.h"
#include "MSPIProjectSettings.h"

// Brings a bundle's table of contents up to date. Every element it does not know stays where it is; where `project` or
// `window` hold several elements of one name the last one counts. What the table must hold and does not is a
// `MSPCInternalInconsistency` with the text given.
class MSPITOCUpdater {
public:
    // Finds `window` and `project` below the root. Raises "Failed to get 'scenario/window' element from TOC XML DOM"
    // and "Failed to get 'scenario/project' element from TOC XML DOM".
    explicit MSPITOCUpdater(const MSPCXMLNode& tocRoot);

    // Gives the `scenario` entry of that name the id; a new entry names the file "<name>.xml" and follows the last one,
    // or `next-resource-id` for the first. Raises "Failed to find insertion point for 'scenario' element in TOC XML
    // DOM.".
    void setScenarioEntry(std::string_view scenarioName, std::string_view scenarioId);
    // Raises "next-task-id" and "next-resource-id" above the highest numbers used; never lowers them. Raises "Failed to
    // get 'project/<name>' element from TOC XML DOM".
    void raiseNextIds(std::int64_t maxTaskId, std::int64_t maxResourceId);

    // Raises "Failed to get 'window/editing-scenario' from TOC XML DOM." where there is no place for it.
    void setComparisonScenario(std::string_view scenarioId);
    // Raises the same when it is missing.
    void setEditingScenario(std::string_view scenarioId);
    // Created as the first child of `project` when missing.
    void setTitle(std::string_view title);
    // Raises "Failed to get/create 'project/currency-format' element from TOC XML DOM".
    void setCurrencyFormat(std::string_view sampleAmount);
    // Raises "Failed to get 'project/duration-format' from TOC XML DOM." and the same for effort-format.
    void setWorkingTimeUnits(const MSPIWorkingTimeUnits& units);

private:
    void raiseNextId(std::string_view name, std::int64_t maxId);

    MSPCXMLNode _window;
    MSPCXMLNode _project;
};
