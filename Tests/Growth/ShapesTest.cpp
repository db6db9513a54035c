#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "ImportWork.h"
#include "PlanShapes.h"

// Plans that combine a list with another, made to find what walks the one for each entry of the other. Whatever their
// shape, the work for each byte of them stays about the same however long they are, and is never far above that of a
// plain list of tasks. Only what is compiled here is counted; `make-shape` writes the same plans for other counters.

namespace {

struct Measured {
    std::size_t size;
    double stepsPerByte;
};

// What is done with a plan.
using Operation = ImportWork (*)(std::string plan);

// The work beyond that for a plan of nothing, such as reading the template.
Measured measured(const std::string& plan, Operation operation) {
    // What only the first run of a process costs is no work for a plan.
    static const auto baseOf = [](Operation some) {
        static_cast<void>(some(plainTasks(1)));
        return some(plainTasks(1)).work.steps;
    };
    static const auto baseOfImport = baseOf(workOfImporting);
    static const auto baseOfLosses = baseOf(workOfTellingLosses);
    const auto base = operation == workOfImporting ? baseOfImport : baseOfLosses;
    const auto steps = operation(plan).work.steps;
    return {plan.size(), static_cast<double>(steps > base ? steps - base : 0) / static_cast<double>(plan.size())};
}

double plainStepsPerByte(Operation operation) {
    static const auto ofImport = measured(plainTasks(1000), workOfImporting).stepsPerByte;
    static const auto ofLosses = measured(plainTasks(1000), workOfTellingLosses).stepsPerByte;
    return operation == workOfImporting ? ofImport : ofLosses;
}

// Long enough that lists, not the plan's frame, decide.
int smallestOf(const PlanShape& shape) {
    constexpr std::size_t fewestBytes = 3'000;
    int n = 8;
    while (shape.plan(n).size() < fewestBytes) {
        n *= 2;
    }
    return n;
}

void expectLinearAndNeverDear(const PlanShape& shape, Operation operation) {
    constexpr int doublings = 4;
    constexpr double mostTimesPlain = 20;
    constexpr double largestExponent = 1.15;
    const auto smallest = smallestOf(shape);
    // What the first import of a process alone costs, such as reading the zone database, is no growth.
    static_cast<void>(operation(shape.plan(smallest)));
    // What hardly costs anything at first may come to cost something.
    const auto atLeast = plainStepsPerByte(operation) / mostTimesPlain;
    std::vector<Measured> steps;
    for (int doubling = 0; doubling <= doublings; ++doubling) {
        steps.push_back(measured(shape.plan(smallest << doubling), operation));
        EXPECT_LE(steps.back().stepsPerByte, mostTimesPlain * plainStepsPerByte(operation))
            << steps.back().size << " bytes";
    }
    const auto growth = std::max(steps.back().stepsPerByte, atLeast) / std::max(steps.front().stepsPerByte, atLeast);
    const auto ofSize = static_cast<double>(steps.back().size) / static_cast<double>(steps.front().size);
    EXPECT_LE(1 + std::log(growth) / std::log(ofSize), largestExponent)
        << steps.front().stepsPerByte << " steps a byte, then " << steps.back().stepsPerByte;
}

class Shapes : public testing::TestWithParam<PlanShape> {};

TEST_P(Shapes, areLinearAndNeverDear) {
    expectLinearAndNeverDear(GetParam(), workOfImporting);
}

TEST_P(Shapes, areLinearAndNeverDearForTheirLosses) {
    expectLinearAndNeverDear(GetParam(), workOfTellingLosses);
}

std::string nameOf(const testing::TestParamInfo<PlanShape>& shape) {
    return shape.param.name;
}

INSTANTIATE_TEST_SUITE_P(OnceQuadratic, Shapes, testing::ValuesIn(shapesOnceQuadratic()), nameOf);
INSTANTIATE_TEST_SUITE_P(OfLeaves, Shapes, testing::ValuesIn(shapesOfLeaves()), nameOf);
INSTANTIATE_TEST_SUITE_P(OfLists, Shapes, testing::ValuesIn(shapesOfLists()), nameOf);

}  // namespace
