#pragma once

#include <cstddef>

class MSPCXMLDocument;

// How much a new document holds.
struct MSPDIDocumentCounts {
    std::size_t tasks = 0;  // of the plan itself, groups included; neither the group of all nor pieces of split tasks
    std::size_t resources = 0;     // of the plan itself, without the group of all
    std::size_t scenarios = 0;     // the plan itself and its baselines
    std::size_t customFields = 0;  // of tasks and of resources
};

// The tasks and resources in the scenario of the plan itself.
[[nodiscard]] std::size_t MSPDITasksIn(const MSPCXMLDocument& scenario);
[[nodiscard]] std::size_t MSPDIResourcesIn(const MSPCXMLDocument& scenario);
// The custom fields in a table of contents.
[[nodiscard]] std::size_t MSPDICustomFieldsIn(const MSPCXMLDocument& kdzxTOC);
