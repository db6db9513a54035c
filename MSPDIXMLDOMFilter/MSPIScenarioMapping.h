#pragma once

#include <functional>
#include <optional>

#include "MSPCXMLDocument.h"
#include "MSPIImportInfo.h"

struct MSPCServices;

// Maps one scenario: reads the MSPDI document and the template scenario, enters the scenario in the table of contents
// and gives its document, owned by the caller; none when the plan holds no such scenario. `info` says which scenario it
// is. The MSPDI document is afterwards what it was before. Raises the mappers' failures.
using MSPIScenarioMapping = std::function<std::optional<MSPCXMLDocument>(
    MSPCXMLDocument& mspdi, const MSPCXMLDocument& kdzxTemplate, MSPCXMLDocument& kdzxTOC, const MSPIImportInfo& info,
    const MSPCServices& services)>;

// The mapping by a mapper of its own.
[[nodiscard]] std::optional<MSPCXMLDocument> MSPIMapScenario(MSPCXMLDocument& mspdi,
                                                             const MSPCXMLDocument& kdzxTemplate,
                                                             MSPCXMLDocument& kdzxTOC, const MSPIImportInfo& info,
                                                             const MSPCServices& services);
