#pragma once

#include <ostream>
#include <span>
#include <string>

// A kind of plan that combines one list with another so that each entry of the one leads to the other. The plan holds
// about n entries of either, and so does what is made of it: n times n are nowhere, unless in the steps of an importer
// that walks the one list for each entry of the other.
struct PlanShape {
    const char* name;
    std::string (*plan)(int n);

    friend std::ostream& operator<<(std::ostream& stream, const PlanShape& shape) { return stream << shape.name; }
};

// A plan of n tasks with a name and nothing else, which the others are measured by.
[[nodiscard]] std::string plainTasks(int n);

// Shapes that once grew with the square of the plan.
[[nodiscard]] std::span<const PlanShape> shapesOnceQuadratic();
// Other combinations of lists.
[[nodiscard]] std::span<const PlanShape> shapesOfLists();
// Many leaves of one element, each of which may ask for the others.
[[nodiscard]] std::span<const PlanShape> shapesOfLeaves();
