#pragma once

#include <cstdint>
#include <optional>

// Uniformly random numbers for identifiers.
class MSPCRandomSource {
public:
    virtual ~MSPCRandomSource() = default;
    // A random number of up to 64 bits; none when the source fails.
    [[nodiscard]] virtual std::optional<std::uint64_t> draw64Bits() = 0;
};

// The cryptographic library's generator.
class MSPCCryptoRandomSource final : public MSPCRandomSource {
public:
    [[nodiscard]] std::optional<std::uint64_t> draw64Bits() override;
};
