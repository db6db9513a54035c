#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCXMLNode.h"

// What the definition of a custom field (MSPDI `ExtendedAttributes/ExtendedAttribute`) tells, read once: thousands of
// values may refer to it.
class MSPICustomField {
public:
    explicit MSPICustomField(const MSPCXMLNode& definition);

    // The alias, else the name of the field; none where it has neither.
    [[nodiscard]] const std::optional<std::string>& name() const { return _name; }
    // The same number for fields of one name; 0 for none.
    [[nodiscard]] std::size_t nameNumber() const { return _nameNumber; }
    void setNameNumber(std::size_t number) { _nameNumber = number; }
    // Whether there is exactly one `CFType`. Raises what the integer getter raises for one that is no number.
    [[nodiscard]] bool hasType();

private:
    MSPCXMLNode _definition;
    std::optional<std::string> _name;
    std::size_t _nameNumber = 0;
    std::optional<bool> _hasType;  // none until it is asked for
};

// The custom fields of a project by their definitions. Must not outlive the project's document.
class MSPICustomFields {
public:
    // The keys that the table of contents shows for tasks or resources, as far as is known.
    struct RecordedKeys {
        MSPCXMLNode element;
        std::vector<std::size_t> nameNumbers;

        friend bool operator==(const RecordedKeys&, const RecordedKeys&) = default;
    };

    // Valid as long as this object.
    [[nodiscard]] MSPICustomField& ofDefinition(const MSPCXMLNode& definition);

    // What was recorded last under a tag.
    [[nodiscard]] RecordedKeys& recordedKeys(std::string_view tag) { return _recordedKeys[std::string(tag)]; }

private:
    std::map<MSPCXMLNode, MSPICustomField> _fields;
    std::map<std::string_view, std::size_t> _nameNumbers;  // of the names in _fields
    std::map<std::string, RecordedKeys> _recordedKeys;
};
