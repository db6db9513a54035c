#include "MSPICustomFields.h"

#include "MSPCExtensions.h"

MSPICustomField::MSPICustomField(const MSPCXMLNode& definition)
    : _definition(definition), _name(stringValueForXQuery(definition, "Alias")) {
    if (!_name) {
        _name = stringValueForXQuery(definition, "FieldName");
    }
}

bool MSPICustomField::hasType() {
    if (!_hasType) {
        Error error;
        static_cast<void>(intValueForXQuery(_definition, "CFType", &error));
        _hasType = !error;
    }
    return *_hasType;
}

MSPICustomField& MSPICustomFields::ofDefinition(const MSPCXMLNode& definition) {
    const auto [known, isNew] = _fields.try_emplace(definition, definition);
    auto& field = known->second;
    if (isNew && field.name()) {
        field.setNameNumber(_nameNumbers.try_emplace(*field.name(), _nameNumbers.size() + 1).first->second);
    }
    return field;
}
