#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

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
