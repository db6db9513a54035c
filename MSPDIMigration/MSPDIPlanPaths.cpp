#include "MSPDIPlanPaths.h"

#include <algorithm>

namespace {

// Seven bits a byte, the low ones first; all but the last byte have the eighth.
constexpr std::size_t bits = 7;
constexpr std::size_t more = 1U << bits;

void append(std::size_t number, std::string& coded) {
    for (; number >= more; number >>= bits) {
        coded += static_cast<char>(number % more + more);
    }
    coded += static_cast<char>(number);
}

std::size_t takeNumber(std::string_view& coded) {
    std::size_t number = 0;
    for (std::size_t shift = 0;; shift += bits) {
        const std::size_t byte = static_cast<unsigned char>(coded.front());
        coded.remove_prefix(1);
        number += byte % more << shift;
        if (byte < more) {
            return number;
        }
    }
}

}  // namespace

void MSPDIPlanPaths::add(std::string_view path) {
    const auto shared = static_cast<std::size_t>(std::ranges::mismatch(path, _last).in1 - path.begin());
    append(shared, _coded);
    append(path.size() - shared, _coded);
    _coded += path.substr(shared);
    _last = path;
    ++_size;
}

const std::string* MSPDIPlanPaths::Walk::next() {
    if (_rest.empty()) {
        return nullptr;
    }
    _path.resize(takeNumber(_rest));
    const auto count = takeNumber(_rest);
    _path += _rest.substr(0, count);
    _rest.remove_prefix(count);
    return &_path;
}
