#include "MSPIUserDataMapper.h"

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPIMappingContext.h"

namespace {

// A date-time in its display form; any other text, or a date-time that has none, as it is. Deliberate: a text that looks
// like a date becomes one, the phone number "555-123-4567" too, for the plan does not tell what it is. Nothing a value holds may
// end the import, so only what is known to be a date is converted.
std::string displayFormOf(std::string value, const MSPIUtilities& conversions) {
    if (!conversions.isMspdiDateTime(value)) {
        return value;
    }
    auto display = conversions.mspdiDateTimeToString(value);
    return display ? std::move(*display) : value;
}

MSPIUserDataValue valueOf(const MSPCXMLNode& extendedAttribute, const MSPCXMLNode& definition,
                          const MSPIMappingContext& mapper) {
    auto value = stringValueForXQuery(extendedAttribute, "Value");
    if (!value) {
        return MSPINullValue{};
    }
    if (mapper.isSavedBy2007OrLater()) {
        // The type is not used: where one is given, the value's form is known and stays.
        Error error;
        static_cast<void>(intValueForXQuery(definition, "CFType", &error));
        if (error) {
            return displayFormOf(std::move(*value), mapper.conversions());
        }
    }
    return std::move(*value);
}

}  // namespace

MSPIUserData userDataFromExtendedAttributes(std::span<const MSPCXMLNode> extendedAttributes,
                                            MSPIMappingContext& mapper) {
    MSPIUserData userData;
    for (const auto& attribute : extendedAttributes) {
        const auto fieldID = stringValueForXQuery(attribute, "FieldID");
        const auto definition =
            fieldID ? mapper.index().definitionsByFieldID().singleNodeWithKey(*fieldID) : MSPCXMLNode();
        if (!definition) {
            continue;
        }
        auto name = stringValueForXQuery(definition, "Alias");
        if (!name) {
            name = stringValueForXQuery(definition, "FieldName");
        }
        if (name) {
            mapper.growthBounds().addRepeatedText(name->size());
            userData.set(std::move(name), valueOf(attribute, definition, mapper));
        }
    }
    return userData;
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
                                              MSPIUserDataTOCElements& userDataTOCElements, MSPIMappingContext& mapper) {
    const auto userData = userDataFromExtendedAttributes(extendedAttributes, mapper);
    if (userData.isEmpty()) {
        return false;
    }
    MSPIUserDataMapper userDataMapper(userDataTOCElements, mapper.kdzxDocument());
    if (auto element = userDataMapper.newUserDataFromDictionary(userData)) {
        MSPCXMLNode(kdzxObject).appendChild(std::move(element));
    }
    return userDataMapper.setUserDataTOCElementsForTagFromDictionary(tag, userData);
}
