#include "KZDXMatch.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace {

// Where an item stands, for people: its own name and that of its group.
using Place = std::pair<std::string_view, std::string_view>;

Place placeOf(const KZDXOutline& outline, std::size_t item) {
    const auto parent = outline.parent(item);
    return {outline.name(item), parent ? std::string_view(outline.name(*parent)) : std::string_view()};
}

}  // namespace

KZDXMatch::KZDXMatch(const KZDXOutline& old, const KZDXOutline& now)
    : _old(old), _now(now), _newOf(old.size()), _oldOf(now.size()) {
    if (old.top() && now.top()) {
        pair(*old.top(), *now.top());
    }
    if (areIdsGivenAnew()) {
        pairByOutline();
        pairById(true);
    } else {
        pairById(false);
    }
    pairByOutline();
}

std::optional<std::size_t> KZDXMatch::sameId(std::size_t oldItem) const {
    if (_old.isPiece(oldItem) || oldItem == _old.top()) {
        return std::nullopt;
    }
    const auto found = _now.items().find(_old.id(oldItem));
    return found && !_now.isPiece(*found) && found != _now.top() ? found : std::nullopt;
}

// Of the tasks that bear another name than before most, and more than one, are found in their old place under another
// id. A task that was renamed while a new one took its name is none of them alone.
bool KZDXMatch::areIdsGivenAnew() const {
    std::vector<std::size_t> renamed;
    std::vector<bool> keepsName(_now.size(), false);
    for (std::size_t item = 0; item < _old.size(); ++item) {
        if (const auto found = sameId(item); found && _old.name(item) == _now.name(*found)) {
            keepsName[*found] = true;
        } else if (found) {
            renamed.push_back(item);
        }
    }
    std::vector<Place> places;
    for (std::size_t item = 0; !renamed.empty() && item < _now.size(); ++item) {
        if (!keepsName[item] && !_now.isPiece(item)) {
            places.push_back(placeOf(_now, item));
        }
    }
    std::sort(places.begin(), places.end());
    const auto movedOn = static_cast<std::size_t>(std::count_if(renamed.begin(), renamed.end(), [&](std::size_t item) {
        return std::binary_search(places.begin(), places.end(), placeOf(_old, item));
    }));
    return movedOn > 1 && 2 * movedOn > renamed.size();
}

void KZDXMatch::pair(std::size_t oldItem, std::size_t newItem) {
    if (!_newOf[oldItem] && !_oldOf[newItem]) {
        _newOf[oldItem] = newItem;
        _oldOf[newItem] = oldItem;
        _pairs.push_back({oldItem, newItem});
    }
}

void KZDXMatch::pairById(bool onlyOfSameName) {
    for (std::size_t item = 0; item < _old.size(); ++item) {
        const auto found = sameId(item);
        if (found && (!onlyOfSameName || _old.name(item) == _now.name(*found))) {
            pair(item, *found);
        }
    }
}

// From the groups that are matched downwards; what is matched on the way is looked at, too.
void KZDXMatch::pairByOutline() {
    pairByName(_old.outside(), _now.outside());
    // NOLINTNEXTLINE(modernize-loop-convert): the list grows meanwhile
    for (std::size_t next = 0; next < _pairs.size(); ++next) {
        const auto groups = _pairs[next];
        pairPieces(groups);
        pairByName(_old.children(groups.old), _now.children(groups.now));
    }
}

void KZDXMatch::pairPieces(const Pair& owners) {
    const auto oldPieces = _old.children(owners.old);
    const auto newPieces = _now.children(owners.now);
    for (std::size_t piece = 0; piece < std::min(oldPieces.size(), newPieces.size()); ++piece) {
        if (_old.isPiece(oldPieces[piece]) && _now.isPiece(newPieces[piece])) {
            pair(oldPieces[piece], newPieces[piece]);
        }
    }
}

// Of several of one name the first with the first, and so on.
void KZDXMatch::pairByName(std::span<const std::size_t> oldItems, std::span<const std::size_t> newItems) {
    const auto unmatched = [](std::span<const std::size_t> items, const KZDXOutline& outline, const auto& matches) {
        Items result;
        std::copy_if(items.begin(), items.end(), std::back_inserter(result),
                     [&](std::size_t item) { return !matches[item] && !outline.isPiece(item); });
        std::stable_sort(result.begin(), result.end(), [&outline](std::size_t one, std::size_t other) {
            return outline.name(one) < outline.name(other);
        });
        return result;
    };
    const auto before = unmatched(oldItems, _old, _newOf);
    const auto after = before.empty() ? Items() : unmatched(newItems, _now, _oldOf);
    auto candidate = after.begin();
    for (const auto item : before) {
        while (candidate != after.end() && _now.name(*candidate) < _old.name(item)) {
            ++candidate;
        }
        if (candidate != after.end() && _now.name(*candidate) == _old.name(item)) {
            pair(item, *candidate);
            ++candidate;
        }
    }
}

std::size_t KZDXMatch::renumbered() const {
    return static_cast<std::size_t>(std::count_if(_pairs.begin(), _pairs.end(), [this](const Pair& match) {
        return !_old.isPiece(match.old) && _old.id(match.old) != _now.id(match.now);
    }));
}
