#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "KZDXOutline.h"

// Which tasks, or resources, of an old scenario are which of a new one. By id; where ids were given anew, which shows
// in names that moved on to other ids, and for what is left, by their place in the outline and their name. Pieces of
// split tasks are matched by their order.
class KZDXMatch {
public:
    KZDXMatch(const KZDXOutline& old, const KZDXOutline& now);

    [[nodiscard]] std::optional<std::size_t> newOf(std::size_t oldItem) const { return _newOf[oldItem]; }
    [[nodiscard]] std::optional<std::size_t> oldOf(std::size_t newItem) const { return _oldOf[newItem]; }
    // Items with another id than before, without pieces.
    [[nodiscard]] std::size_t renumbered() const;

private:
    struct Pair {
        std::size_t old;
        std::size_t now;
    };
    using Items = std::vector<std::size_t>;

    [[nodiscard]] std::optional<std::size_t> sameId(std::size_t oldItem) const;
    [[nodiscard]] bool areIdsGivenAnew() const;
    void pair(std::size_t oldItem, std::size_t newItem);
    void pairById(bool onlyOfSameName);
    enum class Renamed { Left, PairedInPlace };
    void pairByOutline(Renamed renamed = Renamed::Left);
    void pairRenamedInPlace(const Pair& groups);
    [[nodiscard]] std::optional<std::size_t> newInPlaceOf(std::span<const std::size_t> oldChildren, std::size_t place,
                                                          std::span<const std::size_t> newChildren) const;
    void pairPieces(const Pair& owners);
    void pairByName(std::span<const std::size_t> oldItems, std::span<const std::size_t> newItems);

    const KZDXOutline& _old;
    const KZDXOutline& _now;
    std::vector<std::optional<std::size_t>> _newOf;
    std::vector<std::optional<std::size_t>> _oldOf;
    std::vector<Pair> _pairs;  // in the order in which they were found
};
