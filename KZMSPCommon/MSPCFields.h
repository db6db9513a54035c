#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "MSPCError.h"
#include "MSPCXMLNode.h"

// The child elements of one element, seen in one walk: for reading many of them without walking again for each. Answers as
// the queries of `MSPCExtensions` do for a plain child name: the last child of that name, `MSPCXQueryNoMatch` and
// `MSPCXQueryMoreThanOneMatch` through `error`, and the same failures for texts that hold no number or boolean. Children
// that are added or removed later are not seen; the element must live as long as this object.
class MSPCFields {
public:
    // Raises what a query on an empty handle raises. Implicit, so that whoever takes fields can be given an element.
    MSPCFields(const MSPCXMLNode& element);  // NOLINT(google-explicit-constructor)

    [[nodiscard]] MSPCXMLNode singleObject(std::string_view name, Error* error = nullptr) const;
    [[nodiscard]] std::optional<std::string> stringValue(std::string_view name, Error* error = nullptr) const;
    [[nodiscard]] std::int64_t intValue(std::string_view name, Error* error = nullptr) const;
    [[nodiscard]] double floatValue(std::string_view name, Error* error = nullptr) const;
    [[nodiscard]] bool boolValue(std::string_view name, Error* error = nullptr) const;
    // All children of that name, in order.
    [[nodiscard]] std::vector<MSPCXMLNode> nodes(std::string_view name) const;

private:
    struct Match {
        MSPCXMLNode last;
        std::size_t count = 0;
    };

    // A walk over the fields of any real element beats a look-up; elements made to hurt have millions.
    static constexpr std::size_t MostSearchedFields = 256;

    [[nodiscard]] Match matchOf(std::string_view name) const;

    std::vector<MSPCXMLNamedElement> _fields;
    std::unordered_map<std::string_view, Match> _matchesByName;  // filled where the fields are too many to search
};
