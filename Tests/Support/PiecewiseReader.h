#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "MSPCXMLFilter.h"

// Gives a text a few bytes at a time, however much is asked for.
inline MSPCByteReader piecewiseReader(std::string text, std::size_t pieceSize) {
    return [text = std::move(text), pieceSize, at = std::size_t{0}](char* buffer, std::size_t capacity) mutable {
        const auto count = std::min({pieceSize, capacity, text.size() - at});
        std::memcpy(buffer, text.data() + at, count);
        at += count;
        return count;
    };
}
