#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "MSPCXMLDocument.h"
#include "MSPCXMLNode.h"
#include "MSPITOCUserData.h"

class MSPIMappingContext;

// A value that is absent: the field is known, but this object has none.
struct MSPINullValue {
    friend bool operator==(const MSPINullValue&, const MSPINullValue&) = default;
};

// The value of a custom field. The empty alternative is no value at all, which no reader makes and every writer
// refuses.
using MSPIUserDataValue = std::variant<std::monostate, MSPINullValue, std::string>;

// Custom fields of one task, resource or project by name, in the order in which the names first appeared.
class MSPIUserData {
public:
    // A name that is absent altogether is refused by whoever writes the key.
    using Entry = std::pair<std::optional<std::string>, MSPIUserDataValue>;

    // Sets the value of a name; a later value replaces an earlier one and keeps its place.
    void set(std::optional<std::string> name, MSPIUserDataValue value);

    [[nodiscard]] bool isEmpty() const { return _entries.empty(); }
    [[nodiscard]] const std::vector<Entry>& entries() const { return _entries; }

private:
    std::vector<Entry> _entries;
    std::map<std::string, std::size_t> _positions;  // of the names in _entries; hashes of names could all be made equal
};

// The custom-field values of an MSPDI task or resource, from its `ExtendedAttribute` children. A child without
// `FieldID`, without a definition in the project or with a definition that has neither `Alias` nor `FieldName` is
// skipped. The name is the alias where there is one. A child without `Value` gives the null value. With save version 12
// or more and a definition without readable `CFType`, a value that is an MSPDI date-time is given in its display form.
// Names count as repeated text in the scenario's `MSPIGrowthBounds`.
[[nodiscard]] MSPIUserData userDataFromExtendedAttributes(std::span<const MSPCXMLNode> extendedAttributes,
                                                          MSPIMappingContext& mapper);

// Writes user data and records its keys for the table of contents.
class MSPIUserDataMapper {
public:
    // The elements made belong to `document`, which must outlive the recorded ones.
    MSPIUserDataMapper(MSPIUserDataTOCElements& userDataTOCElements, MSPCXMLDocument& document)
        : _userDataTOCElements(userDataTOCElements), _document(document) {}

    // A `user-data` element, owned by the caller, with `key` and `string` per entry that has a value; empty when that
    // leaves nothing to write. Raises `MSPCInternalInconsistency` "Unexpected value in MSPDI Extended Attributes
    // dictionary." for a value that is neither text nor null.
    [[nodiscard]] MSPCXMLNewElement newUserDataFromDictionary(const MSPIUserData& userData) const;

    // Records under the tag a `user-data` element with all keys, each followed by `null`; without a tag each by its
    // value, or `null` where it has none. Answers false, with nothing recorded, when there are no keys. Raises
    // "Expected NSString as a key in extended attributes dictionary." for a key that is no text.
    // Deliberate: what was recorded under the tag before is replaced, so the keys of the last task (or resource) that
    // has any are those that reach the table of contents.
    bool setUserDataTOCElementsForTagFromDictionary(std::optional<std::string_view> tag, const MSPIUserData& userData);

private:
    MSPIUserDataTOCElements& _userDataTOCElements;
    MSPCXMLDocument& _document;
};

// What tasks and resources do with their custom fields: writes the user data of the `ExtendedAttribute` children into
// `kdzxObject` and records its keys under the tag. Answers whether keys were recorded.
bool addUserDataOfExtendedAttributesToElement(std::span<const MSPCXMLNode> extendedAttributes,
                                              const MSPCXMLNode& kdzxObject, std::string_view tag,
                                              MSPIUserDataTOCElements& userDataTOCElements, MSPIMappingContext& mapper);
