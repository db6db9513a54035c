#include "MSPCByteStreams.h"

#include <algorithm>
#include <cstring>

std::optional<std::size_t> MSPCContentSource::read(char* buffer, std::size_t capacity) {
    const auto count = std::min(capacity, _content.size() - _at);
    std::memcpy(buffer, _content.data() + _at, count);
    _at += count;
    return count;
}
