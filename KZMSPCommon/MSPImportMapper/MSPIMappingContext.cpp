#include "MSPIMappingContext.h"

#include <fmt/format.h>

MSPIMappingContext::MSPIMappingContext(const MSPCServices& services) : _services(services), _conversions(services) {
}

void MSPIMappingContext::setMspProject(MSPCXMLNode project) {
    _mspProject = project;
    _index = MSPIProjectIndex(project);
}

std::string MSPIMappingContext::getTempSplitTaskID() {
    return fmt::format("split-{}", ++_splitTaskID);
}
