#include "MSPDIFatesByPath.h"

#include <algorithm>
#include <cstring>

#include "MSPDIJSON.h"

namespace {

constexpr std::size_t pieceSize = std::size_t(1) << 18U;
// The longest form of a number, seven bits a byte.
constexpr std::size_t longestNumber = 10;

// The lower seven bits first; the eighth says that more follow. Nearly all numbers here take one byte.
void appendNumber(std::size_t number, std::string& bytes) {
    constexpr std::size_t bits = 7;
    constexpr std::size_t more = 1U << bits;
    for (; number >= more; number >>= bits) {
        bytes += static_cast<char>(number % more + more);
    }
    bytes += static_cast<char>(number);
}

std::size_t takeNumber(std::string_view& bytes) {
    constexpr std::size_t bits = 7;
    constexpr std::size_t more = 1U << bits;
    std::size_t number = 0;
    for (std::size_t shift = 0;; shift += bits) {
        const std::size_t byte = static_cast<unsigned char>(bytes.front());
        bytes.remove_prefix(1);
        number |= (byte % more) << shift;
        if (byte < more) {
            return number;
        }
    }
}

// How many bytes two texts begin with in common: eight of them at a time, since most of a path is that of the last one.
std::size_t sameBeginning(std::string_view text, std::string_view other) {
    constexpr std::size_t step = 8;
    const auto shorter = std::min(text.size(), other.size());
    std::size_t same = 0;
    while (same + step <= shorter && std::memcmp(text.data() + same, other.data() + same, step) == 0) {
        same += step;
    }
    while (same < shorter && text[same] == other[same]) {
        ++same;
    }
    return same;
}

}  // namespace

void MSPDIFatesByPath::add(std::string_view path, MSPDIFate fate) {
    const auto same = sameBeginning(path, _last);
    const auto rest = path.substr(same);
    if (_pieces.empty() || _pieces.back().size() + rest.size() + 2 * longestNumber + 1 > pieceSize) {
        _pieces.emplace_back().reserve(pieceSize);
    }
    auto& bytes = _pieces.back();
    appendNumber(same, bytes);
    appendNumber(rest.size(), bytes);
    bytes += static_cast<char>(MSPDIFateIndex(fate));
    bytes += rest;
    _last.replace(same, std::string::npos, rest);
    _arePlain = _arePlain && MSPDIIsPlainInJSON(rest);
}

void MSPDIFatesByPath::clear() {
    _pieces.clear();
    _last.clear();
    _arePlain = true;
}

void MSPDIFatesByPath::forEach(const std::function<void(std::string_view path, MSPDIFate fate)>& visit) const {
    std::string path;
    for (std::string_view bytes : _pieces) {
        while (!bytes.empty()) {
            const auto same = takeNumber(bytes);
            const auto restLength = takeNumber(bytes);
            const auto fate = static_cast<MSPDIFate>(bytes.front());
            path.replace(same, std::string::npos, bytes.substr(1, restLength));
            bytes.remove_prefix(restLength + 1);
            visit(path, fate);
        }
    }
}
