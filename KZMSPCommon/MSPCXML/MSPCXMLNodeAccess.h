#pragma once

#include "MSPCXMLNode.h"

namespace pugi {
struct xml_node_struct;
struct xml_attribute_struct;
}  // namespace pugi

// The library's own node behind a handle, for the units of this folder only.
struct MSPCXMLNodeAccess {
    [[nodiscard]] static pugi::xml_node_struct* node(const MSPCXMLNode& handle) noexcept {
        return static_cast<pugi::xml_node_struct*>(handle._node);
    }
    [[nodiscard]] static pugi::xml_attribute_struct* attribute(const MSPCXMLNode& handle) noexcept {
        return static_cast<pugi::xml_attribute_struct*>(handle._attribute);
    }
    // `attribute` is given for attributes only, with the element that holds it.
    [[nodiscard]] static MSPCXMLNode handle(pugi::xml_node_struct* node,
                                            pugi::xml_attribute_struct* attribute = nullptr) noexcept {
        return {node, attribute};
    }
};
