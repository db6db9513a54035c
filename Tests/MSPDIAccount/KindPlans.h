#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

// A kind of loss: a plan that has it, how often it is told, and a plan much like it that has nothing of the kind. Both
// are what `AccountOfPlan` takes.
struct KindCase {
    std::string kind;
    std::size_t count;
    std::string lossy;
    std::string other;
    std::string settings = "<SaveVersion>14</SaveVersion>";

    friend std::ostream& operator<<(std::ostream& stream, const KindCase& one) { return stream << one.kind; }
};

// One for each kind but the season's.
[[nodiscard]] std::vector<KindCase> kindCases();
