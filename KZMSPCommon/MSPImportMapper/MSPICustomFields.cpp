#include "MSPICustomFields.h"

#include "MSPCExtensions.h"

const std::optional<std::string>& MSPICustomField::name() {
    if (!_name) {
        _name = stringValueForXQuery(_definition, "Alias");
        if (!*_name) {
            _name = stringValueForXQuery(_definition, "FieldName");
        }
    }
    return *_name;
}

bool MSPICustomField::hasType() {
    if (!_hasType) {
        Error error;
        static_cast<void>(intValueForXQuery(_definition, "CFType", &error));
        _hasType = !error;
    }
    return *_hasType;
}
