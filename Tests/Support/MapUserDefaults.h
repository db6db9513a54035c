#pragma once

#include <map>
#include <string>

#include "MSPCUserDefaults.h"

// Settings from a map.
class MapUserDefaults final : public MSPCUserDefaults {
public:
    MapUserDefaults() = default;
    MapUserDefaults(std::initializer_list<std::pair<const std::string, bool>> values) : _values(values) {}

    void set(const std::string& key, bool value) { _values[key] = value; }
    [[nodiscard]] std::optional<bool> boolForKey(std::string_view key) const override {
        const auto found = _values.find(std::string(key));
        return found == _values.end() ? std::nullopt : std::optional(found->second);
    }

private:
    std::map<std::string, bool> _values;
};
