#pragma once

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "MSPCByteStreams.h"

// Gives a text a few bytes at a time, however much is asked for.
class PiecewiseSource final : public MSPCByteSource {
public:
    PiecewiseSource(std::string text, std::size_t pieceSize)
        : _text(std::move(text)), _pieceSize(pieceSize), _expectedSize(_text.size()) {}
    // One that is mistaken about its size.
    PiecewiseSource(std::string text, std::size_t pieceSize, std::size_t expectedSize)
        : _text(std::move(text)), _pieceSize(pieceSize), _expectedSize(expectedSize) {}

    [[nodiscard]] std::optional<std::size_t> read(char* buffer, std::size_t capacity) override {
        const auto count = std::min({_pieceSize, capacity, _text.size() - _at});
        std::memcpy(buffer, _text.data() + _at, count);
        _at += count;
        return count;
    }
    [[nodiscard]] std::size_t expectedSize() const override { return _expectedSize; }

private:
    std::string _text;
    std::size_t _pieceSize;
    std::size_t _expectedSize;
    std::size_t _at = 0;
};
