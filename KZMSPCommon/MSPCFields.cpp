#include "MSPCFields.h"

#include "MSPCNodeValues.h"

MSPCFields::MSPCFields(const MSPCXMLNode& element) {
    checkIsNode(element);
    _fields = element.childElements();
    if (_fields.size() > MostSearchedFields) {
        for (const auto& field : _fields) {
            auto& match = _matchesByName[field.name];
            match = {field.element, match.count + 1};
        }
    }
}

MSPCFields::Match MSPCFields::matchOf(std::string_view name) const {
    if (_fields.size() > MostSearchedFields) {
        const auto found = _matchesByName.find(name);
        return found == _matchesByName.end() ? Match() : found->second;
    }
    Match match;
    for (const auto& field : _fields) {
        if (field.name == name) {
            match = {field.element, match.count + 1};
        }
    }
    return match;
}

MSPCXMLNode MSPCFields::singleObject(std::string_view name, Error* error) const {
    const auto match = matchOf(name);
    reportMatches(match.count, error);
    return match.last;
}

std::optional<std::string> MSPCFields::stringValue(std::string_view name, Error* error) const {
    return stringValueOf(singleObject(name, error));
}

std::int64_t MSPCFields::intValue(std::string_view name, Error* error) const {
    return intValueOf(singleObject(name, error));
}

double MSPCFields::floatValue(std::string_view name, Error* error) const {
    return floatValueOf(singleObject(name, error));
}

bool MSPCFields::boolValue(std::string_view name, Error* error) const { return boolValueOf(singleObject(name, error)); }

std::vector<MSPCXMLNode> MSPCFields::nodes(std::string_view name) const {
    std::vector<MSPCXMLNode> nodes;
    for (const auto& field : _fields) {
        if (field.name == name) {
            nodes.push_back(field.element);
        }
    }
    return nodes;
}
