#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "KZDXOutline.h"

// A task as a row of the page.
struct KZDXPageRow {
    std::size_t task;                 // its place in the scenario
    std::size_t level = 1;            // 1 for those that are in no other group than that of all
    std::vector<std::size_t> pieces;  // of a split task
};

// The rows of a scenario: each task once, groups before what they hold, without the group of all and without the pieces
// of split tasks, which are drawn on the rows of their tasks. Tasks that no group leads to come last.
class KZDXPageRows {
public:
    KZDXPageRows(const KZDXOutline& outline, const KZDXItems& tasks);

    [[nodiscard]] std::size_t size() const { return _rows.size(); }
    [[nodiscard]] const KZDXPageRow& operator[](std::size_t row) const { return _rows[row]; }
    [[nodiscard]] auto begin() const { return _rows.begin(); }
    [[nodiscard]] auto end() const { return _rows.end(); }
    // The first row of a task that no group leads to; their number where there is none.
    [[nodiscard]] std::size_t firstOutside() const { return _firstOutside; }
    // The row that shows a task: that of its owner for a piece; none for the group of all.
    [[nodiscard]] std::optional<std::size_t> rowOf(std::size_t task) const { return _rowOf[task]; }

private:
    void addTree(const KZDXOutline& outline, std::size_t top, std::size_t level);

    std::vector<KZDXPageRow> _rows;
    std::vector<std::optional<std::size_t>> _rowOf;
    std::size_t _firstOutside = 0;
};
