#include "KZDXPageRows.h"

KZDXPageRows::KZDXPageRows(const KZDXOutline& outline, const KZDXItems& tasks) : _rowOf(tasks.size()) {
    const auto top = outline.top();
    if (top) {
        for (const auto task : outline.children(*top)) {
            addTree(outline, task, 1);
        }
    }
    _firstOutside = _rows.size();
    for (const auto task : outline.outside()) {
        addTree(outline, task, 1);
    }
    // Groups that hold each other in a circle.
    for (std::size_t task = 0; task < tasks.size(); ++task) {
        if (task != top && !_rowOf[task]) {
            addTree(outline, task, 1);
        }
    }
}

// Without recursion: an outline may be deeper than the stack.
void KZDXPageRows::addTree(const KZDXOutline& outline, std::size_t top, std::size_t level) {
    struct Step {
        std::size_t task;
        std::size_t level;
    };
    std::vector<Step> steps = {{top, level}};
    while (!steps.empty()) {
        const auto step = steps.back();
        steps.pop_back();
        if (_rowOf[step.task]) {
            continue;
        }
        const auto row = _rows.size();
        _rowOf[step.task] = row;
        _rows.push_back({step.task, step.level, {}});
        const auto children = outline.children(step.task);
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            if (!outline.isPiece(*child)) {
                steps.push_back({*child, step.level + 1});
            }
        }
        for (const auto child : children) {
            if (outline.isPiece(child) && !_rowOf[child]) {
                _rowOf[child] = row;
                _rows[row].pieces.push_back(child);
            }
        }
    }
}
