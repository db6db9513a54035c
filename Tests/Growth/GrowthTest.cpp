#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "ImportWork.h"
#include "PlanGenerator.h"
#include "ProcessTiming.h"

// Twice the plan, twice the work. The work of whole imports is counted instead of timed, so these tests say the same on
// every machine, however busy it is; the seconds are the benchmarks' business.

namespace {

CountedWork workOfPlan(const PlanOptions& options) {
    std::string plan;
    generatePlan(options, [&plan](std::string_view piece) { plan += piece; });
    const auto [work, succeeded] = ::workOfImporting(std::move(plan));
    EXPECT_TRUE(succeeded);
    return work;
}

struct Kind {
    std::string name;
    PlanOptions options;
    std::int64_t fewestTasks = 1024;

    friend std::ostream& operator<<(std::ostream& stream, const Kind& kind) { return stream << kind.name; }
};

// What the first import of a process alone costs, such as reading the zone database, is no growth.
class Growth : public testing::Test {
protected:
    Growth() { static_cast<void>(workOfPlan({.tasks = 10, .timephasedRecords = 2, .baselines = 11})); }
};

class GrowthOf : public Growth, public testing::WithParamInterface<Kind> {
protected:
    static CountedWork workOf(std::int64_t tasks) {
        auto options = GetParam().options;
        options.tasks = tasks;
        if (options.shape == PlanShape::ManyCustomFields) {
            options.definitions = tasks;
        }
        return workOfPlan(options);
    }
};

// How often the first step from a size to its double fits into the second one; what does not grow at all drops out.
// Exactly linear growth gives 2, longer numbers in the texts hardly more. A walk over the brothers and sisters of each
// of the tasks gives 2.19 at these sizes.
void expectLinear(std::uint64_t small, std::uint64_t middle, std::uint64_t large) {
    constexpr double mostPerDoubling = 2.06;
    EXPECT_LE(static_cast<double>(large - middle) / static_cast<double>(middle - small), mostPerDoubling)
        << small << ", " << middle << ", " << large;
}

TEST_P(GrowthOf, isLinearInTheNumberOfTasks) {
    const auto fewest = GetParam().fewestTasks;
    const auto small = workOf(fewest);
    const auto middle = workOf(2 * fewest);
    const auto large = workOf(4 * fewest);
    expectLinear(small.steps, middle.steps, large.steps);
    expectLinear(small.bytes, middle.bytes, large.bytes);
}

const Kind kinds[] = {
    {"ActualScenario", {}},
    {"TimephasedDataAndSplits", {.timephasedRecords = 5, .splitPercent = 5}},
    {"ElevenBaselines", {.baselines = 11}, 256},
    {"Flat", {.shape = PlanShape::Flat}},
    {"LateNesting", {.shape = PlanShape::LateNesting}},
    {"StarLinks", {.shape = PlanShape::StarLinks}},
    {"OneResource", {.shape = PlanShape::OneResource}},
    {"OneBusyTask", {.shape = PlanShape::OneBusyTask}},
    {"ReversedAssignments", {.shape = PlanShape::ReversedAssignments}},
    {"ManyCustomFields", {.shape = PlanShape::ManyCustomFields}},
    {"MaterialPerTask", {.shape = PlanShape::MaterialPerTask}},
    {"DuplicateUIDs", {.shape = PlanShape::DuplicateUIDs}},
    {"AlternateBaselines", {.shape = PlanShape::AlternateBaselines}},
    {"AllSplit", {.shape = PlanShape::AllSplit}},
};
INSTANTIATE_TEST_SUITE_P(Plans, GrowthOf, testing::ValuesIn(kinds), [](const auto& kind) { return kind.param.name; });

TEST_F(Growth, isLinearInTheNumberOfBaselines) {
    constexpr double maxExponent = 1.05;
    const auto workOf = [](std::int64_t baselines) { return workOfPlan({.tasks = 300, .baselines = baselines}); };
    const auto without = workOf(0);
    std::vector<double> counts;
    std::vector<double> steps;
    std::vector<double> bytes;
    for (const std::int64_t baselines : {1, 3, 6, 11}) {
        const auto work = workOf(baselines);
        counts.push_back(static_cast<double>(baselines));
        steps.push_back(static_cast<double>(work.steps - without.steps));
        bytes.push_back(static_cast<double>(work.bytes - without.bytes));
    }
    EXPECT_LE(growthExponent(counts, steps), maxExponent);
    EXPECT_LE(growthExponent(counts, bytes), maxExponent);
}

TEST_F(Growth, isCountedTheSameEveryTime) {
    const auto work = workOfPlan({.tasks = 100});
    const auto again = workOfPlan({.tasks = 100});
    const auto ofTwice = workOfPlan({.tasks = 200});
    EXPECT_GT(work.steps, 100'000U);
    EXPECT_GT(work.bytes, 100'000U);
    EXPECT_GT(ofTwice.steps, work.steps);
    EXPECT_GT(ofTwice.bytes, work.bytes);
    EXPECT_NEAR(static_cast<double>(again.steps) / static_cast<double>(work.steps), 1, 0.001);
    EXPECT_EQ(again.bytes, work.bytes);
}

}  // namespace
