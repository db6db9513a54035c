#include "MSPIUserDataMapper.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPIMappingContext.h"

void MSPIUserData::set(std::optional<std::string> name, MSPIUserDataValue value) {
    if (name) {
        const auto [position, isNew] = _positions.try_emplace(*name, _entries.size());
        if (!isNew) {
            _entries[position->second].second = std::move(value);
            return;
        }
    }
    _entries.emplace_back(std::move(name), std::move(value));
}

namespace {

// A date-time in its display form; any other text, or a date-time that has none, as it is. Deliberate: a text that
// looks like a date becomes one, the phone number "555-123-4567" too, for the plan does not tell what it is. Nothing a
// value holds may end the import, so only what is known to be a date is converted.
std::string displayFormOf(std::string value, const MSPIUtilities& conversions) {
    if (!conversions.isMspdiDateTime(value)) {
        return value;
    }
    auto display = conversions.mspdiDateTimeToString(value);
    return display ? std::move(*display) : value;
}

MSPIUserDataValue valueOf(const MSPCXMLNode& extendedAttribute, MSPICustomField& field,
                          const MSPIMappingContext& mapper) {
    auto value = stringValueForXQuery(extendedAttribute, "Value");
    if (!value) {
        return MSPINullValue{};
    }
    // The type is not used: where one is given, the value's form is known and stays.
    if (mapper.isSavedBy2007OrLater() && !field.hasType()) {
        return displayFormOf(std::move(*value), mapper.conversions());
    }
    return std::move(*value);
}

// The value of a field in one task or resource.
struct FieldValue {
    const MSPICustomField* field;
    MSPIUserDataValue value;
};

// One for each name, in the order in which they first appear. Names are compared by their numbers and not copied, since
// thousands of short attributes may share a long one.
std::vector<FieldValue> fieldValuesOf(std::span<const MSPCXMLNode> extendedAttributes, MSPIMappingContext& mapper) {
    std::vector<FieldValue> values;
    std::unordered_map<std::size_t, std::size_t> positions;  // by the number of the name
    for (const auto& attribute : extendedAttributes) {
        const auto fieldID = textForXQuery(attribute, "FieldID");
        const auto definition =
            fieldID ? mapper.index().definitionsByFieldID().singleNodeWithKey(fieldID.textOrEmpty()) : MSPCXMLNode();
        if (!definition) {
            continue;
        }
        auto& field = mapper.customFields().ofDefinition(definition);
        if (!field.name()) {
            continue;
        }
        const auto position = positions.try_emplace(field.nameNumber(), values.size()).first->second;
        values.resize(std::max(values.size(), position + 1));
        values[position] = {&field, valueOf(attribute, field, mapper)};
    }
    return values;
}

MSPIUserData userDataOf(std::vector<FieldValue>&& values, MSPIMappingContext& mapper) {
    MSPIUserData userData;
    for (auto& [field, value] : values) {
        mapper.growthBounds().addRepeatedName(field->name()->size());
        userData.set(field->name(), std::move(value));
    }
    return userData;
}

MSPICustomFields::RecordedKeys keysOf(const std::vector<FieldValue>& values,
                                      const MSPIUserDataTOCElements& userDataTOCElements, std::string_view tag) {
    const auto recorded = userDataTOCElements.find(std::string(tag));
    MSPICustomFields::RecordedKeys keys{recorded == userDataTOCElements.end() ? MSPCXMLNode() : recorded->second.node(),
                                        {}};
    for (const auto& value : values) {
        keys.nameNumbers.push_back(value.field->nameNumber());
    }
    return keys;
}

}  // namespace

MSPIUserData userDataFromExtendedAttributes(std::span<const MSPCXMLNode> extendedAttributes,
                                            MSPIMappingContext& mapper) {
    return userDataOf(fieldValuesOf(extendedAttributes, mapper), mapper);
}

MSPCXMLNewElement MSPIUserDataMapper::newUserDataFromDictionary(const MSPIUserData& userData) const {
    if (userData.isEmpty()) {
        return {};
    }
    auto element = _document.newElement("user-data");
    for (const auto& [name, value] : userData.entries()) {
        if (std::holds_alternative<MSPINullValue>(value)) {
            continue;
        }
        const auto* text = std::get_if<std::string>(&value);
        if (text == nullptr) {
            throw MSPCInternalInconsistency("Unexpected value in MSPDI Extended Attributes dictionary.");
        }
        addChildElementWithNameStringValue(element.node(), "key", name);
        addChildElementWithNameStringValue(element.node(), "string", *text);
    }
    return element.node().firstChild() ? std::move(element) : MSPCXMLNewElement();
}

bool MSPIUserDataMapper::setUserDataTOCElementsForTagFromDictionary(std::optional<std::string_view> tag,
                                                                    const MSPIUserData& userData) {
    if (userData.isEmpty()) {
        return false;
    }
    auto element = _document.newElement("user-data");
    for (const auto& [name, value] : userData.entries()) {
        if (!name) {
            throw MSPCInternalInconsistency("Expected NSString as a key in extended attributes dictionary.");
        }
        addChildElementWithNameStringValue(element.node(), "key", *name);
        const auto* text = std::get_if<std::string>(&value);
        if (tag || text == nullptr) {
            addChildElementWithName(element.node(), "null");
        } else {
            addChildElementWithNameStringValue(element.node(), "string", *text);
        }
    }
    _userDataTOCElements[tag ? std::optional<std::string>(*tag) : std::nullopt] = std::move(element);
    return true;
}

bool addUserDataOfExtendedAttributesToElement(std::span<const MSPCXMLNode> extendedAttributes,
                                              const MSPCXMLNode& kdzxObject, std::string_view tag,
                                              MSPIUserDataTOCElements& userDataTOCElements,
                                              MSPIMappingContext& mapper) {
    auto values = fieldValuesOf(extendedAttributes, mapper);
    if (values.empty()) {
        return false;
    }
    // Most tasks have the fields of the task before them, whose keys are recorded already.
    auto keys = keysOf(values, userDataTOCElements, tag);
    auto& recorded = mapper.customFields().recordedKeys(tag);
    const bool isRecorded = keys.element && keys == recorded;
    const bool hasValues = std::any_of(values.begin(), values.end(), [](const auto& value) {
        return !std::holds_alternative<MSPINullValue>(value.value);
    });
    if (isRecorded && !hasValues) {
        return true;
    }
    const auto userData = userDataOf(std::move(values), mapper);
    MSPIUserDataMapper userDataMapper(userDataTOCElements, mapper.kdzxDocument());
    if (auto element = userDataMapper.newUserDataFromDictionary(userData)) {
        MSPCXMLNode(kdzxObject).appendChild(std::move(element));
    }
    if (!isRecorded) {
        userDataMapper.setUserDataTOCElementsForTagFromDictionary(tag, userData);
        recorded = {userDataTOCElements.at(std::string(tag)).node(), std::move(keys.nameNumbers)};
    }
    return true;
}
