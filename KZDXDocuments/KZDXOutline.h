#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "KZDXScenario.h"

// Tasks or resources of one scenario as a tree with names: what two scenarios are matched by. The items and references
// outlive it.
class KZDXOutline {
public:
    // `nameElement` is the child element that holds the name of an item.
    KZDXOutline(const KZDXItems& items, const std::vector<KZDXReference>& children, std::string_view nameElement,
                std::optional<std::size_t> top);

    [[nodiscard]] const KZDXItems& items() const { return _items; }
    [[nodiscard]] std::size_t size() const { return _items.size(); }
    [[nodiscard]] const std::string& name(std::size_t item) const { return _names[item]; }
    [[nodiscard]] std::string_view id(std::size_t item) const { return _items[item].id; }
    // The group of all.
    [[nodiscard]] std::optional<std::size_t> top() const { return _top; }
    // The first group that an item is in; none outside the outline.
    [[nodiscard]] std::optional<std::size_t> parent(std::size_t item) const { return _parents[item]; }
    // The items whose first group an item is, in their order.
    [[nodiscard]] std::span<const std::size_t> children(std::size_t item) const;
    // The place of an item among the children of its group, from 0.
    [[nodiscard]] std::size_t place(std::size_t item) const { return _places[item]; }
    // The items in no group, without the group of all.
    [[nodiscard]] std::span<const std::size_t> outside() const { return _outside; }
    // A piece of a split task: its id is given anew with each import, so that it says nothing.
    [[nodiscard]] bool isPiece(std::size_t item) const { return _isPiece[item]; }
    // "Paint (t12)"; of a piece "Paint (t3), piece 2"; of the group of all "Project (t-1)".
    [[nodiscard]] std::string shownName(std::size_t item) const;

private:
    const KZDXItems& _items;
    std::optional<std::size_t> _top;
    std::vector<std::string> _names;
    std::vector<std::optional<std::size_t>> _parents;
    std::vector<std::size_t> _children;  // of all items, one after the other
    std::vector<std::size_t> _starts;    // where those of each item begin in it
    std::vector<std::size_t> _places;    // of each item among the children of its group
    std::vector<std::size_t> _outside;
    std::vector<bool> _isPiece;
};
