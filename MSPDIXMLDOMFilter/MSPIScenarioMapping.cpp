#include "MSPIScenarioMapping.h"

#include <utility>

#include "MSPIMapper.h"

std::optional<MSPCXMLDocument> MSPIMapScenario(MSPCXMLDocument& mspdi, const MSPCXMLDocument& kdzxTemplate,
                                               MSPCXMLDocument& kdzxTOC, const MSPIImportInfo& info,
                                               const MSPCServices& services) {
    MSPIMapper mapper(mspdi, kdzxTemplate, kdzxTOC, info, services);
    mapper.map();
    return std::move(mapper.kdzxXmlDoc());
}
