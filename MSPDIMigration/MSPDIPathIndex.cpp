#include "MSPDIPathIndex.h"

#include <algorithm>

#include "MSPCDigest.h"

std::uint64_t* MSPDIPathIndex::find(std::string_view path) {
    return find(MSPCShortSHA256(path));
}

std::uint64_t* MSPDIPathIndex::find(const Digest& digest) {
    if (const auto recent = _recent.find(digest); recent != _recent.end()) {
        return &recent->second;
    }
    const auto found = std::ranges::lower_bound(_sorted, digest, {}, &Entry::digest);
    return found != _sorted.end() && found->digest == digest ? &found->number : nullptr;
}

void MSPDIPathIndex::set(std::string_view path, std::uint64_t number) {
    const auto digest = MSPCShortSHA256(path);
    if (auto* const known = find(digest)) {
        *known = number;
        return;
    }
    _recent.emplace(digest, number);
    // So seldom that all sorting together takes no longer than a few passes through them.
    constexpr std::size_t fewest = 1024;
    constexpr std::size_t share = 16;
    if (_recent.size() >= std::max(fewest, _sorted.size() / share)) {
        sortIn();
    }
}

void MSPDIPathIndex::sortIn() {
    auto known = _sorted.size();
    auto place = known + _recent.size();
    if (place > _sorted.capacity()) {
        _sorted.reserve(place + place / 4);
    }
    _sorted.resize(place);
    // From the largest on, so that each moves once and nothing is overwritten that is still to move.
    for (auto next = _recent.rbegin(); next != _recent.rend();) {
        const bool isBehind = known == 0 || _sorted[known - 1].digest < next->first;
        _sorted[--place] = isBehind ? Entry{next->first, next->second} : _sorted[known - 1];
        if (isBehind) {
            ++next;
        } else {
            --known;
        }
    }
    _recent.clear();
}
