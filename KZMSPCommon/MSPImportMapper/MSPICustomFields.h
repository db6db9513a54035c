#pragma once

#include <map>
#include <optional>
#include <string>

#include "MSPCXMLNode.h"

// What the definition of a custom field (MSPDI `ExtendedAttributes/ExtendedAttribute`) tells, each thing read when it is
// asked for first: thousands of values may refer to one definition.
class MSPICustomField {
public:
    explicit MSPICustomField(const MSPCXMLNode& definition) : _definition(definition) {}

    // The alias, else the name of the field; none where it has neither.
    [[nodiscard]] const std::optional<std::string>& name();
    // Whether there is exactly one `CFType`. Raises what the integer getter raises for one that is no number.
    [[nodiscard]] bool hasType();

private:
    MSPCXMLNode _definition;
    std::optional<std::optional<std::string>> _name;
    std::optional<bool> _hasType;
};

// The custom fields of a project by their definitions. Must not outlive the project's document.
class MSPICustomFields {
public:
    // Valid as long as this object.
    [[nodiscard]] MSPICustomField& ofDefinition(const MSPCXMLNode& definition) {
        return _fields.try_emplace(definition, definition).first->second;
    }

private:
    std::map<MSPCXMLNode, MSPICustomField> _fields;
};
