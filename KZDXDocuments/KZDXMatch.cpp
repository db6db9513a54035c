#include "KZDXMatch.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "KZDXXMLFile.h"

namespace {

// Where an item stands, for people: its own name and that of its group.
using Place = std::pair<std::string_view, std::string_view>;

// Whether two tasks are alike but for their names: the same dates and effort, and any of them.
bool areAlike(const MSPCXMLNode& one, const MSPCXMLNode& other) {
    bool isAnyThere = false;
    for (const std::string_view name : {"start-date", "end-date", "effort"}) {
        const auto text = KZDXChildText(one, name);
        if (text != KZDXChildText(other, name)) {
            return false;
        }
        isAnyThere = isAnyThere || text.has_value();
    }
    return isAnyThere;
}

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
        pairByOutline(Renamed::PairedInPlace);
    } else {
        pairById(false);
        pairByOutline();
    }
}

std::optional<std::size_t> KZDXMatch::sameId(std::size_t oldItem) const {
    if (_old.isPiece(oldItem) || oldItem == _old.top()) {
        return std::nullopt;
    }
    const auto found = _now.items().find(_old.id(oldItem));
    return found && !_now.isPiece(*found) && found != _now.top() ? found : std::nullopt;
}

// Of the tasks that bear another name than before most, and more than one, are found in their old place under another
// id. A task that was renamed while a new one took its name is none of them alone, and where dates and effort stayed
// with the ids, names were exchanged.
bool KZDXMatch::areIdsGivenAnew() const {
    std::vector<std::size_t> renamed;
    std::vector<std::size_t> gone;
    std::vector<bool> keepsName(_now.size(), false);
    for (std::size_t item = 0; item < _old.size(); ++item) {
        if (const auto found = sameId(item); found && _old.name(item) == _now.name(*found)) {
            keepsName[*found] = true;
        } else if (found) {
            renamed.push_back(item);
        } else if (!_old.isPiece(item) && item != _old.top()) {
            gone.push_back(item);
        }
    }
    // Where no id is left, all of them may have been given anew.
    if (renamed.empty() && std::find(keepsName.begin(), keepsName.end(), true) == keepsName.end()) {
        renamed = std::move(gone);
    }
    std::vector<std::pair<Place, std::size_t>> places;
    for (std::size_t item = 0; !renamed.empty() && item < _now.size(); ++item) {
        if (!keepsName[item] && !_now.isPiece(item)) {
            places.emplace_back(placeOf(_now, item), item);
        }
    }
    std::sort(places.begin(), places.end());
    std::size_t movedOn = 0;
    std::size_t alikeById = 0;
    std::size_t alikeByPlace = 0;
    for (const auto item : renamed) {
        const auto found =
            std::lower_bound(places.begin(), places.end(), std::pair(placeOf(_old, item), std::size_t(0)));
        if (found == places.end() || found->first != placeOf(_old, item)) {
            continue;
        }
        const auto& element = _old.items()[item].element;
        ++movedOn;
        const auto namesake = sameId(item);
        alikeById += namesake && areAlike(element, _now.items()[*namesake].element) ? 1U : 0U;
        alikeByPlace += areAlike(element, _now.items()[found->second].element) ? 1U : 0U;
    }
    return movedOn > 1 && 2 * movedOn > renamed.size() && alikeById <= alikeByPlace;
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
void KZDXMatch::pairByOutline(Renamed renamed) {
    pairByName(_old.outside(), _now.outside());
    // NOLINTNEXTLINE(modernize-loop-convert): the list grows meanwhile
    for (std::size_t next = 0; next < _pairs.size(); ++next) {
        const auto groups = _pairs[next];
        pairPieces(groups);
        pairByName(_old.children(groups.old), _now.children(groups.now));
        if (renamed == Renamed::PairedInPlace) {
            pairRenamedInPlace(groups);
        }
    }
}

// One that is left alone between two neighbours that are matched, with one that is left alone between the matches of
// these.
void KZDXMatch::pairRenamedInPlace(const Pair& groups) {
    const auto oldChildren = _old.children(groups.old);
    const auto newChildren = _now.children(groups.now);
    for (std::size_t place = 0; place < oldChildren.size(); ++place) {
        if (_newOf[oldChildren[place]] || _old.isPiece(oldChildren[place])) {
            continue;
        }
        if (const auto found = newInPlaceOf(oldChildren, place, newChildren)) {
            pair(oldChildren[place], *found);
        }
    }
}

std::optional<std::size_t> KZDXMatch::newInPlaceOf(std::span<const std::size_t> oldChildren, std::size_t place,
                                                   std::span<const std::size_t> newChildren) const {
    std::size_t newPlace = 0;
    if (place > 0) {
        const auto before = _newOf[oldChildren[place - 1]];
        newPlace = before ? _now.place(*before) + 1 : newChildren.size();
        if (before && (newPlace > newChildren.size() || newChildren[newPlace - 1] != *before)) {
            return std::nullopt;  // it was moved to another group
        }
    }
    if (newPlace >= newChildren.size() || _oldOf[newChildren[newPlace]] || _now.isPiece(newChildren[newPlace])) {
        return std::nullopt;
    }
    const bool isLast = place + 1 == oldChildren.size();
    const bool isNewLast = newPlace + 1 == newChildren.size();
    const bool isBetweenTheSame =
        isLast || isNewLast ? isLast == isNewLast : _newOf[oldChildren[place + 1]] == newChildren[newPlace + 1];
    return isBetweenTheSame ? std::optional(newChildren[newPlace]) : std::nullopt;
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
