#include "KZDXReordered.h"

#include <algorithm>

namespace {

// Marks all but a longest sequence of items whose places before go up.
void markReordered(const std::vector<std::size_t>& items, const std::vector<std::size_t>& placesBefore,
                   std::vector<bool>& isReordered) {
    std::vector<std::size_t> ends;  // of the best sequence of each length, as indices
    std::vector<std::size_t> previous(items.size(), items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        const auto length = std::lower_bound(ends.begin(), ends.end(), i, [&](std::size_t one, std::size_t other) {
            return placesBefore[one] < placesBefore[other];
        });
        previous[i] = length == ends.begin() ? items.size() : *std::prev(length);
        if (length == ends.end()) {
            ends.push_back(i);
        } else {
            *length = i;
        }
        isReordered[items[i]] = true;
    }
    for (auto i = ends.empty() ? items.size() : ends.back(); i < items.size(); i = previous[i]) {
        isReordered[items[i]] = false;
    }
}

}  // namespace

std::vector<bool> KZDXReordered(const KZDXOutline& old, const KZDXOutline& now, const KZDXMatch& match) {
    std::vector<bool> isReordered(now.size(), false);
    std::vector<std::size_t> items;
    std::vector<std::size_t> placesBefore;
    for (std::size_t group = 0; group < now.size(); ++group) {
        items.clear();
        placesBefore.clear();
        for (const auto item : now.children(group)) {
            const auto before = match.oldOf(item);
            const auto parent = before ? old.parent(*before) : std::nullopt;
            if (parent && match.newOf(*parent) == group) {
                items.push_back(item);
                placesBefore.push_back(old.place(*before));
            }
        }
        markReordered(items, placesBefore, isReordered);
    }
    return isReordered;
}
