#pragma once

#include <string_view>

#include "MSPIMappingContext.h"

// Base of the mappers of single objects: holds the context they share, which outlives them.
class MSPIObjectMapperBase {
public:
    explicit MSPIObjectMapperBase(MSPIMappingContext& mapper) : _mapper(mapper) {}

protected:
    ~MSPIObjectMapperBase() = default;

    // Raises `MSPCInternalInconsistency` "Expected NSXMLNodeProxy as a <kind> object." for an empty handle.
    static void checkNode(const MSPCXMLNode& node, std::string_view kind);

    MSPIMappingContext& _mapper;
};
