#include "MSPIObjectMapperBase.h"

#include <fmt/format.h>

#include "MSPCException.h"

void MSPIObjectMapperBase::checkNode(const MSPCXMLNode& node, std::string_view kind) {
    if (!node) {
        throw MSPCInternalInconsistency(fmt::format("Expected NSXMLNodeProxy as a {} object.", kind));
    }
}
