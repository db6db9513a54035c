#pragma once

#include <optional>
#include <string_view>

// The persistent settings of one domain: booleans by key.
class MSPCUserDefaults {
public:
    virtual ~MSPCUserDefaults() = default;
    // The value of a key; none when the key or the whole domain is absent.
    [[nodiscard]] virtual std::optional<bool> boolForKey(std::string_view key) const = 0;
};
