#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "MSPCByteStreams.h"

// Gives bytes that are there as a whole and outlive it, without a copy of them.
class MSPCBytesSource final : public MSPCByteSource {
public:
    explicit MSPCBytesSource(std::string_view bytes) : _size(bytes.size()), _rest(bytes) {}

    [[nodiscard]] std::optional<std::size_t> read(char* buffer, std::size_t capacity) override {
        const auto count = _rest.copy(buffer, capacity);
        _rest.remove_prefix(count);
        return count;
    }
    [[nodiscard]] std::size_t expectedSize() const override { return _size; }

private:
    std::size_t _size;
    std::string_view _rest;
};
